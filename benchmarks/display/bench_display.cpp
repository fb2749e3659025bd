// One refresh of both tables with painting, every value, button and colour changed since the last
// one: the display against a plain one that writes every cell and paints with the stock delegate.

#include "KestrelAngles.h"
#include "benchmarks/median.h"
#include "tests/SourceFiles/display/displayfixture.h"

#include <QApplication>
#include <QStyledItemDelegate>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace {

constexpr int variants = 8;
constexpr int sceneWidth = 1000;
constexpr int rowHeight = 20;
constexpr int besideRows = 120;
constexpr int poseColumn = 12;
constexpr int referencePoseColumn = 3;
constexpr double highestRatio = 0.4;
constexpr double highestIdleRowMicroseconds = 1.0; // a tool and its reference

// Few digits, so that a line of 100 tools fits into the display's buffer.
double rounded(double value, double steps) {
    return std::round(value * steps) / steps;
}

double wave(int variant, int row, int number) {
    return rounded(999.0 * std::sin(0.37 * variant + 1.7 * row + 2.3 * number), 10.0);
}

std::array<double, 9> turned(double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    std::array<double, 9> rot = {c * c, -c * s, s, s * c, c * c, -s * s, -s * c, s, c * c};
    for (double& value : rot) {
        value = rounded(value, 100.0);
    }
    return rot;
}

// A controller with `rows` calibrated tools and references, its display and what it reports.
class Scene : public DisplayFixture {
public:
    explicit Scene(int rows) {
        host.answer("measurementtool max_number_of_tools", std::to_string(rows));
        host.answer("measurementtool max_number_of_references", std::to_string(rows));
        for (int i = 1; i <= rows; ++i) {
            const std::string body = (i < 10 ? "b0" : "b") + std::to_string(i);
            host.answer("body calibrated measurementtool " + body, "yes");
            host.answer("measurementtool tip_calibrated " + body, "yes");
            host.answer("measurementtool reference_of_tool " + body, body);
            host.answer("body calibrated measurementtool_reference " + body, "yes");
        }
        for (int v = 0; v < variants; ++v) {
            for (int i = 0; i < rows; ++i) {
                Tool tool;
                tool.pressed = v % 2 == 0 ? 5 : 10;
                tool.loc = {wave(v, i, 0), wave(v, i, 1), wave(v, i, 2)};
                tool.rot = turned(0.3 * v + 0.11 * i + 0.05);
                tools[v].push_back(tool);
                references[v].push_back(tool);
            }
            toolLines[v] = oldToolLine(tools[v]);
            referenceLines[v] = referenceLine(references[v]);
        }
        build();
        start();
        display->resize(sceneWidth, 2 * (rows * rowHeight) + besideRows);
        display->show();
        good = load(0);
        display->onUpdateDataDisplay();
        display->onUpdateDataDisplay();
        QCoreApplication::processEvents();
        good = good && toolTable()->rowCount() == rows && referenceTable()->rowCount() == rows;
    }

    bool load(int variant) {
        return display->set_ascii_data("6dmt", toolLines[variant].c_str()) == 0 &&
               display->set_ascii_data("6dmtr", referenceLines[variant].c_str()) == 0;
    }

    bool good = false;
    std::vector<Tool> tools[variants];
    std::vector<Pose> references[variants];
    std::string toolLines[variants];
    std::string referenceLines[variants];
};

void writeText(QTableWidgetItem* item, double value) {
    char text[1024];
    std::snprintf(text, sizeof(text), "%1.2f", value);
    item->setText(QString::fromLatin1(text));
}

void writePose(QTableWidget* table, int row, int column, const Pose& pose) {
    double rot[9];
    std::copy(pose.rot.begin(), pose.rot.end(), rot);
    const KestrelSDK_Angles::RotationAngles angles = KestrelSDK_Angles::rotationAngles(rot);
    for (const double value : pose.loc) {
        writeText(table->item(row, column++), value);
    }
    for (const double value : {angles.rx, angles.ry, angles.rz}) {
        writeText(table->item(row, column++), value);
    }
}

void writeName(QTableWidgetItem* item) {
    item->setForeground(Qt::black);
    item->setBackground(Qt::green);
}

void writeEveryCell(const Scene& scene, int variant) {
    QTableWidget* const toolTable = scene.toolTable();
    const int rows = toolTable->rowCount();
    for (int row = 0; row < rows; ++row) {
        const Tool& tool = scene.tools[variant][static_cast<std::size_t>(row)];
        writeName(toolTable->item(row, 0));
        for (int button = 0; button < 4; ++button) {
            const bool pressed = (tool.pressed >> button & 1U) != 0;
            toolTable->item(row, 4 + 2 * button)
                ->setBackground(pressed ? Qt::blue : Qt::transparent);
        }
        writePose(toolTable, row, poseColumn, tool);
        writeName(toolTable->item(row, 2));
    }
    QTableWidget* const referenceTable = scene.referenceTable();
    for (int row = 0; row < rows; ++row) {
        writeName(referenceTable->item(row, 1));
        writePose(referenceTable, row, referencePoseColumn,
                  scene.references[variant][static_cast<std::size_t>(row)]);
    }
}

// The plain display: stock delegates, every cell written.
class PlainScene : public Scene {
public:
    explicit PlainScene(int rows)
        : Scene(rows) {
        toolTable()->setItemDelegate(&stock);
        referenceTable()->setItemDelegate(&stock);
        QCoreApplication::processEvents();
    }

    QStyledItemDelegate stock;
};

void refresh(Scene& scene, int variant) {
    scene.good = scene.load(variant) && scene.good;
    scene.display->onUpdateDataDisplay();
    QCoreApplication::processEvents();
}

void refresh(PlainScene& scene, int variant) {
    scene.good = scene.load(variant) && scene.good;
    writeEveryCell(scene, variant);
    QCoreApplication::processEvents();
}

template <typename AnyScene>
void everythingChanged(benchmark::State& state) {
    AnyScene scene(static_cast<int>(state.range(0)));
    int variant = 0;
    for (auto _ : state) {
        variant = (variant + 1) % variants;
        refresh(scene, variant);
    }
    if (!scene.good) {
        state.SkipWithError("the display did not take the lines");
    }
}

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

// Both in turn, so that whatever else the machine does slows both; fails above the bound.
void ratioToPlain(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)));
    PlainScene plain(static_cast<int>(state.range(0)));
    for (int variant = 0; variant < variants; ++variant) { // rows and fonts are made once
        refresh(scene, variant);
        refresh(plain, variant);
    }
    std::vector<double> ours;
    std::vector<double> theirs;
    int variant = 0;
    for (auto _ : state) {
        variant = (variant + 1) % variants;
        const Clock::time_point start = Clock::now();
        refresh(scene, variant);
        const Clock::time_point between = Clock::now();
        refresh(plain, variant);
        ours.push_back(microseconds(between - start));
        theirs.push_back(microseconds(Clock::now() - between));
    }
    const double ratio = median(ours) / median(theirs);
    state.counters["ratio"] = ratio;
    if (!scene.good || !plain.good) {
        state.SkipWithError("the display did not take the lines");
    } else if (ratio > highestRatio) {
        state.SkipWithError("slower than the bound");
    }
}

// Lines go on coming, and say the same; fails above the bound.
void nothingChanged(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    Scene scene(rows);
    std::vector<double> times;
    for (auto _ : state) {
        state.PauseTiming();
        scene.good = scene.load(0) && scene.good;
        state.ResumeTiming();
        const Clock::time_point start = Clock::now();
        scene.display->onUpdateDataDisplay();
        QCoreApplication::processEvents();
        times.push_back(microseconds(Clock::now() - start));
    }
    const double aRow = median(times) / rows;
    state.counters["us_per_row"] = aRow;
    if (!scene.good) {
        state.SkipWithError("the display did not take the lines");
    } else if (aRow > highestIdleRowMicroseconds) {
        state.SkipWithError("slower than the bound");
    }
}

void threeSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(4)->Arg(20)->Arg(100)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_TEMPLATE(everythingChanged, PlainScene)->Apply(threeSizes);
BENCHMARK_TEMPLATE(everythingChanged, Scene)->Apply(threeSizes);
// Fixed numbers: the bounds are judged by the medians of so many, never by a few to begin with.
BENCHMARK(ratioToPlain)->Apply(threeSizes)->Iterations(48);
BENCHMARK(nothingChanged)->Apply(threeSizes)->Iterations(2000);

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
