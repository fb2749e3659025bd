#include "soak/workbenchoutput.h"

#include "workbench/controller/command/commandchannel.h"

#include <algorithm>

namespace {

constexpr int usualTimeoutMs = workbench::CommandChannel::defaultTimeoutMs;
constexpr int calibrationTimeoutMs = 5000; // what the calibration asks for when it starts
#ifdef KESTREL_SLOW_BUILD
constexpr int slackMs = 4000;
#else
constexpr int slackMs = 1000; // what a loaded machine may add
#endif
constexpr int wordsOfABeat = 5;

bool isOfCalibration(const QByteArray& modal) {
    return modal == "MtCalibrationDlgClass" || modal == "CalibrationProgressDialog" ||
           modal == "CountdownDialog" || modal == "MtResultDlgClass";
}

} // namespace

void WorkbenchOutput::read(const QByteArray& bytes) {
    m_pending += bytes;
    for (int end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
        const QByteArray line = m_pending.left(end);
        m_pending.remove(0, end + 1);
        readLine(line);
    }
}

void WorkbenchOutput::readLine(const QByteArray& line) {
    if (line.startsWith("beat ")) {
        readBeat(line.split(' '));
    } else if (line.startsWith("order ")) {
        m_ordersDone += line.endsWith(" done") ? 1 : 0;
        m_events.write(line + '\n');
    } else {
        m_rows += line + '\n';
    }
}

void WorkbenchOutput::readBeat(const QList<QByteArray>& words) {
    if (words.size() != wordsOfABeat) {
        return;
    }
    const qint64 now = words.at(1).toLongLong();
    const qint64 gap = m_lastBeatMs < 0 ? 0 : now - m_lastBeatMs;
    const bool calibrating = isOfCalibration(m_modal) || isOfCalibration(words.at(4));
    if (m_watching) {
        m_longestGapMs = std::max(m_longestGapMs, gap);
        if (!calibrating) {
            m_longestUsualGapMs = std::max(m_longestUsualGapMs, gap);
        }
        if (gap > (calibrating ? calibrationTimeoutMs : usualTimeoutMs) + slackMs) {
            m_wasFrozen = true;
            m_events.write("frozen for " + QByteArray::number(gap) + " ms, dialog " + m_modal +
                           " before and " + words.at(4) + " after\n");
        }
    }
    m_lastBeatMs = now;
    m_frames = words.at(2).toULongLong();
    m_state = words.at(3);
    m_modal = words.at(4);
    ++m_beats;
    m_sinceBeat.start();
    if (!m_rows.isEmpty()) {
        m_rowChanges += m_rows == m_lastRows ? 0 : 1;
        m_lastRows.swap(m_rows);
        m_rows.clear();
    }
}

void WorkbenchOutput::watch() {
    m_watching = true;
    m_longestGapMs = 0;
}
