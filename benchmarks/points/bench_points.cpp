#include "probecheck/points/pointlistmodel.h"
#include "tests/probecheck/points/samplepoints.h"

#include <QApplication>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <benchmark/benchmark.h>
#include <memory>

namespace {

using points::PointListModel;

constexpr int many = 100'000;

/// The list as the dock has it: sorted by a proxy, behind a view.
struct Dock {
    explicit Dock(int count) {
        model.append(samplePoints(count));
        sorted.setSourceModel(&model);
        sorted.setSortRole(PointListModel::SortRole);
        view.setModel(&sorted);
        view.setSortingEnabled(true);
        view.sortByColumn(PointListModel::Number, Qt::AscendingOrder);
        view.resize(1200, 600);
        view.show();
        QApplication::processEvents();
    }
    PointListModel model;
    QSortFilterProxyModel sorted;
    QTableView view;
};

void oneMorePoint(benchmark::State& state) {
    Dock dock(many);
    for (auto _ : state) {
        dock.model.append({samplePoint(dock.model.nextNumber(), 1.0)});
        dock.view.scrollToBottom();
        QApplication::processEvents();
    }
}

void scrollAPage(benchmark::State& state) {
    Dock dock(many);
    int row = 0;
    for (auto _ : state) {
        row = (row + 7919) % many;
        dock.view.scrollTo(dock.sorted.index(row, 0), QAbstractItemView::PositionAtTop);
        dock.view.viewport()->repaint();
    }
}

void sortByColumn(benchmark::State& state) {
    Dock dock(many);
    Qt::SortOrder order = Qt::DescendingOrder;
    for (auto _ : state) {
        dock.sorted.sort(static_cast<int>(state.range(0)), order);
        order = order == Qt::DescendingOrder ? Qt::AscendingOrder : Qt::DescendingOrder;
    }
}

std::vector<int> everySecondRow() {
    std::vector<int> rows;
    for (int row = 0; row < many; row += 2) {
        rows.push_back(row);
    }
    return rows;
}

void deleteEverySecond(benchmark::State& state) {
    Dock dock(many);
    const std::vector<int> rows = everySecondRow();
    for (auto _ : state) {
        dock.model.remove(rows);
        QApplication::processEvents();
        state.PauseTiming();
        dock.model.undoStack().undo();
        state.ResumeTiming();
    }
}

void undoThat(benchmark::State& state) {
    Dock dock(many);
    const std::vector<int> rows = everySecondRow();
    for (auto _ : state) {
        state.PauseTiming();
        dock.model.remove(rows);
        state.ResumeTiming();
        dock.model.undoStack().undo();
        QApplication::processEvents();
    }
}

void exportAll(benchmark::State& state) {
    const std::vector<points::PointRecord> all = samplePoints(many);
    for (auto _ : state) {
        benchmark::DoNotOptimize(csvOf(all));
    }
}

} // namespace

BENCHMARK(oneMorePoint)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollAPage)->Unit(benchmark::kMicrosecond);
BENCHMARK(sortByColumn)
    ->ArgName("column")
    ->Arg(PointListModel::Name)
    ->Arg(PointListModel::X)
    ->Arg(PointListModel::DistanceToPrevious)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(deleteEverySecond)->Unit(benchmark::kMillisecond);
BENCHMARK(undoThat)->Unit(benchmark::kMillisecond);
BENCHMARK(exportAll)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
