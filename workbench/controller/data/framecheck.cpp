#include "workbench/controller/data/framecheck.h"

#include "KestrelParser.h"
#include "libs/kestrel_wire/recording.h"

#include <algorithm>

namespace workbench {

namespace {

constexpr std::size_t maxKinds = 64; // of lines; the controllers know some fifteen

bool isText(char c) {
    return (c >= ' ' && c <= '~') || c == '\t';
}

} // namespace

FrameCheck::FrameCheck()
    : m_parser(std::make_unique<KestrelParser>()) {}

FrameCheck::~FrameCheck() = default;

bool FrameCheck::isReadable(const std::vector<std::string_view>& lines) {
    // All of them: each may be the first of its kind.
    return std::count_if(lines.begin(), lines.end(), [this](std::string_view line) {
               return isReadable(line);
           }) == static_cast<std::ptrdiff_t>(lines.size());
}

bool FrameCheck::isReadable(std::string_view line) {
    if (!std::all_of(line.begin(), line.end(), isText)) {
        return false;
    }
    const std::string_view kind = kestrel_wire::channelOf(line);
    const auto known = m_readKinds.find(kind);
    m_line.assign(line);
    if (!m_parser->parseLine(m_line.c_str())) {
        return known == m_readKinds.end();
    }
    if (known == m_readKinds.end() && m_readKinds.size() < maxKinds) {
        m_readKinds.emplace(kind);
    }
    return true;
}

} // namespace workbench
