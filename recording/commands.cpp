#include "recording/commands.h"

#include "libs/kestrel_recording/cut.h"
#include "recording/output.h"
#include "recording/progress.h"
#include "recording/summarytext.h"

#include <cstdio>
#include <fstream>
#include <iostream>

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

// Of the walk that has made `output`.
ExitCode end(const Options& options, const Outcome& outcome, Output& output) {
    if (outcome.ending == Ending::NotWritten || !output.close()) {
        tell((options.output.empty() ? "standard output" : options.output) + ": " + output.error());
        output.discard();
        return ExitNotWritten;
    }
    if (outcome.ending == Ending::Truncated) {
        tell(options.file + ": " + faultText(outcome) + " and left out");
    }
    if (outcome.ending != Ending::Malformed) {
        return ExitOk;
    }
    tell(options.file + ": " + faultText(outcome) + "; nothing from there on was taken");
    return ExitFault;
}

ExitCode runInfo(const Options& options, std::istream& input, const Watch& watch, Output& output) {
    kestrel_recording::Summary summary;
    Outcome outcome = kestrel_recording::summarize(input, summary, watch);
    // Nothing is known of a file that is no recording at all.
    const bool hasContent = outcome.ending != Ending::Malformed || summary.frames > 0;
    if (hasContent && !output.write(summaryText(summary))) {
        outcome.ending = Ending::NotWritten;
    }
    return end(options, outcome, output);
}

ExitCode runCheck(const Options& options, std::istream& input, const Watch& watch, Output& output) {
    Outcome outcome = kestrel_recording::check(input, watch);
    if (outcome.ending != Ending::Whole) {
        tell(options.file + ": " + faultText(outcome));
        return ExitFault;
    }
    if (!output.write(options.file + ": whole\n")) {
        outcome.ending = Ending::NotWritten;
    }
    return end(options, outcome, output);
}

ExitCode runCsv(const Options& options, std::istream& input, const Watch& watch, Output& output) {
    const kestrel_recording::CsvReport report = kestrel_recording::writeCsv(
        input, options.csv, [&](std::string_view text) { return output.write(text); }, watch);
    if (report.unreadableLines > 0) {
        tell(options.file + ": data lines that could not be read and have no rows: " +
             std::to_string(report.unreadableLines));
    }
    return end(options, report.outcome, output);
}

ExitCode runCut(const Options& options, std::istream& input, const Watch& watch, Output& output) {
    const kestrel_recording::CutReport report = kestrel_recording::cut(
        input, options.csv.range, [&](std::string_view text) { return output.write(text); }, watch);
    return end(options, report.outcome, output);
}

ExitCode runOn(std::istream& input, const Options& options, Output& output) {
    Progress progress(options.file, !options.quiet);
    const Watch watch = [&](std::uint64_t bytes) {
        progress.tell(bytes);
        return true;
    };
    switch (options.command) {
    case Command::Check:
        return runCheck(options, input, watch, output);
    case Command::Csv:
        return runCsv(options, input, watch, output);
    case Command::Cut:
        return runCut(options, input, watch, output);
    case Command::Info:
        break;
    }
    return runInfo(options, input, watch, output);
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
        tell(options.output + ": " + error);
        return ExitNotWritten;
    }
    std::istream& input = isStandardInput ? std::cin : file;
    return runOn(input, options, output);
}

} // namespace recording
