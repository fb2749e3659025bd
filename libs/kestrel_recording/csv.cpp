#include "libs/kestrel_recording/csv.h"

#include "KestrelAngles.h"
#include "KestrelParser.h"
#include "libs/kestrel_recording/buttons.h"
#include "libs/kestrel_recording/numbertext.h"
#include "libs/kestrel_recording/quaternion.h"
#include "libs/kestrel_wire/bodynames.h"

#include <algorithm>
#include <map>

namespace kestrel_recording {

namespace {

using kestrel_wire::RecordView;

constexpr int angleDecimals = 6;
constexpr int quaternionDecimals = 9;
constexpr std::string_view referenceParameter = "measurementtool reference_of_tool ";
constexpr std::string_view noPose = ",,,,,,,,,,";

std::map<int, std::string> referencesOf(const kestrel_wire::RecordingHeader& header) {
    std::map<int, std::string> references;
    for (const auto& [name, value] : header.parameters) {
        if (name.compare(0, referenceParameter.size(), referenceParameter) != 0) {
            continue;
        }
        const int tool =
            kestrel_wire::bodyNumber(std::string_view(name).substr(referenceParameter.size()));
        const int reference = kestrel_wire::bodyNumber(value);
        if (tool > 0 && value == "none") {
            references[tool] = value;
        } else if (tool > 0 && reference > 0) {
            references[tool] = "MR" + std::to_string(reference);
        }
    }
    return references;
}

class CsvWriter {
public:
    CsvWriter(const CsvOptions& options, const kestrel_wire::RecordingHeader& header,
              const Sink& sink)
        : m_options(options)
        , m_sink(sink)
        , m_references(referencesOf(header))
        , m_text(csvHeader()) {
        m_text.reserve(2 * pieceSize);
        const std::vector<std::string> usual = {"6dmt", "6dmt2"};
        m_channels = options.channels.empty() ? usual : options.channels;
    }

    // False when no row can follow or be written any more.
    bool take(const RecordView& record, const std::optional<kestrel_wire::ClockMark>& clock) {
        if (m_inFrame && record.microseconds != m_time && !endFrame()) {
            return false;
        }
        if (record.microseconds > m_options.range.to) {
            return false;
        }
        if (m_options.range.contains(record.microseconds)) {
            if (!m_inFrame) {
                beginFrame(record.microseconds, clock);
            }
            parse(record);
        }
        return true;
    }

    bool endFrame() {
        if (m_inFrame) {
            m_inFrame = false;
            m_parser.endFrame();
            writeRows();
        }
        return m_text.size() < pieceSize || flush();
    }

    bool flush() {
        m_isWritten = m_isWritten && m_sink(m_text);
        m_text.clear();
        return m_isWritten;
    }

    bool isWritten() const { return m_isWritten; }
    std::uint64_t rows() const { return m_rows; }
    std::uint64_t frames() const { return m_frames; }
    std::uint64_t unreadableLines() const { return m_unreadableLines; }

private:
    void beginFrame(std::uint64_t time, const std::optional<kestrel_wire::ClockMark>& clock) {
        m_inFrame = true;
        ++m_frames;
        m_time = time;
        m_frameText.clear();
        appendSeconds(time, m_frameText);
        m_frameText += ',';
        m_frameText += clock ? kestrel_wire::formatUtc(clock->at(time)) : std::string();
        m_frameText += ',';
        m_hasCounter = m_hasTools = m_hasReferences = m_hasBodies = false;
        m_parser.startFrame();
    }

    void parse(const RecordView& record) {
        const bool chosen =
            std::find(m_channels.begin(), m_channels.end(), record.channel) != m_channels.end();
        if (!m_parser.parseLine(record.line.data())) {
            m_unreadableLines += chosen ? 1U : 0U;
            return;
        }
        m_hasCounter = m_hasCounter || record.channel == "fr";
        if (chosen) {
            (record.channel == "6d"      ? m_hasBodies
             : record.channel == "6dmtr" ? m_hasReferences
                                         : m_hasTools) = true;
        }
    }

    void writeRows() {
        if (m_hasCounter) {
            appendInteger(m_parser.getFrameCounter(), m_frameText);
        }
        for (int i = 0; m_hasTools && i < m_parser.getNumMeaTool(); ++i) {
            const auto& tool = *m_parser.getMeaTool(i);
            const auto reference = m_references.find(i + 1);
            if (beginRow("M", i, tool)) {
                appendInteger(pressedButtons(tool.button, tool.num_button), m_text);
                endRow(tool.quality,
                       reference == m_references.end() ? std::string_view() : reference->second);
            }
        }
        for (int i = 0; m_hasReferences && i < m_parser.getNumMeaRef(); ++i) {
            if (beginRow("MR", i, *m_parser.getMeaRef(i))) {
                endRow(m_parser.getMeaRef(i)->quality, {});
            }
        }
        for (int i = 0; m_hasBodies && i < m_parser.getNumBody(); ++i) {
            if (beginRow("B", i, *m_parser.getBody(i))) {
                endRow(m_parser.getBody(i)->quality, {});
            }
        }
    }

    // False when the body has not been chosen.
    template <typename Body>
    bool beginRow(std::string_view kind, int index, const Body& body) {
        const std::vector<int>& tools = m_options.tools;
        if (!tools.empty() && std::find(tools.begin(), tools.end(), index + 1) == tools.end()) {
            return false;
        }
        m_text.append(m_frameText).append(",").append(kind);
        appendInteger(static_cast<unsigned>(index) + 1, m_text);
        const bool tracked = body.quality != -1.0;
        m_text += tracked ? ",1" : ",0";
        if (tracked) {
            appendPose(body.loc, body.rot);
        } else {
            m_text += noPose;
        }
        m_text += ',';
        return true;
    }

    void endRow(double quality, std::string_view reference) {
        m_text += ',';
        appendNumber(quality, m_text);
        m_text.append(",").append(reference).append("\n");
        ++m_rows;
    }

    void appendPose(const double (&position)[3], const double (&rotation)[9]) {
        for (const double coordinate : position) {
            m_text += ',';
            appendNumber(coordinate, m_text);
        }
        const auto angles = KestrelSDK_Angles::rotationAngles(rotation);
        for (const double angle : {angles.rx, angles.ry, angles.rz}) {
            m_text += ',';
            appendNumber(angle, angleDecimals, m_text);
        }
        for (const double number : quaternionOf(rotation)) {
            m_text += ',';
            appendNumber(number, quaternionDecimals, m_text);
        }
    }

    const CsvOptions& m_options;
    const Sink& m_sink;
    const std::map<int, std::string> m_references;
    std::vector<std::string> m_channels;
    KestrelParser m_parser;
    std::string m_text;      // that the sink does not have yet
    std::string m_frameText; // of the columns that a frame's rows have in common
    std::uint64_t m_time = 0;
    std::uint64_t m_rows = 0;
    std::uint64_t m_frames = 0;
    std::uint64_t m_unreadableLines = 0;
    bool m_inFrame = false;
    bool m_hasCounter = false;
    bool m_hasTools = false;
    bool m_hasReferences = false;
    bool m_hasBodies = false;
    bool m_isWritten = true;
};

} // namespace

const std::vector<std::string>& csvChannels() {
    static const std::vector<std::string> channels = {"6dmt", "6dmt2", "6dmtr", "6d"};
    return channels;
}

std::string_view csvHeader() {
    return "seconds_s,utc,frame,tool,tracked,x_mm,y_mm,z_mm,rx_deg,ry_deg,rz_deg,"
           "qw,qx,qy,qz,buttons,quality,reference\n";
}

CsvReport writeCsv(std::istream& stream, const CsvOptions& options, const Sink& sink,
                   const Watch& watch) {
    CsvReport report;
    Walk walk(stream, watch);
    kestrel_wire::RecordingHeader header;
    RecordView record;
    bool more = walk.readHeader(header);
    if (!more) {
        report.outcome = walk.outcome();
        return report;
    }
    CsvWriter writer(options, header, sink);
    while (more) {
        more = walk.next(record) && writer.take(record, walk.clock());
    }
    report.outcome = walk.outcome();
    if (report.outcome.ending != Outcome::Ending::Stopped) {
        writer.endFrame();
        writer.flush();
    }
    if (!writer.isWritten()) {
        report.outcome.ending = Outcome::Ending::NotWritten;
    } else if (writer.frames() == 0) {
        report.recorded = walk.readTimes();
    }
    report.rows = writer.rows();
    report.frames = writer.frames();
    report.unreadableLines = writer.unreadableLines();
    return report;
}

} // namespace kestrel_recording
