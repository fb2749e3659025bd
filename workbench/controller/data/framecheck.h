#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class KestrelParser;

namespace workbench {

/// Tells a frame that can be shown from one that arrives garbled: whoever shows the last good
/// values while garbled lines arrive shows old data. One thread at a time.
class FrameCheck {
public:
    FrameCheck();
    ~FrameCheck();
    FrameCheck(const FrameCheck&) = delete;
    FrameCheck& operator=(const FrameCheck&) = delete;

    /// False when a line holds bytes that no data line has, or cannot be read although an earlier
    /// one of its kind could. A kind of line that was never readable, or that is unknown, says
    /// nothing about the others.
    bool isReadable(const std::vector<std::string_view>& lines);

private:
    bool isReadable(std::string_view line);

    std::unique_ptr<KestrelParser> m_parser;
    std::set<std::string, std::less<>> m_readKinds;
    std::string m_line; // NUL-terminated, as the parser wants it
};

} // namespace workbench
