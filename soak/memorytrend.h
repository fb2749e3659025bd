#pragma once

#include <QtGlobal>

#include <vector>

/// Tells growth from coming and going. A dialog that is open at the moment costs memory that is
/// free again when it has gone, so what counts is the lowest value of each half minute. The trend
/// is the median of the slopes between any two of these: the allocator gives memory back now and
/// then and takes it again, and such a dip would turn a straight line by least squares. The first
/// ten minutes, in which caches and the log fill, do not count.
class MemoryTrend {
public:
    static constexpr double skippedSeconds = 600.0;
    static constexpr double windowSeconds = 30.0;
    static constexpr std::size_t fewestWindows = 6; ///< fewer tell nothing

    void add(double seconds, qint64 residentKb);

    bool isJudged() const { return floors().size() >= fewestWindows; }
    double kbPerHour() const;

    qint64 atSkipEndKb() const; ///< the first floor that counts, 0 without one
    qint64 lastKb() const;      ///< the last floor that counts, 0 without one

private:
    struct Point {
        double hours;
        double kb;
    };
    std::vector<Point> floors() const;

    struct Sample {
        double seconds;
        qint64 kb;
    };
    std::vector<Sample> m_samples;
};
