#pragma once

#include <QString>

namespace workbench {

/// A ChannelResult in words, for a user; a number that is none counts as unknown.
QString resultWords(int result);

} // namespace workbench
