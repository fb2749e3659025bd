#include "libs/kestrel_recording/walk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kestrel_recording {

namespace {

constexpr std::uint64_t watchInterval = 1024 * 1024;

}

using Result = kestrel_wire::RecordingReader::Result;

Walk::Walk(std::istream& stream, Watch watch)
    : m_reader(stream)
    , m_watch(std::move(watch)) {}

bool Walk::readHeader(kestrel_wire::RecordingHeader& header) {
    return take(m_reader.readHeader(header));
}

bool Walk::next(kestrel_wire::RecordView& record) {
    if (!take(m_reader.next(record))) {
        return false;
    }
    if (!m_times) {
        m_times = {record.microseconds, record.microseconds};
    }
    m_times->to = record.microseconds;
    return true;
}

const std::optional<TimeRange>& Walk::readTimes() {
    kestrel_wire::RecordView record;
    while (!m_isOver && next(record)) {
    }
    return m_times;
}

bool Walk::take(Result result) {
    m_isOver = result != Result::Ok;
    if (result == Result::Malformed) {
        m_outcome.ending = Outcome::Ending::Malformed;
        m_outcome.line = std::max<std::size_t>(1, m_reader.lineNumber());
        m_outcome.reason = m_reader.error();
    } else if (result == Result::End && m_reader.truncated()) {
        m_outcome.ending = Outcome::Ending::Truncated;
        m_outcome.line = m_reader.lineNumber() + 1;
    }
    if (m_watch && m_reader.bytesTaken() - m_told >= watchInterval) {
        m_told = m_reader.bytesTaken();
        if (!m_watch(m_told) && result == Result::Ok) {
            m_outcome.ending = Outcome::Ending::Stopped;
            m_isOver = true;
        }
    }
    return !m_isOver;
}

Outcome Walk::outcome() const {
    return m_outcome;
}

Outcome check(std::istream& stream, const Watch& watch) {
    Walk walk(stream, watch);
    kestrel_wire::RecordingHeader header;
    kestrel_wire::RecordView record;
    bool more = walk.readHeader(header);
    while (more) {
        more = walk.next(record);
    }
    return walk.outcome();
}

bool openRecording(const std::string& path, std::ifstream& file, std::string& error) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        error = "only an ordinary file can be read, not a folder, pipe or device";
        return false;
    }
    file.open(path, std::ios::binary);
    if (!file) {
        error = std::strerror(errno);
        return false;
    }
    return true;
}

} // namespace kestrel_recording
