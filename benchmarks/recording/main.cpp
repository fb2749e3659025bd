// How fast kestrel-recording goes through a large recording, beside "wc -l" on the same file in the
// same run, and how much memory it takes for that. Fails beyond the bounds of docs/performance.md.

#include "benchmarks/median.h"
#include "libs/kestrel_wire/recording.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int rounds = 3;
constexpr std::uint64_t megabyte = 1000000;

struct Run {
    double seconds = 0.0;
    long kilobytes = 0; // greatest resident size
    bool good = false;
};

// A frame of four tools and a reference as a controller sends it, its digits different each time.
std::vector<std::string> linesOf(std::uint64_t frame) {
    const auto number = [&](std::uint64_t salt, const char* before) {
        const std::uint64_t mixed = (frame + salt) * 2654435761U % 1000000;
        return std::string(before) + std::to_string(mixed / 1000) + "." +
               std::to_string(1000 + mixed % 1000).substr(1);
    };
    std::string tools = "6dmt2 4 4";
    for (std::uint64_t tool = 0; tool < 4; ++tool) {
        tools += " [" + std::to_string(tool) + " 1.000 4 0.750][";
        for (std::uint64_t i = 0; i < 3; ++i) {
            tools += number(17 * tool + i, i % 2 == 0 ? "-" : "") + (i < 2 ? " " : "][");
        }
        for (std::uint64_t i = 0; i < 9; ++i) {
            tools += number(31 * tool + i, "0.").erase(5, 1) + (i < 8 ? " " : "][0][");
        }
        tools += "0.0004 0.0000 0.0000 0.0004 0.0000 0.0004]";
    }
    return {"fr " + std::to_string(frame), "ts " + number(1, ""), "6dcal 2", tools,
            "6dmtr 2 1 [1 1.000][100.000 200.000 300.000][1 0 0 0 1 0 0 0 1]"};
}

bool makeRecording(const std::string& path, std::uint64_t bytes) {
    std::ofstream file(path, std::ios::binary);
    kestrel_wire::RecordingHeader header = {"3.1.0", "1.14.0", "3.1.0", "SIMULATOR", {}};
    header.start = 1795318812345;
    std::uint64_t written = 0;
    std::string text = kestrel_wire::formatRecordingHeader(header);
    for (std::uint64_t frame = 1; written < bytes; ++frame) {
        for (const std::string& line : linesOf(frame)) {
            text += kestrel_wire::formatRecord(frame * 1000, line);
        }
        if (text.size() >= megabyte) {
            file << text;
            written += text.size();
            text.clear();
        }
    }
    file << text;
    file.close();
    return file.good();
}

Run run(const std::vector<std::string>& words) {
    const auto began = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        ::dup2(nowhere, STDOUT_FILENO);
        std::vector<char*> arguments;
        for (const std::string& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        ::execvp(arguments.front(), arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    Run result;
    result.good = ::wait4(child, &status, 0, &usage) == child && status == 0;
    result.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    result.kilobytes = usage.ru_maxrss;
    return result;
}

struct Figures {
    double megabytesPerSecond = 0.0;
    double mebibytes = 0.0;
};

std::optional<Figures> measure(const char* name, const std::vector<std::string>& words,
                               std::uint64_t bytes) {
    std::vector<double> seconds;
    long kilobytes = 0;
    for (int i = 0; i < rounds; ++i) {
        const Run one = run(words);
        if (!one.good) {
            std::printf("%-8s failed\n", name);
            return std::nullopt;
        }
        seconds.push_back(one.seconds);
        kilobytes = std::max(kilobytes, one.kilobytes);
    }
    const double usual = median(seconds);
    const Figures figures{static_cast<double>(bytes) / 1e6 / usual,
                          static_cast<double>(kilobytes) / 1024.0};
    std::printf("%-8s %8.2f s %10.0f MB/s %10.1f MiB of memory\n", name, usual,
                figures.megabytesPerSecond, figures.mebibytes);
    return figures;
}

struct Bounds {
    double leastOfCheck = 150.0; // MB/s
    double mostMemory = 8.0;     // MiB, however large the recording is
};

bool isWithin(const Bounds& bounds, const std::string& command, const Figures& figures) {
    const bool isFast = command != "check" || figures.megabytesPerSecond >= bounds.leastOfCheck;
    const bool isSmall = figures.mebibytes <= bounds.mostMemory;
    if (!isFast) {
        std::printf("%s is slower than %.0f MB/s: failed\n", command.c_str(), bounds.leastOfCheck);
    }
    if (!isSmall) {
        std::printf("%s takes more than %.1f MiB of memory: failed\n", command.c_str(),
                    bounds.mostMemory);
    }
    return isFast && isSmall;
}

} // namespace

/// Arguments: the size in MB (1000), and bounds other than the usual ones, to see it fail: MB/s of
/// "check", MiB of memory. The recording is made in TMPDIR and goes at the end.
int main(int argc, char** argv) {
    const std::uint64_t size = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
    const char* const folder = std::getenv("TMPDIR");
    const std::string path = std::string(folder != nullptr ? folder : "/tmp") +
                             "/bench_recording." + std::to_string(::getpid());
    if (size == 0 || !makeRecording(path, size * megabyte)) {
        std::fprintf(stderr, "the recording of %s MB cannot be made in %s\n",
                     std::to_string(size).c_str(), path.c_str());
        std::remove(path.c_str());
        return 1;
    }
    std::ifstream file(path, std::ios::ate | std::ios::binary);
    const auto bytes = static_cast<std::uint64_t>(file.tellg());
    std::printf("%.0f MB, medians of %d runs\n", static_cast<double>(bytes) / 1e6, rounds);
    Bounds bounds;
    if (argc > 2) {
        bounds.leastOfCheck = std::strtod(argv[2], nullptr);
    }
    if (argc > 3) {
        bounds.mostMemory = std::strtod(argv[3], nullptr);
    }
    bool good = measure("wc -l", {"wc", "-l", path}, bytes).has_value();
    for (const char* command : {"check", "info", "csv", "cut"}) {
        const std::optional<Figures> figures =
            measure(command, {RECORDING_PROGRAM, command, path}, bytes);
        good = figures && isWithin(bounds, command, *figures) && good;
    }
    std::remove(path.c_str());
    return good ? 0 : 1;
}
