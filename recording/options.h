#pragma once

#include "libs/kestrel_recording/csv.h"

#include <string>
#include <string_view>
#include <vector>

/// The program kestrel-recording.
namespace recording {

/// Exit codes of kestrel-recording.
enum ExitCode {
    ExitOk = 0,
    ExitFault = 1,      ///< the recording is malformed; "check": or its last line is cut
    ExitBadOption = 2,  ///< unknown command or option, bad value
    ExitUnreadable = 3, ///< the recording cannot be opened or is no ordinary file
    ExitNotWritten = 4  ///< the output cannot be written, or must not be
};

enum class Command { Info, Check, Csv, Cut };

struct Options {
    Command command = Command::Info;
    std::string file; ///< "-": standard input
    kestrel_recording::CsvOptions csv;
    std::string output; ///< empty: standard output
    bool force = false; ///< an existing file is replaced
    bool quiet = false; ///< no progress
};

struct ParsedOptions {
    enum class Action { Run, ShowText, Refuse };
    Action action = Action::Run;
    Options options;
    std::string text; ///< what to show, or what is wrong
};

/// Reads a command line without the program's name. `version` is what --version shows.
ParsedOptions parseOptions(const std::vector<std::string>& arguments, std::string_view version);

} // namespace recording
