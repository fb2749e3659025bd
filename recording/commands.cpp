#include "recording/commands.h"

#include "libs/kestrel_recording/cut.h"
#include "recording/output.h"
#include "recording/progress.h"
#include "recording/summarytext.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <unistd.h>

namespace recording {

namespace {

using kestrel_recording::Outcome;
using kestrel_recording::Watch;
using Ending = kestrel_recording::Outcome::Ending;

void tell(const std::string& text) {
    std::fprintf(stderr, "kestrel-recording: %s\n", text.c_str());
}

std::string faultText(const Outcome& outcome) {
    const std::string reason =
        outcome.ending == Ending::Truncated ? "the last line is cut" : outcome.reason;
    return "line " + std::to_string(outcome.line) + ": " + reason;
}

// But for a last line that is cut.
bool isReadable(const Outcome& outcome) {
    return outcome.ending == Ending::Whole || outcome.ending == Ending::Truncated;
}

Watch toldTo(Progress& progress) {
    return [&progress](std::uint64_t bytes) {
        progress.tell(bytes);
        return true;
    };
}

// What is made then is well-formed, but hardly what was meant.
template <typename Report>
void tellOfNoFrame(const Options& options, const Report& report) {
    if (report.frames == 0 && isReadable(report.outcome)) {
        tell(options.file + ": " + noFrameText(options.csv.range, report.recorded));
    }
}

std::string nameOfOutput(const Options& options) {
    return options.output.empty() ? "standard output" : options.output;
}

// Of the walk that has made `output`. No file is made of a recording at fault of which nothing was
// taken: one that is there already is worth more.
ExitCode end(const Options& options, const Outcome& outcome, bool hasContent, Output& output) {
    const bool isMade = hasContent || outcome.ending != Ending::Malformed;
    if (outcome.ending == Ending::NotWritten || (isMade && !output.close())) {
        tell(nameOfOutput(options) + ": " + output.error());
        return ExitNotWritten;
    }
    if (outcome.ending == Ending::Truncated) {
        tell(options.file + ": " + faultText(outcome) + " and left out");
    }
    if (outcome.ending != Ending::Malformed) {
        return ExitOk;
    }
    tell(options.file + ": " + faultText(outcome) +
         (hasContent ? "; nothing from there on was taken" : "; nothing was taken"));
    return ExitFault;
}

ExitCode runInfo(const Options& options, std::istream& input, Progress& progress, Output& output) {
    kestrel_recording::Summary summary;
    Outcome outcome = kestrel_recording::summarize(input, summary, toldTo(progress));
    progress.clear();
    // Nothing is known of a file that is no recording at all.
    const bool hasContent = outcome.ending != Ending::Malformed || summary.frames > 0;
    if (hasContent && !output.write(summaryText(summary))) {
        outcome.ending = Ending::NotWritten;
    }
    return end(options, outcome, hasContent, output);
}

ExitCode runCheck(const Options& options, std::istream& input, Progress& progress, Output& output) {
    Outcome outcome = kestrel_recording::check(input, toldTo(progress));
    progress.clear();
    if (outcome.ending != Ending::Whole) {
        tell(options.file + ": " + faultText(outcome));
        return ExitFault;
    }
    if (!output.write(options.file + ": whole\n")) {
        outcome.ending = Ending::NotWritten;
    }
    return end(options, outcome, true, output);
}

ExitCode runCsv(const Options& options, std::istream& input, Progress& progress, Output& output) {
    const kestrel_recording::CsvReport report = kestrel_recording::writeCsv(
        input, options.csv, [&](std::string_view text) { return output.write(text); },
        toldTo(progress));
    progress.clear();
    tellOfNoFrame(options, report);
    if (report.rows == 0 && report.frames > 0 && isReadable(report.outcome)) {
        tell(options.file + ": no rows: nothing in it is of the chosen times, tools and channels");
    }
    if (report.unreadableLines > 0) {
        tell(options.file + ": data lines that could not be read and have no rows: " +
             std::to_string(report.unreadableLines));
    }
    return end(options, report.outcome, report.rows > 0, output);
}

ExitCode runCut(const Options& options, std::istream& input, Progress& progress, Output& output) {
    const kestrel_recording::CutReport report = kestrel_recording::cut(
        input, options.csv.range, [&](std::string_view text) { return output.write(text); },
        toldTo(progress));
    progress.clear();
    tellOfNoFrame(options, report);
    return end(options, report.outcome, report.frames > 0, output);
}

ExitCode runOn(std::istream& input, const Options& options, Output& output) {
    // Rows are written while the file is walked.
    const bool hasRows = options.command == Command::Csv || options.command == Command::Cut;
    const bool isAmongRows = hasRows && options.output.empty() && ::isatty(STDOUT_FILENO) == 1;
    Progress progress(options.file, !options.quiet && !isAmongRows);
    switch (options.command) {
    case Command::Check:
        return runCheck(options, input, progress, output);
    case Command::Csv:
        return runCsv(options, input, progress, output);
    case Command::Cut:
        return runCut(options, input, progress, output);
    case Command::Info:
        break;
    }
    return runInfo(options, input, progress, output);
}

} // namespace

ExitCode run(const Options& options) {
    std::ifstream file;
    std::string error;
    const bool isStandardInput = options.file == "-";
    if (!isStandardInput && !kestrel_recording::openRecording(options.file, file, error)) {
        tell(options.file + ": " + error);
        return ExitUnreadable;
    }
    Output output;
    if (!output.open(options.output, options.force, options.file, error)) {
        tell(nameOfOutput(options) + ": " + error);
        return ExitNotWritten;
    }
    std::istream& input = isStandardInput ? std::cin : file;
    return runOn(input, options, output);
}

} // namespace recording
