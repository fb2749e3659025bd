#include "simulator/controller/replay.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>

namespace kestrel_simulator {

namespace {

using Result = kestrel_wire::RecordingReader::Result;
using Contents = kestrel_wire::RecordingReader::Contents;

constexpr double defaultDistance = 1.0 / 60.0; // between the frames of a recording of one frame
constexpr std::size_t maxFrameLines = 1000;
constexpr std::size_t maxShown = 40; // bytes of a bad version in a message

double seconds(std::uint64_t microseconds) {
    return static_cast<double>(microseconds) * 1e-6;
}

} // namespace

Replay::Replay(std::string path, AtEnd atEnd)
    : m_path(std::move(path))
    , m_atEnd(atEnd) {}

std::unique_ptr<Replay> Replay::open(const std::string& path, AtEnd atEnd, std::string& error) {
    std::unique_ptr<Replay> replay(new Replay(path, atEnd));
    return replay->check(error) ? std::move(replay) : nullptr;
}

bool Replay::check(std::string& error) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(m_path, failure);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        // it may never end, or be there only once, or wait for a writer for ever
        error = "only an ordinary file can be replayed, not a folder, pipe or device";
        return false;
    }
    m_file.open(m_path, std::ios::binary);
    if (!m_file || m_file.peek() == std::ifstream::traits_type::eof()) {
        error = m_file.is_open() ? "the recording is empty or unreadable"
                                 : "the recording cannot be opened";
        return false;
    }
    kestrel_wire::RecordingReader reader(m_file, Contents::Sendable);
    Result result = reader.readHeader(m_header);
    kestrel_wire::Record record;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::size_t frames = 0;
    while (result == Result::Ok) {
        result = reader.next(record);
        if (result == Result::Ok && (frames == 0 || record.microseconds != last)) {
            last = record.microseconds;
            first = frames == 0 ? last : first;
            ++frames;
        }
    }
    if (result == Result::Malformed) {
        const std::size_t line = std::max<std::size_t>(1, reader.lineNumber()); // cut in its first
        error = "line " + std::to_string(line) + ": " + reader.error();
        return false;
    }
    if (!Version::parse(m_header.protocol, m_protocol)) {
        error = "the recorded protocol version cannot be read: \"" +
                kestrel_wire::escaped(m_header.protocol.substr(0, maxShown)) + "\"";
        return false;
    }
    m_truncated = reader.truncated();
    m_frameDistance =
        frames > 1 ? seconds(last - first) / static_cast<double>(frames - 1) : defaultDistance;
    return true;
}

bool Replay::rewind() {
    m_file.clear();
    m_file.seekg(0);
    m_reader = std::make_unique<kestrel_wire::RecordingReader>(m_file, Contents::Sendable);
    kestrel_wire::RecordingHeader ignored;
    m_hasAhead =
        m_reader->readHeader(ignored) == Result::Ok && m_reader->next(m_ahead) == Result::Ok;
    readFrame();
    return !m_frame.empty();
}

void Replay::readFrame() {
    m_frame.clear();
    if (m_hasAhead) {
        m_frameTime = m_ahead.microseconds;
    }
    while (m_hasAhead && m_ahead.microseconds == m_frameTime && m_frame.size() < maxFrameLines) {
        m_frame.push_back(std::move(m_ahead.line));
        m_hasAhead = m_reader->next(m_ahead) == Result::Ok;
    }
}

void Replay::start(double now) {
    if (rewind()) {
        m_base = now - seconds(m_frameTime);
    }
}

double Replay::nextDue() const {
    return m_frame.empty() ? std::numeric_limits<double>::infinity()
                           : m_base + seconds(m_frameTime);
}

std::vector<std::string> Replay::take(double) {
    std::vector<std::string> lines = std::move(m_frame);
    const double due = m_base + seconds(m_frameTime);
    readFrame();
    if (m_frame.empty() && m_atEnd == AtEnd::Loop && rewind()) {
        m_base = due + m_frameDistance - seconds(m_frameTime);
    }
    return lines;
}

} // namespace kestrel_simulator
