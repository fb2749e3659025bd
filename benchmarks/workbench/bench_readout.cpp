// What the read-out costs: a line on the line path, a refresh with new figures, painted; and the
// whole window's share of a core at 1 000 frames/s with one dock or another.

#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/readout/figurepanel.h"
#include "workbench/window/readout/latestlines.h"

#include <QApplication>
#include <QDockWidget>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <ctime>
#include <string>

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

// The simulator is a process of its own, whose share does not count.
void shareOfACore(benchmark::State& state, const char* shown) {
    constexpr int warmUpMs = 4000;
    constexpr int measuredMs = 10000;
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
    const auto docks = window.findChildren<QDockWidget*>();
    for (QDockWidget* dock : docks) {
        dock->setVisible(dock->objectName() == QLatin1String(shown));
    }
    runEvents(warmUpMs);
    const std::uint64_t framesBefore = window.backend().receiver.statistics().snapshot().frames;
    for (auto _ : state) {
        const double before = processorSeconds();
        runEvents(measuredMs);
        state.counters["percent"] = (processorSeconds() - before) / measuredMs * 1e5;
    }
    const std::uint64_t frames =
        window.backend().receiver.statistics().snapshot().frames - framesBefore;
    state.counters["frames_per_s"] = static_cast<double>(frames) * 1000.0 / measuredMs;
}

BENCHMARK_CAPTURE(shareOfACore, no_dock, "")->Iterations(1);
BENCHMARK_CAPTURE(shareOfACore, live_display, "MtDataDisplayDock")->Iterations(1);
BENCHMARK_CAPTURE(shareOfACore, readout, "ReadoutDock")->Iterations(1);
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
    return 0;
}
