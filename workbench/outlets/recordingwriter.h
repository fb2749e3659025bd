#pragma once

#include "libs/kestrel_wire/recording.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// One recording on its way to the disk: a bounded queue of frames, and what empties it. run() is
/// the life of a thread, everything else may be called from any; only run() ever waits for the
/// disk.
class RecordingWriter {
public:
    using Clock = std::chrono::steady_clock;

    /// Opens the file of a recording and returns its descriptor, or -1 with a reason. May wait for
    /// the disk.
    using Opener = std::function<int(const QString& fileName, QString* error)>;

    /// The wall clock of a recording; called on the threads of the constructor and of add().
    using WallClock = std::function<kestrel_wire::UtcMilliseconds()>;

    /// A disk that has not answered for so long is told of.
    static constexpr std::chrono::milliseconds patience{2000};

    struct Status {
        bool running = false;      ///< frames are taken, or are still to be written
        bool begun = false;        ///< the file is open and has its header
        bool stalled = false;      ///< the disk has not answered for some seconds
        QString fileName;          ///< of the recording that runs or ran last
        quint64 frames = 0;        ///< handed to the operating system, whole
        qint64 freeBytes = -1;     ///< on the disk of the file; -1: unknown
        double bytesPerSecond = 0; ///< that the recording has taken lately
        quint64 unwritten = 0; ///< received and given up: the queue was full or the disk refused
        QString error; ///< not empty: why the recording could not begin or has ended by itself
    };

    /// The recording starts now: the header gets its start.
    RecordingWriter(const QString& fileName, const kestrel_wire::RecordingHeader& header,
                    Opener opener, std::size_t maxQueuedBytes, WallClock wallClock);

    void run();

    /// Queues the lines of one datagram, with the present time; never waits for the disk.
    void add(const std::vector<std::string_view>& lines);

    /// No more frames; what is queued is still written.
    void finish();

    /// The thread is to end with its present call to the operating system.
    void abandon();

    /// Waits until run() is over, the disk has stopped answering or `longest` is over. True: over.
    bool waitForEnd(std::chrono::milliseconds longest);

    Status status() const;

private:
    struct Frame {
        std::uint64_t microseconds = 0;
        std::string bytes; // of all lines, one behind the other
        std::vector<std::size_t> sizes;
        std::optional<kestrel_wire::UtcMilliseconds> clock; // of a mark before it
    };
    struct Batch {
        std::string text;
        std::vector<std::size_t> ends; // of the frames in the text
        std::size_t queuedBytes = 0;
    };

    template <typename Call>
    auto timed(Call call); // so that others see how long the disk takes
    bool begin();
    bool takeBatch(Batch& batch);
    bool write(const Batch& batch);
    std::size_t writeBytes(std::string_view text, QString* error);
    bool endIfGone();
    void measure();
    void end(const QString& error);
    bool isAbandoned() const;
    bool isStalled() const;

    const QString m_fileName;
    const Opener m_opener;
    const std::size_t m_maxQueuedBytes;
    const WallClock m_wallClock;
    const Clock::time_point m_began = Clock::now();
    const kestrel_wire::UtcMilliseconds m_start;
    const std::string m_header;

    int m_file = -1;                        // run() only
    Clock::time_point m_lookedAt = m_began; // for the name; run() only
    std::int64_t m_size = 0;                // of whole frames; run() only

    struct Sample {
        Clock::time_point time;
        std::int64_t size = 0;
    };
    std::deque<Sample> m_samples; // of the last seconds; run() only

    mutable std::mutex m_mutex; // of what follows; never held during a call to the system
    std::condition_variable m_wake;
    std::condition_variable m_ended;
    std::deque<Frame> m_queue;
    std::size_t m_queuedBytes = 0; // with those being written
    std::size_t m_writing = 0;     // frames
    std::uint64_t m_lastTime = 0;
    kestrel_wire::ClockMarks m_clockMarks;
    bool m_finishing = false;
    bool m_abandoned = false;
    bool m_over = false;
    Clock::time_point m_callBegan = Clock::time_point::max();
    Status m_status;
};

/// The computer's wall clock.
kestrel_wire::UtcMilliseconds systemWallClock();

/// Opens a regular file for a recording, empties it and locks it for as long as it is open.
int openRecordingFile(const QString& fileName, QString* error);

} // namespace workbench
