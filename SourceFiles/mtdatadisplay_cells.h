#pragma once

#include <QString>

#include <array>
#include <cstdint>

class QBrush;
class QTableWidget;
class QTableWidgetItem;

/// What the two tables of the data display have in common. An item is written only when its text or
/// colour really changes, so that a refresh without news costs nothing. GUI thread only.
namespace trackingcells {

struct Column {
    const char* header; ///< translated in the display's context
    int width;          ///< pixels at 96 dpi
};

/// What the colours of a body's name tell.
enum class BodyState { Unknown, Lost, Tracked };

/// Only a quality of exactly -1 is that of a body that is not tracked.
inline BodyState stateOf(double quality) {
    return quality != -1.0 ? BodyState::Tracked : BodyState::Lost;
}

/// A position and a rotation as what is written of them depends on: bit by bit, for -0.0 and nan
/// are texts of their own.
using PoseBits = std::array<std::uint64_t, 12>;
PoseBits bitsOf(const double (&loc)[3], const double (&rot)[9]);

/// What a row of either table is written from. Equal contents make equal cells.
struct RowContent {
    BodyState body = BodyState::Unknown;      ///< not known to be calibrated: no pose, no buttons
    BodyState reference = BodyState::Unknown; ///< that of a tool
    int buttons = 0;                          ///< a tool's, as far as there are columns
    unsigned pressed = 0;                     ///< the first button in the lowest bit
    PoseBits pose{};                          ///< of a tracked body

    friend bool operator==(const RowContent& a, const RowContent& b) {
        return a.body == b.body && a.reference == b.reference && a.buttons == b.buttons &&
               a.pressed == b.pressed && a.pose == b.pose;
    }
};

/// Headers, widths and row height, which follow the table's font and style from then on; `columns`
/// must outlive the table. Headers and values from `firstValueColumn` on are aligned right.
void setUp(QTableWidget* table, const Column* columns, int count, int firstValueColumn);

/// New items: a centred one, and one for each column from `firstColumn` on, aligned right.
void putName(QTableWidget* table, int row, int column, const QString& text);
void putValues(QTableWidget* table, int row, int firstColumn, const QString& text);

/// True when the text is another one now. A null item is left alone.
bool setText(QTableWidgetItem* item, const QString& text);

/// Makes a column wide enough for a cell that it would show shortened.
void widen(QTableWidget* table, int row, int column);

/// @name Colours; a null item is left alone
/// @{

void setBackground(QTableWidgetItem* item, const QBrush& brush);

/// Black on green or red; an unknown one is transparent with the palette's own text colour.
void setState(QTableWidgetItem* item, BodyState state);
/// @}

/// Position in mm and orientation in degrees into six columns.
void showPose(QTableWidget* table, int row, int firstColumn, const double (&loc)[3],
              const double (&rot)[9]);

} // namespace trackingcells
