#include "workbench/controller/simulator/simulatorprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

#include <csignal>
#include <sys/prctl.h>

namespace workbench {

namespace {

constexpr int stopTimeoutMs = 2000;
constexpr int maxReasonLength = 500;
constexpr int exitBadRecording = 4;

// What it said, without the name that its lines begin with: that is told anyway.
QString withoutName(const QByteArray& said) {
    static const QRegularExpression name(QStringLiteral("^kestrel-simulator: "),
                                         QRegularExpression::MultilineOption);
    return QString::fromUtf8(said).remove(name).trimmed();
}

} // namespace

class SimulatorProcess::Process : public QProcess {
protected:
    void setupChildProcess() override { ::prctl(PR_SET_PDEATHSIG, SIGTERM); }
};

SimulatorProcess::SimulatorProcess(const QString& program, QObject* parent)
    : QObject(parent)
    , m_program(program.isEmpty() ? QDir(QCoreApplication::applicationDirPath())
                                        .filePath(QStringLiteral("kestrel-simulator"))
                                  : program)
    , m_process(std::make_unique<Process>()) {
    m_startTimer.setSingleShot(true);
    connect(&m_startTimer, &QTimer::timeout, this,
            [this] { fail(tr("%1 does not say where it listens").arg(m_program)); });
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this,
            &SimulatorProcess::readFirstLine);
    connect(m_process.get(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &SimulatorProcess::onFinished);
    connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            fail(tr("%1 cannot be started: %2").arg(m_program, m_process->errorString()));
        }
    });
}

SimulatorProcess::~SimulatorProcess() {
    stop();
}

void SimulatorProcess::start(const QStringList& options, int timeoutMs) {
    m_isStopping = false;
    m_isListening = false;
    m_refusedRecording = false;
    m_lastWords.clear();
    m_startTimer.start(timeoutMs);
    m_process->start(m_program,
                     QStringList{QStringLiteral("--port"), QStringLiteral("0")} + options,
                     QIODevice::ReadOnly);
}

void SimulatorProcess::stop() {
    m_isStopping = true;
    m_startTimer.stop();
    if (m_process->state() != QProcess::NotRunning) {
        // One that still reads a recording would not hear a polite word before its end.
        if (m_isListening) {
            m_process->terminate();
        } else {
            m_process->kill();
        }
        if (!m_process->waitForFinished(stopTimeoutMs)) {
            m_process->kill();
            m_process->waitForFinished(stopTimeoutMs);
        }
    }
}

void SimulatorProcess::readFirstLine() {
    if (m_isListening) {
        m_process->readAllStandardOutput();
        return;
    }
    if (!m_process->canReadLine()) {
        return;
    }
    static const QString introduction = QStringLiteral("listening on ");
    const QString line = QString::fromUtf8(m_process->readLine()).trimmed();
    ControllerAddress address;
    if (!line.startsWith(introduction) || !address.parse(line.mid(introduction.size()))) {
        fail(tr("%1 says \"%2\"").arg(m_program, line.left(maxReasonLength)));
        return;
    }
    m_isListening = true;
    m_startTimer.stop();
    Q_EMIT listening(address);
}

void SimulatorProcess::onFinished() {
    if (m_isStopping) {
        return;
    }
    m_lastWords = withoutName(m_process->readAllStandardError());
    m_refusedRecording = m_process->exitStatus() == QProcess::NormalExit &&
                         m_process->exitCode() == exitBadRecording;
    const QString how = m_process->exitStatus() == QProcess::CrashExit // its code is the signal
                            ? tr("%1 was ended by signal %2")
                            : tr("%1 has ended (exit code %2)");
    const QString reason = how.arg(m_program, QString::number(m_process->exitCode()));
    fail(m_lastWords.isEmpty() ? reason
                               : reason + QStringLiteral(": ") + m_lastWords.left(maxReasonLength));
}

void SimulatorProcess::fail(const QString& reason) {
    if (m_isStopping) {
        return;
    }
    const bool listened = m_isListening;
    stop();
    if (listened) {
        Q_EMIT ended(reason.trimmed());
    } else {
        Q_EMIT failed(reason.trimmed());
    }
}

} // namespace workbench
