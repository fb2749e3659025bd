// What the workbench's window costs with all docks in sight, at 60 and at 1 000 frames/s: from the
// start of the process to the first live row, and its share of a core.
//
//   bench_window [RATE [SECONDS]]
#include "workbench/commandlinerun.h"
#include "workbench/startup.h"
#include "workbench/window/mainwindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <ctime>
#include <functional>
#include <unistd.h>

namespace {

constexpr double mostSecondsToFirstRow = 0.6;
constexpr double mostShareAt60 = 0.05;
constexpr double mostShareAt1000 = 0.15;
constexpr int xColumn = 12;
constexpr int pollMs = 5;
constexpr int patienceMs = 20000;
constexpr int settleMs = 3000;
constexpr QSize screen(1920, 1080);

double secondsOf(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// In ticks of the kernel, usually of 10 ms.
double secondsSinceProcessBegan() {
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly)) {
        return -1.0;
    }
    const QByteArray stat = file.readAll();
    constexpr int startTime = 19; // behind the name in its brackets
    const QList<QByteArray> words = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return secondsOf(CLOCK_BOOTTIME) -
           words.value(startTime).toDouble() / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMs) {
    QEventLoop loop;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition() || clock.elapsed() > timeoutMs) {
            loop.quit();
        }
    });
    poll.start(pollMs);
    loop.exec();
    return condition();
}

bool showsRow(const workbench::MainWindow& window) {
    const auto* const table = window.findChild<QTableWidget*>(QStringLiteral("tableWidget6dmt"));
    for (int row = 0; table != nullptr && row < table->rowCount(); ++row) {
        const QTableWidgetItem* const cell = table->item(row, xColumn);
        if (cell != nullptr && !cell->text().isEmpty()) {
            return true;
        }
    }
    return false;
}

// Side by side in two rows, on a screen that has the room: each of them is in sight.
void openAll(workbench::MainWindow& window) {
    const auto docks = window.findChildren<QDockWidget*>();
    window.resize(screen);
    for (int i = 0; i < docks.size(); ++i) {
        window.removeDockWidget(docks.at(i));
        window.addDockWidget(i % 2 == 0 ? Qt::TopDockWidgetArea : Qt::BottomDockWidgetArea,
                             docks.at(i), Qt::Horizontal);
        docks.at(i)->show();
    }
}

QStringList docksInSight(const workbench::MainWindow& window) {
    QStringList names;
    const auto docks = window.findChildren<QDockWidget*>();
    for (const QDockWidget* const dock : docks) {
        if (!dock->visibleRegion().isEmpty()) {
            names << dock->objectName();
        }
    }
    return names;
}

} // namespace

int main(int argc, char* argv[]) {
    workbench::prepareForWindows();
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const double rate = arguments.value(1, QStringLiteral("60")).toDouble();
    const int seconds = arguments.value(2, QStringLiteral("20")).toInt();
    const QTemporaryDir folder;
    workbench::MainWindow window({folder.filePath(QStringLiteral("settings.ini")), false, true});
    workbench::Options options;
    options.pluginFolder = QStringLiteral(KESTREL_PLUGINS);
    options.simulate = true;
    options.measure = true;
    options.simulatorOptions = QStringList{QStringLiteral("--rate"), QString::number(rate),
                                           QStringLiteral("--no-occlusion")};
    workbench::CommandLineRun run(window, options);
    openAll(window);
    QObject::connect(&window, &workbench::MainWindow::modulesBuilt, &window,
                     [&window] { openAll(window); });
    window.show();
    run.start();
    if (!waitUntil([&] { return showsRow(window); }, patienceMs)) {
        std::fprintf(stderr, "no live row\n");
        return 1;
    }
    const double toFirstRow = secondsSinceProcessBegan();
    const double cpuToFirstRow = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    waitUntil([] { return false; }, settleMs);
    const std::uint64_t framesBefore = window.backend().receiver.statistics().snapshot().frames;
    const double cpuBefore = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    const double before = secondsOf(CLOCK_MONOTONIC);
    QEventLoop loop;
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    const double time = secondsOf(CLOCK_MONOTONIC) - before;
    const double share = (secondsOf(CLOCK_PROCESS_CPUTIME_ID) - cpuBefore) / time;
    const std::uint64_t frames =
        window.backend().receiver.statistics().snapshot().frames - framesBefore;
    const double most = rate > 60.0 ? mostShareAt1000 : mostShareAt60;
    std::printf("in sight: %s\n", qPrintable(docksInSight(window).join(QStringLiteral(", "))));
    std::printf("first live row after %.2f s (at most %.1f), %.2f s of them on a core\n",
                toFirstRow, mostSecondsToFirstRow, cpuToFirstRow);
    std::printf("%.1f frames/s: %.1f %% of a core (at most %.0f %%)\n",
                static_cast<double>(frames) / time, 100.0 * share, 100.0 * most);
    window.close();
    return toFirstRow <= mostSecondsToFirstRow && share <= most ? 0 : 1;
}
