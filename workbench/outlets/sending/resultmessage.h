#pragma once

#include "libs/kestrel_wire/utctime.h"

#include <QString>

#include <string>
#include <string_view>

namespace workbench {

/// A line of category "result" that a module has written to the log.
struct ModuleResult {
    QString source; ///< the module
    QString text;   ///< a JSON object, unless the module is at fault
    kestrel_wire::UtcMilliseconds time = 0;
};

/// Whether a line of this category is a result.
bool isResultCategory(std::string_view category);

/// A text that no other result has, anywhere. A module that is not certain whether a result has
/// been taken, because it was killed, may write it again: an object that tells its "time" has the
/// same id each time the same module writes the same text at the same station.
std::string resultId(const ModuleResult& result, const QString& station);

/// The result for other programs: a JSON object on one line, in ASCII or UTF-8, without a line end:
/// "id", "station", "source", "utc", and "result", the module's object with the same keys and
/// values. What is no JSON object stands as "text" instead.
std::string resultMessage(const ModuleResult& result, const std::string& id,
                          const QString& station);

} // namespace workbench
