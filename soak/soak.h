#pragma once

#include "soak/memorytrend.h"
#include "soak/mischief.h"
#include "soak/processfigures.h"
#include "soak/workbenchoutput.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTcpSocket>
#include <QTimer>

/// Lets simulator, workbench and plug-in run together for a time while everything goes wrong that
/// can, and judges what became of them. The phases:
///
///   starting   until a measurement runs; read-out, time plot and log are open from here on
///   recording  some seconds of it are recorded
///   replaying  until frames of this recording arrive
///   returning  until the window is connected to the controller again
///   calming    measurement stopped; what the processes then hold is what they may hold at the end
///   soaking    misbehaviours come and go, the soak's user uses the window
///   settling   everything behaves again; until the window is connected and without a dialog
///   reviving   until frames arrive in full number and the live rows change
///   cooling    measurement stopped; until nothing is left over
///   ending     both programs are asked to end
class Soak : public QObject {
public:
    struct Options {
        double minutes = 30.0;
        quint64 seed = 1;
        int rate = 1000;
        QString folder; ///< for logs and samples; emptied first
    };

    explicit Soak(const Options& options);
    ~Soak() override;

    /// The application's exit code is 0 when nothing was found, else 1.
    void start();

private:
    enum class Phase {
        Starting,
        Recording,
        Replaying,
        Returning,
        Calming,
        Soaking,
        Settling,
        Reviving,
        Cooling,
        Ending
    };

    struct Watched {
        QString name;
        QProcess process;
        ProcessFigures atRest;
        double cpuAtSoakStart = 0.0;
        double cpuShare = 0.0; ///< during the soaking
        MemoryTrend memory;
        QStringList leftOver;
        int endedAfterMs = -1;
    };

    /// Only tells whether the programs behave; the machine's own delays are not judged.
    bool isShort() const { return m_options.minutes < 1.0; }
    void startSimulator();
    void startWorkbench();
    void readSimulator();
    void readControl();
    void tellSimulator(const QList<QByteArray>& commands);
    void tellUser(const QByteArray& order);
    void note(const QByteArray& text);

    void enter(Phase phase);
    bool phaseLasts(int milliseconds) const { return m_sincePhase.elapsed() > milliseconds; }
    void poll();
    void pollStarting();
    void pollRecording();
    void pollReplaying();
    void pollReturning();
    void pollCalming();
    void pollSoaking();
    void pollSettling();
    void pollReviving();
    void pollCooling();
    void sample();
    void changeMood();
    void useWindow();
    void beginSoaking();
    void endSoaking();
    void takeFigures();
    bool isAtRest() const { return m_output.state() == "idle" && m_output.modal() == "-"; }

    void checkAlive();
    void onFinished(Watched& watched, int exitCode, QProcess::ExitStatus status);
    void findLeftOvers(Watched& watched);
    void checkEnd();
    void judge();
    void report() const;
    void fail(const QString& what);
    [[noreturn]] void giveUp(const QString& what);

    const Options m_options;
    QFile m_events;
    QFile m_samples;
    QString m_scratch; ///< the programs' folder for temporary files
    Watched m_simulator;
    Watched m_workbench;
    quint16 m_port = 0;
    QTcpSocket m_control;
    int m_unanswered = 0;
    QElapsedTimer m_sinceReply;
    WorkbenchOutput m_output{m_events};
    Mischief m_mischief;
    Mischief m_user; // only its random numbers
    int m_replays = 0;
    bool m_misbehaving = false;
    int m_moods = 0;
    Phase m_phase = Phase::Starting;
    QElapsedTimer m_sincePhase;
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceRetry;
    QTimer m_pollTimer;
    QTimer m_sampleTimer;
    QTimer m_moodTimer;
    QTimer m_userTimer;
    double m_soakSeconds = 0.0;
    quint64 m_framesAtStart = 0;
    quint64 m_framesInSoak = 0;
    int m_rowChangesThen = 0;
    QStringList m_failures;
};
