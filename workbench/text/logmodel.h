#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
#include <QString>

#include <deque>
#include <mutex>
#include <vector>

namespace workbench {

/// The workbench's log: what modules write, what the workbench itself has to say. A table with a
/// bounded number of rows; the oldest go first. All texts are plain text: control characters are
/// shown as escapes, nothing is ever interpreted.
class LogModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { TimeColumn, CategoryColumn, SourceColumn, LevelColumn, TextColumn, ColumnCount };

    /// Levels of the workbench's own lines; modules write 1.
    enum Level { Information = 0, Problem = 1 };

    explicit LogModel(int maxRows = 10000, QObject* parent = nullptr);

    /// Appends a line. May be called from any thread; the row appears with the next turn of the
    /// event loop.
    void add(const QString& category, const QString& source, int level, const QString& text);

    void info(const QString& text);    ///< a line of the workbench itself
    void problem(const QString& text); ///< the same, about something that went wrong

    /// All rows as text, one line each, columns separated by tabs.
    QString toText() const;
    QString rowText(int row) const;

    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Entry {
        QDateTime time;
        QString category;
        QString source;
        int level = 0;
        QString text;
    };

    Q_INVOKABLE void takeIncoming();
    QString cell(const Entry& entry, int column) const;

    std::size_t m_maxRows;
    std::deque<Entry> m_entries;

    std::mutex m_mutex; // guards what follows
    std::vector<Entry> m_incoming;
    std::size_t m_dropped = 0;
};

} // namespace workbench
