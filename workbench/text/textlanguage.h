#pragma once

#include <QString>

namespace workbench {

/// The code of the language that texts are shown in, such as "de"; "en" without a catalogue.
QString textLanguage();

} // namespace workbench
