#include "recording/output.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace recording {

namespace {

constexpr mode_t newFileMode = 0666; // less what the user's mask takes away

bool areSame(const std::string& one, const std::string& other) {
    struct stat first {};
    struct stat second {};
    return ::stat(one.c_str(), &first) == 0 && ::stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace

Output::~Output() {
    if (m_isOwn && m_file >= 0) {
        ::close(m_file);
    }
}

bool Output::open(const std::string& path, bool replace, const std::string& input,
                  std::string& error) {
    if (path.empty()) {
        m_file = STDOUT_FILENO;
        return true;
    }
    if (areSame(path, input)) {
        error = "this is the recording itself";
        return false;
    }
    m_file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (replace ? O_TRUNC : O_EXCL),
                    newFileMode);
    if (m_file < 0) {
        error = errno == EEXIST ? "the file exists already (see --force)" : std::strerror(errno);
        return false;
    }
    m_path = path;
    m_isOwn = true;
    return true;
}

bool Output::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t size = ::write(m_file, text.data(), text.size());
        if (size < 0 && errno != EINTR) {
            m_error = std::strerror(errno);
            return false;
        }
        text.remove_prefix(size > 0 ? static_cast<std::size_t>(size) : 0);
    }
    return true;
}

bool Output::close() {
    const int file = m_file;
    m_file = -1;
    if (m_isOwn && ::close(file) != 0) {
        m_error = std::strerror(errno);
        return false;
    }
    return true;
}

void Output::discard() {
    struct stat status {};
    if (m_isOwn && ::stat(m_path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        ::unlink(m_path.c_str());
    }
}

} // namespace recording
