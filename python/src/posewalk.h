#pragma once

#include "KestrelParser.h"
#include "libs/kestrel_recording/walk.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace kestrel_python {

/// A row of POSE in recording.py, field by field.
struct PoseRow {
    double seconds;        ///< since the recording's start
    std::int64_t utc;      ///< ms since 1970, notATime when the recording does not know
    std::int64_t frame;    ///< the controller's counter, -1 when it is missing
    double position[3];    ///< mm; NaN when not tracked
    double rotation[9];    ///< row by row; NaN when not tracked
    double quality;        ///< -1 when not tracked
    std::uint32_t buttons; ///< pressed ones, the first in the lowest bit
    std::uint32_t unused;
};

/// What NumPy takes for "not a time".
inline constexpr std::int64_t notATime = INT64_MIN;

enum class Kind { Tool, Reference, Body };

/// Goes through a recording and picks one object's poses, one line in memory at a time. Lines that
/// do not tell of it are not parsed.
class PoseWalk {
public:
    struct Choice {
        Kind kind = Kind::Tool;
        int index = 0; ///< from 0
        kestrel_recording::TimeRange range;
        /// Lines of that kind that cannot be read end the walk unless they are left out.
        bool leavesOutUnreadable = false;
    };

    explicit PoseWalk(const Choice& choice)
        : m_choice(choice) {}

    /// To be called once, first. False with a reason in English; with no system error number it is
    /// no ordinary file.
    bool open(const std::string& path, int& systemError, std::string& reason);

    /// False: malformed, see reason().
    bool readHeader(kestrel_wire::RecordingHeader& header);

    /// Fills up to `capacity` rows; `count` tells how many. Returns, with fewer rows, every few MiB
    /// of the file. False: the walk is over.
    bool read(PoseRow* rows, std::size_t capacity, std::size_t& count);

    /// How much of the file has been read, above 0 to 1.
    double share() const;

    const std::string& reason() const { return m_reason; } ///< of its end, empty when there is none
    /// What the reason is about, or the first unreadable line that was left out; 1-based.
    std::size_t line() const { return m_line; }
    bool isMalformed() const { return m_isMalformed; } ///< the recording, not one data line in it
    bool isTruncated() const { return m_reader && m_reader->truncated(); }
    std::uint64_t unreadableLines() const { return m_unreadableLines; }

private:
    enum class Line { NotWanted, Taken, Unreadable };

    void beginFrame(std::uint64_t time);
    bool endFrame(PoseRow& row);
    bool takeLine(); // false: the walk is over
    Line readLine();
    Line readCounter();
    Line readToolLine();
    void takeTool(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool);

    Choice m_choice;
    std::ifstream m_file;
    std::uintmax_t m_fileSize = 0;
    std::optional<kestrel_wire::RecordingReader> m_reader;
    kestrel_wire::RecordView m_record;
    KestrelParser m_parser;
    std::string m_reason;
    std::size_t m_line = 0;
    std::uint64_t m_time = 0;
    PoseRow m_row{}; // of the frame in hand
    std::uint64_t m_unreadableLines = 0;
    bool m_isMalformed = false;
    bool m_inFrame = false;
    bool m_hasLine = false; // of references or bodies
    bool m_hasPose = false;
};

} // namespace kestrel_python
