#pragma once

#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QTcpSocket>
#include <QVector>

/// The programs under test as real processes, and what a test needs to talk to them.
namespace processes {

/// Every wait of these tests; grows where sanitizers slow everything down.
#ifdef KESTREL_SLOW_BUILD
inline constexpr int slowness = 4;
#else
inline constexpr int slowness = 1;
#endif
inline constexpr int startTimeoutMs = 5000 * slowness;
inline constexpr int replyTimeoutMs = 3000 * slowness;
inline constexpr int rowsTimeoutMs = 10000 * slowness;
inline constexpr int rowsIntervalMs = 500; ///< between two pictures of the tables, as printed
inline constexpr int stopTimeoutMs = 5000 * slowness;

/// A kestrel-simulator on a free port of 127.0.0.1. Stopped at the end of its life.
class Simulator {
public:
    explicit Simulator(const QStringList& options = {});
    /// `before` is a program with its options that in turn starts the simulator.
    Simulator(const QStringList& before, const QStringList& options);
    ~Simulator();

    bool isListening() const { return m_port != 0; }
    quint16 port() const { return m_port; }
    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(m_port); }
    qint64 processId() const { return m_process.processId(); }

    /// Sends a command without its protocol word ("get sim pose tool b01") over a connection of its
    /// own and returns the reply line; empty when there is none in time.
    QString ask(const QString& command);

    /// ask() for a parameter: the value behind the name.
    QString value(const QString& parameter);

    /// The numbers of a value, such as the pose "x y z rx ry rz".
    QVector<double> numbers(const QString& parameter);

    /// Ends the process at once, as a crash would.
    void kill();

private:
    QProcess m_process;
    QTcpSocket m_control;
    QString m_host;
    quint16 m_port = 0;
};

/// One row of a live table.
struct Row {
    QStringList texts;
    QStringList colours; ///< "#00ff00", empty without a colour
};
using Rows = QMap<QString, QVector<Row>>; ///< by the table's object name

/// A kestrel-workbench that prints its live rows, with the plug-in of this build, without a display
/// and with settings of its own.
class Workbench {
public:
    /// `locale` is the value of LC_ALL.
    Workbench(const QStringList& options, const QString& settingsFile,
              const QString& locale = QStringLiteral("C"));
    ~Workbench();

    /// The rows as they were printed last, after waiting until `wanted` holds for them or the time
    /// is over.
    template <typename Condition>
    Rows waitForRows(Condition wanted, int timeoutMs = rowsTimeoutMs);

    const Rows& rows() const { return m_rows; }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }
    bool waitForEnd();
    int exitCode() const { return m_process.exitCode(); }
    QString output() const { return m_output; } ///< all that was printed, to explain a failure

private:
    bool readRows(int timeoutMs);

    QProcess m_process;
    QString m_output;
    QByteArray m_pending;
    Rows m_rows;
};

inline const QString toolTable = QStringLiteral("tableWidget6dmt");
inline const QString referenceTable = QStringLiteral("tableWidget6dmtref");
inline constexpr int toolPoseColumn = 12;
inline constexpr int referencePoseColumn = 3;

} // namespace processes

#include <QElapsedTimer>

template <typename Condition>
processes::Rows processes::Workbench::waitForRows(Condition wanted, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (!wanted(m_rows) && clock.elapsed() < timeoutMs) {
        readRows(static_cast<int>(timeoutMs - clock.elapsed()));
    }
    return m_rows;
}
