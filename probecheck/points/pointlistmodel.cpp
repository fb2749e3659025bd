#include "probecheck/points/pointlistmodel.h"

#include "probecheck/points/record/pointdistance.h"

#include <QUndoCommand>

#include <algorithm>
#include <limits>

namespace points {

namespace {

constexpr std::size_t mostRanges = 16; // taken out one by one; more are a reset, which is quicker

std::vector<int> numbersOf(const std::vector<PointRecord>& points) {
    std::vector<int> numbers;
    numbers.reserve(points.size());
    for (const PointRecord& point : points) {
        numbers.push_back(point.number);
    }
    return numbers;
}

bool isLower(const PointRecord& point, int number) {
    return point.number < number;
}

bool isOrdered(const PointRecord& a, const PointRecord& b) {
    return a.number < b.number;
}

/// Signs and digits that show a hundredth of what is worth showing.
QString lengthText(double millimetres) {
    return fixedText(millimetres, 3);
}

QString distanceText(const std::optional<UncertainLength>& distance) {
    if (!distance) {
        return QStringLiteral("-");
    }
    return lengthText(distance->length) + QStringLiteral(" ± ") +
           (distance->uncertainty ? lengthText(*distance->uncertainty) : QStringLiteral("?"));
}

} // namespace

class PointListModel::Deletion : public QUndoCommand {
public:
    Deletion(PointListModel& model, std::vector<PointRecord> points)
        : QUndoCommand(tr("delete %n point(s)", nullptr, static_cast<int>(points.size())))
        , m_model(model)
        , m_points(std::move(points)) {}
    void redo() override { m_model.takeOut(m_points); }
    void undo() override { m_model.putBack(m_points); }

private:
    PointListModel& m_model;
    std::vector<PointRecord> m_points;
};

class PointListModel::Renaming : public QUndoCommand {
public:
    Renaming(PointListModel& model, int number, QString before, QString after)
        : QUndoCommand(tr("rename %1").arg(before))
        , m_model(model)
        , m_number(number)
        , m_before(std::move(before))
        , m_after(std::move(after)) {}
    void redo() override { m_model.rename(m_number, m_after); }
    void undo() override { m_model.rename(m_number, m_before); }

private:
    PointListModel& m_model;
    int m_number;
    QString m_before;
    QString m_after;
};

PointListModel::PointListModel(QObject* parent)
    : QAbstractTableModel(parent) {}

void PointListModel::append(const std::vector<PointRecord>& points) {
    if (points.empty()) {
        return;
    }
    const int first = static_cast<int>(m_points.size());
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(points.size()) - 1);
    m_points.insert(m_points.end(), points.begin(), points.end());
    m_nextNumber = m_points.back().number + 1;
    endInsertRows();
}

void PointListModel::clear() {
    m_undoStack.clear();
    beginResetModel();
    m_points.clear();
    m_nextNumber = 1;
    endResetModel();
}

void PointListModel::remove(const std::vector<int>& rows) {
    std::vector<int> valid;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(valid),
                 [this](int row) { return row >= 0 && row < rowCount(); });
    std::sort(valid.begin(), valid.end());
    valid.erase(std::unique(valid.begin(), valid.end()), valid.end());
    if (valid.empty()) {
        return;
    }
    std::vector<PointRecord> points;
    points.reserve(valid.size());
    for (const int row : valid) {
        points.push_back(point(row));
    }
    m_undoStack.push(new Deletion(*this, std::move(points)));
}

int PointListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_points.size());
}

int PointListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PointListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const auto column = static_cast<Column>(index.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(index.row(), column);
    case SortRole:
        return sortValue(index.row(), column);
    case Qt::TextAlignmentRole: {
        const bool isText = column == Name || column == Tool || column == Reference ||
                            column == Time || column == Verdict;
        return static_cast<int>((isText ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    default:
        return {};
    }
}

QVariant PointListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) {
        return {};
    }
    const bool isTip = role == Qt::ToolTipRole;
    switch (static_cast<Column>(section)) {
    case Number:
        return tr("No.");
    case Name:
        return tr("Name");
    case X:
        return tr("x [mm]");
    case Y:
        return tr("y [mm]");
    case Z:
        return tr("z [mm]");
    case DeviationX:
        return isTip ? tr("Standard deviation of the samples along x") : tr("s x [mm]");
    case DeviationY:
        return isTip ? tr("Standard deviation of the samples along y") : tr("s y [mm]");
    case DeviationZ:
        return isTip ? tr("Standard deviation of the samples along z") : tr("s z [mm]");
    case GreatestDistance:
        return isTip ? tr("Greatest distance of a sample from the point") : tr("Greatest [mm]");
    case Samples:
        return tr("Samples");
    case Duration:
        return tr("Duration [s]");
    case Tool:
        return tr("Tool");
    case Reference:
        return tr("Reference");
    case Time:
        return tr("Time (UTC)");
    case Verdict:
        return isTip ? tr("Greatest distance with the point's uncertainty against the tolerance")
                     : tr("Verdict");
    case DistanceToPrevious:
        return isTip ? tr("Distance to the point before, with the half width of its 95 % interval")
                     : tr("Distance to the one before [mm]");
    case ColumnCount:
        break;
    }
    return {};
}

Qt::ItemFlags PointListModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() && index.column() == Name ? flags | Qt::ItemIsEditable : flags;
}

bool PointListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.column() != Name || role != Qt::EditRole) {
        return false;
    }
    const QString name = value.toString().simplified().left(longestName);
    const PointRecord& renamedPoint = point(index.row());
    if (name.isEmpty()) {
        return false;
    }
    if (name != renamedPoint.name) {
        m_undoStack.push(new Renaming(*this, renamedPoint.number, renamedPoint.name, name));
    }
    return true;
}

int PointListModel::rowOf(int number) const {
    const auto found = std::lower_bound(m_points.begin(), m_points.end(), number, isLower);
    return found == m_points.end() || found->number != number
               ? -1
               : static_cast<int>(found - m_points.begin());
}

QString PointListModel::text(int row, Column column) const {
    const PointRecord& record = point(row);
    switch (column) {
    case Number:
        return QString::number(record.number);
    case Name:
        return record.name;
    case X:
    case Y:
    case Z:
        return lengthText(record.position[static_cast<std::size_t>(column - X)]);
    case DeviationX:
    case DeviationY:
    case DeviationZ:
        return lengthText(record.deviation[static_cast<std::size_t>(column - DeviationX)]);
    case GreatestDistance:
        return lengthText(record.greatestDistance);
    case Samples:
        return QString::number(record.samples);
    case Duration:
        return fixedText(record.duration, 2);
    case Tool:
        return toolLabel(record.tool);
    case Reference:
        return referenceLabel(record.reference);
    case Time:
        return utcText(record.utcMs);
    case Verdict:
        return verdictText(verdictOf(record));
    case DistanceToPrevious:
        return row == 0 ? QStringLiteral("-") : distanceText(distanceOf(point(row - 1), record));
    case ColumnCount:
        break;
    }
    return {};
}

QVariant PointListModel::sortValue(int row, Column column) const {
    const PointRecord& record = point(row);
    switch (column) {
    case Number:
        return record.number;
    case X:
    case Y:
    case Z:
        return record.position[static_cast<std::size_t>(column - X)];
    case DeviationX:
    case DeviationY:
    case DeviationZ:
        return record.deviation[static_cast<std::size_t>(column - DeviationX)];
    case GreatestDistance:
        return record.greatestDistance;
    case Samples:
        return record.samples;
    case Duration:
        return record.duration;
    case Tool:
        return record.tool;
    case Reference:
        return record.reference;
    case Time:
        return record.utcMs;
    case Verdict:
        return static_cast<int>(verdictOf(record));
    case DistanceToPrevious: {
        constexpr double none = -1.0;
        const auto distance = row == 0 ? std::nullopt : distanceOf(point(row - 1), record);
        return distance ? distance->length : none;
    }
    case Name:
    case ColumnCount:
        break;
    }
    return record.name;
}

void PointListModel::rename(int number, const QString& name) {
    const int row = rowOf(number);
    m_points[static_cast<std::size_t>(row)].name = name;
    const QModelIndex cell = index(row, Name);
    Q_EMIT dataChanged(cell, cell);
    Q_EMIT renamed(number, name);
}

void PointListModel::takeOut(const std::vector<PointRecord>& points) {
    std::vector<std::pair<int, int>> ranges; // first and last row
    for (const PointRecord& point : points) {
        const int row = rowOf(point.number);
        if (!ranges.empty() && ranges.back().second == row - 1) {
            ranges.back().second = row;
        } else {
            ranges.emplace_back(row, row);
        }
    }
    if (ranges.size() > mostRanges) {
        beginResetModel();
        std::vector<PointRecord> rest;
        rest.reserve(m_points.size() - points.size());
        std::set_difference(m_points.begin(), m_points.end(), points.begin(), points.end(),
                            std::back_inserter(rest), isOrdered);
        m_points = std::move(rest);
        endResetModel();
    } else {
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
            beginRemoveRows(QModelIndex(), range->first, range->second);
            m_points.erase(m_points.begin() + range->first, m_points.begin() + range->second + 1);
            endRemoveRows();
            tellDistance(range->first);
        }
    }
    Q_EMIT deleted(numbersOf(points));
}

void PointListModel::putBack(const std::vector<PointRecord>& points) {
    // Points that stand next to each other come back together.
    std::vector<std::pair<int, std::size_t>> places; // row before all, first of `points`
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto place =
            std::lower_bound(m_points.begin(), m_points.end(), points[i].number, isLower);
        const int row = static_cast<int>(place - m_points.begin());
        if (places.empty() || places.back().first != row) {
            places.emplace_back(row, i);
        }
    }
    if (places.size() > mostRanges) {
        beginResetModel();
        std::vector<PointRecord> all;
        all.reserve(m_points.size() + points.size());
        std::merge(m_points.begin(), m_points.end(), points.begin(), points.end(),
                   std::back_inserter(all), isOrdered);
        m_points = std::move(all);
        endResetModel();
    } else {
        std::size_t end = points.size();
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            const int count = static_cast<int>(end - place->second);
            beginInsertRows(QModelIndex(), place->first, place->first + count - 1);
            m_points.insert(m_points.begin() + place->first,
                            points.begin() + static_cast<std::ptrdiff_t>(place->second),
                            points.begin() + static_cast<std::ptrdiff_t>(end));
            endInsertRows();
            tellDistance(place->first + count);
            end = place->second;
        }
    }
    Q_EMIT restored(numbersOf(points));
}

void PointListModel::tellDistance(int row) {
    if (row < rowCount()) {
        const QModelIndex cell = index(row, DistanceToPrevious);
        Q_EMIT dataChanged(cell, cell);
    }
}

} // namespace points
