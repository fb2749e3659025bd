#pragma once

#include <QString>

namespace workbench {

/// What is wrong with a recording, in the user's language: `reason` is what those say who read one.
/// Words in front of it that name the line are translated too, what stands behind it stays.
QString recordingReason(const QString& reason);

} // namespace workbench
