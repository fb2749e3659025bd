#include "workbench/window/plot/tiptracks.h"

#include "libs/kestrel_recording/numbertext.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {

namespace {

constexpr std::size_t axisCount = 3;
constexpr double shortestGap = 0.5; // seconds
constexpr double gapIntervals = 3.0;

/// What a column has of one axis: its first and last samples, and its extremes in their order.
struct Column {
    double least = 0.0;
    double greatest = 0.0;
    bool isLeastFirst = true;
};

/// Collects the samples of a piece, column by column.
class Collector {
public:
    Collector(TipTracks& tracks, double begin, double width)
        : m_tracks(tracks)
        , m_begin(begin)
        , m_width(width) {}

    void add(double seconds, const std::array<double, axisCount>& values) {
        const double column = std::floor((seconds - m_begin) / m_width);
        if (m_count > 0 && column != m_column) {
            flushColumn();
        }
        if (m_count == 0) {
            m_first = seconds;
            m_column = column;
        }
        for (std::size_t axis = 0; axis < axisCount; ++axis) {
            Column& extremes = m_columns[axis];
            if (m_count == 0) {
                extremes = {values[axis], values[axis], true};
            } else if (values[axis] < extremes.least) {
                extremes.least = values[axis];
                extremes.isLeastFirst = false;
            } else if (values[axis] > extremes.greatest) {
                extremes.greatest = values[axis];
                extremes.isLeastFirst = true;
            }
        }
        m_last = seconds;
        ++m_count;
    }

    void endPiece() {
        flushColumn();
        for (std::size_t axis = 0; axis < axisCount; ++axis) {
            if (!m_pieces[axis].isEmpty()) {
                m_tracks.axes[axis].append(m_pieces[axis]);
                m_pieces[axis].clear();
            }
        }
    }

private:
    void flushColumn() {
        for (std::size_t axis = 0; m_count > 0 && axis < axisCount; ++axis) {
            const Column& column = m_columns[axis];
            const double first = column.isLeastFirst ? column.least : column.greatest;
            const double second = column.isLeastFirst ? column.greatest : column.least;
            m_pieces[axis] << QPointF(m_first, first);
            if (m_count > 1) {
                m_pieces[axis] << QPointF(m_last, second);
            }
        }
        m_count = 0;
    }

    TipTracks& m_tracks;
    const double m_begin;
    const double m_width;
    std::array<QPolygonF, axisCount> m_pieces;
    std::array<Column, axisCount> m_columns;
    double m_column = 0.0;
    double m_first = 0.0;
    double m_last = 0.0;
    std::size_t m_count = 0; // samples of this column
};

} // namespace

// In two passes: ten metres from the origin cost no digits.
TipStatistics tipStatistics(const TipRing& ring, double seconds) {
    TipStatistics result;
    const std::size_t first = ring.firstSince(seconds);
    for (std::size_t i = first; i < ring.size(); ++i) {
        const TipSample& sample = ring.at(i);
        if (sample.isSeen) {
            ++result.count;
            for (std::size_t axis = 0; axis < axisCount; ++axis) {
                result.mean[axis] += sample.position[axis];
            }
        }
    }
    const auto count = static_cast<double>(result.count);
    for (std::size_t axis = 0; axis < axisCount && result.count > 0; ++axis) {
        result.mean[axis] /= count;
    }
    std::array<double, axisCount> squares{};
    for (std::size_t i = first; i < ring.size(); ++i) {
        const TipSample& sample = ring.at(i);
        for (std::size_t axis = 0; sample.isSeen && axis < axisCount; ++axis) {
            const double distance = sample.position[axis] - result.mean[axis];
            squares[axis] += distance * distance;
        }
    }
    for (std::size_t axis = 0; axis < axisCount; ++axis) {
        result.deviation[axis] = result.count > 1 ? std::sqrt(squares[axis] / (count - 1.0))
                                                  : std::numeric_limits<double>::quiet_NaN();
    }
    return result;
}

TipTracks tipTracks(const TipRing& ring, double begin, double end,
                    const std::array<double, 3>& origin, int columns) {
    TipTracks tracks;
    if (ring.isEmpty() || !(end > begin) || columns < 1) {
        return tracks;
    }
    const double usual = (ring.newest().seconds - ring.at(0).seconds) /
                         static_cast<double>(std::max<std::size_t>(ring.size() - 1, 1));
    const double gap = std::max(shortestGap, gapIntervals * usual);
    // The places belong to the clock, not to the moment: what stands still is drawn the same.
    const double width = (end - begin) / columns;
    Collector collector(tracks, 0.0, width);
    double before = begin;
    // A sample beyond each border leads the line to it.
    const std::size_t first = ring.firstSince(begin);
    for (std::size_t i = first > 0 ? first - 1 : 0; i < ring.size(); ++i) {
        const TipSample& sample = ring.at(i);
        if (!sample.isSeen || sample.seconds - before > gap) {
            collector.endPiece();
        }
        before = sample.seconds;
        if (sample.isSeen) {
            collector.add(sample.seconds,
                          {sample.position[0] - origin[0], sample.position[1] - origin[1],
                           sample.position[2] - origin[2]});
        }
        if (sample.seconds > end) {
            break;
        }
    }
    collector.endPiece();
    return tracks;
}

std::string tipTable(const TipRing& ring, double seconds, int tool) {
    std::string text = "seconds_s,tool,tracked,x_mm,y_mm,z_mm\n";
    const std::string name = ",M" + std::to_string(tool);
    for (std::size_t i = ring.firstSince(seconds); i < ring.size(); ++i) {
        const TipSample& sample = ring.at(i);
        kestrel_recording::appendNumber(sample.seconds, text);
        text += name + (sample.isSeen ? ",1" : ",0");
        for (const double value : sample.position) {
            text += ',';
            if (sample.isSeen) {
                kestrel_recording::appendNumber(value, text);
            }
        }
        text += '\n';
    }
    return text;
}

} // namespace workbench
