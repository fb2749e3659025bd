#include "workbench/window/log/logfilter.h"

#include "workbench/text/logmodel.h"
#include "workbench/window/look/levellook.h"

#include <QIcon>
#include <QPalette>
#include <QWidget>

namespace workbench {

namespace {

// Modules may have levels that nobody here knows.
std::optional<Severity> lookedAtAs(int level) {
    switch (level) {
    case LogModel::Information:
        return Severity::Information;
    case LogModel::Problem:
        return Severity::Error;
    default:
        return std::nullopt;
    }
}

} // namespace

LogFilter::LogFilter(QWidget* view)
    : QSortFilterProxyModel(view)
    , m_view(view) {
    setFilterKeyColumn(-1);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
}

void LogFilter::setLevel(std::optional<int> level) {
    m_level = level;
    invalidateFilter();
}

void LogFilter::setSource(const QString& source) {
    m_source = source;
    invalidateFilter();
}

// A style makes the picture anew each time that it is asked.
QIcon LogFilter::iconOf(QStyle::StandardPixmap symbol) const {
    if (m_iconsStyle != m_view->style()) {
        m_iconsStyle = m_view->style();
        m_icons.clear();
    }
    const int key = static_cast<int>(symbol);
    const auto known = m_icons.constFind(key);
    return known != m_icons.constEnd()
               ? *known
               : *m_icons.insert(key, m_iconsStyle->standardIcon(symbol, nullptr, m_view));
}

bool LogFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    const QModelIndex level = sourceModel()->index(row, LogModel::LevelColumn, parent);
    if (m_level && level.data(LogModel::LevelRole).toInt() != *m_level) {
        return false;
    }
    const QModelIndex source = level.siblingAtColumn(LogModel::SourceColumn);
    if (!m_source.isEmpty() && source.data(Qt::DisplayRole).toString() != m_source) {
        return false;
    }
    return QSortFilterProxyModel::filterAcceptsRow(row, parent);
}

QVariant LogFilter::data(const QModelIndex& index, int role) const {
    const bool isLevel = index.column() == LogModel::LevelColumn;
    if (role != Qt::BackgroundRole && !(role == Qt::DecorationRole && isLevel)) {
        return QSortFilterProxyModel::data(index, role);
    }
    const auto level = lookedAtAs(QSortFilterProxyModel::data(index, LogModel::LevelRole).toInt());
    if (!level) {
        return {};
    }
    const LevelLook look = LevelLook::of(*level);
    if (role == Qt::DecorationRole) {
        return iconOf(look.symbol);
    }
    return *level == Severity::Information
               ? QVariant()
               : QVariant(look.tinted(m_view->palette().color(QPalette::Base)));
}

} // namespace workbench
