#pragma once

#include "host_api/backendversions.h"

#include <optional>
#include <string>

namespace workbench {

class ControllerSession;

/// Whether the controller has the choice between both formats of the tools' line, as its parameter
/// "measurementtool output_6dmt"; before that there was only the old one, 6dmt.
bool hasChoiceOfToolLine(const VersionInfo& protocol);

/// Whether the tools' line has the old format: without the choice, or unless `value` of that
/// parameter is "no". One that the controller refused has an empty value.
bool isOldToolLine(const VersionInfo& protocol, const std::string& value);

/// Has the controller send the line of tools, in the old format or the new one (6dmt2), and the
/// line of references. Does not wait for its answers. GUI thread; the session must be ready.
void activateToolLines(ControllerSession& session, bool oldFormat);

/// The number of the reference that `value` of "measurementtool reference_of_tool" names, 0 for
/// "none", nothing for anything else.
std::optional<int> referenceOfTool(const std::string& value);

} // namespace workbench
