#include "SourceFiles/mtdatadisplay_settledrows.h"

#include <QAbstractItemModel>
#include <QTableWidget>

#include <algorithm>

void UntouchedRows::watch(const QTableWidget* table) {
    const QAbstractItemModel* const model = table->model();
    const auto forgetRows = [this](const QModelIndex& first, const QModelIndex& last) {
        const int end = std::min(last.row() + 1, static_cast<int>(m_marks.size()));
        for (int row = std::max(first.row(), 0); row < end; ++row) {
            m_marks[static_cast<std::size_t>(row)] = false;
        }
    };
    const auto forgetAll = [this] { m_marks.clear(); };
    QObject::connect(model, &QAbstractItemModel::dataChanged, &m_context, forgetRows);
    QObject::connect(model, &QAbstractItemModel::modelReset, &m_context, forgetAll);
    QObject::connect(model, &QAbstractItemModel::layoutChanged, &m_context, forgetAll);
    QObject::connect(model, &QAbstractItemModel::rowsInserted, &m_context, forgetAll);
    QObject::connect(model, &QAbstractItemModel::rowsRemoved, &m_context, forgetAll);
    QObject::connect(model, &QAbstractItemModel::columnsInserted, &m_context, forgetAll);
    QObject::connect(model, &QAbstractItemModel::columnsRemoved, &m_context, forgetAll);
}

bool UntouchedRows::contains(int row) const {
    const auto index = static_cast<std::size_t>(row);
    return index < m_marks.size() && m_marks[index];
}

void UntouchedRows::mark(int row) {
    const auto index = static_cast<std::size_t>(row);
    if (index >= m_marks.size()) {
        m_marks.resize(index + 1);
    }
    m_marks[index] = true;
}
