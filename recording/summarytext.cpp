#include "recording/summarytext.h"

#include "libs/kestrel_recording/numbertext.h"

#include <string_view>

namespace recording {

namespace {

using kestrel_recording::Summary;
using kestrel_recording::TimeRange;

constexpr std::size_t columnWidth = 15;
constexpr std::size_t longestChannel = 40; // of a garbled recording

void addRow(std::string_view name, const std::string& value, std::string& text) {
    std::string start = std::string(name) + ":";
    start.resize(columnWidth, ' ');
    text += start + value + "\n";
}

std::string secondsText(std::uint64_t microseconds) {
    std::string text;
    kestrel_recording::appendSeconds(microseconds, text);
    return text + " s";
}

std::string numberText(double number, int decimals) {
    std::string text;
    kestrel_recording::appendNumber(number, decimals, text);
    return text;
}

std::string utcText(const std::optional<kestrel_wire::UtcMilliseconds>& time) {
    return time ? kestrel_wire::formatUtc(*time) : "unknown";
}

std::string linesText(std::uint64_t lines) {
    return std::to_string(lines) + (lines == 1 ? " line" : " lines");
}

std::string framesText(const Summary& summary) {
    std::string text = std::to_string(summary.frames);
    if (summary.frames > 1) {
        const double rate = static_cast<double>(summary.frames - 1) / summary.duration();
        text += " (" + numberText(rate, 1) + " per second)";
    }
    return text;
}

std::string gapText(const Summary& summary) {
    return summary.frames > 1
               ? secondsText(summary.longestGap) + " after " + secondsText(summary.longestGapAt)
               : "none";
}

std::string toolText(const Summary::Tool& tool) {
    const double share =
        100.0 * static_cast<double>(tool.tracked) / static_cast<double>(tool.frames);
    return "tracked in " + std::to_string(tool.tracked) + " of " + std::to_string(tool.frames) +
           " frames (" + numberText(share, 1) + " %)";
}

} // namespace

std::string summaryText(const Summary& summary) {
    std::string text;
    const kestrel_wire::RecordingHeader& header = summary.header;
    addRow("format", header.start ? "2" : "1", text);
    addRow("model", kestrel_wire::escaped(header.model), text);
    addRow("protocol", kestrel_wire::escaped(header.protocol), text);
    addRow("system", kestrel_wire::escaped(header.system), text);
    addRow("system_ct", kestrel_wire::escaped(header.systemCt), text);
    addRow("start", utcText(header.start), text);
    addRow("end", utcText(summary.end), text);
    addRow("duration", secondsText(summary.last - summary.first), text);
    addRow("frames", framesText(summary), text);
    addRow("lost frames", std::to_string(summary.lostFrames), text);
    addRow("longest gap", gapText(summary), text);
    for (const Summary::Channel& channel : summary.channels) {
        addRow("channel",
               kestrel_wire::escaped(channel.name.substr(0, longestChannel)) + ", " +
                   linesText(channel.lines),
               text);
    }
    if (summary.otherLines > 0) {
        addRow("channels", "others, " + linesText(summary.otherLines), text);
    }
    for (std::size_t i = 0; i < summary.tools.size(); ++i) {
        addRow("tool M" + std::to_string(i + 1), toolText(summary.tools[i]), text);
    }
    addRow("unreadable", linesText(summary.unreadableLines), text);
    return text;
}

std::string noFrameText(const TimeRange& asked, const std::optional<TimeRange>& recorded) {
    if (!recorded) {
        return "there is no frame in it";
    }
    const std::string to = " to " + secondsText(asked.to);
    std::string text = "no frame ";
    if (asked.to == TimeRange().to) {
        text += "from " + secondsText(asked.from) + " on";
    } else {
        text += asked.from == TimeRange().from ? "up" + to : "from " + secondsText(asked.from) + to;
    }
    return text + ": its frames are from " + secondsText(recorded->from) + " to " +
           secondsText(recorded->to);
}

} // namespace recording
