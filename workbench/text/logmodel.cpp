#include "workbench/text/logmodel.h"

#include "workbench/text/plaintip.h"

#include <QStringList>

#include <algorithm>

namespace workbench {

namespace {

constexpr int maxTextLength = 4000;

QString printable(const QString& text) {
    QString result;
    result.reserve(text.size());
    const QString kept = text.left(maxTextLength);
    for (const QChar c : kept) {
        if (c == QLatin1Char('\n')) {
            result += QLatin1String("\\n");
        } else if (c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0)) {
            result += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            result += c;
        }
    }
    return text.size() > maxTextLength ? result + QStringLiteral(" …") : result;
}

} // namespace

LogModel::LogModel(int maxRows, QObject* parent)
    : QAbstractTableModel(parent)
    , m_maxRows(static_cast<std::size_t>(std::max(1, maxRows))) {}

void LogModel::add(const QString& category, const QString& source, int level, const QString& text) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_incoming.size() >= m_maxRows) {
        ++m_dropped;
        return;
    }
    m_incoming.push_back({QDateTime::currentDateTime(), printable(category), printable(source),
                          level, printable(text)});
    if (m_incoming.size() == 1) {
        QMetaObject::invokeMethod(this, "takeIncoming", Qt::QueuedConnection);
    }
}

void LogModel::info(const QString& text) {
    add(QStringLiteral("workbench"), QStringLiteral("WORKBENCH"), Information, text);
}

void LogModel::problem(const QString& text) {
    add(QStringLiteral("workbench"), QStringLiteral("WORKBENCH"), Problem, text);
}

void LogModel::takeIncoming() {
    std::vector<Entry> incoming;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        incoming.swap(m_incoming);
        if (m_dropped > 0) {
            incoming.back() = {QDateTime::currentDateTime(), QStringLiteral("workbench"),
                               QStringLiteral("WORKBENCH"), Problem,
                               tr("%1 lines came too fast and were left out").arg(m_dropped + 1)};
            m_dropped = 0;
        }
    }
    const std::size_t total = m_entries.size() + incoming.size();
    const std::size_t excess =
        std::min(total > m_maxRows ? total - m_maxRows : 0, m_entries.size());
    if (excess > 0) {
        beginRemoveRows({}, 0, static_cast<int>(excess) - 1);
        m_entries.erase(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(excess));
        endRemoveRows();
    }
    if (!incoming.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(incoming.size()) - 1);
        m_entries.insert(m_entries.end(), incoming.begin(), incoming.end());
        endInsertRows();
    }
}

void LogModel::clear() {
    beginResetModel();
    m_entries.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int LogModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString LogModel::cell(const Entry& entry, int column) const {
    switch (column) {
    case TimeColumn:
        return entry.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    case CategoryColumn:
        return entry.category;
    case SourceColumn:
        return entry.source;
    case LevelColumn:
        return QString::number(entry.level);
    default:
        return entry.text;
    }
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Entry& entry = m_entries[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) {
        return index.column() == TimeColumn ? entry.time.toString(QStringLiteral("HH:mm:ss.zzz"))
                                            : cell(entry, index.column());
    }
    if (role == Qt::ToolTipRole && index.column() == TextColumn) {
        return plainTip(entry.text); // may be longer than the column is wide
    }
    if (role == Qt::TextAlignmentRole && index.column() == LevelColumn) {
        return static_cast<int>(Qt::AlignCenter);
    }
    return {};
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const QStringList names{tr("Time"), tr("Category"), tr("Source"), tr("Level"), tr("Text")};
    return names.value(section);
}

QString LogModel::rowText(int row) const {
    const Entry& entry = m_entries.at(static_cast<std::size_t>(row));
    QStringList cells;
    for (int column = 0; column < ColumnCount; ++column) {
        cells += cell(entry, column);
    }
    return cells.join(QLatin1Char('\t'));
}

QString LogModel::toText() const {
    QString text;
    for (int row = 0; row < rowCount(); ++row) {
        text += rowText(row) + QLatin1Char('\n');
    }
    return text;
}

} // namespace workbench
