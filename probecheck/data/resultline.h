#pragma once

#include <QByteArray>

class QJsonObject;

/// A result as one line of the host's log: compact JSON, its numbers no finer than they mean
/// anything. What a key's end tells of the unit decides: seconds (`_s`) to 1 ms, lengths (`_mm`,
/// arrays of them too) to 0.1 µm, all others to four decimals; whole numbers stay whole.
QByteArray resultLine(const QJsonObject& object);
