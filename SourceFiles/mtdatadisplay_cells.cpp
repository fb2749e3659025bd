#include "SourceFiles/mtdatadisplay_cells.h"

#include "KestrelAngles.h"
#include "SourceFiles/mtdatadisplay_plaincelldelegate.h"
#include "general/host/bodytexts.h"
#include "general/widgets/dpiscaling.h"

#include <QBrush>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QHeaderView>
#include <QStyle>
#include <QTableWidget>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace trackingcells {

namespace {

constexpr int headerHeight = 28;
constexpr int cellRowHeight = 20;
constexpr int narrowestColumn = 10; // below the style's own minimum
constexpr int decimals = 2;

// The form's sheet paints headers in plain letters; the header's own hint has the table's bold
// ones.
int widthOfHeader(const QTableWidget& table, int column) {
    const QString text = table.horizontalHeaderItem(column)->text();
    QFont plain = table.font();
    plain.setBold(false);
    const int margin = table.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &table);
    return text.isEmpty() ? 0 : QFontMetrics(plain).horizontalAdvance(text) + 2 * margin;
}

// Sizes that follow the screen, the font and what stands in the cells.
void fit(QTableWidget* table, const Column* columns, int count) {
    QHeaderView* const header = table->horizontalHeader();
    header->setMinimumSectionSize(scaledToDpi(narrowestColumn, *table));
    header->setMinimumHeight(scaledToDpi(headerHeight, *table));
    const int height = rowHeightFor(cellRowHeight, *table);
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
    for (int column = 0; column < count; ++column) {
        table->setColumnWidth(column, std::max(scaledToDpi(columns[column].width, *table),
                                               widthOfHeader(*table, column)));
        for (int row = 0; row < table->rowCount(); ++row) {
            widen(table, row, column);
        }
    }
}

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
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setRowCount(0);
    const auto* const delegate = new PlainCellDelegate(table);
    fit(table, columns, count);
    QObject::connect(delegate, &QAbstractItemDelegate::sizeHintChanged, table,
                     [table, columns, count] { fit(table, columns, count); });
}

void widen(QTableWidget* table, int row, int column) {
    const auto* const delegate = qobject_cast<PlainCellDelegate*>(table->itemDelegate());
    const int needed = delegate != nullptr ? delegate->widthOf(row, column) : 0;
    if (needed > table->columnWidth(column)) {
        table->setColumnWidth(column, needed);
    }
}

void putName(QTableWidget* table, int row, int column, const QString& text) {
    auto* const item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignCenter);
    table->setItem(row, column, item);
    widen(table, row, column);
}

void putValues(QTableWidget* table, int row, int firstColumn, const QString& text) {
    for (int column = firstColumn; column < table->columnCount(); ++column) {
        auto* const item = new QTableWidgetItem(text);
        item->setTextAlignment(rightAligned);
        table->setItem(row, column, item);
    }
}

bool setText(QTableWidgetItem* item, const QString& text) {
    if (item == nullptr || item->text() == text) {
        return false;
    }
    item->setText(text);
    return true;
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
    const KestrelSDK_Angles::RotationAngles angles = KestrelSDK_Angles::rotationAngles(rot);
    const double values[] = {loc[0], loc[1], loc[2], angles.rx, angles.ry, angles.rz};
    int column = firstColumn;
    for (const double value : values) {
        if (setText(table->item(row, column), bodytexts::fixed(value, decimals))) {
            widen(table, row, column);
        }
        ++column;
    }
}

} // namespace trackingcells
