#pragma once

#include "SourceFiles/rotationangles.h"

#include <QString>

class QBrush;
class QTableWidget;
class QTableWidgetItem;

/// What the two tables of the data display have in common. An item is written only when its text or
/// colour really changes, so that a refresh without news costs nothing. GUI thread only.
namespace trackingcells {

struct Column {
    const char* header; ///< translated in the display's context
    int width;          ///< pixels
};

/// Only a quality of exactly -1 is that of a body that is not tracked.
inline bool isTracked(double quality) {
    return quality != -1.0;
}

/// Headers, widths and row height. Headers and values from `firstValueColumn` on are aligned right.
void setUp(QTableWidget* table, const Column* columns, int count, int firstValueColumn);

/// New items: a centred one, and one for each column from `firstColumn` on, aligned right.
void putName(QTableWidget* table, int row, int column, const QString& text);
void putValues(QTableWidget* table, int row, int firstColumn, const QString& text);

void setText(QTableWidgetItem* item, const QString& text);

/// @name Colours; a null item is left alone
/// @{

void setBackground(QTableWidgetItem* item, const QBrush& brush);
void setTransparent(QTableWidgetItem* item);           ///< the text in the palette's own colour
void setTracked(QTableWidgetItem* item, bool tracked); ///< black on green or red
/// @}

/// Position in mm and orientation in degrees into six columns.
void showPose(QTableWidget* table, int row, int firstColumn, const double (&loc)[3],
              const double (&rot)[9]);

} // namespace trackingcells
