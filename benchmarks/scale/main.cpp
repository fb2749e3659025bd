// Data lines at scale: a sending process, real UDP, the workbench's receiver, the plug-in's binary
// and its live display.

#include "benchmarks/scale/sender.h"
#include "benchmarks/scale/timedhost.h"
#include "workbench/modules/backend.h"
#include "workbench/modules/modulehost.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMainWindow>
#include <QProcess>
#include <QTableWidget>
#include <QTimer>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sys/resource.h>

namespace {

constexpr int patienceMs = 20000;
constexpr int drainMs = 500;
constexpr int lookMs = 20;
constexpr double warmUpSeconds = 1.0;
constexpr double warmUpRate = 100.0;
constexpr long long linesPerFrame = 2; // for the module: tools and references
constexpr int rowHeight = 20;
constexpr QSize besideRows(1000, 250);

void require(bool good, const char* what) {
    if (!good) {
        std::fprintf(stderr, "bench_scale: %s\n", what);
        std::exit(1);
    }
}

// Sleeps between looks: what the process burns is what the data cost.
bool waitFor(const std::function<bool()>& condition, int milliseconds = patienceMs) {
    if (condition()) {
        return true;
    }
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    look.start(lookMs);
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    return condition();
}

double cpuSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct Result {
    long long sent = 0;
    double sendSeconds = 0.0;
    double cpuShare = 0.0;
    LineTimes times;
};

// The workbench with the plug-in and its live display, connected to a sender.
class Receiver {
public:
    /// `recording`: where the frames are recorded besides; empty: they are not. `outlets`: URLs
    /// where they are sent besides.
    Receiver(int tools, const QString& recording, const QStringList& outlets)
        : m_tools(tools) {
        startSender();
        workbench::ControllerAddress address;
        address.port = m_port;
        m_backend.session.connectTo(address);
        require(waitFor([this] { return m_backend.session.isReady(); }), "no connection");
        openDisplay();
        m_backend.session.channel().askLater("kestrel2 tracking start");
        require(waitFor([this] { return m_backend.monitor.isMeasuring(); }), "no measurement");
        require(recording.isEmpty() || m_backend.recorder.start(recording, {}),
                "the recording cannot begin");
        for (const QString& text : outlets) {
            workbench::OutletUrl url;
            QString error;
            require(url.parse(text, &error) && m_backend.outlets.add(url, &error),
                    qPrintable(error));
        }
        run(warmUpRate, warmUpSeconds);
        const auto* const table =
            m_window.findChild<QTableWidget*>(QStringLiteral("tableWidget6dmt"));
        require(table != nullptr && table->rowCount() == m_tools &&
                    !table->item(0, 12)->text().isEmpty(),
                "the live display does not show the tools");
    }

    ~Receiver() {
        m_modules.tearDown();
        m_sender.closeWriteChannel();
        m_sender.waitForFinished(patienceMs);
    }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    Result run(double rate, double seconds) {
        Result result;
        m_timedHost.reset();
        const double cpu = cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        m_sender.write(QByteArray("send ") + QByteArray::number(m_backend.session.boundDataPort()) +
                       ' ' + QByteArray::number(rate) + ' ' + QByteArray::number(seconds) + '\n');
        const int longest = static_cast<int>(seconds * 3000.0) + patienceMs;
        require(waitFor([&] { return m_sender.canReadLine(); }, longest), "the sender is silent");
        const QList<QByteArray> words = m_sender.readLine().trimmed().split(' ');
        result.cpuShare = (cpuSeconds() - cpu) / (static_cast<double>(clock.elapsed()) / 1000.0);
        result.sent = words.value(1).toLongLong();
        result.sendSeconds = words.value(2).toDouble();
        waitFor([] { return false; }, drainMs);
        result.times = m_timedHost.times();
        return result;
    }

    /// Ends the recording and says what has become of it.
    void endRecording() {
        m_backend.recorder.stop();
        m_backend.recorder.waitForEnd();
        const workbench::Recorder::Status status = m_backend.recorder.status();
        std::printf("  recorded with %d tools: %llu frames, %llu not written\n", m_tools,
                    static_cast<unsigned long long>(status.frames),
                    static_cast<unsigned long long>(status.unwritten));
        require(!status.running && status.error.isEmpty(), "the recording has failed");
    }

    /// Says what has become of what was sent besides.
    void tellOfOutlets() {
        for (const auto& entry : m_backend.outlets.entries()) {
            std::printf("  to %s with %d tools: %llu frames, %llu dropped; %s\n",
                        qPrintable(entry.url.text), m_tools,
                        static_cast<unsigned long long>(entry.status.sentFrames),
                        static_cast<unsigned long long>(entry.status.droppedFrames),
                        qPrintable(entry.status.word.text));
        }
    }

private:
    void startSender() {
        m_sender.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_sender.start(QCoreApplication::applicationFilePath(),
                       {QStringLiteral("--sender"), QString::number(m_tools)});
        require(waitFor([this] { return m_sender.canReadLine(); }), "no sender");
        m_port = m_sender.readLine().trimmed().mid(5).toUShort();
    }

    void openDisplay() {
        m_modules.loadFolder(QStringLiteral(KESTREL_PLUGINS));
        const QList<_GuiElement*> elements = m_modules.build();
        for (const _GuiElement* element : elements) {
            if (auto* const dock = qobject_cast<QDockWidget*>(element->content)) {
                m_window.addDockWidget(Qt::TopDockWidgetArea, dock);
                dock->show();
            }
        }
        m_window.resize(besideRows + QSize(0, m_tools * rowHeight));
        m_window.show();
    }

    const int m_tools;
    QProcess m_sender;
    quint16 m_port = 0;
    QMainWindow m_window;
    workbench::Backend m_backend;
    TimedHost m_timedHost{m_backend.io};
    workbench::ModuleHost m_modules{{&m_timedHost, &m_window, m_backend.session.versions(), false},
                                    m_backend.log};
};

void printRow(int tools, int rate, const Result& result) {
    const LineTimes& times = result.times;
    const long long lost = result.sent - times.frames;
    std::printf(
        "| %d | %d | %.0f | %lld | %lld (%.3f %%) | %.1f %% | %.2f ms | %.1f ms |\n", tools, rate,
        static_cast<double>(result.sent) / result.sendSeconds, result.sent, lost,
        result.sent > 0 ? 100.0 * static_cast<double>(lost) / static_cast<double>(result.sent)
                        : 0.0,
        100.0 * result.cpuShare, 1000.0 * times.longestCall, 1000.0 * times.longestUnderWay);
    std::fflush(stdout);
    require(times.rejected == 0 && times.accepted == linesPerFrame * times.frames,
            "the display did not take the lines");
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc == 3 && std::string(argv[1]) == "--sender") {
        return runSender(argc, argv, std::atoi(argv[2]));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"seconds", "How long each combination is sent (10).", "SECONDS", "10"},
                       {"record", "Record the frames besides.", "FILE"},
                       {"send", "Send the frames there besides; may be repeated.", "URL"}});
    parser.addHelpOption();
    parser.process(application);
    const double seconds = parser.value("seconds").toDouble();
    require(seconds > 0.0, "bad number of seconds");

    std::array<double, 3> load{};
    ::getloadavg(load.data(), 3);
    std::printf("%g s each; load average before: %.1f\n\n", seconds, load[0]);
    std::printf("| tools | frames/s wanted | sent/s | sent | lost | CPU | longest hold of the "
                "receiving thread | longest from sending to the module |\n"
                "|---|---|---|---|---|---|---|---|\n");
    for (const int tools : {4, 20, 100}) {
        Receiver receiver(tools, parser.value("record"), parser.values("send"));
        for (const int rate : {100, 1000, 10000}) {
            printRow(tools, rate, receiver.run(rate, seconds));
        }
        if (parser.isSet("record")) {
            receiver.endRecording();
        }
        receiver.tellOfOutlets();
    }
    ::getloadavg(load.data(), 3);
    std::printf("\nload average after: %.1f\n", load[0]);
    return 0;
}
