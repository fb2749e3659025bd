#pragma once

#include "host_api/backendversions.h"

namespace workbench {

/// For people and recordings: "1.13.0", or "1.13" when the patch is unknown.
inline QString versionText(const VersionInfo& version) {
    return version.patchNumber() < 0
               ? QStringLiteral("%1.%2").arg(version.majorNumber()).arg(version.minorNumber())
               : version.toString();
}

} // namespace workbench
