#include "workbench/outlets/recorder.h"

#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds longestEnd{5000};
constexpr std::chrono::milliseconds shortEnd{100}; // of one that has nothing left to write

} // namespace

Recorder::Recorder(RecordingWriter::Opener opener, std::size_t maxQueuedBytes,
                   RecordingWriter::WallClock wallClock)
    : m_opener(std::move(opener))
    , m_maxQueuedBytes(maxQueuedBytes)
    , m_wallClock(std::move(wallClock)) {}

Recorder::~Recorder() {
    stop();
    waitForEnd();
    letGo();
}

bool Recorder::start(const QString& fileName, const kestrel_wire::RecordingHeader& header) {
    if (status().running) {
        return false;
    }
    letGo();
    auto writer = std::make_shared<RecordingWriter>(fileName, header, m_opener, m_maxQueuedBytes,
                                                    m_wallClock);
    m_thread = std::thread([writer] { writer->run(); });
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_writer = std::move(writer);
    return true;
}

void Recorder::stop() {
    if (m_writer != nullptr) {
        m_writer->finish();
    }
}

void Recorder::waitForEnd() {
    if (m_writer != nullptr) {
        m_writer->waitForEnd(longestEnd);
    }
}

// A thread that hangs in the disk is left to itself: it owns what it needs.
void Recorder::letGo() {
    if (m_writer == nullptr) {
        return;
    }
    m_writer->abandon();
    if (m_writer->waitForEnd(shortEnd)) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

void Recorder::frame(const std::vector<std::string_view>& lines) {
    std::shared_ptr<RecordingWriter> writer;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        writer = m_writer;
    }
    if (writer != nullptr) {
        writer->add(lines);
    }
}

Recorder::Status Recorder::status() const {
    return m_writer == nullptr ? Status() : m_writer->status();
}

} // namespace workbench
