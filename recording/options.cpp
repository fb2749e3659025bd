#include "recording/options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

namespace recording {

namespace {

using kestrel_recording::csvChannels;

constexpr std::string_view usage =
    R"(Usage: kestrel-recording COMMAND [OPTION...] FILE

Reads recordings of kestrel-workbench. FILE is an ordinary file, or "-" for standard input.

Commands:
  info    what is in a recording: controller, versions, duration, frames, channels, tools, gaps
  check   whether it is whole, and the line of the first fault
  csv     one row per frame and tool, with units in the header and a decimal point everywhere
  cut     a time range of it as a recording

Options of csv and cut:
  --from SECONDS        Begin at this time since the recording's start.
  --to SECONDS          End at this time; a frame at that very time belongs to it.
  -o, --output FILE     Write to a file instead of standard output.
  --force               Replace the file of --output if it exists.

Options of csv, may be repeated:
  --tool N              This tool alone, counted from 1.
  --channel NAME        Rows of this channel: 6dmt, 6dmt2 (both are taken when none is named),
                        6dmtr (references) or 6d (bodies).

Other options:
  --quiet               No progress on the terminal.
  --help                Show this help.
  --version             Show the version.

Exit codes: 0 done, 1 the recording is at fault, 2 bad option, 3 the recording cannot be opened,
4 the output cannot be written.
)";

constexpr int mostTools = 65535;
constexpr double mostSeconds = 1e12;
constexpr double microsecondsPerSecond = 1e6;

struct CommandName {
    std::string_view name;
    Command command;
};
constexpr CommandName commandNames[] = {{"info", Command::Info},
                                        {"check", Command::Check},
                                        {"csv", Command::Csv},
                                        {"cut", Command::Cut}};

bool readSeconds(std::string_view text, std::uint64_t& microseconds) {
    double seconds = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, seconds);
    if (failure != std::errc() || stop != end || !(seconds >= 0.0 && seconds <= mostSeconds)) {
        return false;
    }
    microseconds = static_cast<std::uint64_t>(std::llround(seconds * microsecondsPerSecond));
    return true;
}

bool readTool(std::string_view text, std::vector<int>& tools) {
    int tool = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, tool);
    tools.push_back(tool);
    return failure == std::errc() && stop == end && tool >= 1 && tool <= mostTools;
}

bool readChannel(const std::string& text, std::vector<std::string>& channels) {
    channels.push_back(text);
    return std::find(csvChannels().begin(), csvChannels().end(), text) != csvChannels().end();
}

class Parser {
public:
    Parser(const std::vector<std::string>& arguments, std::string_view version)
        : m_arguments(arguments)
        , m_version(version) {}

    ParsedOptions parse() {
        for (; m_next < m_arguments.size() && isRunning(); ++m_next) {
            const std::string& argument = m_arguments[m_next];
            if (!m_onlyWords && argument == "--") {
                m_onlyWords = true;
            } else if (!m_onlyWords && argument.size() > 1 && argument.front() == '-') {
                takeOption(argument);
            } else {
                takeWord(argument);
            }
        }
        if (isRunning() && m_words < 2) {
            refuse(m_words == 0 ? "a command is missing" : "the recording's file is missing");
        }
        if (isRunning()) {
            checkTogether();
        }
        return m_parsed;
    }

private:
    bool isRunning() const { return m_parsed.action == ParsedOptions::Action::Run; }

    void refuse(const std::string& text) {
        m_parsed.action = ParsedOptions::Action::Refuse;
        m_parsed.text = text;
    }

    void show(const std::string& text) {
        m_parsed.action = ParsedOptions::Action::ShowText;
        m_parsed.text = text;
    }

    void takeWord(const std::string& word) {
        if (m_words == 0) {
            const auto* const known =
                std::find_if(std::begin(commandNames), std::end(commandNames),
                             [&](const CommandName& one) { return one.name == word; });
            if (known == std::end(commandNames)) {
                refuse("unknown command '" + word + "'");
                return;
            }
            m_parsed.options.command = known->command;
        } else if (m_words == 1 && !word.empty()) {
            m_parsed.options.file = word;
        } else {
            refuse("one recording at a time, not '" + word + "' too");
        }
        ++m_words;
    }

    void takeOption(const std::string& argument) {
        if (argument == "--help" || argument == "-h") {
            show(std::string(usage));
        } else if (argument == "--version") {
            show("kestrel-recording " + std::string(m_version) + "\n");
        } else if (argument == "--quiet") {
            m_parsed.options.quiet = true;
        } else if (argument == "--force") {
            m_parsed.options.force = true;
            m_hasOutput = true;
        } else {
            takeOptionWithValue(argument);
        }
    }

    void takeOptionWithValue(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto known = {"-o", "--output", "--tool", "--channel", "--from", "--to"};
        const bool isInline = equals != std::string::npos && name != "-o";
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            refuse("unknown option '" + argument + "'");
        } else if (isInline) {
            takeValue(name, argument.substr(equals + 1));
        } else if (++m_next == m_arguments.size()) {
            refuse(name + " needs a value");
        } else {
            takeValue(name, m_arguments[m_next]);
        }
    }

    void takeValue(const std::string& name, const std::string& value) {
        Options& options = m_parsed.options;
        bool good = true;
        std::string expected = "seconds, as in 12.5";
        if (name == "--tool") {
            good = readTool(value, options.csv.tools);
            expected = "a number from 1 to 65535";
        } else if (name == "--channel") {
            good = readChannel(value, options.csv.channels);
            expected = "6dmt, 6dmt2, 6dmtr or 6d";
        } else if (name == "--from") {
            good = readSeconds(value, options.csv.range.from);
            m_hasOutput = true;
        } else if (name == "--to") {
            good = readSeconds(value, options.csv.range.to);
            m_hasOutput = true;
        } else {
            options.output = value;
            good = !value.empty();
            expected = "a file";
            m_hasOutput = true;
        }
        if (!good) {
            refuse("bad value '" + value + "' of " + name + ": expected " + expected);
        }
    }

    void checkTogether() {
        const Options& options = m_parsed.options;
        const bool isCsv = options.command == Command::Csv;
        if (!isCsv && (!options.csv.tools.empty() || !options.csv.channels.empty())) {
            refuse("--tool and --channel are for csv alone");
        } else if (m_hasOutput && !isCsv && options.command != Command::Cut) {
            refuse("--from, --to, --output and --force are for csv and cut alone");
        } else if (options.csv.range.from > options.csv.range.to) {
            refuse("--from is later than --to");
        }
    }

    const std::vector<std::string>& m_arguments;
    const std::string_view m_version;
    ParsedOptions m_parsed;
    std::size_t m_next = 0;
    int m_words = 0;
    bool m_onlyWords = false;
    bool m_hasOutput = false; // an option of those who write recordings or tables
};

} // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments, std::string_view version) {
    return Parser(arguments, version).parse();
}

} // namespace recording
