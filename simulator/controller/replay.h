#pragma once

#include "libs/kestrel_wire/recording.h"
#include "simulator/controller/framesource.h"
#include "simulator/words/version.h"

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

namespace kestrel_simulator {

/// The frames of a recording, with the recording's own timing. Reads the file as it goes, so a
/// recording may be of any length.
class Replay : public FrameSource {
public:
    enum class AtEnd {
        Loop, ///< begins anew, one mean frame distance after the last frame
        Stop  ///< sends nothing more until the next start
    };

    /// Reads the whole file once to be sure that it is well-formed. Null when it is not, with the
    /// reason and the line number in `error`, or when its protocol version cannot be read.
    static std::unique_ptr<Replay> open(const std::string& path, AtEnd atEnd, std::string& error);

    const kestrel_wire::RecordingHeader& header() const { return m_header; }

    /// The protocol version of the header.
    const Version& protocol() const { return m_protocol; }

    /// Whether the recording's last line was cut, as by a crash; it is left out.
    bool isTruncated() const { return m_truncated; }

    void start(double now) override;
    double nextDue() const override;
    std::vector<std::string> take(double now) override;

private:
    Replay(std::string path, AtEnd atEnd);

    bool check(std::string& error);
    bool rewind();
    void readFrame();

    std::string m_path;
    AtEnd m_atEnd;
    kestrel_wire::RecordingHeader m_header;
    Version m_protocol;
    bool m_truncated = false;
    double m_frameDistance = 0.0;

    std::ifstream m_file;
    std::unique_ptr<kestrel_wire::RecordingReader> m_reader;
    kestrel_wire::Record m_ahead; // the first record behind the frame
    bool m_hasAhead = false;
    std::vector<std::string> m_frame; // empty: no more frames
    std::uint64_t m_frameTime = 0;
    double m_base = 0.0; // simulator time of the recording's time 0
};

} // namespace kestrel_simulator
