#include "workbench/text/logmodel.h"

#include "workbench/text/plaintip.h"

#include <QStringList>

#include <algorithm>
#include <climits>

namespace workbench {

namespace {

constexpr int maxTextLength = 4000;
constexpr int maxNameLength = 100; // of a category or a source

// A complaint of a module that is a repetition is looked for so far back.
constexpr std::size_t repeatedRows = 100;
constexpr qint64 repeatedMs = 10000;

QString ownCategory() {
    return QStringLiteral("workbench");
}

QString printable(const QString& text, int maxLength = maxTextLength) {
    QString result;
    const QString kept = text.left(maxLength);
    result.reserve(kept.size());
    for (const QChar c : kept) {
        if (c == QLatin1Char('\n')) {
            result += QLatin1String("\\n");
        } else if (c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0)) {
            result += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            result += c;
        }
    }
    return text.size() > maxLength ? result + QStringLiteral(" …") : result;
}

} // namespace

bool LogModel::Entry::isOfModule() const {
    return category != ownCategory();
}

int LogModel::Entry::meaning() const {
    const bool isHarmless = level == Problem && isOfModule() &&
                            !text.startsWith(QLatin1String("Error")) &&
                            !text.startsWith(QLatin1String("cannot "));
    return isHarmless ? Information : level;
}

bool LogModel::Entry::isRepeatedBy(const Entry& other) const {
    return level == other.level && text == other.text && source == other.source &&
           category == other.category;
}

void LogModel::Entry::repeat(const Entry& other) {
    count = count > INT_MAX - other.count ? INT_MAX : count + other.count;
    last = other.last;
    serial = other.serial;
}

qint64 LogModel::Entry::characters() const {
    return qint64(category.size()) + source.size() + text.size();
}

QString LogModel::Entry::textWithCount() const {
    return count == 1 ? text
                      : tr("%1 (%2 times, the last one at %3)")
                            .arg(text, QString::number(count),
                                 last.toString(QStringLiteral("HH:mm:ss.zzz")));
}

QString LogModel::levelWord(int level) {
    switch (level) {
    case Information:
        return tr("Information");
    case Problem:
        return tr("Error");
    default:
        return tr("Level %1").arg(level);
    }
}

int LogModel::repetitions(int row) const {
    return m_entries.at(static_cast<std::size_t>(row)).count;
}

LogModel::LogModel(int maxRows, qint64 maxCharacters, QObject* parent)
    : QAbstractTableModel(parent)
    , m_maxRows(static_cast<std::size_t>(std::max(1, maxRows)))
    , m_maxCharacters(maxCharacters) {}

void LogModel::add(const QString& category, const QString& source, int level, const QString& text) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QDateTime now = QDateTime::currentDateTime();
    const Entry entry{now,
                      printable(category, maxNameLength),
                      printable(source, maxNameLength),
                      level,
                      printable(text),
                      1,
                      now,
                      0};
    if (!m_incoming.empty() && m_incoming.back().isRepeatedBy(entry)) {
        m_incoming.back().repeat(entry);
        return;
    }
    const bool isFull = m_incoming.size() >= m_maxRows ||
                        m_incomingCharacters + entry.characters() > m_maxCharacters;
    if (isFull && !m_incoming.empty()) { // one is always taken, and stands for those left out
        ++m_dropped;
        return;
    }
    m_incoming.push_back(entry);
    m_incomingCharacters += entry.characters();
    if (m_incoming.size() == 1) {
        QMetaObject::invokeMethod(this, "takeIncoming", Qt::QueuedConnection);
    }
}

void LogModel::info(const QString& text) {
    add(ownCategory(), QStringLiteral("WORKBENCH"), Information, text);
}

void LogModel::problem(const QString& text) {
    add(ownCategory(), QStringLiteral("WORKBENCH"), Problem, text);
}

void LogModel::takeIncoming() {
    std::vector<Entry> incoming;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        incoming.swap(m_incoming);
        m_incomingCharacters = 0;
        if (m_dropped > 0) {
            const QDateTime now = QDateTime::currentDateTime();
            incoming.back() = {now,
                               ownCategory(),
                               QStringLiteral("WORKBENCH"),
                               Problem,
                               tr("%1 lines came too fast and were left out").arg(m_dropped + 1),
                               1,
                               now,
                               0};
            m_dropped = 0;
        }
    }
    std::vector<Entry> added;
    int changedFrom = rowCount();
    for (Entry& entry : incoming) {
        entry.serial = ++m_serial;
        const std::optional<int> row = countAsRepetition(entry, added);
        if (!row) {
            added.push_back(entry);
        } else {
            changedFrom = std::min(changedFrom, *row);
        }
    }
    if (changedFrom < rowCount()) {
        Q_EMIT dataChanged(index(changedFrom, TextColumn), index(rowCount() - 1, TextColumn));
    }
    append(added);
}

// The row of the line that is repeated, also one that is about to be added.
std::optional<int> LogModel::countAsRepetition(const Entry& entry, std::vector<Entry>& added) {
    const std::size_t rows = m_entries.size() + added.size();
    const bool isComplaint = entry.meaning() == Problem && entry.isOfModule();
    const std::size_t lookedAt = isComplaint ? repeatedRows : 1;
    for (std::size_t back = 1; back <= std::min(lookedAt, rows); ++back) {
        const std::size_t row = rows - back;
        Entry& before = row < m_entries.size() ? m_entries[row] : added[row - m_entries.size()];
        const bool isLately = back == 1 || before.last.msecsTo(entry.time) <= repeatedMs;
        if (isLately && before.isRepeatedBy(entry)) {
            before.repeat(entry);
            return static_cast<int>(row);
        }
    }
    return std::nullopt;
}

void LogModel::append(const std::vector<Entry>& added) {
    for (const Entry& entry : added) {
        m_characters += entry.characters();
    }
    std::size_t excess = 0;
    while (excess < m_entries.size() && (m_entries.size() - excess + added.size() > m_maxRows ||
                                         m_characters > m_maxCharacters)) {
        m_characters -= m_entries[excess].characters();
        ++excess;
    }
    if (excess > 0) {
        beginRemoveRows({}, 0, static_cast<int>(excess) - 1);
        m_entries.erase(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(excess));
        endRemoveRows();
    }
    if (!added.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
        m_entries.insert(m_entries.end(), added.begin(), added.end());
        endInsertRows();
    }
}

quint64 LogModel::serialOf(int row) const {
    return m_entries.at(static_cast<std::size_t>(row)).serial;
}

QVector<int> LogModel::problemRowsSince(quint64 serial) const {
    QVector<int> rows;
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        if (m_entries[row].meaning() == Problem && m_entries[row].serial > serial) {
            rows << static_cast<int>(row);
        }
    }
    return rows;
}

void LogModel::clear() {
    beginResetModel();
    m_entries.clear();
    m_characters = 0;
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
        return levelWord(entry.meaning());
    default:
        return entry.textWithCount();
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
    if (role == LevelRole) {
        return entry.meaning();
    }
    if (role == Qt::ToolTipRole && index.column() == TextColumn) {
        return plainTip(entry.textWithCount()); // may be longer than the column is wide
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
