#pragma once

#include "libs/kestrel_wire/recording.h"
#include "simulator/controller/scene/framesource.h"
#include "simulator/words/version.h"

#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrel_simulator {

/// The frames of a recording, with the recording's own timing or faster or slower. Reads the file
/// as it goes, so a recording may be of any length. Positions are seconds behind its first frame.
class Replay : public FrameSource {
public:
    enum class AtEnd {
        Loop, ///< begins anew, one mean frame distance after the last frame
        Stop  ///< stays there until it is played or started again
    };

    enum class State {
        Playing,
        Paused,
        Ended ///< the last frame was the last one, or there is none
    };

    static constexpr double minSpeed = 0.1;
    static constexpr double maxSpeed = 10.0;
    static constexpr double longestDelay = 0.2; ///< seconds; a greater one is not caught up

    /// Reads the whole file once to be sure that it is well-formed. Null when it is not, with the
    /// reason and the line number in `error`, or when its protocol version cannot be read.
    static std::unique_ptr<Replay> open(const std::string& path, AtEnd atEnd, std::string& error);

    const kestrel_wire::RecordingHeader& header() const { return m_header; }

    /// The protocol version of the header.
    const Version& protocol() const { return m_protocol; }

    /// Whether the recording's last line was cut, as by a crash; it is left out.
    bool isTruncated() const { return m_truncated; }

    /// Whether less of it could be read than was there when it was opened: somebody has changed the
    /// file. It ends there.
    bool isChanged() const { return m_isChanged; }

    State state() const;
    double position() const; ///< of the frame taken last or sought
    double duration() const { return behindFirst(m_last); }
    double speed() const { return m_speed; }
    std::optional<kestrel_wire::UtcMilliseconds> utc() const; ///< of that frame, if recorded

    /// Goes on from where it is; at the end from the beginning.
    void play(double now);
    void pause(double now);

    /// The next frame and no more.
    void step(double now);

    /// From minSpeed to maxSpeed.
    void setSpeed(double speed, double now);

    /// To the first frame that is not earlier, at most the last one. It is due at once, also in a
    /// pause. From the end this leads into a pause.
    void seek(double position, double now);

    /// From the first frame. A pause stays one.
    void start(double now) override;
    double nextDue() const override;
    std::vector<std::string> take(double now) override;

private:
    struct Entry {
        std::uint64_t microseconds = 0; // of the frame that begins there
        kestrel_wire::RecordingReader::Place place;
    };

    Replay(std::string path, AtEnd atEnd);

    bool check(std::string& error);
    bool readThrough(std::string& error);
    bool rewind();
    void readFrom(const Entry& entry);
    void readAhead();
    void readFrame();
    void showFrame();
    double behindFirst(std::uint64_t microseconds) const;
    double due() const;
    double playedUntil(double now) const;
    void anchor(double now, double position);

    std::string m_path;
    AtEnd m_atEnd;
    kestrel_wire::RecordingHeader m_header;
    Version m_protocol;
    bool m_truncated = false;
    bool m_isChanged = false;
    double m_frameDistance = 0.0;
    std::uint64_t m_first = 0; // time stamps of the first and the last frame
    std::uint64_t m_last = 0;
    std::vector<Entry> m_index; // of some frames, the first one among them

    std::ifstream m_file;
    std::unique_ptr<kestrel_wire::RecordingReader> m_reader;
    kestrel_wire::Record m_ahead; // the first record behind the frame
    std::optional<kestrel_wire::ClockMark> m_aheadClock;
    bool m_hasAhead = false;
    std::vector<std::string> m_frame; // the next one; empty: no more frames
    std::uint64_t m_frameTime = 0;
    std::optional<kestrel_wire::ClockMark> m_frameClock;
    std::uint64_t m_shownTime = 0; // of the frame before
    std::optional<kestrel_wire::ClockMark> m_shownClock;

    double m_speed = 1.0;
    bool m_paused = false;
    bool m_single = false;         // the next frame is due though it is paused
    double m_anchorNow = 0.0;      // simulator time at which ...
    double m_anchorPosition = 0.0; // ... this position was played
};

} // namespace kestrel_simulator
