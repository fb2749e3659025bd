#include "tests/recording/recordingprogram.h"

#include <algorithm>
#include <sys/stat.h>

TEST_F(RecordingProgram, tellsWhatIsInARecording) {
    const Ended info = run("info good");
    EXPECT_EQ(info.code, 0) << info.errors;
    EXPECT_EQ(info.output, "format:        2\n"
                           "model:         MODEL\\x1b[2J\n"
                           "protocol:      1.14.0\n"
                           "system:        3.1.0\n"
                           "system_ct:     3.1.0\n"
                           "start:         2026-11-22T03:40:12.345Z\n"
                           "end:           2026-11-22T03:40:17.345Z\n"
                           "duration:      4.000000 s\n"
                           "frames:        5 (1.0 per second)\n"
                           "lost frames:   0\n"
                           "longest gap:   1.000000 s after 1.000000 s\n"
                           "channel:       fr, 5 lines\n"
                           "channel:       6dmt2, 5 lines\n"
                           "tool M1:       tracked in 5 of 5 frames (100.0 %)\n"
                           "unreadable:    0 lines\n");
    EXPECT_EQ(info.errors, "");
}

TEST_F(RecordingProgram, versionOneIsReadToo) {
    write("old", "kestrel-recording 1\nversion model m\nrecords\n5 fr fr 1\n");
    const Ended info = run("info old");
    EXPECT_EQ(info.code, 0) << info.errors;
    EXPECT_NE(info.output.find("format:        1\n"), std::string::npos);
    EXPECT_NE(info.output.find("start:         unknown\n"), std::string::npos);
    EXPECT_EQ(run("check old").code, 0);
    EXPECT_EQ(run("cut old").output,
              contentOf(folder + "old")
                  .replace(20, 0, "version system \nversion protocol \nversion system_ct \n"));
}

TEST_F(RecordingProgram, checksWhetherARecordingIsWhole) {
    Ended check = run("check good");
    EXPECT_EQ(check.code, 0);
    EXPECT_EQ(check.output, "good: whole\n");
    write("cut", good.substr(0, good.size() - 1));
    check = run("check cut");
    EXPECT_EQ(check.code, 1);
    EXPECT_EQ(check.errors, "kestrel-recording: cut: line 17: the last line is cut\n");
    write("bad", good + "1 fr fr 9\n");
    check = run("check bad");
    EXPECT_EQ(check.code, 1);
    EXPECT_EQ(check.errors, "kestrel-recording: bad: line 18: the time stamp goes backwards\n");
    EXPECT_EQ(check.output, "");
}

TEST_F(RecordingProgram, exportsATableWithoutTheLocale) {
    const Ended csv = run("csv --from 2 --to 3 good");
    EXPECT_EQ(csv.code, 0) << csv.errors;
    EXPECT_EQ(std::count(csv.output.begin(), csv.output.end(), '\n'), 3);
    EXPECT_NE(csv.output.find("\n3.000000,2026-11-22T03:40:15.345Z,3,M1,1,1,2,3,"),
              std::string::npos);
    EXPECT_EQ(csv.errors, ""); // no progress where there is no terminal
    EXPECT_EQ(shell("LC_ALL=de_DE.UTF-8 \"$PROGRAM\" csv --from 2 --to 3 good >out 2>err").output,
              csv.output);
}

TEST_F(RecordingProgram, saysWhenATableHasNoRows) {
    const std::string reason = "kestrel-recording: good: no rows: nothing in it is of the chosen "
                               "times, tools and channels\n";
    for (const char* choice : {"--tool 9", "--channel 6d"}) {
        const Ended csv = run(std::string("csv ") + choice + " good");
        EXPECT_EQ(csv.code, 0) << choice;
        EXPECT_EQ(csv.errors, reason) << choice;
        EXPECT_EQ(std::count(csv.output.begin(), csv.output.end(), '\n'), 1) << choice;
    }
}

TEST_F(RecordingProgram, saysWhenNoFrameIsInTheRange) {
    const struct {
        const char* range;
        const char* text;
    } rows[] = {{"--from 1000", "no frame from 1000.000000 s on"},
                {"--to 0.5", "no frame up to 0.500000 s"},
                {"--from 2.25 --to 2.75", "no frame from 2.250000 s to 2.750000 s"}};
    const std::string head = good.substr(0, good.find("records\n") + 8);
    for (const auto& row : rows) {
        for (const std::string& command : {std::string("cut "), std::string("csv ")}) {
            const Ended ended = run(command + row.range + " -o " + command + "good");
            EXPECT_EQ(ended.code, 0) << command << row.range;
            EXPECT_EQ(ended.errors, "kestrel-recording: good: " + std::string(row.text) +
                                        ": its frames are from 1.000000 s to 5.000000 s\n");
            std::filesystem::remove(folder + "csv");
        }
        EXPECT_EQ(contentOf(folder + "cut"), head);
        std::filesystem::remove(folder + "cut");
    }
    write("bare", head + "1000000 fr");
    EXPECT_EQ(run("cut bare").errors,
              "kestrel-recording: bare: there is no frame in it\n"
              "kestrel-recording: bare: line 8: the last line is cut and left out\n");
}

TEST_F(RecordingProgram, readsStandardInput) {
    const Ended check = shell("cat good | \"$PROGRAM\" check - >out 2>err");
    EXPECT_EQ(check.code, 0) << check.errors;
    EXPECT_EQ(check.output, "-: whole\n");
}

TEST_F(RecordingProgram, cutsATimeRange) {
    const Ended cut = run("cut --from 2 --to 3 -o part good");
    EXPECT_EQ(cut.code, 0) << cut.errors;
    const std::string part = contentOf(folder + "part");
    EXPECT_EQ(part.substr(part.find("records\n")),
              "records\n2000000 fr fr 2\n2000000 6dmt2 " + std::string(recordedTool) +
                  "\n3000000 fr fr 3\n3000000 6dmt2 " + recordedTool + "\n");
    EXPECT_EQ(run("check part").code, 0);
}

TEST_F(RecordingProgram, tellsWhatIsMissingOfARecordingAtFault) {
    write("bad", good + "hello\n6000000 fr fr 6\n");
    const Ended csv = run("csv bad");
    EXPECT_EQ(csv.code, 1);
    EXPECT_EQ(std::count(csv.output.begin(), csv.output.end(), '\n'), 6);
    EXPECT_EQ(csv.errors, "kestrel-recording: bad: line 18: unreadable time stamp; nothing from "
                          "there on was taken\n");
    write("cut", good + "6000000 fr");
    const Ended cut = run("csv cut");
    EXPECT_EQ(cut.code, 0);
    EXPECT_EQ(cut.errors, "kestrel-recording: cut: line 18: the last line is cut and left out\n");
}

TEST_F(RecordingProgram, tellsOfADiskThatIsFull) {
    for (const char* command : {"info", "check", "csv", "cut"}) {
        const Ended full = shell("\"$PROGRAM\" " + std::string(command) + " good >/dev/full 2>err");
        EXPECT_EQ(full.code, 4) << command;
        EXPECT_EQ(full.errors, "kestrel-recording: standard output: No space left on device\n");
    }
}

TEST_F(RecordingProgram, whatIsNoRecordingEndsWithASentence) {
    ASSERT_EQ(::mkfifo((folder + "pipe").c_str(), S_IRUSR | S_IWUSR), 0);
    std::filesystem::create_directory(folder + "folder");
    std::string garbage;
    for (unsigned i = 0; i < 100000; ++i) {
        garbage += static_cast<char>(i * 2654435761U >> 13U);
    }
    write("garbage", garbage);
    write("endless", std::string(3000000, 'x'));
    write("endless record", good + "6000000 fr fr " + std::string(3000000, 'x'));
    write("zeros", std::string(3000000, '\0'));
    write("empty", "");
    write("header alone", good.substr(0, 40));
    write("number", good + "99999999999999999999 fr fr 1\n");
    write("not utf8", good + "6000000 \xff\xfe \xff\xfe\n");
    const struct {
        const char* file;
        int code;
    } rows[] = {{"pipe", 3},           {"folder", 3},           {"nothing", 3}, {"/dev/zero", 3},
                {"garbage", 1},        {"endless", 1},          {"zeros", 1},   {"empty", 1},
                {"'header alone'", 1}, {"'endless record'", 1}, {"number", 1},  {"'not utf8'", 0}};
    for (const auto& row : rows) {
        for (const char* command : {"info ", "check ", "csv ", "cut "}) {
            const Ended one = run(command + std::string(row.file));
            EXPECT_EQ(one.code, row.code) << command << row.file << one.errors;
            EXPECT_EQ(one.errors.empty(), row.code == 0) << command << row.file;
        }
    }
}

TEST_F(RecordingProgram, aBadOptionEndsWith2) {
    const Ended bad = run("what good");
    EXPECT_EQ(bad.code, 2);
    EXPECT_EQ(bad.errors, "kestrel-recording: unknown command 'what' (see --help)\n");
    const Ended help = run("--help");
    EXPECT_EQ(help.code, 0);
    EXPECT_EQ(help.output.substr(0, 6), "Usage:");
}
