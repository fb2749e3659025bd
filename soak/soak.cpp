#include "soak/soak.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcessEnvironment>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

constexpr int pollMs = 200;
constexpr int sampleMs = 2000;
constexpr int stableMs = 500;
constexpr int reviveMs = 1500;
constexpr int poolMs = 35000; // after which Qt's pool threads of the start have ended
constexpr int retryMs = 3000;
constexpr int fillLogLines = 10000; // as many as the log keeps
constexpr int recordMs = 3000;
constexpr int startPatienceMs = 30000;
constexpr int settlePatienceMs = 60000;
constexpr double liveShare = 0.5; // of the frames, on a loaded machine
constexpr int liveRows = 2;

// What the user does next, in each state of the window; more often what stands more often.
constexpr const char* whenMeasuring[] = {"stop",    "stop",           "display", "display",
                                         "record",  "stop-recording", "modules", "about",
                                         "connect", "disconnect",     "replay"};
constexpr const char* whenIdle[] = {"start",   "start",    "start",    "start",       "start",
                                    "start",   "settings", "settings", "calibration", "calibration",
                                    "display", "connect",  "replay"};
constexpr const char* whenAway[] = {"connect", "connect", "settings", "calibration",
                                    "display", "modules", "replay"};
constexpr const char* whenReplaying[] = {"play", "play",   "step",    "display",
                                         "stop", "record", "connect", "connect"};

} // namespace

Soak::Soak(const Options& options)
    : m_options(options)
    , m_mischief(options.seed)
    , m_user(options.seed + 1) {
    m_simulator.name = QStringLiteral("simulator");
    m_workbench.name = QStringLiteral("workbench");
    connect(&m_pollTimer, &QTimer::timeout, this, &Soak::poll);
    connect(&m_sampleTimer, &QTimer::timeout, this, &Soak::sample);
    connect(&m_moodTimer, &QTimer::timeout, this, &Soak::changeMood);
    connect(&m_userTimer, &QTimer::timeout, this, &Soak::useWindow);
    connect(&m_control, &QTcpSocket::readyRead, this, &Soak::readControl);
    m_moodTimer.setSingleShot(true);
    m_userTimer.setSingleShot(true);
}

Soak::~Soak() = default;

void Soak::start() {
    QDir folder(m_options.folder);
    folder.removeRecursively();
    m_scratch = folder.filePath(QStringLiteral("tmp"));
    folder.mkpath(m_scratch);
    folder.mkpath(folder.filePath(QStringLiteral("recordings")));
    const QString runtime = folder.filePath(QStringLiteral("runtime"));
    folder.mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_events.setFileName(folder.filePath(QStringLiteral("events.log")));
    m_samples.setFileName(folder.filePath(QStringLiteral("samples.csv")));
    if (!m_events.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !m_samples.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        giveUp(QStringLiteral("%1 cannot be written").arg(m_options.folder));
    }
    m_samples.write("seconds,workbench kB,workbench threads,workbench files,simulator kB,simulator "
                    "threads,simulator files\n");
    std::printf("soak: seed %llu, %g minutes at %d frames/s, logs in %s\n",
                static_cast<unsigned long long>(m_options.seed), m_options.minutes, m_options.rate,
                qPrintable(m_options.folder));
    std::fflush(stdout);
    m_clock.start();
    m_sincePhase.start();
    m_sinceRetry.start();
    startSimulator();
    m_pollTimer.start(pollMs);
}

void Soak::startSimulator() {
    QProcess& process = m_simulator.process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), m_scratch);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QDir(m_options.folder).filePath(QStringLiteral("simulator.log")));
    connect(&process, &QProcess::readyReadStandardOutput, this, &Soak::readSimulator);
    connect(
        &process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
        [this](int code, QProcess::ExitStatus status) { onFinished(m_simulator, code, status); });
    process.start(QStringLiteral(KESTREL_SIMULATOR),
                  {"--port", "0", "--rate", QString::number(m_options.rate), "--seed",
                   QString::number(m_options.seed), "--cal-duration", "2", "--cal-pause", "1"});
}

void Soak::readSimulator() {
    const QByteArray line = m_simulator.process.readAllStandardOutput().trimmed();
    if (m_port == 0 && line.startsWith("listening on ")) {
        m_port = line.mid(line.lastIndexOf(':') + 1).toUShort();
        m_control.connectToHost(QStringLiteral("127.0.0.1"), m_port);
        startWorkbench();
    }
}

void Soak::startWorkbench() {
    const QDir folder(m_options.folder);
    QProcess& process = m_workbench.process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("TMPDIR"), m_scratch);
    environment.insert(QStringLiteral("HOME"), m_options.folder);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder.filePath("config"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.filePath("runtime"));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(folder.filePath(QStringLiteral("workbench.log")));
    connect(&process, &QProcess::readyReadStandardOutput, this,
            [this] { m_output.read(m_workbench.process.readAllStandardOutput()); });
    connect(
        &process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
        [this](int code, QProcess::ExitStatus status) { onFinished(m_workbench, code, status); });
    process.start(QStringLiteral(KESTREL_WORKBENCH),
                  {"--plugins", KESTREL_PLUGINS, "--module", KESTREL_SOAK_USER, "--settings",
                   folder.filePath("workbench.ini"), "--language", "en", "--open-docks",
                   "--print-rows", "--measure", "--connect",
                   QStringLiteral("127.0.0.1:%1").arg(m_port)});
    tellUser("seed " + QByteArray::number(m_options.seed + 2));
    tellUser("controller " + QByteArray::number(m_port));
    tellUser("folder " + folder.filePath(QStringLiteral("recordings")).toLocal8Bit());
}

void Soak::tellUser(const QByteArray& order) {
    m_workbench.process.write(order + '\n');
}

void Soak::tellSimulator(const QList<QByteArray>& commands) {
    for (const QByteArray& command : commands) {
        note(command);
        if (m_unanswered++ == 0) {
            m_sinceReply.start();
        }
        m_control.write("kestrel2 " + command + '\n');
    }
}

void Soak::readControl() {
    while (m_control.canReadLine()) {
        const QByteArray reply = m_control.readLine().trimmed();
        --m_unanswered;
        m_sinceReply.start();
        if (reply != "kestrel2 ok") {
            note("reply " + reply);
        }
    }
}

void Soak::note(const QByteArray& text) {
    m_events.write(QByteArray::number(double(m_clock.elapsed()) / 1000.0, 'f', 1) + ' ' + text +
                   '\n');
}

void Soak::enter(Phase phase) {
    m_phase = phase;
    m_sincePhase.start();
    m_sinceRetry.start();
    m_rowChangesThen = m_output.rowChanges();
    m_framesAtStart = m_output.frames();
    static const char* const names[] = {"starting", "recording", "replaying", "returning",
                                        "calming",  "soaking",   "settling",  "reviving",
                                        "cooling",  "ending"};
    note(QByteArray("phase ") + names[static_cast<int>(phase)]);
}

void Soak::poll() {
    checkAlive();
    switch (m_phase) {
    case Phase::Starting:
        return pollStarting();
    case Phase::Recording:
        return pollRecording();
    case Phase::Replaying:
        return pollReplaying();
    case Phase::Returning:
        return pollReturning();
    case Phase::Calming:
        return pollCalming();
    case Phase::Soaking:
        return pollSoaking();
    case Phase::Settling:
        return pollSettling();
    case Phase::Reviving:
        return pollReviving();
    case Phase::Cooling:
        return pollCooling();
    case Phase::Ending:
        return checkEnd();
    }
}

void Soak::pollStarting() {
    if (m_output.state() == "measuring" && m_output.frames() > 0 && m_output.rowChanges() > 1) {
        tellUser("log " + QByteArray::number(fillLogLines));
        for (const char* dock : {"ReadoutDock", "PlotDock", "LogDock"}) {
            tellUser(QByteArray("open ") + dock);
        }
        tellUser("do record");
        enter(Phase::Recording);
    } else if (phaseLasts(startPatienceMs)) {
        giveUp(QStringLiteral("no measurement begins"));
    }
}

void Soak::pollRecording() {
    if (m_output.modal() == "-" && phaseLasts(recordMs)) {
        tellUser("do replay");
        enter(Phase::Replaying);
    }
}

void Soak::pollReplaying() {
    if (m_output.state() == "replay" && m_output.frames() > m_framesAtStart &&
        phaseLasts(reviveMs)) {
        tellUser("do connect");
        enter(Phase::Returning);
    } else if (phaseLasts(startPatienceMs)) {
        giveUp(QStringLiteral("no replay begins"));
    }
}

void Soak::pollReturning() {
    if (m_output.state() == "measuring") {
        tellUser("do stop");
        enter(Phase::Calming);
    } else if (phaseLasts(startPatienceMs)) {
        giveUp(QStringLiteral("the window does not come back from a replay"));
    }
}

void Soak::pollCalming() {
    if (isAtRest() && phaseLasts(isShort() ? stableMs : poolMs)) {
        beginSoaking();
    } else if (phaseLasts(settlePatienceMs)) {
        giveUp(QStringLiteral("the measurement does not stop"));
    }
}

void Soak::beginSoaking() {
    for (Watched* const watched : {&m_simulator, &m_workbench}) {
        watched->atRest = ProcessFigures::of(watched->process.processId());
        watched->cpuAtSoakStart = watched->atRest.cpuSeconds;
    }
    m_output.watch();
    tellUser("do start");
    enter(Phase::Soaking);
    m_sampleTimer.start(sampleMs);
    m_moodTimer.start(0);
    m_userTimer.start(0);
}

void Soak::pollSoaking() {
    if (double(m_sincePhase.elapsed()) >= m_options.minutes * 60000.0) {
        endSoaking();
    }
}

void Soak::takeFigures() {
    m_soakSeconds = double(m_sincePhase.elapsed()) / 1000.0;
    m_framesInSoak = m_output.frames() - m_framesAtStart;
    for (Watched* const watched : {&m_simulator, &m_workbench}) {
        const double cpu = ProcessFigures::of(watched->process.processId()).cpuSeconds;
        watched->cpuShare = std::max(0.0, cpu - watched->cpuAtSoakStart) / m_soakSeconds;
    }
}

void Soak::endSoaking() {
    takeFigures();
    m_sampleTimer.stop();
    m_moodTimer.stop();
    m_userTimer.stop();
    tellSimulator(Mischief::end());
    tellUser("rest yes");
    tellUser("do stop-recording");
    enter(Phase::Settling);
}

void Soak::sample() {
    const double seconds = double(m_sincePhase.elapsed()) / 1000.0;
    QByteArray line = QByteArray::number(seconds, 'f', 1);
    for (Watched* const watched : {&m_workbench, &m_simulator}) {
        const ProcessFigures now = ProcessFigures::of(watched->process.processId());
        watched->memory.add(seconds, now.residentKb);
        line += ',' + QByteArray::number(now.residentKb) + ',' +
                QByteArray::number(now.threads.size()) + ',' + QByteArray::number(now.files.size());
    }
    m_samples.write(line + '\n');
}

// Good and bad times take turns.
void Soak::changeMood() {
    if (m_misbehaving) {
        tellSimulator(Mischief::end());
        m_moodTimer.start(2000 + m_mischief.upTo(6000));
    } else {
        tellSimulator(m_mischief.begin());
        m_moodTimer.start(1000 + m_mischief.upTo(7000));
        ++m_moods;
    }
    m_misbehaving = !m_misbehaving;
}

void Soak::useWindow() {
    m_userTimer.start(300 + m_user.upTo(2200));
    if (m_output.modal() != "-") {
        return;
    }
    const auto choose = [this](const auto& choices) {
        return QByteArray(choices[m_user.upTo(int(std::size(choices)) - 1)]);
    };
    const QByteArray& state = m_output.state();
    const QByteArray order = state == "measuring" ? choose(whenMeasuring)
                             : state == "idle"    ? choose(whenIdle)
                             : state == "replay"  ? choose(whenReplaying)
                                                  : choose(whenAway);
    m_replays += order == "replay" ? 1 : 0;
    tellUser("do " + order);
}

void Soak::pollSettling() {
    const bool isConnected = m_output.state() == "measuring" || m_output.state() == "idle";
    if (isConnected && m_output.modal() == "-") {
        tellUser("do show-display");
        tellUser("do start");
        enter(Phase::Reviving);
    } else if (phaseLasts(settlePatienceMs)) {
        giveUp(
            QStringLiteral("the window does not come to rest: %1, dialog %2")
                .arg(QString::fromLatin1(m_output.state()), QString::fromLatin1(m_output.modal())));
    } else if (m_sinceRetry.elapsed() > retryMs) {
        m_sinceRetry.start();
        tellUser("do connect");
    }
}

// A calibration that nobody could stop goes on for some seconds and refuses both.
void Soak::pollReviving() {
    const double share = double(m_output.frames() - m_framesAtStart) /
                         (double(m_sincePhase.elapsed()) / 1000.0 * m_options.rate);
    if (m_output.state() == "measuring" && phaseLasts(reviveMs) && share > liveShare &&
        m_output.rowChanges() >= m_rowChangesThen + liveRows) {
        tellUser("do stop");
        enter(Phase::Cooling);
    } else if (phaseLasts(settlePatienceMs)) {
        giveUp(QStringLiteral("the live display does not come back: %1")
                   .arg(QString::fromLatin1(m_output.state())));
    } else if (m_sinceRetry.elapsed() > 2 * retryMs) {
        tellSimulator(Mischief::restore());
        tellUser("do start");
        enter(Phase::Reviving);
    }
}

void Soak::pollCooling() {
    if (!isAtRest() && !phaseLasts(settlePatienceMs)) {
        return;
    }
    findLeftOvers(m_workbench);
    findLeftOvers(m_simulator);
    if ((m_workbench.leftOver.isEmpty() && m_simulator.leftOver.isEmpty()) ||
        phaseLasts(settlePatienceMs)) {
        enter(Phase::Ending);
        m_workbench.process.terminate();
    }
}
