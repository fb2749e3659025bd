#pragma once

#include "probecheck/tipcheck/tipcheck.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// What a tip check says to people and to other programs.
namespace tipchecktexts {

/// What to do about the missing tilts; empty when none are missing.
QString missingTilts(TiltRose::Missing missing);

/// What to do, and what there is so far, while a check runs.
QString runningWords(const TipCheck& check);

/// The verdict in one or two sentences.
QString resultWords(const TipCheck::Result& result);

/// Everything else that there is to know of a result, as rich text.
QString resultTable(const TipCheck::Result& result);

/// What would decide an undecided result.
QString whatWouldDecide(const TipCheck::Result& result);

/// A result as one JSON object, for the host's log. Values that mean nothing are left out.
QByteArray toJson(const TipCheck::Result& result, const QDateTime& time);

} // namespace tipchecktexts
