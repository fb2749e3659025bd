#include "libs/kestrel_recording/csv.h"
#include "libs/kestrel_recording/cut.h"
#include "libs/kestrel_recording/summary.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

using namespace kestrel_recording;
using Ending = Outcome::Ending;

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string cutOf(const std::string& bytes, const TimeRange& range, Outcome& outcome) {
    std::istringstream stream(bytes);
    std::string text;
    outcome = cut(stream, range,
                  [&](std::string_view piece) {
                      text += piece;
                      return true;
                  },
                  {})
                  .outcome;
    return text;
}

std::size_t columns(std::string_view line) {
    return static_cast<std::size_t>(std::count(line.begin(), line.end(), ','));
}

} // namespace

/// The bytes are a recording. All walks agree on where its fault is; what is cut is whole, and
/// cutting it again changes nothing; a table has as many rows as it says, all of the same width.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::istringstream checked(bytes);
    const Outcome outcome = check(checked, {});
    std::istringstream summarized(bytes);
    Summary summary;
    const Outcome other = summarize(summarized, summary, {});
    require(other.ending == outcome.ending && other.line == outcome.line);

    Outcome cutOutcome;
    const std::string whole = cutOf(bytes, {}, cutOutcome);
    require(cutOutcome.ending == outcome.ending && cutOutcome.line == outcome.line);
    if (!whole.empty()) {
        require(cutOf(whole, {}, cutOutcome) == whole && cutOutcome.ending == Ending::Whole);
        cutOf(whole, {summary.first + 1, summary.last}, cutOutcome);
        require(cutOutcome.ending == Ending::Whole);
    }

    std::istringstream stream(bytes);
    std::string table;
    CsvOptions options;
    options.channels = csvChannels();
    const CsvReport report = writeCsv(stream, options,
                                      [&](std::string_view piece) {
                                          table += piece;
                                          return true;
                                      },
                                      {});
    std::istringstream lines(table);
    std::string line;
    std::uint64_t rows = 0;
    for (; std::getline(lines, line); ++rows) {
        require(columns(line) == columns(csvHeader()));
    }
    require(rows == (table.empty() ? 0 : report.rows + 1));
    return 0;
}
