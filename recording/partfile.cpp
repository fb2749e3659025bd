#include "recording/partfile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace recording {

namespace {

constexpr mode_t newFileMode = 0666; // less what the user's mask takes away
constexpr mode_t permissions = 0777;
constexpr std::size_t longestName = 200; // bytes; with its ending below every file system's bound
constexpr std::string_view ending = ".part";

constexpr std::array<int, 7> endingSignals = {SIGHUP,  SIGINT,  SIGQUIT, SIGPIPE,
                                              SIGTERM, SIGXCPU, SIGXFSZ};

std::atomic<const char*> unfinished = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free); // for the signal handler

// The signal's usual doing is in force again: it comes as soon as this returns.
void removeAndEnd(int signal) {
    const char* const name = unfinished;
    if (name) {
        ::unlink(name);
    }
    ::raise(signal);
}

void watchSignals() {
    for (const int signal : endingSignals) {
        struct sigaction before = {};
        struct sigaction action = {};
        action.sa_handler = removeAndEnd;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        // As nohup does, somebody may want one of them to be ignored.
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

/// Signals wait as long as it lives.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t held = {};
        ::sigemptyset(&held);
        for (const int signal : endingSignals) {
            ::sigaddset(&held, signal);
        }
        ::sigprocmask(SIG_BLOCK, &held, &m_before);
    }
    ~SignalsHeld() { ::sigprocmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t m_before = {};
};

// What cannot be taken over, by somebody else's file or on a disk without owners, is left.
void takePermissions(const std::string& place, int file) {
    struct stat old = {};
    if (::stat(place.c_str(), &old) != 0) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        static_cast<void>(::fchmod(file, newFileMode & ~mask) + 0);
        return;
    }
    if (::fchown(file, old.st_uid, old.st_gid) != 0) {
        static_cast<void>(::fchown(file, static_cast<uid_t>(-1), old.st_gid) + 0);
    }
    static_cast<void>(::fchmod(file, old.st_mode & permissions) + 0);
}

// An empty file holds the name for the moment: nobody else gets it.
bool moveToHeldName(const char* from, const char* to) {
    const SignalsHeld held;
    const int file = ::open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return false;
    }
    ::close(file);
    if (::rename(from, to) == 0) {
        return true;
    }
    const int error = errno;
    ::unlink(to);
    errno = error;
    return false;
}

// A new name is the folder's. In vain at worst: then a power cut may take it.
void syncFolderOf(const std::string& place) {
    const std::filesystem::path folder = std::filesystem::path(place).parent_path();
    const int file =
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file >= 0) {
        ::fsync(file);
        ::close(file);
    }
}

} // namespace

PartFile::~PartFile() {
    discard();
}

bool PartFile::create(const std::string& place) {
    const std::filesystem::path path(place);
    const std::string name = path.filename().string().substr(0, longestName);
    const SignalsHeld held;
    m_name = path.parent_path() / (name + ".XXXXXX" + std::string(ending));
    m_file = ::mkostemps(m_name.data(), static_cast<int>(ending.size()), O_CLOEXEC);
    if (m_file < 0) {
        m_name.clear();
        return false;
    }
    m_place = place;
    unfinished = m_name.c_str();
    watchSignals();
    takePermissions(place, m_file);
    return true;
}

bool PartFile::finish(bool replace, Move move) {
    bool isDone = ::fsync(m_file) == 0;
    isDone = ::close(std::exchange(m_file, -1)) == 0 && isDone;
    if (!isDone || !putInPlace(replace, move)) {
        const int error = errno;
        discard();
        errno = error;
        return false;
    }
    unfinished = nullptr;
    m_name.clear();
    syncFolderOf(m_place);
    return true;
}

bool PartFile::putInPlace(bool replace, Move move) const {
    const char* const from = m_name.c_str();
    const char* const to = m_place.c_str();
    if (replace) {
        return ::rename(from, to) == 0;
    }
    return move(from, to) == 0 ||
           ((errno == EINVAL || errno == ENOSYS) && moveToHeldName(from, to));
}

void PartFile::discard() {
    if (m_file >= 0) {
        ::close(std::exchange(m_file, -1));
    }
    if (!m_name.empty()) {
        ::unlink(m_name.c_str());
        unfinished = nullptr;
        m_name.clear();
    }
}

int PartFile::moveToFreeName(const char* from, const char* to) {
    return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

} // namespace recording
