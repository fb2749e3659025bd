#include "soak/soak.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int goneMs = 20000;         // without a sign of life: for good
constexpr int replyPatienceMs = 5000; // the simulator's own commands are always answered
constexpr int endPatienceMs = 15000;
constexpr double highestKbPerHour = 1024.0;

} // namespace

void Soak::fail(const QString& what) {
    m_failures += what;
    note("FAILED " + what.toUtf8());
}

void Soak::giveUp(const QString& what) {
    fail(what);
    if (m_phase == Phase::Soaking) {
        takeFigures();
    }
    for (Watched* const watched : {&m_workbench, &m_simulator}) {
        watched->process.disconnect(this);
        watched->process.kill();
        watched->process.waitForFinished(endPatienceMs);
    }
    report();
    std::exit(1);
}

void Soak::checkAlive() {
    if (m_phase != Phase::Ending && m_output.silentMs() > goneMs) {
        giveUp(QStringLiteral("the window gives no sign of life any more, dialog %1")
                   .arg(QString::fromLatin1(m_output.modal())));
    }
    if (m_unanswered > 0 && m_sinceReply.elapsed() > replyPatienceMs) {
        giveUp(QStringLiteral("the simulator does not answer any more"));
    }
}

void Soak::onFinished(Watched& watched, int exitCode, QProcess::ExitStatus status) {
    const bool asked = m_phase == Phase::Ending;
    const QString how =
        status == QProcess::CrashExit
            ? QStringLiteral("%1 crashed").arg(watched.name)
            : QStringLiteral("%1 ended with code %2").arg(watched.name).arg(exitCode);
    if (!asked) {
        giveUp(how);
    }
    watched.endedAfterMs = static_cast<int>(m_sincePhase.elapsed());
    if (status == QProcess::CrashExit || exitCode != 0) {
        fail(how);
    }
    if (&watched == &m_workbench) {
        m_control.disconnectFromHost();
        m_simulator.process.terminate();
    }
}

void Soak::findLeftOvers(Watched& watched) {
    ProcessFigures now = ProcessFigures::of(watched.process.processId());
    // Somebody has captured a point: the file of its session is open as long as its module lives,
    // and those that are offered of sessions before.
    static const QRegularExpression session(QStringLiteral("/probecheck/points-[^/]*\\.jsonl$"));
    const QStringList sessions = now.files.filter(session);
    for (const QString& file : sessions) {
        now.files.removeOne(file);
    }
    watched.leftOver = ProcessFigures::added(watched.atRest.files, now.files) +
                       ProcessFigures::added(watched.atRest.threads, now.threads);
}

void Soak::checkEnd() {
    const bool ended = m_workbench.endedAfterMs >= 0 && m_simulator.endedAfterMs >= 0;
    if (ended && (remainingChildren().isEmpty() || phaseLasts(endPatienceMs))) {
        judge();
        report();
        QCoreApplication::exit(m_failures.isEmpty() ? 0 : 1);
        m_pollTimer.stop();
    } else if (phaseLasts(endPatienceMs)) {
        giveUp(QStringLiteral("a program does not end when it is asked to"));
    }
}

void Soak::judge() {
    if (m_output.wasFrozen() && !isShort()) {
        fail(QStringLiteral("the window was frozen for longer than one time-out"));
    }
    for (const Watched* const watched : {&m_workbench, &m_simulator}) {
        if (!watched->leftOver.isEmpty()) {
            fail(QStringLiteral("%1 has left over: %2")
                     .arg(watched->name, watched->leftOver.join(QStringLiteral(", "))));
        }
        if (watched->memory.isJudged() && watched->memory.kbPerHour() > highestKbPerHour) {
            fail(QStringLiteral("%1 grows by %2 kB per hour")
                     .arg(watched->name)
                     .arg(watched->memory.kbPerHour(), 0, 'f', 0));
        }
    }
    QDirIterator files(m_scratch,
                       QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    while (files.hasNext()) {
        fail(QStringLiteral("left over: %1").arg(files.next()));
    }
    QDir(QDir(m_options.folder).filePath(QStringLiteral("recordings"))).removeRecursively();
    const QStringList children = remainingChildren();
    if (!children.isEmpty()) {
        fail(QStringLiteral("still running: %1").arg(children.join(QStringLiteral(", "))));
    }
    QTcpSocket probe;
    probe.connectToHost(QStringLiteral("127.0.0.1"), m_port);
    if (probe.waitForConnected(replyPatienceMs)) {
        fail(QStringLiteral("the simulator's port is still open"));
    }
}

void Soak::report() const {
    std::printf("frames received  %llu (%.0f a second on average)\n",
                static_cast<unsigned long long>(m_framesInSoak),
                m_soakSeconds > 0.0 ? double(m_framesInSoak) / m_soakSeconds : 0.0);
    std::printf("bad times        %d\n", m_moods);
    std::printf("orders obeyed    %d\n", m_output.ordersDone());
    std::printf("replays          %d\n", m_replays);
    std::printf("longest silence  %.2f s (%.2f s outside calibrations)\n",
                double(m_output.longestGapMs()) / 1000.0,
                double(m_output.longestUsualGapMs()) / 1000.0);
    for (const Watched* const watched : {&m_workbench, &m_simulator}) {
        const MemoryTrend& memory = watched->memory;
        const QByteArray name = watched->name.toLatin1();
        std::printf("%s        %.0f %% CPU, %d threads and %d files at rest, %d left over\n",
                    name.constData(), 100.0 * watched->cpuShare,
                    int(watched->atRest.threads.size()), int(watched->atRest.files.size()),
                    int(watched->leftOver.size()));
        if (memory.isJudged()) {
            std::printf("                 %lld kB after ten minutes, %lld kB at the end, %+.0f kB "
                        "per hour\n",
                        static_cast<long long>(memory.atSkipEndKb()),
                        static_cast<long long>(memory.lastKb()), memory.kbPerHour());
        } else {
            std::printf("                 memory not judged: the run is too short\n");
        }
    }
    for (const QString& failure : m_failures) {
        std::printf("FAILED: %s\n", qPrintable(failure));
    }
    std::printf("%s\n", m_failures.isEmpty() ? "soak passed" : "soak failed");
    std::fflush(stdout);
}
