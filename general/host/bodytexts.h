#pragma once

#include <QString>

/// The texts that the module's dialogs share: body names, numbers and the red message. Locale-free.
namespace bodytexts {

/// "M1" for the tool with the 0-based index 0.
QString toolName(int index);

/// "MR1" for the reference body with the 0-based index 0.
QString referenceName(int index);

/// The 1-based body number in a reply such as "b03": what follows the first character, read as a
/// decimal number ("b010" is 10). 0, and false in `*ok` (may be null), when it is none or negative.
int bodyNumber(const QString& reply, bool* ok = nullptr);

/// A number in fixed notation, to the last character what C's printf("%.*f") writes in the "C"
/// locale: ties to even, "-0.00", "nan", "inf".
QString fixed(double value, int decimals);

/// A tool tip that tells a text of the controller as it is: nothing in it is taken for HTML.
QString toolTip(const QString& text);

/// Bold red rich text; `text` is a translated text of the module, never one of the controller.
QString redMessage(const QString& text);

} // namespace bodytexts
