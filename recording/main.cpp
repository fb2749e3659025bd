#include "recording/commands.h"

#include <cstdio>
#include <exception>
#include <iostream>

using namespace recording;

int main(int argc, char** argv) {
    try {
        std::ios::sync_with_stdio(false);
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        const ParsedOptions parsed = parseOptions(arguments, KESTREL_VERSION);
        if (parsed.action == ParsedOptions::Action::Refuse) {
            std::fprintf(stderr, "kestrel-recording: %s (see --help)\n", parsed.text.c_str());
            return ExitBadOption;
        }
        if (parsed.action == ParsedOptions::Action::ShowText) {
            std::fputs(parsed.text.c_str(), stdout);
            return ExitOk;
        }
        return run(parsed.options);
    } catch (const std::exception& failure) { // no memory
        std::fprintf(stderr, "kestrel-recording: %s\n", failure.what());
        return ExitNotWritten;
    }
}
