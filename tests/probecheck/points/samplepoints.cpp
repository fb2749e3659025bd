#include "samplepoints.h"

#include "probecheck/points/files/pointcsv.h"

#include <unistd.h>

points::PointRecord samplePoint(int number, double x, double y, double z) {
    points::PointRecord point;
    point.number = number;
    point.name = QStringLiteral("P%1").arg(number);
    point.position = {x, y, z};
    point.deviation = {0.03, 0.02, 0.01};
    point.greatestDistance = 0.08;
    point.samples = 61;
    point.duration = 1.0;
    point.utcMs = 1'795'320'000'000 + 1000LL * number;
    point.tolerance = 1.5;
    return point;
}

std::vector<points::PointRecord> samplePoints(int count, int first) {
    std::vector<points::PointRecord> all;
    all.reserve(static_cast<std::size_t>(count));
    for (int number = first; number < first + count; ++number) {
        all.push_back(samplePoint(number, 10.0 * number));
    }
    return all;
}

QByteArray csvOf(const std::vector<points::PointRecord>& points) {
    QByteArray text;
    const bool isWhole = points::writeCsv(points, [&text](const QByteArray& piece, std::size_t) {
        text += piece;
        return true;
    });
    return isWhole ? text : QByteArray();
}

points::SessionFile::Sync HangingSync::sync() const {
    return [gate = m_gate](int file) {
        std::unique_lock<std::mutex> lock(gate->mutex);
        gate->isOpened.wait(lock, [&] { return gate->isOpen; });
        return ::fsync(file);
    };
}

void HangingSync::answer() {
    {
        const std::lock_guard<std::mutex> lock(m_gate->mutex);
        m_gate->isOpen = true;
    }
    m_gate->isOpened.notify_all();
}
