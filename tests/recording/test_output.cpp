#include "tests/recording/recordingprogram.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{20};

/// What becomes of the file that the program writes.
class RecordingOutput : public RecordingProgram {
protected:
    // In the folder, but for the streams' own files.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename();
            if (name != "out" && name != "err") {
                found.push_back(name);
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    fs::perms permissionsOf(const std::string& name) const {
        return fs::status(folder + name).permissions();
    }

    void expectRefused(const std::string& line, const std::string& output) const {
        const Ended refused = shell(line + " 2>err");
        EXPECT_EQ(refused.code, 4) << line;
        EXPECT_EQ(refused.errors,
                  "kestrel-recording: " + output + ": this is the recording itself\n");
        EXPECT_EQ(contentOf(folder + "good"), good) << line;
    }
};

/// The program in the middle of a recording that comes through a pipe.
class Midway {
public:
    Midway(const std::string& folder, const std::string& beginning, const std::string& arguments,
           int ignoredSignal = 0)
        : m_folder(folder) {
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            return;
        }
        const std::string line =
            "cd '" + folder + "' && exec '" RECORDING_PROGRAM "' " + arguments + " - >out 2>err";
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(ends[0], STDIN_FILENO);
            if (ignoredSignal != 0) {
                std::signal(ignoredSignal, SIG_IGN);
            }
            ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            ::_exit(127);
        }
        ::close(ends[0]);
        m_pipe = ends[1];
        feed(beginning);
    }
    ~Midway() {
        endOfInput();
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
        }
    }
    Midway(const Midway&) = delete;
    Midway& operator=(const Midway&) = delete;

    void feed(const std::string& text) const {
        EXPECT_EQ(::write(m_pipe, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    bool hasBegun() const {
        const Clock::time_point end = Clock::now() + patience;
        while (Clock::now() < end) {
            for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
                if (entry.path().extension() == ".part") {
                    return true;
                }
            }
            std::this_thread::yield();
        }
        return false;
    }

    void send(int signal) const { ::kill(m_process, signal); }

    void endOfInput() {
        if (m_pipe >= 0) {
            ::close(m_pipe);
            m_pipe = -1;
        }
    }

    // As waitpid() has it.
    int status() {
        int result = -1;
        ::waitpid(m_process, &result, 0);
        m_process = -1;
        return result;
    }

private:
    const std::string m_folder;
    pid_t m_process = -1;
    int m_pipe = -1;
};

} // namespace

TEST_F(RecordingOutput, anExistingFileIsReplacedOnlyByForce) {
    write("old", "old");
    const Ended cut = run("cut -o old good");
    EXPECT_EQ(cut.code, 4);
    EXPECT_EQ(cut.errors, "kestrel-recording: old: the file exists already (see --force)\n");
    EXPECT_EQ(contentOf(folder + "old"), "old");
    EXPECT_EQ(run("cut --force -o old good").code, 0);
    EXPECT_EQ(contentOf(folder + "old"), good);
    EXPECT_EQ(names(), (std::vector<std::string>{"good", "old"}));
}

TEST_F(RecordingOutput, theRecordingItselfIsNoneByWhateverName) {
    fs::create_hard_link(folder + "good", folder + "hard");
    fs::create_symlink("good", folder + "soft");
    for (const char* name : {"good", "./good", "hard", "soft"}) {
        const std::string output = std::string(" --force -o ") + name;
        for (const char* command : {"cut", "csv"}) {
            expectRefused("\"$PROGRAM\" " + (command + output) + " good", name);
            expectRefused("\"$PROGRAM\" " + (command + output) + " soft", name);
            expectRefused("\"$PROGRAM\" " + (command + output) + " - <good", name);
        }
    }
    for (const char* command : {"info", "check", "csv", "cut"}) {
        expectRefused(std::string("\"$PROGRAM\" ") + command + " hard >>good", "standard output");
        expectRefused(std::string("\"$PROGRAM\" ") + command + " - <good >>hard",
                      "standard output");
    }
    expectRefused("\"$PROGRAM\" cut -o /dev/stdout good >>good", "/dev/stdout");
    // From there nothing is read.
    EXPECT_EQ(shell("touch old && \"$PROGRAM\" cut --force -o old good <old 2>err").code, 0);
    EXPECT_EQ(contentOf(folder + "old"), good);
}

TEST_F(RecordingOutput, ofWhatIsNoRecordingNothingIsMade) {
    write("empty", "");
    write("bad", "nonsense\n");
    write("fault", good.substr(0, good.find("records\n") + 8) + "hello\n");
    write("late", good + "hello\n");
    write("old", "old");
    const std::vector<std::string> before = names();
    for (const char* command : {"cut", "csv"}) {
        for (const char* input : {"empty", "bad", "fault", "--from 6 late"}) {
            for (const char* output : {" -o new ", " --force -o old ", " --force -o new "}) {
                const Ended failed = run(std::string(command) + output + input);
                EXPECT_EQ(failed.code, 1) << command << output << input;
                EXPECT_NE(failed.errors.find("; nothing was taken\n"), std::string::npos)
                    << failed.errors;
                EXPECT_EQ(names(), before) << command << output << input;
            }
        }
    }
    EXPECT_EQ(contentOf(folder + "old"), "old");
    // What was before the fault is worth a file.
    EXPECT_EQ(run("cut --force -o old late").code, 1);
    EXPECT_EQ(contentOf(folder + "old"), good);
}

TEST_F(RecordingOutput, whatCannotBeWrittenToItsEndIsGone) {
    // A build that measures its coverage writes a file of that too, which has to fit.
    std::string large = good;
    for (std::uint64_t i = 6; large.size() <= 6U << 20U; ++i) {
        large += kestrel_wire::formatRecord(i * 1000000, recordedTool);
    }
    write("large", large);
    write("old", "old");
    const std::vector<std::string> before = names();
    for (const char* output : {"new", "old"}) {
        const Ended cut =
            shell("trap '' XFSZ && ulimit -f 8192 && exec \"$PROGRAM\" cut --force -o " +
                  std::string(output) + " large >out 2>err");
        EXPECT_EQ(cut.code, 4);
        EXPECT_EQ(cut.errors, "kestrel-recording: " + std::string(output) + ": File too large\n");
        EXPECT_EQ(names(), before);
    }
    EXPECT_EQ(contentOf(folder + "old"), "old");
    shell("ulimit -f 8192 && ulimit -c 0 && \"$PROGRAM\" cut -o new large >out 2>err");
    EXPECT_EQ(names(), before);
}

TEST_F(RecordingOutput, aSignalLeavesWhatWasThere) {
    write("old", "old");
    const std::vector<std::string> before = names();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        for (const char* output : {"new", "old"}) {
            Midway program(folder, good, std::string("cut --force -o ") + output);
            ASSERT_TRUE(program.hasBegun());
            program.send(signal);
            const int status = program.status();
            EXPECT_TRUE(WIFSIGNALED(status));
            EXPECT_EQ(WTERMSIG(status), signal);
            EXPECT_EQ(names(), before);
        }
    }
    EXPECT_EQ(contentOf(folder + "old"), "old");
}

TEST_F(RecordingOutput, aSignalThatIsToBeIgnoredIsIgnored) {
    Midway program(folder, good, "cut -o new", SIGHUP);
    ASSERT_TRUE(program.hasBegun());
    program.send(SIGHUP);
    program.endOfInput();
    EXPECT_EQ(program.status(), 0) << contentOf(folder + "err");
    EXPECT_EQ(contentOf(folder + "new"), good);
}

TEST_F(RecordingOutput, aFileThatAppearsMeanwhileStays) {
    for (const bool isForced : {false, true}) {
        Midway program(folder, good, isForced ? "cut --force -o new" : "cut -o new");
        ASSERT_TRUE(program.hasBegun());
        write("new", "somebody else's");
        program.endOfInput();
        EXPECT_EQ(WEXITSTATUS(program.status()), isForced ? 0 : 4);
        EXPECT_EQ(contentOf(folder + "new"), isForced ? good : "somebody else's");
        EXPECT_EQ(contentOf(folder + "err"),
                  isForced ? ""
                           : "kestrel-recording: new: the file exists already (see --force)\n");
        EXPECT_EQ(names(), (std::vector<std::string>{"good", "new"}));
        fs::remove(folder + "new");
    }
}

TEST_F(RecordingOutput, permissionsAreTheUsersOrThoseOfTheFileThatWasThere) {
    write("old", "old");
    const auto ownerAndGroup =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(folder + "old", ownerAndGroup | fs::perms::group_write);
    EXPECT_EQ(shell("umask 077 && \"$PROGRAM\" cut --force -o old good 2>err").code, 0);
    EXPECT_EQ(permissionsOf("old"), ownerAndGroup | fs::perms::group_write);
    EXPECT_EQ(shell("umask 027 && \"$PROGRAM\" cut -o new good 2>err").code, 0);
    EXPECT_EQ(permissionsOf("new"), ownerAndGroup);
}

// What is being run may not be written.
TEST_F(RecordingOutput, aFileThatMayNotBeWrittenIsNotReplaced) {
    fs::copy_file(RECORDING_PROGRAM, folder + "program");
    const Ended busy = shell("./program cut --force -o program good >out 2>err");
    EXPECT_EQ(busy.code, 4);
    EXPECT_EQ(busy.errors, "kestrel-recording: program: Text file busy\n");
    EXPECT_EQ(names(), (std::vector<std::string>{"good", "program"}));
    const Ended nowhere = run("cut -o none/new good");
    EXPECT_EQ(nowhere.code, 4);
    EXPECT_EQ(nowhere.errors, "kestrel-recording: none/new: No such file or directory\n");
    const Ended isFolder =
        run("cut --force -o ../" + fs::path(folder).parent_path().filename().string() + " good");
    EXPECT_EQ(isFolder.code, 4);
    EXPECT_NE(isFolder.errors.find("Is a directory\n"), std::string::npos) << isFolder.errors;
}

TEST_F(RecordingOutput, aSymlinkIsFollowed) {
    fs::create_directory(folder + "there");
    fs::create_symlink("there/first", folder + "one");
    fs::create_symlink("../there/second", folder + "there/two");
    fs::create_symlink(folder + "there/two", folder + "two");
    fs::create_symlink("circle", folder + "circle");
    for (const auto& [link, target] : {std::pair("one", "there/first"), {"two", "there/second"}}) {
        EXPECT_EQ(run(std::string("cut -o ") + link + " good").code, 0);
        EXPECT_EQ(contentOf(folder + target), good);
        EXPECT_EQ(run(std::string("cut -o ") + link + " good").code, 4);
        write(target, "old");
        EXPECT_EQ(run(std::string("cut --force -o ") + link + " good").code, 0);
        EXPECT_EQ(contentOf(folder + target), good);
        EXPECT_TRUE(fs::is_symlink(folder + link));
    }
    const Ended circle = run("cut --force -o circle good");
    EXPECT_EQ(circle.code, 4);
    EXPECT_EQ(circle.errors, "kestrel-recording: circle: Too many levels of symbolic links\n");
}

TEST_F(RecordingOutput, whatIsNoFileIsWrittenAtOnce) {
    ASSERT_EQ(::mkfifo((folder + "pipe").c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_EQ(shell("timeout 60 cat pipe >out & timeout 60 \"$PROGRAM\" cut -o pipe good 2>err; "
                    "CODE=$?; wait; exit $CODE")
                  .output,
              good);
    EXPECT_TRUE(fs::is_fifo(folder + "pipe"));
    EXPECT_EQ(run("cut -o /dev/null good").code, 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    const Ended full = run("cut -o /dev/full good");
    EXPECT_EQ(full.code, 4);
    EXPECT_EQ(full.errors, "kestrel-recording: /dev/full: No space left on device\n");
    // Files, but opened by somebody else.
    EXPECT_EQ(run("cut -o /dev/stdout good").output, good);
    EXPECT_EQ(shell("echo first >out; \"$PROGRAM\" cut -o /dev/stdout good >>out 2>err").output,
              "first\n" + good);
    EXPECT_EQ(shell("\"$PROGRAM\" cut -o /dev/fd/7 good 7>out 2>err").output, good);
    EXPECT_EQ(shell("\"$PROGRAM\" cut -o /dev/stdout good 2>err | cat >out").output, good);
    EXPECT_EQ(names(), (std::vector<std::string>{"good", "pipe"}));
}

TEST_F(RecordingOutput, aNameMayBeAsLongAsTheDiskAllows) {
    const std::string name(255, 'n');
    EXPECT_EQ(run("cut -o " + name + " good").code, 0);
    EXPECT_EQ(contentOf(folder + name), good);
}
