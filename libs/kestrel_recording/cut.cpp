#include "libs/kestrel_recording/cut.h"

namespace kestrel_recording {

CutReport cut(std::istream& stream, const TimeRange& range, const Sink& sink, const Watch& watch) {
    CutReport report;
    Walk walk(stream, watch);
    kestrel_wire::RecordingHeader header;
    kestrel_wire::RecordView record;
    if (!walk.readHeader(header)) {
        report.outcome = walk.outcome();
        return report;
    }
    std::string text = kestrel_wire::formatRecordingHeader(header);
    std::optional<kestrel_wire::ClockMark> marked = walk.clock();
    std::uint64_t lastTime = 0;
    bool written = true;
    while (written && walk.next(record) && record.microseconds <= range.to) {
        if (!range.contains(record.microseconds)) {
            continue;
        }
        const std::optional<kestrel_wire::ClockMark>& clock = walk.clock();
        if (clock && (clock->microseconds != marked->microseconds || clock->utc != marked->utc)) {
            text += kestrel_wire::formatClockMark(*clock);
            marked = clock;
        }
        report.frames += report.frames == 0 || record.microseconds != lastTime ? 1U : 0U;
        lastTime = record.microseconds;
        text += kestrel_wire::formatRecord(record.microseconds, record.line);
        if (text.size() >= pieceSize) {
            written = sink(text);
            text.clear();
        }
    }
    report.outcome = walk.outcome();
    if (!written || !sink(text)) {
        report.outcome.ending = Outcome::Ending::NotWritten;
    } else if (report.frames == 0) {
        report.recorded = walk.readTimes();
    }
    return report;
}

} // namespace kestrel_recording
