#pragma once

class QPixmap;
class QWidget;

/// Pixel numbers of forms and code are meant for a screen of 96 dpi. On a finer one, where the same
/// letters have more pixels, they become as many more; never fewer. GUI thread.

/// A number of pixels at 96 dpi on the screen of a widget.
int scaledToDpi(int pixels, const QWidget& widget);

/// A picture that was drawn for 96 dpi.
QPixmap scaledToDpi(const QPixmap& picture, const QWidget& widget);

/// Size, least and greatest sizes that a form has given to a window and to its named widgets. To be
/// called once, right after setupUi().
void scaleFormToDpi(QWidget& window);

/// The height of a table's rows: so many pixels at 96 dpi, more when a line needs it.
int rowHeightFor(int pixels, const QWidget& table);
