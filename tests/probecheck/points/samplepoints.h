#pragma once

#include "probecheck/points/files/sessionfile.h"
#include "probecheck/points/record/pointrecord.h"

#include <QByteArray>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

/// A point at this place, held for a second, with a name of its own.
points::PointRecord samplePoint(int number, double x = 0.0, double y = 0.0, double z = 0.0);

/// As many points from number `first` on, 10 mm apart along x.
std::vector<points::PointRecord> samplePoints(int count, int first = 1);

/// The whole table at once.
QByteArray csvOf(const std::vector<points::PointRecord>& points);

/// A disk that answers only when it is told to; then it goes on answering. Its sync() is fsync().
class HangingSync {
public:
    HangingSync()
        : m_gate(std::make_shared<Gate>()) {}
    ~HangingSync() { answer(); }
    HangingSync(const HangingSync&) = delete;
    HangingSync& operator=(const HangingSync&) = delete;

    points::SessionFile::Sync sync() const;
    void answer();

private:
    struct Gate {
        std::mutex mutex;
        std::condition_variable isOpened;
        bool isOpen = false;
    };
    std::shared_ptr<Gate> m_gate; ///< threads may hold it for longer
};
