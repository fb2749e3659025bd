#pragma once

#include "workbench/outlets/recordingwriter.h"

#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace workbench {

/// Writes data lines to a recording file. Started and stopped on the GUI thread, fed from the data
/// thread, and never waiting for the disk on either: a thread of its own opens and writes the file.
/// What it cannot take down for long piles up in a bounded queue; what does not fit is counted.
///
/// A frame that is counted as recorded was handed to the operating system whole: it is in the file
/// even when the program dies with the next instruction.
class Recorder {
public:
    using Status = RecordingWriter::Status;

    /// Lines that wait for a slow disk: some seconds of the fastest frames.
    static constexpr std::size_t usualQueue = 64 * 1024 * 1024;

    explicit Recorder(RecordingWriter::Opener opener = openRecordingFile,
                      std::size_t maxQueuedBytes = usualQueue,
                      RecordingWriter::WallClock wallClock = systemWallClock);
    /// Waits for what is still to be written, as waitForEnd() does.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Begins a recording with `header`, replacing an existing file. status() tells what became of
    /// it; frames are taken at once. False, and nothing happens, while another one runs.
    bool start(const QString& fileName, const kestrel_wire::RecordingHeader& header);

    /// Takes no more frames. The recording runs until the last one is written, or the disk turns
    /// out not to answer.
    void stop();

    /// After stop(): waits until the recording is over, for a few seconds at most and only while
    /// the disk answers.
    void waitForEnd();

    /// The lines of one datagram. Returns at once when no recording runs.
    void frame(const std::vector<std::string_view>& lines);

    Status status() const;

private:
    void letGo();

    const RecordingWriter::Opener m_opener;
    const std::size_t m_maxQueuedBytes;
    const RecordingWriter::WallClock m_wallClock;
    std::thread m_thread;
    mutable std::mutex m_mutex; // of the pointer alone
    std::shared_ptr<RecordingWriter> m_writer;
};

} // namespace workbench
