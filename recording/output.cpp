#include "recording/output.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace recording {

namespace {

namespace fs = std::filesystem;

constexpr int mostLinks = 40; // as the kernel has it

// Where a file is to stand, or which descriptor of this process a name such as /dev/stdout means.
struct Place {
    fs::path path;
    int descriptor = -1;
};

// Follows symlinks, also where nothing stands behind the last one yet.
Place placeOf(const std::string& name) {
    Place place = {name};
    std::error_code failure;
    for (int i = 0; i < mostLinks && fs::is_symlink(place.path, failure); ++i) {
        const fs::path folder = place.path.parent_path();
        if (fs::equivalent(folder, "/proc/self/fd", failure)) {
            place.descriptor = std::atoi(place.path.filename().c_str());
            return place;
        }
        place.path = folder / fs::read_symlink(place.path, failure);
    }
    return place;
}

bool isInput(const std::string& input, const struct stat& output) {
    struct stat status = {};
    const int result =
        input == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(input.c_str(), &status);
    return result == 0 && S_ISREG(status.st_mode) && status.st_dev == output.st_dev &&
           status.st_ino == output.st_ino;
}

// Who may not write a file may not put another one into its place either.
bool isWritable(const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    return file >= 0 && ::close(file) == 0;
}

} // namespace

Output::~Output() {
    if (m_isOwn && m_file >= 0) {
        ::close(m_file);
    }
}

// With errno.
bool Output::fail() {
    m_error = errno == EEXIST ? "the file exists already (see --force)" : std::strerror(errno);
    return false;
}

bool Output::open(const std::string& path, bool replace, const std::string& input,
                  std::string& error) {
    m_replace = replace;
    const Place place = path.empty() ? Place{{}, STDOUT_FILENO} : placeOf(path);
    struct stat status = {};
    const int found =
        place.descriptor >= 0 ? ::fstat(place.descriptor, &status) : ::stat(path.c_str(), &status);
    bool isGood = false;
    if (found == 0 && isInput(input, status)) {
        m_error = "this is the recording itself";
    } else if (place.descriptor >= 0) {
        m_file = place.descriptor;
        isGood = true;
    } else if (found != 0 && errno != ENOENT) {
        fail();
    } else if (found == 0 && !S_ISREG(status.st_mode)) {
        isGood = openOther(path, status.st_mode);
    } else {
        isGood = openFile(path, place.path, found == 0);
    }
    error = m_error;
    return isGood;
}

// Nothing of a pipe or terminal is replaced, but a disk is.
bool Output::openOther(const std::string& path, mode_t mode) {
    if (S_ISBLK(mode) && !m_replace) {
        errno = EEXIST;
        return fail();
    }
    m_file = ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    m_isOwn = m_file >= 0;
    return m_isOwn || fail();
}

bool Output::openFile(const std::string& path, const std::string& place, bool exists) {
    if (exists && !m_replace) {
        errno = EEXIST;
        return fail();
    }
    if ((exists && !isWritable(path)) || !m_part.create(place)) {
        return fail();
    }
    m_file = m_part.descriptor();
    return true;
}

bool Output::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t size = ::write(m_file, text.data(), text.size());
        if (size < 0 && errno != EINTR) {
            return fail();
        }
        text.remove_prefix(size > 0 ? static_cast<std::size_t>(size) : 0);
    }
    return true;
}

bool Output::close() {
    if (m_part.isOpen()) {
        return m_part.finish(m_replace) || fail();
    }
    const int file = m_file;
    m_file = -1;
    return !m_isOwn || ::close(file) == 0 || fail();
}

} // namespace recording
