#pragma once

#include "probecheck/points/record/pointrecord.h"

#include <QAbstractTableModel>
#include <QUndoStack>

#include <vector>

namespace points {

/// The captured points as a table, a row each, in the order of their numbers. GUI thread only.
///
/// A point is added for good; deleting and renaming can be undone. Each change is told by a signal
/// after it has happened, so that it can be kept elsewhere too.
class PointListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        Number,
        Name,
        X,
        Y,
        Z,
        DeviationX,
        DeviationY,
        DeviationZ,
        GreatestDistance,
        Samples,
        Duration,
        Tool,
        Reference,
        Time,
        Verdict,
        DistanceToPrevious,
        ColumnCount
    };
    /// What a column is sorted by: numbers as numbers, texts as texts.
    static constexpr int SortRole = Qt::UserRole;
    static constexpr int longestName = 200; ///< characters; what is beyond falls off

    explicit PointListModel(QObject* parent = nullptr);

    /// The number that the next captured point gets: one more than any that this list has known.
    int nextNumber() const { return m_nextNumber; }

    /// Takes points whose numbers ascend and are higher than those of the list.
    void append(const std::vector<PointRecord>& points);

    /// Forgets all points, their numbers and what could be undone.
    void clear();

    const std::vector<PointRecord>& points() const { return m_points; }
    const PointRecord& point(int row) const { return m_points[static_cast<std::size_t>(row)]; }

    /// Deletes rows, in any order, as one step that can be undone. Rows that are none are ignored.
    void remove(const std::vector<int>& rows);
    QUndoStack& undoStack() { return m_undoStack; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Renames; one step that can be undone. An empty name is refused.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

Q_SIGNALS:
    void renamed(int number, const QString& name);
    void deleted(const std::vector<int>& numbers);
    void restored(const std::vector<int>& numbers);

private:
    class Deletion;
    class Renaming;

    int rowOf(int number) const; ///< -1 when there is none
    QString text(int row, Column column) const;
    QVariant sortValue(int row, Column column) const;
    void rename(int number, const QString& name);
    void takeOut(const std::vector<PointRecord>& points);
    void putBack(const std::vector<PointRecord>& points);
    void tellDistance(int row);

    std::vector<PointRecord> m_points;
    int m_nextNumber = 1;
    QUndoStack m_undoStack;
};

} // namespace points
