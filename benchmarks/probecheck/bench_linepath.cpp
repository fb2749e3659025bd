// How long a thread that hands lines over is held by the second plug-in, while both of its docks
// are in sight and work.

#include "KestrelParser.h"
#include "host_api/metatypes.h"
#include "probecheck/probecheckmodule.h"
#include "tests/probecheck/probefixture.h"
#include "tests/probecheck/tipcheck/pivoting.h"

#include <QComboBox>
#include <QDockWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr double runSeconds = 8.0; // a check that decides ends after ten at the earliest
constexpr double posesPerSecond = 250.0;
constexpr int toolCount = 4;
constexpr int patienceMs = 10000;

double microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

// A run's lines of the tools: the first one pivots about its tip, the others are held still.
std::vector<std::string> toolLines() {
    std::vector<std::string> lines;
    Pivoting pivoting;
    const auto count = static_cast<int>(runSeconds * posesPerSecond);
    for (int i = 0; i < count; ++i) {
        const ProbeSample sample = pivoting.at(i / posesPerSecond);
        std::vector<probelines::Tool> tools(toolCount);
        tools.front() = {sample.position, sample.rotation, 1.0, 0};
        lines.push_back(probelines::tools(tools));
    }
    return lines;
}

// A host with the module and both docks: a check runs, and the second tool is captured by holding
// it still.
class Docks {
public:
    Docks() {
        ScriptedHost& host = controller.host;
        module.set_param("CommandManager", QVariant::fromValue(static_cast<IOManager*>(&host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(&window)));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
        host.answer("measurementtool reference_of_tool b02", "none");
        const QList<_GuiElement*> elements = module.get_gui_elements();
        for (const _GuiElement* element : elements) {
            auto* const dock = qobject_cast<QDockWidget*>(element->content);
            window.addDockWidget(Qt::RightDockWidgetArea, dock);
            dock->show();
        }
        window.show();
        host.startMeasurement();
        auto* const start = find<QPushButton>("pushButton_start");
        good = QTest::qWaitFor([start] { return start->isEnabled(); }, patienceMs);
        start->click();
        auto* const tools = window.findChild<QDockWidget*>("ProbePointsDock")
                                ->findChild<QComboBox*>("comboBox_tool");
        tools->setCurrentIndex(1);
        find<QComboBox>("comboBox_mode")->setCurrentIndex(1);
    }
    ~Docks() { module.exit_module(); }
    Docks(const Docks&) = delete;
    Docks& operator=(const Docks&) = delete;

    template <typename Widget>
    Widget* find(const char* name) const {
        return window.findChild<Widget*>(QLatin1String(name));
    }
    Requester& requester() const { return *controller.host.requesters("6dmt2").front(); }
    bool worked() const {
        return good && find<QPushButton>("pushButton_stop")->isEnabled() &&
               find<QTableView>("tableView_points")->model()->rowCount() == 1;
    }

    ProbeController controller;
    QMainWindow window;
    ProbeCheckModule module;
    bool good = false;
};

struct Times {
    std::vector<double> module; ///< of each call with a line, in microseconds
    std::vector<double> alone;  ///< of a parser of its own with each line of the tools
    bool taken = true;
};

double timed(const std::function<void()>& call) {
    const Clock::time_point begin = Clock::now();
    call();
    return microseconds(Clock::now() - begin);
}

// The thread of the lines: frames with number and time, as many a second as wanted.
Times sendLines(Requester& requester, const std::vector<std::string>& lines, int rate) {
    const auto frames = static_cast<int>(runSeconds * rate);
    Times times;
    times.module.reserve(3 * static_cast<std::size_t>(frames));
    times.alone.reserve(static_cast<std::size_t>(frames));
    const auto hand = [&](const char* channel, const std::string& line) {
        times.module.push_back(timed([&] {
            times.taken = requester.set_ascii_data(channel, line.c_str()) == 0 && times.taken;
        }));
    };
    KestrelParser parser;
    const Clock::time_point begin = Clock::now();
    for (int frame = 0; frame < frames; ++frame) {
        const double seconds = static_cast<double>(frame) / rate;
        std::this_thread::sleep_until(begin + std::chrono::duration_cast<Clock::duration>(
                                                  std::chrono::duration<double>(seconds)));
        const std::string& line = lines[static_cast<std::size_t>(seconds * posesPerSecond)];
        hand("fr", probelines::frame(static_cast<unsigned>(frame) + 1));
        hand(
            "ts",
            "ts " + std::to_string(frame / rate) + "." +
                std::to_string(1000000 + static_cast<long>(1e6 * (frame % rate)) / rate).substr(1));
        hand("6dmt2", line);
        times.alone.push_back(timed([&] {
            parser.startFrame();
            times.taken = parser.parseLine(line.c_str()) && times.taken;
        }));
    }
    return times;
}

double quantile(std::vector<double>& values, double share) {
    const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), values.begin() + at, values.end());
    return values[static_cast<std::size_t>(at)];
}

void lineFromAnotherThread(benchmark::State& state) {
    const std::vector<std::string> lines = toolLines();
    for (auto _ : state) {
        const Docks docks;
        Times times;
        std::atomic<bool> isOver{false};
        std::thread thread([&] {
            times = sendLines(docks.requester(), lines, static_cast<int>(state.range(0)));
            isOver = true;
        });
        while (!isOver) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
        thread.join();
        if (!docks.worked() || !times.taken) {
            state.SkipWithError("the docks did not work meanwhile");
            break;
        }
        const double longest = quantile(times.module, 1.0);
        state.SetIterationTime(longest * 1e-6);
        state.counters["lines"] = static_cast<double>(times.module.size());
        state.counters["median_us"] = quantile(times.module, 0.5);
        state.counters["p999_us"] = quantile(times.module, 0.999);
        state.counters["longest_us"] = longest;
        state.counters["alone_p999_us"] = quantile(times.alone, 0.999);
        state.counters["alone_longest_us"] = quantile(times.alone, 1.0);
    }
}
BENCHMARK(lineFromAnotherThread)
    ->ArgName("frames_per_s")
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace
