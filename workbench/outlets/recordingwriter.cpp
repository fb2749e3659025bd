#include "workbench/outlets/recordingwriter.h"

#include "workbench/outlets/quietthread.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

namespace workbench {

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::Recorder)
};

constexpr mode_t newFileMode = 0666;           // less what the user's mask takes away
constexpr std::size_t batchBytes = 256 * 1024; // of lines that become one write
constexpr std::chrono::milliseconds lookInterval{1000};
constexpr std::size_t rateSamples = 11; // the last ten seconds

QString systemError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString prepare(int file) {
    struct stat status {};
    if (::fstat(file, &status) == 0 && !S_ISREG(status.st_mode)) {
        return Texts::tr("this is no regular file");
    }
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? Texts::tr("somebody else is recording to this file")
                                    : systemError();
    }
    return ::ftruncate(file, 0) == 0 ? QString() : systemError();
}

std::string headerText(kestrel_wire::RecordingHeader header, kestrel_wire::UtcMilliseconds start) {
    header.start = start;
    return kestrel_wire::formatRecordingHeader(header);
}

// A disk that cannot tell what has the name, as one that is away for a while, proves nothing.
bool isElsewhere(const struct stat& file, const QString& fileName) {
    struct stat named {};
    if (::stat(QFile::encodeName(fileName).constData(), &named) == 0) {
        return named.st_dev != file.st_dev || named.st_ino != file.st_ino;
    }
    return errno == ENOENT || errno == ENOTDIR;
}

} // namespace

kestrel_wire::UtcMilliseconds systemWallClock() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

// A pipe or a device could block the program, so neither opening nor what follows may wait for one.
int openRecordingFile(const QString& fileName, QString* error) {
    const int file = ::open(QFile::encodeName(fileName).constData(),
                            O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, newFileMode);
    if (file < 0) {
        // What a pipe without a reader is opened to.
        *error = errno == ENXIO ? Texts::tr("this is no regular file") : systemError();
        return -1;
    }
    *error = prepare(file);
    if (!error->isEmpty()) {
        ::close(file);
        return -1;
    }
    return file;
}

RecordingWriter::RecordingWriter(const QString& fileName,
                                 const kestrel_wire::RecordingHeader& header, Opener opener,
                                 std::size_t maxQueuedBytes, WallClock wallClock)
    : m_fileName(fileName)
    , m_opener(std::move(opener))
    , m_maxQueuedBytes(maxQueuedBytes)
    , m_wallClock(std::move(wallClock))
    , m_start(m_wallClock())
    , m_header(headerText(header, m_start))
    , m_clockMarks(m_start) {
    m_status.running = true;
    m_status.fileName = fileName;
}

template <typename Call>
auto RecordingWriter::timed(Call call) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_callBegan = Clock::now();
    }
    const auto result = call();
    const int error = errno;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_callBegan = Clock::time_point::max();
    }
    errno = error;
    return result;
}

void RecordingWriter::run() {
    blockSignalsOfThread();
    Batch batch;
    if (begin()) {
        measure();
        while (takeBatch(batch) && write(batch)) {
            measure();
        }
        m_lookedAt = Clock::now() - lookInterval; // once more in any case
        endIfGone();
    }
    if (m_file >= 0 && timed([this] { return ::close(m_file); }) != 0) {
        end(systemError());
    }
    end(QString());
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_over = true;
    m_ended.notify_all();
}

bool RecordingWriter::begin() {
    QString error;
    m_file = timed([&] { return m_opener(m_fileName, &error); });
    if (m_file >= 0 && writeBytes(m_header, &error) == m_header.size()) {
        m_size = static_cast<std::int64_t>(m_header.size());
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_status.begun = true;
        return true;
    }
    end(error);
    return false;
}

// False when there is nothing more to write.
bool RecordingWriter::takeBatch(Batch& batch) {
    std::vector<Frame> frames;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_wake.wait_for(lock, lookInterval,
                        [this] { return !m_queue.empty() || m_finishing || m_abandoned; });
        if (m_abandoned || (m_queue.empty() && m_finishing)) {
            return false;
        }
        batch.queuedBytes = 0;
        while (!m_queue.empty() && batch.queuedBytes < batchBytes) {
            batch.queuedBytes += m_queue.front().bytes.size();
            frames.push_back(std::move(m_queue.front()));
            m_queue.pop_front();
        }
        m_writing = frames.size();
    }
    batch.text.clear();
    batch.ends.clear();
    for (const Frame& frame : frames) {
        if (frame.clock) {
            batch.text += kestrel_wire::formatClockMark({frame.microseconds, *frame.clock});
        }
        std::string_view rest = frame.bytes;
        for (const std::size_t size : frame.sizes) {
            batch.text += kestrel_wire::formatRecord(frame.microseconds, rest.substr(0, size));
            rest.remove_prefix(size);
        }
        batch.ends.push_back(batch.text.size());
    }
    return true;
}

// False when the recording has ended with it.
bool RecordingWriter::write(const Batch& batch) {
    QString error;
    const std::size_t written = writeBytes(batch.text, &error);
    const auto whole = std::upper_bound(batch.ends.begin(), batch.ends.end(), written);
    const auto frames = static_cast<std::size_t>(whole - batch.ends.begin());
    m_size += static_cast<std::int64_t>(frames > 0 ? batch.ends[frames - 1] : 0);
    if (written < batch.text.size()) {
        // A frame that is cut would be the last thing in the file.
        static_cast<void>(timed([this] { return ::ftruncate(m_file, m_size); }));
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_status.frames += frames;
        m_writing -= frames;
        m_queuedBytes -= batch.queuedBytes;
    }
    if (!error.isEmpty()) {
        end(error);
        return false;
    }
    return !endIfGone();
}

// Once a second: how much room the disk has, and how fast it is used up.
void RecordingWriter::measure() {
    const Clock::time_point now = Clock::now();
    if (!m_samples.empty() && now - m_samples.back().time < lookInterval) {
        return;
    }
    m_samples.push_back({now, m_size});
    if (m_samples.size() > rateSamples) {
        m_samples.pop_front();
    }
    const std::chrono::duration<double> seconds = now - m_samples.front().time;
    const auto bytes = static_cast<double>(m_size - m_samples.front().size);
    struct statvfs disk {};
    const bool known = timed([&] { return ::fstatvfs(m_file, &disk); }) == 0;
    const auto room = static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_status.freeBytes = known ? room : -1;
    m_status.bytesPerSecond = seconds.count() > 0.0 ? bytes / seconds.count() : 0.0;
}

std::size_t RecordingWriter::writeBytes(std::string_view text, QString* error) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t size =
            timed([&] { return ::write(m_file, text.data() + written, text.size() - written); });
        if (size < 0 && errno != EINTR) {
            *error = systemError();
            break;
        }
        if (isAbandoned()) {
            break;
        }
        written += static_cast<std::size_t>(std::max<ssize_t>(0, size));
    }
    return written;
}

// Without any name what was written can be read by nobody; under another one it would not be where
// the user is told that it is.
bool RecordingWriter::endIfGone() {
    struct stat status {};
    if (timed([&] { return ::fstat(m_file, &status); }) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    if (status.st_nlink > 0) {
        const Clock::time_point now = Clock::now();
        if (now - m_lookedAt < lookInterval) {
            return false;
        }
        m_lookedAt = now;
        const bool isGone = timed([&] { return isElsewhere(status, m_fileName); });
        if (isGone) {
            end(Texts::tr("the file was moved meanwhile"));
        }
        return isGone;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_status.unwritten += std::exchange(m_status.frames, 0);
    }
    end(Texts::tr("the file was removed meanwhile"));
    return true;
}

// The first reason counts.
void RecordingWriter::end(const QString& error) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_status.running) {
        m_status.running = false;
        m_status.error = error;
    }
    m_status.unwritten += m_writing + m_queue.size();
    m_writing = 0;
    m_queue.clear();
}

void RecordingWriter::add(const std::vector<std::string_view>& lines) {
    if (lines.empty()) {
        return;
    }
    Frame frame;
    frame.sizes.reserve(lines.size());
    for (const std::string_view line : lines) {
        frame.bytes += line;
        frame.sizes.push_back(line.size());
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_status.running || m_finishing) {
        return;
    }
    if (m_queuedBytes + frame.bytes.size() > m_maxQueuedBytes) {
        ++m_status.unwritten;
        return;
    }
    using std::chrono::duration_cast;
    using std::chrono::microseconds;
    const auto now = duration_cast<microseconds>(Clock::now() - m_began).count();
    // A time of its own for each datagram tells a reader where one ends and the next begins.
    m_lastTime = std::max(static_cast<std::uint64_t>(now), m_lastTime + 1);
    frame.microseconds = m_lastTime;
    const kestrel_wire::ClockMark mark = {m_lastTime, m_wallClock()};
    if (m_clockMarks.isDue(mark)) {
        frame.clock = mark.utc;
    }
    m_queuedBytes += frame.bytes.size();
    m_queue.push_back(std::move(frame));
    m_wake.notify_one();
}

void RecordingWriter::finish() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_finishing = true;
    m_wake.notify_one();
}

void RecordingWriter::abandon() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_abandoned = true;
    m_wake.notify_one();
}

bool RecordingWriter::isAbandoned() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_abandoned;
}

// With the mutex held.
bool RecordingWriter::isStalled() const {
    return m_callBegan != Clock::time_point::max() && Clock::now() - m_callBegan >= patience;
}

bool RecordingWriter::waitForEnd(std::chrono::milliseconds longest) {
    constexpr std::chrono::milliseconds look{20};
    const Clock::time_point deadline = Clock::now() + longest;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_over && !isStalled() && Clock::now() < deadline) {
        m_ended.wait_for(lock, look);
    }
    return m_over;
}

RecordingWriter::Status RecordingWriter::status() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Status status = m_status;
    status.stalled = isStalled();
    if (status.running && status.stalled && m_finishing) {
        status.running = false;
        status.unwritten += m_writing + m_queue.size();
        status.error = Texts::tr("the disk does not answer");
    }
    return status;
}

} // namespace workbench
