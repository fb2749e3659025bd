#pragma once

#include "libs/kestrel_recording/summary.h"

#include <string>

namespace recording {

/// What "info" prints of a recording: one "name: value" a line, the same in every locale. Control
/// characters of the recording are escaped.
std::string summaryText(const kestrel_recording::Summary& summary);

} // namespace recording
