#pragma once

#include "libs/kestrel_wire/recording.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>

inline constexpr const char* recordedTool =
    "6dmt2 1 1 [0 1.000 4 0.750][1 2 3][1 0 0 0 1 0 0 0 1][0][0 0 0 0 0 0]";

inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The program as its users start it.
class RecordingProgram : public testing::Test {
protected:
    struct Ended {
        int code = -1;
        std::string output;
        std::string errors;
    };

    void SetUp() override {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        folder = testing::TempDir() + "kestrel_recording_" + test->name() + "/";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory(folder);
        kestrel_wire::RecordingHeader header = {"3.1.0", "1.14.0", "3.1.0", "MODEL\x1b[2J", {}};
        header.start = 1795318812345;
        good = kestrel_wire::formatRecordingHeader(header);
        for (std::uint64_t i = 1; i <= 5; ++i) {
            good += kestrel_wire::formatRecord(i * 1000000, "fr " + std::to_string(i));
            good += kestrel_wire::formatRecord(i * 1000000, recordedTool);
        }
        write("good", good);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void write(const std::string& name, const std::string& content) const {
        std::ofstream(folder + name, std::ios::binary) << content;
    }

    // `line` as in a shell, in the test's folder; PROGRAM is the program.
    Ended shell(const std::string& line) const {
        const std::string whole =
            "cd '" + folder + "' || exit; PROGRAM='" RECORDING_PROGRAM "'; " + line;
        const int status = std::system(whole.c_str());
        Ended result;
        result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        result.output = contentOf(folder + "out");
        result.errors = contentOf(folder + "err");
        return result;
    }

    Ended run(const std::string& arguments) const {
        return shell("timeout 60 \"$PROGRAM\" " + arguments + " >out 2>err </dev/null");
    }

    std::string folder;
    std::string good;
};
