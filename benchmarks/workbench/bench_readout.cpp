// What the read-out costs: a line on the line path, a refresh with new figures, painted; and the
// whole window's share of a core at 1 000 frames/s with one dock or another, in turns.

#include "benchmarks/median.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/readout/figurepanel.h"
#include "workbench/window/readout/latestlines.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

using namespace workbench;

namespace {

std::string toolLine(double x) {
    std::string line = "6dmt2 4 4";
    for (int tool = 0; tool < 4; ++tool) {
        line += " [" + std::to_string(tool) + " 0.912 4 1.500][" + std::to_string(x + tool) +
                " -245.123456 1310.654321][0.936117 -0.189796 0.296117 0.289629 0.879923 "
                "-0.376603 -0.189081 0.438314 0.878686][0][0 0 0 0 0 0]";
    }
    return line;
}

constexpr const char* referenceLine =
    "6dmtr 1 1 [0 1.0][1 2 3][1.0 0.0 0.0 0.0 1.0 0.0 0.0 0.0 1.0]";

void lineOnTheLinePath(benchmark::State& state) {
    RequesterRegistry registry;
    LatestLines latest(registry);
    latest.setSubscribed(true);
    const std::string line = toolLine(1.0);
    for (auto _ : state) {
        registry.deliver("6dmt2", line.c_str());
    }
}

void refreshWithNewFigures(benchmark::State& state) {
    RequesterRegistry registry;
    LatestLines latest(registry);
    latest.setSubscribed(true);
    FigurePanel panel;
    panel.resize(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    panel.show();
    QCoreApplication::processEvents();
    FrameDecoder decoder;
    LatestLines::Lines lines;
    Readout readout;
    double x = 0.0;
    for (auto _ : state) {
        registry.deliver("6dmt2", toolLine(x += 1.25).c_str());
        registry.deliver("6dmtr", referenceLine);
        static_cast<void>(latest.take(lines));
        decoder.begin(0);
        decoder.add(lines.tools.c_str());
        decoder.add(lines.references.c_str());
        const TrackedFrame frame = decoder.end();
        ReadoutNews news;
        news.isConnected = news.isMeasuring = true;
        news.frame = &frame;
        news.isCalibrated = true;
        news.reference = 1;
        readout.update(news);
        panel.tell(readout.view(), false);
        QCoreApplication::processEvents();
    }
    if (!readout.view().isLive()) {
        state.SkipWithError("the read-out did not take the lines");
    }
}

void runEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

double processorSeconds() {
    std::timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

constexpr int warmUpMs = 4000;
constexpr int settleMs = 1000;
constexpr int measuredMs = 5000;
constexpr int rounds = 9;
constexpr double fewestFrames = 900.0; // a second, for a figure to count
constexpr double mostScatter = 0.2;    // percent of a core that chance may excuse

enum Shown { NoDock, LiveDisplay, ReadOut, shownCount };
constexpr std::array<const char*, shownCount> names{"no dock", "live display", "read-out"};
constexpr std::array<const char*, shownCount> dockNames{"", "MtDataDisplayDock", "ReadoutDock"};

bool complain(const char* sentence) {
    std::fprintf(stderr, "%s\n", sentence);
    return false;
}

// Otherwise one would be praised for what it does not do.
bool showsFigures(const MainWindow& window, Shown shown) {
    if (shown == NoDock) {
        return true;
    }
    const auto* const dock = window.findChild<QDockWidget*>(QLatin1String(dockNames[shown]));
    if (dock == nullptr || !dock->isVisible()) {
        return false;
    }
    if (shown == LiveDisplay) {
        const auto* const table = dock->findChild<QTableWidget*>();
        return table != nullptr && table->rowCount() > 0;
    }
    const auto* const panel = dock->findChild<FigurePanel*>();
    return panel != nullptr && panel->accessibleDescription().contains(QLatin1String(" mm"));
}

void showAlone(const MainWindow& window, Shown shown) {
    const auto docks = window.findChildren<QDockWidget*>();
    for (QDockWidget* dock : docks) {
        dock->setVisible(dock->objectName() == QLatin1String(dockNames[shown]));
    }
}

// The simulator is a process of its own, whose share does not count.
double shareOfACore(MainWindow& window, Shown shown) {
    showAlone(window, shown);
    runEvents(settleMs);
    const std::uint64_t framesBefore = window.backend().receiver.statistics().snapshot().frames;
    QElapsedTimer time;
    time.start();
    const double before = processorSeconds();
    runEvents(measuredMs);
    const double seconds = static_cast<double>(time.nsecsElapsed()) * 1e-9;
    const double percent = (processorSeconds() - before) / seconds * 100.0;
    const std::uint64_t frames = window.backend().receiver.statistics().snapshot().frames;
    const bool counts = static_cast<double>(frames - framesBefore) / seconds >= fewestFrames &&
                        showsFigures(window, shown);
    return counts ? percent : -1.0;
}

// In one window, each round in another order, so that what the machine does besides hits all alike.
bool compareShares() {
    const QTemporaryDir folder;
    MainWindow window({folder.filePath(QStringLiteral("settings.ini")), false, false});
    const QStringList folders = ModuleHost::usualFolders();
    for (const QString& plugins : folders) {
        window.modules().loadFolder(plugins);
    }
    window.modulesLoaded();
    window.show();
    window.simulate({QStringLiteral("--rate"), QStringLiteral("1000"), QStringLiteral("--seed"),
                     QStringLiteral("5")});
    runEvents(warmUpMs);
    window.startMeasurement();
    runEvents(warmUpMs);
    std::array<std::vector<double>, shownCount> shares;
    std::vector<double> differences;
    for (int round = 0; round < rounds; ++round) {
        for (int turn = 0; turn < shownCount; ++turn) {
            const auto shown = static_cast<Shown>((round + turn) % shownCount);
            const double percent = shareOfACore(window, shown);
            if (percent < 0.0) {
                return complain("A dock showed no figures, or less than 900 frames/s came.");
            }
            shares[shown].push_back(percent);
        }
        differences.push_back(shares[ReadOut].back() - shares[LiveDisplay].back());
        std::printf("round %d: %.2f %%, %.2f %%, %.2f %%\n", round + 1, shares[NoDock].back(),
                    shares[LiveDisplay].back(), shares[ReadOut].back());
        std::fflush(stdout);
    }
    for (int shown = 0; shown < shownCount; ++shown) {
        const std::vector<double>& all = shares[static_cast<std::size_t>(shown)];
        std::printf("%s: %.2f %% of a core (median of %d, %.2f to %.2f)\n",
                    names[static_cast<std::size_t>(shown)], median(all), rounds,
                    *std::min_element(all.begin(), all.end()),
                    *std::max_element(all.begin(), all.end()));
    }
    const double middle = median(differences);
    std::vector<double> deviations;
    for (const double difference : differences) {
        deviations.push_back(std::abs(difference - middle));
    }
    const double bound = std::min(median(deviations), mostScatter);
    const double more = median(shares[ReadOut]) - median(shares[LiveDisplay]);
    std::printf("read-out more than live display: %.2f %% (bound %.2f %%)\n", more, bound);
    return more <= bound || complain("The read-out costs more than the live display.");
}

BENCHMARK(lineOnTheLinePath);
BENCHMARK(refreshWithNewFigures)
    ->Args({400, 220})
    ->Args({1200, 800})
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return compareShares() ? 0 : 1;
}
