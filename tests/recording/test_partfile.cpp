#include "recording/partfile.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using recording::PartFile;

// As on a disk that can replace files alone.
int cannotMove(const char*, const char*) {
    errno = EINVAL;
    return -1;
}

int mayNotMove(const char*, const char*) {
    errno = EACCES;
    return -1;
}

class RecordingPartFile : public testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(folder);
        fs::create_directory(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    void begin(PartFile& file) const {
        ASSERT_TRUE(file.create(place));
        ASSERT_EQ(::write(file.descriptor(), "new", 3), 3);
    }

    std::string content() const {
        std::ifstream file(place);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    auto filesThere() const {
        return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    }

    const std::string folder = testing::TempDir() + "kestrel_partfile_" +
                               testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
    const std::string place = folder + "file";
};

TEST_F(RecordingPartFile, standsInItsPlaceWhenItIsFinished) {
    PartFile file;
    begin(file);
    EXPECT_FALSE(fs::exists(place));
    EXPECT_TRUE(file.finish(false)) << errno;
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(filesThere(), 1);
}

TEST_F(RecordingPartFile, isGoneWhenItIsNotFinished) {
    {
        PartFile file;
        begin(file);
        EXPECT_EQ(filesThere(), 1);
    }
    EXPECT_EQ(filesThere(), 0);
}

TEST_F(RecordingPartFile, replacesNothingWhereADiskCannotMoveToAFreeName) {
    PartFile first;
    begin(first);
    EXPECT_TRUE(first.finish(false, cannotMove)) << errno;
    EXPECT_EQ(content(), "new");
    std::ofstream(place) << "old";
    PartFile second;
    begin(second);
    EXPECT_FALSE(second.finish(false, cannotMove));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(filesThere(), 1);
}

TEST_F(RecordingPartFile, otherFailuresAreTold) {
    PartFile file;
    begin(file);
    EXPECT_FALSE(file.finish(false, mayNotMove));
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(filesThere(), 0);
}

TEST_F(RecordingPartFile, replacesWhenItIsTold) {
    std::ofstream(place) << "old";
    PartFile file;
    begin(file);
    EXPECT_EQ(content(), "old");
    EXPECT_TRUE(file.finish(true)) << errno;
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(filesThere(), 1);
}

} // namespace
