#pragma once

#include "recording/options.h"

namespace recording {

/// Carries out what the command line asks for. Results go to the output, all else to stderr.
ExitCode run(const Options& options);

} // namespace recording
