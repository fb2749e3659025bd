#include "SourceFiles/mtdatadisplay_cells.h"

#include "SourceFiles/bodytexts.h"
#include "SourceFiles/mtdatadisplay_delegate.h"

#include <QBrush>
#include <QCoreApplication>
#include <QHeaderView>
#include <QTableWidget>

#include <cstring>
#include <iterator>

namespace trackingcells {

namespace {

constexpr int headerHeight = 28;
constexpr int rowHeight = 20;
constexpr int narrowestColumn = 10; // below the style's own minimum
constexpr int decimals = 2;

constexpr Qt::Alignment rightAligned = Qt::AlignRight | Qt::AlignVCenter;

void setForeground(QTableWidgetItem* item, const QBrush& brush) {
    if (item != nullptr && item->foreground() != brush) {
        item->setForeground(brush);
    }
}

} // namespace

PoseBits bitsOf(const double (&loc)[3], const double (&rot)[9]) {
    static_assert(sizeof(PoseBits) == sizeof(loc) + sizeof(rot));
    PoseBits bits{};
    std::memcpy(bits.data(), loc, sizeof(loc));
    std::memcpy(bits.data() + std::size(loc), rot, sizeof(rot));
    return bits;
}

void setUp(QTableWidget* table, const Column* columns, int count, int firstValueColumn) {
    QHeaderView* const header = table->horizontalHeader();
    header->setMinimumSectionSize(narrowestColumn);
    header->setMinimumHeight(headerHeight);

    table->setColumnCount(count);
    for (int column = 0; column < count; ++column) {
        const char* const text = columns[column].header;
        auto* const item = new QTableWidgetItem(QCoreApplication::translate("MtDataDisplay", text));
        if (column >= firstValueColumn) {
            item->setTextAlignment(rightAligned);
        }
        table->setHorizontalHeaderItem(column, item);
    }
    // Stretched first: otherwise the filler would keep the width of a table not yet laid out.
    header->setStretchLastSection(true);
    for (int column = 0; column < count; ++column) {
        table->setColumnWidth(column, columns[column].width);
    }

    table->verticalHeader()->setMinimumSectionSize(rowHeight);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    table->verticalHeader()->hide();
    table->setRowCount(0);
    new TrackingCellDelegate(table);
}

void putName(QTableWidget* table, int row, int column, const QString& text) {
    auto* const item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignCenter);
    table->setItem(row, column, item);
}

void putValues(QTableWidget* table, int row, int firstColumn, const QString& text) {
    for (int column = firstColumn; column < table->columnCount(); ++column) {
        auto* const item = new QTableWidgetItem(text);
        item->setTextAlignment(rightAligned);
        table->setItem(row, column, item);
    }
}

void setText(QTableWidgetItem* item, const QString& text) {
    if (item != nullptr && item->text() != text) {
        item->setText(text);
    }
}

void setBackground(QTableWidgetItem* item, const QBrush& brush) {
    if (item != nullptr && item->background() != brush) {
        item->setBackground(brush);
    }
}

void setState(QTableWidgetItem* item, BodyState state) {
    if (state == BodyState::Unknown) {
        setForeground(item, QBrush()); // black would not be seen in a dark window
        setBackground(item, QBrush(Qt::transparent));
        return;
    }
    setForeground(item, QBrush(Qt::black));
    setBackground(item, QBrush(state == BodyState::Tracked ? Qt::green : Qt::red));
}

void showPose(QTableWidget* table, int row, int firstColumn, const double (&loc)[3],
              const double (&rot)[9]) {
    const RotationAngles angles = rotationAngles(rot);
    const double values[] = {loc[0], loc[1], loc[2], angles.rx, angles.ry, angles.rz};
    int column = firstColumn;
    for (const double value : values) {
        setText(table->item(row, column), bodytexts::fixed(value, decimals));
        ++column;
    }
}

} // namespace trackingcells
