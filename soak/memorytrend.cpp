#include "soak/memorytrend.h"

#include <algorithm>
#include <map>

void MemoryTrend::add(double seconds, qint64 residentKb) {
    if (residentKb > 0) {
        m_samples.push_back({seconds, residentKb});
    }
}

std::vector<MemoryTrend::Point> MemoryTrend::floors() const {
    std::map<int, qint64> lowest;
    for (const Sample& sample : m_samples) {
        if (sample.seconds >= skippedSeconds) {
            const int window = static_cast<int>((sample.seconds - skippedSeconds) / windowSeconds);
            const auto [place, isNew] = lowest.emplace(window, sample.kb);
            place->second = std::min(place->second, sample.kb);
        }
    }
    std::vector<Point> points;
    points.reserve(lowest.size());
    for (const auto& [window, kb] : lowest) {
        points.push_back({window * windowSeconds / 3600.0, static_cast<double>(kb)});
    }
    return points;
}

double MemoryTrend::kbPerHour() const {
    const std::vector<Point> points = floors();
    std::vector<double> slopes;
    for (std::size_t later = 1; later < points.size(); ++later) {
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            slopes.push_back((points[later].kb - points[earlier].kb) /
                             (points[later].hours - points[earlier].hours));
        }
    }
    if (slopes.empty()) {
        return 0.0;
    }
    const auto middle = slopes.begin() + static_cast<std::ptrdiff_t>(slopes.size() / 2);
    std::nth_element(slopes.begin(), middle, slopes.end());
    return *middle;
}

qint64 MemoryTrend::atSkipEndKb() const {
    const std::vector<Point> points = floors();
    return points.empty() ? 0 : static_cast<qint64>(points.front().kb);
}

qint64 MemoryTrend::lastKb() const {
    const std::vector<Point> points = floors();
    return points.empty() ? 0 : static_cast<qint64>(points.back().kb);
}
