#include "workbench/recorder.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace workbench {

Recorder::~Recorder() {
    stop();
}

bool Recorder::start(const QString& fileName, const kestrel_wire::RecordingHeader& header,
                     QString* error) {
    std::unique_ptr<std::FILE, FileCloser> file(
        std::fopen(QFile::encodeName(fileName).constData(), "wbe"));
    if (file == nullptr) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    // Frames are collected in a string of their own; a second buffer would only keep them back.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const std::string text = kestrel_wire::formatRecordingHeader(header);
    if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size()) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_file = std::move(file);
    m_status = Status();
    m_status.running = true;
    m_status.fileName = fileName;
    m_began = Clock::now();
    m_lastTime = 0;
    return true;
}

void Recorder::stop() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_file.reset();
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
        ++m_status.frames;
    }
}

bool Recorder::write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), m_file.get()) == text.size()) {
        return true;
    }
    m_status.error = QString::fromLocal8Bit(std::strerror(errno));
    m_status.running = false;
    m_file.reset();
    return false;
}

Recorder::Status Recorder::status() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_status;
}

} // namespace workbench
