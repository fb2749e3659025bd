#include "workbench/window/plot/tipring.h"

#include <algorithm>

namespace workbench {

TipRing::TipRing(std::size_t capacity)
    : m_samples(std::max<std::size_t>(capacity, 1)) {}

void TipRing::clear() {
    m_begin = 0;
    m_size = 0;
}

const TipSample& TipRing::at(std::size_t index) const {
    const std::size_t place = m_begin + index;
    return m_samples[place < m_samples.size() ? place : place - m_samples.size()];
}

void TipRing::add(const TipSample& sample) {
    if (m_size > 0 && sample.seconds == newest().seconds) {
        return;
    }
    if (m_size > 0 && sample.seconds < newest().seconds) {
        clear();
    }
    const std::size_t place = m_begin + m_size;
    m_samples[place < m_samples.size() ? place : place - m_samples.size()] = sample;
    if (m_size < m_samples.size()) {
        ++m_size;
    } else {
        m_begin = m_begin + 1 < m_samples.size() ? m_begin + 1 : 0;
    }
}

std::size_t TipRing::firstSince(double seconds) const {
    std::size_t first = 0;
    std::size_t count = m_size;
    while (count > 0) {
        const std::size_t half = count / 2;
        if (at(first + half).seconds < seconds) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

} // namespace workbench
