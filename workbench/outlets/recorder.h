#pragma once

#include "libs/kestrel_wire/recording.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// Writes data lines to a recording file. Started and stopped on the GUI thread, fed from the data
/// thread. A frame is handed to the operating system in one piece and at once: what was received
/// is in the file even when the program dies with the next instruction. status() never waits for
/// the disk.
class Recorder {
public:
    Recorder() = default;
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Begins a new file with `header`. An existing file is replaced. False, with a reason in
    /// `*error`, when it cannot be written or is no regular file; a recording that runs goes on in
    /// that case.
    bool start(const QString& fileName, const kestrel_wire::RecordingHeader& header,
               QString* error);

    /// Ends the recording; nothing happens when none runs.
    void stop();

    /// The lines of one datagram. Returns at once when no recording runs.
    void frame(const std::vector<std::string_view>& lines);

    struct Status {
        bool running = false;
        QString fileName;   ///< of the recording that runs or ran last
        quint64 frames = 0; ///< written to it
        QString error;      ///< not empty: the disk refused, and the recording ended by itself
    };
    Status status() const;

private:
    struct FileCloser {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using Clock = std::chrono::steady_clock;

    using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

    static FilePtr openFile(const QString& fileName, QString* error);
    bool write(const std::string& text);

    std::mutex m_mutex; // of the file; held while writing, may be long
    FilePtr m_file;
    Clock::time_point m_began;
    std::uint64_t m_lastTime = 0;
    mutable std::mutex m_statusMutex; // taken after m_mutex, never held while writing
    Status m_status;
};

} // namespace workbench
