#include "probecheck/points/files/pointexport.h"

#include "probecheck/points/files/pointcsv.h"

#include <QSaveFile>

#include <chrono>

namespace points {

PointExport::PointExport(std::vector<PointRecord> points, const QString& path)
    : m_job(std::make_shared<Job>(std::move(points), path))
    , m_thread([job = m_job] { run(*job); }) {}

PointExport::~PointExport() {
    cancel();
    m_thread.end(std::chrono::milliseconds(longestWaitMs));
}

double PointExport::progress() const {
    const auto all = static_cast<double>(m_job->points.size());
    return all > 0.0 ? static_cast<double>(m_job->done) / all : 0.0;
}

void PointExport::cancel() {
    m_job->isCancelled = true;
}

void PointExport::run(Job& job) {
    QSaveFile file(job.path);
    bool isWritten = file.open(QIODevice::WriteOnly);
    if (isWritten) {
        isWritten = writeCsv(job.points, [&](const QByteArray& piece, std::size_t done) {
            job.done = done;
            return !job.isCancelled && file.write(piece) == piece.size();
        });
    }
    if (job.isCancelled) {
        job.ending = Ending::Cancelled;
    } else if (isWritten && file.flush() && file.commit()) { // committing alone forgets its error
        job.ending = Ending::Written;
    } else {
        job.reason = file.errorString();
    }
}

} // namespace points
