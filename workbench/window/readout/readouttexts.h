#pragma once

#include "workbench/window/readout/readout.h"

#include <QColor>
#include <QString>
#include <QStringList>

namespace workbench::readouttexts {

/// "M1" for the tool with the number 1.
QString toolName(int number);

/// A position or an angle with two decimals as the live display has it, whatever the locale: "nan"
/// and "inf" as they are, what is too long for anybody with an exponent.
QString figure(double value);

/// "x", or "rx" when `isAngle`, for the axes 0 to 2.
QString axisName(int axis, bool isAngle);

/// The state in a word; a replay is never called live.
QString word(const ReadoutView& view);

/// All words that there can be.
QStringList allWords();

/// The colour beside the word; black letters can be read on it.
QColor colour(const ReadoutView& view);

/// "0.3 s": tenths below ten seconds, rounded down. Empty without figures.
QString age(const ReadoutView& view);

/// "MR1 seen", "no reference" and so on; empty when it is not known.
QString reference(const ReadoutView& view);

/// "b0 ● b1 ○", named as in the live display; empty without any.
QString buttons(const ReadoutView& view);

/// All of it in words, for assistive tools.
QString sentence(const ReadoutView& view, bool withAngles);

/// A line with tabs in between for a table: tool, state, x, y, z in mm, and rx, ry, rz in degrees
/// when they are shown. Locale-free.
QString forClipboard(const ReadoutView& view, bool withAngles);

} // namespace workbench::readouttexts
