#pragma once

#include "general/host/hostlink.h"

#include <QString>

/// How texts of the controller are taken apart. Locale-free; what cannot be read changes nothing.
namespace replyreading {

/// The reply as text; empty when the query failed, whatever it has left in the buffer.
QString textOf(int result, const hostlink::Reply& reply);

/// The 0-based `index`-th word; words are separated by single blanks and may be empty.
QString wordOf(const QString& reply, int index);

/// Truncated. What is no number gives 0; numbers out of range end at its limits.
int toInt(double value);

/// As scanf's "%lf" in the "C" locale.
void readDouble(const QString& text, double& value);

/// As scanf's "%d %lf" in the "C" locale.
void readStepProgress(const QString& text, int& step, double& fraction);

} // namespace replyreading
