#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace workbench {

/// The workbench's log: what modules write, what the workbench itself has to say. A table that is
/// bounded by its rows and by the characters in them; the oldest rows go first. A line that is
/// written again and again is one row, which says how often; a complaint of a module also when
/// other lines stand in between, for a dialog repeats all of its complaints with each of its
/// queries. All texts are plain text: control characters are shown as escapes, nothing is ever
/// interpreted.
class LogModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { TimeColumn, CategoryColumn, SourceColumn, LevelColumn, TextColumn, ColumnCount };

    /// Levels of the workbench's own lines. Modules write 1, whatever they have to say: theirs
    /// complain that begin so ("Error: Unable to …").
    enum Level { Information = 0, Problem = 1 };

    /// What the line is taken for: its level, but Problem of a module alone when it complains.
    static constexpr int LevelRole = Qt::UserRole;

    /// In words, for a user; an unknown one with its number.
    static QString levelWord(int level);

    static constexpr int defaultRows = 10000;
    /// Several times what so many usual lines have; they take two bytes each.
    static constexpr qint64 defaultCharacters = 4000000;

    /// The latest line is kept even when it is longer than `maxCharacters`.
    explicit LogModel(int maxRows = defaultRows, qint64 maxCharacters = defaultCharacters,
                      QObject* parent = nullptr);

    /// Appends a line. May be called from any thread; the row appears with the next turn of the
    /// event loop.
    void add(const QString& category, const QString& source, int level, const QString& text);

    /// How often the line has been written.
    int repetitions(int row) const;

    /// A number that grows with each line that is written, repetitions too.
    quint64 serial() const { return m_serial; }
    /// Rows about something that went wrong, of which the last line came after `serial`.
    QVector<int> problemRowsSince(quint64 serial) const;
    quint64 serialOf(int row) const; ///< of the last line that the row stands for

    void info(const QString& text);    ///< a line of the workbench itself
    void problem(const QString& text); ///< the same, about something that went wrong

    /// All rows as text, one line each, columns separated by tabs: with the date, otherwise as the
    /// table shows them, the level as levelWord().
    QString toText() const;
    QString rowText(int row) const;

    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Entry {
        QDateTime time; // of the first, when there are several
        QString category;
        QString source;
        int level = 0;
        QString text;
        int count = 1;
        QDateTime last;
        quint64 serial = 0; // of the last

        qint64 characters() const;
        bool isOfModule() const;
        int meaning() const;
        bool isRepeatedBy(const Entry& other) const;
        void repeat(const Entry& other);
        QString textWithCount() const;
    };

    Q_INVOKABLE void takeIncoming();
    std::optional<int> countAsRepetition(const Entry& entry, std::vector<Entry>& added);
    void append(const std::vector<Entry>& added);
    QString cell(const Entry& entry, int column) const;

    const std::size_t m_maxRows;
    const qint64 m_maxCharacters;
    std::deque<Entry> m_entries;
    qint64 m_characters = 0; // in m_entries
    quint64 m_serial = 0;

    std::mutex m_mutex; // guards what follows
    std::vector<Entry> m_incoming;
    qint64 m_incomingCharacters = 0;
    std::size_t m_dropped = 0;
};

} // namespace workbench
