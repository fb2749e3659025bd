#include "workbench/outlets/sending/resultspool.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace workbench {

namespace {

constexpr mode_t fileMode = 0600;
constexpr std::size_t blockSize = 64 * 1024;

int openFile(const std::string& name, int more = 0) {
    return ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | more,
                  fileMode);
}

// Its user may have put another file in its place between our opening and locking it.
bool isStillThere(const std::string& name, const struct stat& opened) {
    struct stat status {};
    return ::stat(name.c_str(), &status) == 0 && status.st_ino == opened.st_ino &&
           status.st_dev == opened.st_dev;
}

void closeFile(int& file) {
    if (file >= 0) {
        ::close(std::exchange(file, -1));
    }
}

ssize_t readAt(int file, char* buffer, std::size_t size, std::int64_t offset) {
    ssize_t count = 0;
    do {
        count = ::pread(file, buffer, size, offset);
    } while (count < 0 && errno == EINTR);
    return count;
}

bool writeAt(int file, std::string_view text, std::int64_t offset) {
    while (!text.empty()) {
        const ssize_t count = ::pwrite(file, text.data(), text.size(), offset);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        const std::size_t written = count < 0 ? 0 : static_cast<std::size_t>(count);
        text.remove_prefix(written);
        offset += static_cast<std::int64_t>(written);
    }
    return true;
}

// The entry of a new file is the folder's.
void syncFolder(const std::string& fileName) {
    const std::filesystem::path folder = std::filesystem::path(fileName).parent_path();
    int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file >= 0) {
        ::fsync(file);
        closeFile(file);
    }
}

} // namespace

ResultSpool::ResultSpool(std::string fileName, std::int64_t mostBytes, std::int64_t leastGain)
    : m_fileName(std::move(fileName))
    , m_mostBytes(mostBytes)
    , m_leastGain(leastGain)
    , m_nextGain(leastGain) {}

ResultSpool::~ResultSpool() {
    closeFile(m_file);
    closeFile(m_takenFile);
}

ResultSpool::Opened ResultSpool::open() {
    if (isOpen()) {
        return Opened::Yes;
    }
    std::error_code ignored; // what is wrong shows at the file
    const std::filesystem::path folder = std::filesystem::path(m_fileName).parent_path();
    std::filesystem::create_directories(folder, ignored);
    m_file = openFile(m_fileName);
    struct stat status {};
    if (m_file < 0 || ::fstat(m_file, &status) != 0) {
        closeFile(m_file);
        return Opened::No;
    }
    if (!S_ISREG(status.st_mode)) {
        closeFile(m_file);
        errno = EINVAL;
        return Opened::No;
    }
    if (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        const bool isInUse = errno == EWOULDBLOCK;
        closeFile(m_file);
        return isInUse ? Opened::InUse : Opened::No;
    }
    if (!isStillThere(m_fileName, status) || ::fstat(m_file, &status) != 0) {
        closeFile(m_file);
        return Opened::InUse;
    }
    m_takenFile = openFile(m_fileName + ".taken");
    m_size = status.st_size;
    if (m_takenFile < 0 || !cutLastLine()) {
        const int error = errno;
        closeFile(m_file);
        closeFile(m_takenFile);
        errno = error;
        return Opened::No;
    }
    syncFolder(m_fileName);
    readTaken();
    if (!countLines()) {
        const int error = errno;
        closeFile(m_file);
        closeFile(m_takenFile);
        errno = error;
        return Opened::No;
    }
    rewind();
    return Opened::Yes;
}

bool ResultSpool::cutLastLine() {
    std::int64_t end = m_size;
    std::array<char, 4096> block{};
    while (end > 0) {
        const auto size = static_cast<std::size_t>(
            std::min<std::int64_t>(end, static_cast<std::int64_t>(block.size())));
        const std::int64_t begin = end - static_cast<std::int64_t>(size);
        if (readAt(m_file, block.data(), size, begin) != static_cast<ssize_t>(size)) {
            return false;
        }
        const std::string_view text(block.data(), size);
        const std::size_t last = text.rfind('\n');
        if (last != std::string_view::npos) {
            end = begin + static_cast<std::int64_t>(last) + 1;
            break;
        }
        end = begin;
    }
    if (end == m_size) {
        return true;
    }
    m_size = end;
    return ::ftruncate(m_file, m_size) == 0 && ::fsync(m_file) == 0;
}

// A number that cannot be is as good as none: lines are handed out again.
void ResultSpool::readTaken() {
    std::array<char, 32> text{};
    const ssize_t size = readAt(m_takenFile, text.data(), text.size(), 0);
    std::int64_t taken = 0;
    const auto* const end = text.data() + std::max<ssize_t>(0, size);
    const auto result = std::from_chars(text.data(), end, taken);
    char before = '\n';
    const bool isWhole = result.ec == std::errc() && result.ptr != end && *result.ptr == '\n';
    const bool isInside = isWhole && taken > 0 && taken <= m_size &&
                          readAt(m_file, &before, 1, taken - 1) == 1 && before == '\n';
    m_taken = isInside ? taken : 0;
}

void ResultSpool::writeTaken() {
    std::string text = std::to_string(m_taken);
    text += '\n';
    // In vain at worst: then lines are handed out again.
    static_cast<void>(writeAt(m_takenFile, text, 0));
    static_cast<void>(::ftruncate(m_takenFile, static_cast<off_t>(text.size())) + 0);
}

bool ResultSpool::countLines() {
    std::string block(blockSize, '\0');
    m_waiting = 0;
    for (std::int64_t at = m_taken; at < m_size;) {
        const auto size = static_cast<std::size_t>(
            std::min<std::int64_t>(m_size - at, static_cast<std::int64_t>(blockSize)));
        const ssize_t count = readAt(m_file, block.data(), size, at);
        if (count <= 0) {
            return false;
        }
        m_waiting +=
            static_cast<std::uint64_t>(std::count(block.begin(), block.begin() + count, '\n'));
        at += count;
    }
    return true;
}

bool ResultSpool::append(std::string_view text) {
    return appendLines(std::string(text) + '\n', 1);
}

bool ResultSpool::append(const std::deque<std::string>& texts) {
    std::string lines;
    for (const std::string& text : texts) {
        lines += text;
        lines += '\n';
    }
    return appendLines(lines, texts.size());
}

bool ResultSpool::appendLines(std::string_view lines, std::uint64_t count) {
    if (m_size - m_taken + static_cast<std::int64_t>(lines.size()) > m_mostBytes) {
        errno = EFBIG;
        return false;
    }
    if (!writeAt(m_file, lines, m_size) || ::fsync(m_file) != 0) {
        const int error = errno;
        static_cast<void>(::ftruncate(m_file, m_size) + 0);
        errno = error;
        return false;
    }
    m_size += static_cast<std::int64_t>(lines.size());
    m_waiting += count;
    return true;
}

std::optional<ResultSpool::Line> ResultSpool::next() {
    std::size_t end = 0;
    while ((end = m_buffer.find('\n')) == std::string::npos) {
        const std::int64_t at = m_read + static_cast<std::int64_t>(m_buffer.size());
        if (at >= m_size) {
            return std::nullopt;
        }
        const std::size_t before = m_buffer.size();
        const auto size = static_cast<std::size_t>(
            std::min<std::int64_t>(m_size - at, static_cast<std::int64_t>(blockSize)));
        m_buffer.resize(before + size);
        const ssize_t count = readAt(m_file, m_buffer.data() + before, size, at);
        m_buffer.resize(before + static_cast<std::size_t>(std::max<ssize_t>(0, count)));
        if (count <= 0) {
            return std::nullopt; // the disk fails; it is tried again
        }
    }
    Line line{++m_lastNumber, m_buffer.substr(0, end)};
    m_buffer.erase(0, end + 1);
    m_read += static_cast<std::int64_t>(end) + 1;
    m_open.push_back({line.number, m_read, false});
    return line;
}

void ResultSpool::confirm(std::uint64_t number) {
    const auto found = std::find_if(m_open.begin(), m_open.end(), [number](const Open& open) {
        return open.number == number && !open.isConfirmed;
    });
    if (found == m_open.end()) {
        return;
    }
    found->isConfirmed = true;
    const std::int64_t before = m_taken;
    while (!m_open.empty() && m_open.front().isConfirmed) {
        m_taken = m_open.front().end;
        m_open.pop_front();
        --m_waiting;
    }
    if (m_taken != before) {
        writeTaken();
        forgetTaken();
    }
}

// First the way back to the beginning is on the disk, then the lines go: a power cut in between
// hands them out again, and none that comes later is taken for confirmed.
void ResultSpool::forgetTaken() {
    const bool isAll = m_taken == m_size;
    if (!isAll && (m_taken < m_nextGain || m_taken < m_size / 2)) {
        return;
    }
    const std::int64_t taken = std::exchange(m_taken, 0);
    writeTaken();
    if (::fsync(m_takenFile) != 0 || (isAll ? ::ftruncate(m_file, 0) != 0 : !moveRest(taken))) {
        m_taken = taken;
        m_nextGain = taken + m_leastGain;
        writeTaken();
        return;
    }
    m_nextGain = m_leastGain;
    m_size -= taken;
    m_read -= taken;
    for (Open& open : m_open) {
        open.end -= taken;
    }
}

bool ResultSpool::moveRest(std::int64_t begin) {
    const std::string name = m_fileName + ".new";
    int file = openFile(name, O_TRUNC);
    if (file < 0) {
        return false;
    }
    if (::flock(file, LOCK_EX | LOCK_NB) != 0 || !copyRest(begin, file) || ::fsync(file) != 0 ||
        ::rename(name.c_str(), m_fileName.c_str()) != 0) {
        closeFile(file);
        ::unlink(name.c_str());
        return false;
    }
    syncFolder(m_fileName);
    std::swap(m_file, file);
    closeFile(file);
    return true;
}

bool ResultSpool::copyRest(std::int64_t begin, int file) const {
    std::string block(blockSize, '\0');
    for (std::int64_t at = begin; at < m_size;) {
        const auto size = static_cast<std::size_t>(
            std::min<std::int64_t>(m_size - at, static_cast<std::int64_t>(blockSize)));
        const ssize_t count = readAt(m_file, block.data(), size, at);
        if (count <= 0 ||
            !writeAt(file, std::string_view(block.data(), static_cast<std::size_t>(count)),
                     at - begin)) {
            return false;
        }
        at += count;
    }
    return true;
}

void ResultSpool::rewind() {
    m_open.clear();
    m_buffer.clear();
    m_read = m_taken;
}

} // namespace workbench
