#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

class KestrelParser;

/// What one frame tells about one Measurement Tool. Bodies are counted from 0.
struct ProbeSample {
    /// s, of a steady clock that the controller's time stamps drive as long as they make sense: for
    /// durations between samples. A frame that was overtaken is earlier than the one before it.
    double seconds = 0.0;
    double arrival = 0.0;             ///< s, LineTap::now() when the line came: for a sample's age
    double timeStamp = -1.0;          ///< s, the controller's own; -1 when the frame has none
    unsigned int frame = 0;           ///< the controller's count; 0 when the frame has none
    int tool = 0;                     ///< which one
    int reference = -1;               ///< the one that the position is told from; -1: none
    bool referenceTracked = true;     ///< true as well when there is none
    bool tracked = false;             ///< position and rotation mean nothing when it is not
    double quality = -1.0;            ///< as the line has it
    std::uint32_t buttons = 0;        ///< bit n: button n is pressed
    int buttonCount = 0;              ///< at most 16
    double tipRadius = 0.0;           ///< mm; 0 when the line does not tell
    std::array<double, 3> position{}; ///< mm, of the tip
    std::array<double, 9> rotation{}; ///< column by column: the tool's axes into the room's
};
using ProbeSamples = std::vector<ProbeSample>;

/// Takes the controller's data lines in, on any thread, and keeps what they tell about the tools
/// until the GUI thread fetches it. One short lock: it is held to read one line and to hand the
/// samples over, never while anything else is waited for. What nobody fetches is overwritten.
class LineTap {
public:
    static constexpr std::size_t mostSamples = 32768; ///< kept; then the oldest is overwritten
    static constexpr std::size_t longestLine = 65535; ///< characters; a longer one is rejected
    static constexpr int mostTools = 255;             ///< on a line; the others are left out
    static constexpr double frameTime = 0.02;         ///< s after which a frame is complete
    static constexpr double referenceAge = 0.5; ///< s for which a reference's state is believed

    LineTap();
    ~LineTap();
    LineTap(const LineTap&) = delete;
    LineTap& operator=(const LineTap&) = delete;

    static double now(); ///< s of the steady clock of ProbeSample::arrival

    /// Begins to take lines, with nothing of what was before. Goes on when it does already.
    void start();

    /// Takes none any more. The samples of complete frames stay to be fetched.
    void stop();

    /// Each tool's reference, -1 for none; tools beyond the list have none.
    void setReferences(std::vector<int> references);

    /// 0 when the line was taken, -1 when it is malformed or too long, -2 while none are taken.
    /// `arrival` is now(), but for tests.
    int take(const char* line, double arrival = now());

    /// What fetch() gives. Fetched into again, its memory is used again.
    struct Fetched {
        ProbeSamples samples;        ///< oldest first
        std::size_t overwritten = 0; ///< how many more there were
    };

    /// The samples of complete frames since the last call, instead of what is there.
    void fetch(Fetched& into, double time = now());

private:
    void takeTools(unsigned format, double arrival);
    void settleFrame();
    void advanceClock(double arrival);
    bool isReferenceTracked(int reference, double arrival) const;
    void keep(const ProbeSample& sample);

    std::mutex m_mutex;                      ///< guards everything below
    std::unique_ptr<KestrelParser> m_parser; ///< null while no lines are taken
    std::vector<int> m_references;
    ProbeSamples m_frame; ///< the frame in hand, until the states of its references are known
    unsigned m_frameFormats = 0; ///< bit 0: it came as "6dmt", bit 1: as "6dmt2"
    ProbeSamples m_ring;
    std::size_t m_oldest = 0; ///< in the ring, once that is full
    std::size_t m_overwritten = 0;
    double m_seconds = 0.0;
    double m_lastArrival = -1.0; ///< of a tool line; -1 before the first
    double m_lastStamp = -1.0;
    double m_referenceArrival = -1.0; ///< of the last line of references
};
