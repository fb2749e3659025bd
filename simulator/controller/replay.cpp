#include "simulator/controller/replay.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <limits>
#include <system_error>

namespace kestrel_simulator {

namespace {

using Result = kestrel_wire::RecordingReader::Result;
using Contents = kestrel_wire::RecordingReader::Contents;

constexpr double defaultDistance = 1.0 / 60.0; // between the frames of a recording of one frame
constexpr std::size_t maxFrameLines = 1000;
constexpr std::uint64_t indexInterval = 1024 * 1024; // bytes that are read on the way to a place
constexpr std::size_t maxShown = 40;                 // bytes of a bad version in a message

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
    return readThrough(error);
}

bool Replay::readThrough(std::string& error) {
    m_reader = std::make_unique<kestrel_wire::RecordingReader>(m_file, Contents::Sendable);
    Result result = m_reader->readHeader(m_header);
    kestrel_wire::Record record;
    std::size_t frames = 0;
    while (result == Result::Ok) {
        const kestrel_wire::RecordingReader::Place place = m_reader->place();
        result = m_reader->next(record);
        if (result == Result::Ok && (frames == 0 || record.microseconds != m_last)) {
            m_last = record.microseconds;
            m_first = frames == 0 ? m_last : m_first;
            ++frames;
            if (m_index.empty() || place.offset - m_index.back().place.offset >= indexInterval) {
                m_index.push_back({m_last, place});
            }
        }
    }
    if (result == Result::Malformed) {
        // at least 1: it may be cut in its first line
        const std::size_t line = std::max<std::size_t>(1, m_reader->lineNumber());
        error = "line " + std::to_string(line) + ": " + m_reader->error();
        return false;
    }
    if (!Version::parse(m_header.protocol, m_protocol)) {
        error = "the recorded protocol version cannot be read: \"" +
                kestrel_wire::escaped(m_header.protocol.substr(0, maxShown)) + "\"";
        return false;
    }
    m_truncated = m_reader->truncated();
    m_frameDistance = frames > 1 ? duration() / static_cast<double>(frames - 1) : defaultDistance;
    if (rewind()) {
        showFrame();
    }
    return true;
}

double Replay::behindFirst(std::uint64_t microseconds) const {
    return seconds(microseconds - m_first);
}

bool Replay::rewind() {
    m_frame.clear();
    if (!m_index.empty()) {
        readFrom(m_index.front());
    }
    return !m_frame.empty();
}

void Replay::readFrom(const Entry& entry) {
    m_reader->goTo(entry.place);
    m_hasAhead = false;
    readAhead();
    readFrame();
}

// What has been written since the file was opened, behind its end or in its place, is not played.
void Replay::readAhead() {
    const bool wasLast = m_hasAhead && m_ahead.microseconds == m_last;
    m_hasAhead = m_reader->next(m_ahead) == Result::Ok && m_ahead.microseconds >= m_first &&
                 m_ahead.microseconds <= m_last;
    m_isChanged = m_isChanged || (!m_hasAhead && !wasLast);
    m_aheadClock = m_reader->clock();
}

void Replay::readFrame() {
    m_frame.clear();
    if (m_hasAhead) {
        m_frameTime = m_ahead.microseconds;
        m_frameClock = m_aheadClock;
    }
    while (m_hasAhead && m_ahead.microseconds == m_frameTime && m_frame.size() < maxFrameLines) {
        m_frame.push_back(std::move(m_ahead.line));
        readAhead();
    }
}

void Replay::showFrame() {
    m_shownTime = m_frameTime;
    m_shownClock = m_frameClock;
}

Replay::State Replay::state() const {
    if (m_frame.empty()) {
        return State::Ended;
    }
    return m_paused ? State::Paused : State::Playing;
}

double Replay::position() const {
    return behindFirst(m_shownTime);
}

std::optional<kestrel_wire::UtcMilliseconds> Replay::utc() const {
    return m_shownClock ? std::optional(m_shownClock->at(m_shownTime)) : std::nullopt;
}

void Replay::anchor(double now, double position) {
    m_anchorNow = now;
    m_anchorPosition = position;
}

double Replay::due() const {
    return m_anchorNow + (behindFirst(m_frameTime) - m_anchorPosition) / m_speed;
}

// Somewhere between the frame before and the next one.
double Replay::playedUntil(double now) const {
    return m_paused ? m_anchorPosition
                    : std::min(m_anchorPosition + (now - m_anchorNow) * m_speed,
                               behindFirst(m_frameTime));
}

void Replay::play(double now) {
    double from = playedUntil(now);
    if (m_frame.empty() && rewind()) {
        from = 0.0;
    }
    m_paused = false;
    m_single = false;
    anchor(now, from);
}

void Replay::pause(double now) {
    anchor(now, playedUntil(now));
    m_paused = true;
    m_single = false;
}

void Replay::step(double now) {
    pause(now);
    m_single = true;
}

void Replay::setSpeed(double speed, double now) {
    anchor(now, playedUntil(now));
    m_speed = speed;
}

void Replay::seek(double position, double now) {
    if (m_index.empty()) {
        return;
    }
    m_paused = m_paused || m_frame.empty();
    const double wanted = std::round(std::max(position, 0.0) / seconds(1)); // microseconds
    const std::uint64_t length = m_last - m_first;
    const std::uint64_t time = wanted < static_cast<double>(length)
                                   ? m_first + static_cast<std::uint64_t>(wanted)
                                   : m_last;
    const auto behind = std::upper_bound(
        m_index.begin(), m_index.end(), time,
        [](std::uint64_t one, const Entry& entry) { return one < entry.microseconds; });
    readFrom(behind == m_index.begin() ? *behind : *std::prev(behind));
    while (!m_frame.empty() && m_frameTime < time) {
        readFrame();
    }
    if (!m_frame.empty()) {
        showFrame();
    }
    m_single = m_paused;
    anchor(now, behindFirst(m_frameTime));
}

void Replay::start(double now) {
    if (rewind()) {
        showFrame();
    }
    m_single = false;
    anchor(now, 0.0);
}

double Replay::nextDue() const {
    if (m_frame.empty() || (m_paused && !m_single)) {
        return std::numeric_limits<double>::infinity();
    }
    return m_paused ? m_anchorNow : due();
}

std::vector<std::string> Replay::take(double now) {
    std::vector<std::string> lines = std::move(m_frame);
    if (m_paused) {
        anchor(now, behindFirst(m_frameTime));
        m_single = false;
    } else if (now - due() > longestDelay) {
        m_anchorNow += now - due();
    }
    showFrame();
    const double dueThen = due();
    readFrame();
    if (m_frame.empty() && m_atEnd == AtEnd::Loop && rewind()) {
        anchor(dueThen + m_frameDistance / m_speed, 0.0);
    }
    return lines;
}

} // namespace kestrel_simulator
