#include "workbench/outlets/recorder.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace workbench {

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::Recorder)
};

constexpr mode_t newFileMode = 0666; // less what the user's mask takes away

QString systemError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

Recorder::~Recorder() {
    stop();
}

// A pipe or a device could block the program, so neither opening nor what follows may wait for one.
Recorder::FilePtr Recorder::openFile(const QString& fileName, QString* error) {
    const int descriptor = ::open(QFile::encodeName(fileName).constData(),
                                  O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, newFileMode);
    if (descriptor < 0) {
        // What a pipe without a reader is opened to.
        *error = errno == ENXIO ? Texts::tr("this is no regular file") : systemError();
        return nullptr;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && !S_ISREG(status.st_mode)) {
        *error = Texts::tr("this is no regular file");
    } else if (::ftruncate(descriptor, 0) != 0) {
        *error = systemError();
    } else if (std::FILE* const file = ::fdopen(descriptor, "wb")) {
        return FilePtr(file);
    } else {
        *error = systemError();
    }
    ::close(descriptor);
    return nullptr;
}

bool Recorder::start(const QString& fileName, const kestrel_wire::RecordingHeader& header,
                     QString* error) {
    FilePtr file = openFile(fileName, error);
    if (file == nullptr) {
        return false;
    }
    // Frames are collected in a string of their own; a second buffer would only keep them back.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const std::string text = kestrel_wire::formatRecordingHeader(header);
    if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size()) {
        *error = systemError();
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_file = std::move(file);
    m_began = Clock::now();
    m_lastTime = 0;
    const std::lock_guard<std::mutex> statusLock(m_statusMutex);
    m_status = Status();
    m_status.running = true;
    m_status.fileName = fileName;
    return true;
}

void Recorder::stop() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_file.reset();
    const std::lock_guard<std::mutex> statusLock(m_statusMutex);
    m_status.running = false;
}

void Recorder::frame(const std::vector<std::string_view>& lines) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_file == nullptr || lines.empty()) {
        return;
    }
    using std::chrono::duration_cast;
    using std::chrono::microseconds;
    const auto now = duration_cast<microseconds>(Clock::now() - m_began).count();
    // A time of its own for each datagram tells a reader where one ends and the next begins.
    m_lastTime = std::max(static_cast<std::uint64_t>(now), m_lastTime + 1);
    std::string text;
    for (const std::string_view line : lines) {
        text += kestrel_wire::formatRecord(m_lastTime, line);
    }
    if (write(text)) {
        const std::lock_guard<std::mutex> statusLock(m_statusMutex);
        ++m_status.frames;
    }
}

bool Recorder::write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), m_file.get()) == text.size()) {
        return true;
    }
    const QString error = systemError();
    m_file.reset();
    const std::lock_guard<std::mutex> statusLock(m_statusMutex);
    m_status.error = error;
    m_status.running = false;
    return false;
}

Recorder::Status Recorder::status() const {
    const std::lock_guard<std::mutex> lock(m_statusMutex);
    return m_status;
}

} // namespace workbench
