#include "libs/kestrel_wire/framegaps.h"

#include <algorithm>

namespace kestrel_wire {

namespace {

constexpr std::size_t maxGaps = 64;

}

void FrameGaps::add(std::uint32_t counter) {
    if (!m_any) {
        beginAnew(counter);
        return;
    }
    if (takeMissing(counter)) {
        return;
    }
    const std::uint32_t ahead = counter - m_last; // around the end
    const std::uint32_t behind = m_last - counter;
    if (behind <= longestDelay) {
        // Only the next frame tells a copy of an old one from the first of a new count.
        if (m_maybeNew && counter - m_newFirst - 1 < longestDelay) {
            const std::uint32_t first = m_newFirst;
            beginAnew(first);
            moveOn(counter);
        } else {
            m_maybeNew = behind > 0;
            m_newFirst = counter;
        }
    } else if (counter > m_last || ahead - 1 <= largestGapAtWrap) {
        moveOn(counter);
    } else {
        beginAnew(counter);
    }
}

bool FrameGaps::takeMissing(std::uint32_t counter) {
    const auto gap = std::find_if(m_missing.begin(), m_missing.end(), [counter](const Gap& one) {
        return counter - one.first < one.size;
    });
    if (gap == m_missing.end()) {
        return false;
    }
    --m_lost;
    const Gap before{gap->first, counter - gap->first};
    const Gap behind{counter + 1, gap->size - before.size - 1};
    m_missing.erase(gap);
    await(before);
    await(behind);
    return true;
}

void FrameGaps::await(const Gap& gap) {
    if (gap.size > 0) {
        m_missing.push_back(gap);
    }
    if (m_missing.size() > maxGaps) {
        m_missing.pop_front();
    }
}

void FrameGaps::moveOn(std::uint32_t counter) {
    const std::uint32_t gap = counter - m_last - 1;
    m_lost += gap;
    const std::uint32_t awaited = std::min(gap, longestDelay);
    await({counter - awaited, awaited});
    m_last = counter;
    m_maybeNew = false;
}

void FrameGaps::beginAnew(std::uint32_t counter) {
    m_any = true;
    m_last = counter;
    m_maybeNew = false;
    m_missing.clear();
}

} // namespace kestrel_wire
