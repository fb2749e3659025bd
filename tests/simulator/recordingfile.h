#pragma once

#include "libs/kestrel_wire/recording.h"
#include "simulator/controller/replay.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using kestrel_simulator::Replay;
using Lines = std::vector<std::string>;

/// A recording on the disk, named after the test that writes it.
class RecordingFile : public testing::Test {
protected:
    void SetUp() override {
        header.system = "2.8.0";
        header.protocol = "1.12.0";
        header.systemCt = "2.8.1";
        header.model = "RECORDED";
        header.parameters = {{"measurementtool number_of_tools", "7"},
                             {"measurementtool reference_of_tool b01", "b03"}};
    }
    void TearDown() override { std::remove(path.c_str()); }

    void write(const std::string& records) {
        std::ofstream(path, std::ios::binary)
            << kestrel_wire::formatRecordingHeader(header) << records;
    }

    std::unique_ptr<Replay> open(Replay::AtEnd atEnd = Replay::AtEnd::Loop) {
        return Replay::open(path, atEnd, error);
    }

    static std::string record(std::uint64_t time, const std::string& line) {
        return kestrel_wire::formatRecord(time, line);
    }

    std::string threeFrames() const {
        return record(1000000, "fr 1") + record(1000000, "6dmt 0") + record(1200000, "fr 2") +
               record(1300000, "fr 3") + record(1300000, "6dmtr 0 0");
    }

    const std::string path = testing::TempDir() + "kestrel_replay_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt";
    kestrel_wire::RecordingHeader header;
    std::string error;
};
