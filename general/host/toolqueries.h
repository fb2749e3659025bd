#pragma once

#include "general/host/hostpointer.h"

#include <optional>

class BackendVersions;

/// What every plug-in asks the controller about its Measurement Tools, and the data lines that
/// carry them. Bodies are counted from 0. All functions run on the GUI thread.
namespace toolqueries {

/// The lines that carry tools and references, in the order in which they are subscribed.
inline constexpr const char* channels[] = {"6dmt", "6dmt2", "6dmtr"};

/// Whether the controller is to send tools in the old line "6dmt" instead of "6dmt2": its own
/// setting from protocol 1.13 on. `current` when it cannot tell.
bool usesOldFormat(const HostPointer& iom, const BackendVersions* versions, bool current);

/// Has the controller send the tools' and the references' lines. Failures are not told.
void activateLines(const HostPointer& iom, bool oldFormat);

/// Whether the body and its tip are calibrated; false on any doubt.
bool isToolCalibrated(const HostPointer& iom, int tool);

/// The tool's reference; empty when it has none or the query fails, -1 when the reply names no
/// body.
std::optional<int> referenceOfTool(const HostPointer& iom, int tool);

/// A compact controller whose software is too old for Measurement Tools.
bool isOldCompactSystem(const BackendVersions* versions);

} // namespace toolqueries
