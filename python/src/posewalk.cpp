#include "posewalk.h"

#include "KestrelParse.h"
#include "KestrelPick.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace kestrel_python {

namespace {

using Result = kestrel_wire::RecordingReader::Result;

// An interpreter wants to be asked now and then whether somebody has pressed Ctrl+C.
constexpr std::uint64_t bytesAtOnce = 4 * 1024 * 1024;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class Record>
void copyPose(const Record& record, PoseRow& row) {
    const bool tracked = record.quality != -1.0;
    row.quality = record.quality;
    for (std::size_t i = 0; i < 3; ++i) {
        row.position[i] = tracked ? record.loc[i] : nan;
        for (std::size_t column = 0; column < 3; ++column) {
            row.rotation[3 * i + column] = tracked ? record.rot[3 * column + i] : nan;
        }
    }
}

// With a word of known size it is a comparison of numbers.
template <std::size_t size>
bool isWord(std::string_view text, const char (&word)[size]) {
    return text.size() == size - 1 && std::memcmp(text.data(), word, size - 1) == 0;
}

// How many bodies there are is told by other lines too.
bool countsBodies(std::string_view channel) {
    return channel == "6dcal" || channel == "6df" || channel == "6df2" || channel == "6dmt" ||
           channel == "6dmt2";
}

} // namespace

bool PoseWalk::open(const std::string& path, int& systemError, std::string& reason) {
    errno = 0;
    const bool isOpen = kestrel_recording::openRecording(path, m_file, reason);
    systemError = errno;
    m_reader.emplace(m_file);
    std::error_code unknown;
    m_fileSize = std::filesystem::file_size(path, unknown);
    m_fileSize = unknown ? 0 : m_fileSize;
    return isOpen;
}

double PoseWalk::share() const {
    // It may have grown, or be gone.
    const auto taken = static_cast<double>(std::max<std::uint64_t>(1, m_reader->bytesTaken()));
    return taken / std::max(taken, static_cast<double>(m_fileSize));
}

bool PoseWalk::readHeader(kestrel_wire::RecordingHeader& header) {
    if (m_reader->readHeader(header) != Result::Ok) {
        m_isMalformed = true;
        m_reason = m_reader->error();
        m_line = std::max<std::size_t>(1, m_reader->lineNumber());
        return false;
    }
    return true;
}

[[gnu::flatten]] bool PoseWalk::read(PoseRow* rows, std::size_t capacity, std::size_t& count) {
    const std::uint64_t enough = m_reader->bytesTaken() + bytesAtOnce;
    count = 0;
    while (count < capacity && m_reader->bytesTaken() < enough) {
        const Result result = m_reader->next(m_record);
        const bool isOver = result != Result::Ok || m_record.microseconds > m_choice.range.to;
        if (m_inFrame && (isOver || m_record.microseconds != m_time)) {
            count += endFrame(rows[count]) ? 1 : 0;
        }
        if (result == Result::Malformed) {
            m_isMalformed = true;
            m_reason = m_reader->error();
            m_line = m_reader->lineNumber();
        }
        if (isOver || !takeLine()) {
            return false;
        }
    }
    return true;
}

bool PoseWalk::takeLine() {
    if (m_record.microseconds < m_choice.range.from) {
        return true;
    }
    if (!m_inFrame) {
        beginFrame(m_record.microseconds);
    }
    if (readLine() == Line::Unreadable) {
        if (m_unreadableLines == 0) {
            m_line = m_reader->lineNumber();
        }
        ++m_unreadableLines;
        m_inFrame = m_choice.leavesOutUnreadable;
        m_reason = m_choice.leavesOutUnreadable ? "" : "unreadable data line";
    }
    return m_reason.empty();
}

PoseWalk::Line PoseWalk::readLine() {
    const std::string_view channel = m_record.channel;
    if (isWord(channel, "fr")) {
        return readCounter();
    }
    if (m_choice.kind == Kind::Tool) {
        return readToolLine();
    }
    const bool isWanted = channel == (m_choice.kind == Kind::Reference ? "6dmtr" : "6d");
    if (!isWanted && (m_choice.kind == Kind::Reference || !countsBodies(channel))) {
        return Line::NotWanted;
    }
    const bool isRead = m_parser.parseLine(m_record.line.data());
    m_hasLine = m_hasLine || (isWanted && isRead);
    return !isWanted ? Line::NotWanted : isRead ? Line::Taken : Line::Unreadable;
}

PoseWalk::Line PoseWalk::readCounter() {
    constexpr std::size_t introduction = 3; // "fr "
    if (m_record.line.size() < introduction) {
        return Line::NotWanted;
    }
    unsigned counter = 0;
    char* const number = const_cast<char*>(m_record.line.data()) + introduction; // not written to
    if (KestrelSDK_Parse::string_get_ui(number, &counter) == nullptr) {
        return Line::Unreadable;
    }
    m_row.frame = counter;
    return Line::Taken;
}

PoseWalk::Line PoseWalk::readToolLine() {
    using KestrelSDK_Pick::Found;
    if (isWord(m_record.channel, "6dmt2")) {
        KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d tool;
        const Found found = KestrelSDK_Pick::meaTool(m_record.line.data(), m_choice.index, tool);
        if (found == Found::Malformed) {
            return Line::Unreadable;
        }
        m_hasPose = found == Found::Yes;
        if (m_hasPose) {
            takeTool(tool);
        }
        return Line::Taken;
    }
    if (!isWord(m_record.channel, "6dmt")) {
        return Line::NotWanted;
    }
    if (!m_parser.parseLine(m_record.line.data())) {
        return Line::Unreadable;
    }
    const auto* const tool = m_parser.getMeaTool(m_choice.index);
    m_hasPose = tool != nullptr;
    if (m_hasPose) {
        takeTool(*tool);
    }
    return Line::Taken;
}

void PoseWalk::takeTool(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool) {
    m_row.buttons = 0;
    for (int i = 0; i < tool.num_button; ++i) {
        m_row.buttons |= tool.button[i] != 0 ? 1U << static_cast<unsigned>(i) : 0U;
    }
    copyPose(tool, m_row);
}

void PoseWalk::beginFrame(std::uint64_t time) {
    m_inFrame = true;
    m_time = time;
    m_row.buttons = 0;
    m_row.seconds = static_cast<double>(time) / 1e6;
    m_row.utc = m_reader->clock() ? m_reader->clock()->at(time) : notATime;
    m_row.frame = -1;
    m_hasLine = m_hasPose = false;
    m_parser.startFrame();
}

bool PoseWalk::endFrame(PoseRow& row) {
    m_inFrame = false;
    if (m_hasLine) {
        m_parser.endFrame();
        const auto* const reference = m_parser.getMeaRef(m_choice.index);
        const auto* const body = m_parser.getBody(m_choice.index);
        m_hasPose = m_choice.kind == Kind::Body ? body != nullptr : reference != nullptr;
        if (m_hasPose) {
            m_choice.kind == Kind::Body ? copyPose(*body, m_row) : copyPose(*reference, m_row);
        }
    }
    if (m_hasPose) {
        row = m_row;
    }
    return m_hasPose;
}

} // namespace kestrel_python
