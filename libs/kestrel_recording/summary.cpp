#include "libs/kestrel_recording/summary.h"

#include "KestrelParser.h"
#include "libs/kestrel_wire/framegaps.h"

#include <algorithm>

namespace kestrel_recording {

namespace {

class Summarizer {
public:
    explicit Summarizer(Summary& summary)
        : m_summary(summary) {}

    void take(const kestrel_wire::RecordView& record,
              const std::optional<kestrel_wire::ClockMark>& clock) {
        if (m_summary.frames == 0 || record.microseconds != m_summary.last) {
            beginFrame(record.microseconds);
        }
        m_summary.end = clock ? std::optional(clock->at(record.microseconds)) : std::nullopt;
        count(record.channel);
        if (!m_parser.parseLine(record.line.data())) {
            ++m_summary.unreadableLines;
        } else if (record.channel == "fr") {
            m_gaps.add(m_parser.getFrameCounter());
            m_summary.lostFrames = m_gaps.lost();
        } else if (record.channel == "6dmt" || record.channel == "6dmt2") {
            countTools();
        }
    }

private:
    void beginFrame(std::uint64_t time) {
        if (m_summary.frames == 0) {
            m_summary.first = time;
        } else if (time - m_summary.last > m_summary.longestGap) {
            m_summary.longestGap = time - m_summary.last;
            m_summary.longestGapAt = m_summary.last;
        }
        m_summary.last = time;
        ++m_summary.frames;
        m_parser.startFrame();
    }

    void count(std::string_view name) {
        std::vector<Summary::Channel>& channels = m_summary.channels;
        const auto known = std::find_if(channels.begin(), channels.end(),
                                        [&](const auto& channel) { return channel.name == name; });
        if (known != channels.end()) {
            ++known->lines;
        } else if (channels.size() < Summary::maxChannels) {
            channels.push_back({std::string(name), 1});
        } else {
            ++m_summary.otherLines;
        }
    }

    void countTools() {
        const auto number = static_cast<std::size_t>(m_parser.getNumMeaTool());
        m_summary.tools.resize(std::max(m_summary.tools.size(), number));
        for (std::size_t i = 0; i < number; ++i) {
            ++m_summary.tools[i].frames;
            m_summary.tools[i].tracked +=
                m_parser.getMeaTool(static_cast<int>(i))->quality != -1.0 ? 1U : 0U;
        }
    }

    Summary& m_summary;
    KestrelParser m_parser;
    kestrel_wire::FrameGaps m_gaps;
};

} // namespace

Outcome summarize(std::istream& stream, Summary& summary, const Watch& watch) {
    summary = Summary();
    Walk walk(stream, watch);
    Summarizer summarizer(summary);
    kestrel_wire::RecordView record;
    bool more = walk.readHeader(summary.header);
    while (more && (more = walk.next(record))) {
        summarizer.take(record, walk.clock());
    }
    return walk.outcome();
}

} // namespace kestrel_recording
