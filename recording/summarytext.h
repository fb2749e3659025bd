#pragma once

#include "libs/kestrel_recording/summary.h"

#include <string>

namespace recording {

/// What "info" prints of a recording: one "name: value" a line, the same in every locale. Control
/// characters of the recording are escaped.
std::string summaryText(const kestrel_recording::Summary& summary);

/// What is said when no frame is in the range that was `asked` for. `recorded`: that of all frames,
/// if there are any.
std::string noFrameText(const kestrel_recording::TimeRange& asked,
                        const std::optional<kestrel_recording::TimeRange>& recorded);

} // namespace recording
