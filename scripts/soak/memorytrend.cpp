#include "scripts/soak/memorytrend.h"

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
    const auto count = static_cast<double>(points.size());
    double meanHours = 0.0;
    double meanKb = 0.0;
    for (const Point& point : points) {
        meanHours += point.hours / count;
        meanKb += point.kb / count;
    }
    double product = 0.0;
    double square = 0.0;
    for (const Point& point : points) {
        product += (point.hours - meanHours) * (point.kb - meanKb);
        square += (point.hours - meanHours) * (point.hours - meanHours);
    }
    return square > 0.0 ? product / square : 0.0;
}

qint64 MemoryTrend::atSkipEndKb() const {
    const std::vector<Point> points = floors();
    return points.empty() ? 0 : static_cast<qint64>(points.front().kb);
}

qint64 MemoryTrend::lastKb() const {
    const std::vector<Point> points = floors();
    return points.empty() ? 0 : static_cast<qint64>(points.back().kb);
}
