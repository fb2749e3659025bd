#include "KestrelParser.h"
#include "benchmarks/sdk/plainreaders.h"
#include "benchmarks/sdk/ratios.h"
#include "benchmarks/sdk/samplelines.h"

#include <benchmark/benchmark.h>
#include <clocale>
#include <cstring>

namespace {

enum class Locale { plain, comma };

/// The whole way of a line through the parser.
void parse(benchmark::State& state, SampleLines lines, Locale locale) {
    if (std::setlocale(LC_ALL, locale == Locale::comma ? "de_DE.UTF-8" : "C") == nullptr) {
        state.SkipWithError("the locale is missing");
        return;
    }
    KestrelParser parser;
    for ([[maybe_unused]] auto round : state) {
        char* line = lines.next();
        const bool read = parser.parseLine(&line);
        if (!read) {
            state.SkipWithError("the parser rejects a line");
            break;
        }
        benchmark::ClobberMemory();
    }
    std::setlocale(LC_ALL, "C");
}

void parserTools(benchmark::State& state) {
    parse(state, SampleLines::tools2(static_cast<int>(state.range(0))), Locale::plain);
}
void parserToolsComma(benchmark::State& state) {
    parse(state, SampleLines::tools2(static_cast<int>(state.range(0))), Locale::comma);
}
void parserBodies(benchmark::State& state) {
    parse(state, SampleLines::bodies(static_cast<int>(state.range(0))), Locale::plain);
}

bool sameTool(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& a,
              const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& b) {
    return a.id == b.id && a.quality == b.quality && a.num_button == b.num_button &&
           a.tipradius == b.tipradius && std::memcmp(a.button, b.button, sizeof a.button) == 0 &&
           std::memcmp(a.loc, b.loc, sizeof a.loc) == 0 &&
           std::memcmp(a.rot, b.rot, sizeof a.rot) == 0 &&
           std::memcmp(a.cov, b.cov, sizeof a.cov) == 0;
}

bool sameBody(const KestrelSDK_Datatypes::Kestrel_Body_Type_d& a,
              const KestrelSDK_Datatypes::Kestrel_Body_Type_d& b) {
    return a.quality == b.quality && std::memcmp(a.loc, b.loc, sizeof a.loc) == 0 &&
           std::memcmp(a.rot, b.rot, sizeof a.rot) == 0;
}

template <class Table>
using Getter = const typename Table::value_type* (KestrelParser::*)(int) const;

/// A yardstick counts only if it reads what the parser reads.
template <class Table, class Read, class Same>
bool agrees(SampleLines lines, std::size_t prefix, Table& table, Read read, Getter<Table> get,
            Same same) {
    KestrelParser parser;
    for (std::size_t n = 0; n < lines.count(); ++n) {
        char* line = lines.next();
        char* position = line;
        if (!parser.parseLine(&position) || !read(line + prefix, table)) {
            return false;
        }
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (!same(*(parser.*get)(static_cast<int>(i)), table[i])) {
                return false;
            }
        }
    }
    return true;
}

template <class Table, class Read, class Same>
void measure(benchmark::State& state, SampleLines lines, std::size_t prefix, Read read,
             Getter<Table> get, Same same) {
    Table table(static_cast<std::size_t>(state.range(0)));
    if (!agrees(lines, prefix, table, read, get, same)) {
        state.SkipWithError("the yardstick reads something else than the parser");
        return;
    }
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(read(lines.next() + prefix, table));
        benchmark::ClobberMemory();
    }
}

template <class Read>
void measureTools(benchmark::State& state, Read read) {
    measure<ToolTable>(state, SampleLines::tools2(static_cast<int>(state.range(0))),
                       std::strlen("6dmt2 "), read, &KestrelParser::getMeaTool, sameTool);
}

template <class Read>
void measureBodies(benchmark::State& state, Read read) {
    measure<BodyTable>(state, SampleLines::bodies(static_cast<int>(state.range(0))),
                       std::strlen("6d "), read, &KestrelParser::getBody, sameBody);
}

void plainTools(benchmark::State& state) {
    measureTools(state, PlainReaders::readTools2);
}
void knownTools(benchmark::State& state) {
    measureTools(state, PlainReaders::readKnownTools2);
}
void plainBodies(benchmark::State& state) {
    measureBodies(state, PlainReaders::readBodies);
}
void knownBodies(benchmark::State& state) {
    measureBodies(state, PlainReaders::readKnownBodies);
}

const Ratio ratios[] = {
    {"6dmt2, 4 tools: strtol/strtod to parser", "plainTools/4", "parserTools/4", 1, 5.0, 1e9},
    {"6dmt2, 4 tools: parser to known format", "parserTools/4", "knownTools/4", 1, 0, 2.0},
    {"6d, 100 bodies: strtol/strtod to parser", "plainBodies/100", "parserBodies/100", 1, 4.5, 1e9},
    {"6d, 100 bodies: parser to known format", "parserBodies/100", "knownBodies/100", 1, 0, 2.0},
    {"6dmt2, a tool of 20 to one of 4", "parserTools/20", "parserTools/4", 5, 0.9, 1.1},
    {"6dmt2, a tool of 100 to one of 4", "parserTools/100", "parserTools/4", 25, 0.9, 1.1},
    {"6dmt2, decimal comma to decimal dot", "parserToolsComma/4", "parserTools/4", 1, 0, 1.05},
};

} // namespace

int main(int argc, char** argv) {
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("parserTools", parserTools)->Arg(4)->Arg(20)->Arg(100);
    RegisterBenchmark("parserToolsComma", parserToolsComma)->Arg(4);
    RegisterBenchmark("plainTools", plainTools)->Arg(4);
    RegisterBenchmark("knownTools", knownTools)->Arg(4);
    RegisterBenchmark("parserBodies", parserBodies)->Arg(100);
    RegisterBenchmark("plainBodies", plainBodies)->Arg(100);
    RegisterBenchmark("knownBodies", knownBodies)->Arg(100);
    return runWithRatios(argc, argv, ratios);
}
