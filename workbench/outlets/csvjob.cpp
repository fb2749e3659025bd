#include "workbench/outlets/csvjob.h"

#include "workbench/outlets/savedfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>
#include <utility>

namespace workbench {

using Ending = kestrel_recording::Outcome::Ending;

namespace {

constexpr std::chrono::milliseconds patience{2000};

}

CsvJob::CsvJob(const QString& recording, const QString& table)
    : m_size(QFileInfo(recording).size()) {
    std::promise<Result> promise;
    m_result = promise.get_future().share();
    std::thread([shared = m_shared, recording, table, promise = std::move(promise)]() mutable {
        promise.set_value(run(recording, table, *shared));
    }).detach();
}

CsvJob::~CsvJob() {
    cancel();
    m_result.wait_for(patience);
}

double CsvJob::progress() const {
    const auto bytes = static_cast<double>(m_shared->bytes);
    return m_size > 0 ? std::min(1.0, bytes / static_cast<double>(m_size)) : 0.0;
}

bool CsvJob::isOver() const {
    return m_result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

void CsvJob::cancel() {
    m_shared->cancelled = true;
}

bool CsvJob::isCancelled() const {
    return m_shared->cancelled;
}

CsvJob::Result CsvJob::run(const QString& recording, const QString& table, Shared& shared) {
    Result result;
    result.report.outcome.ending = Ending::NotWritten;
    std::ifstream input;
    std::string reason;
    if (!kestrel_recording::openRecording(QFile::encodeName(recording).toStdString(), input,
                                          reason)) {
        result.error = QString::fromLocal8Bit(reason.c_str());
        return result;
    }
    QSaveFile output(table);
    if (!output.open(QIODevice::WriteOnly)) {
        result.error = output.errorString();
        return result;
    }
    const auto sink = [&](std::string_view text) {
        const auto size = static_cast<qint64>(text.size());
        return !shared.cancelled && output.write(text.data(), size) == size;
    };
    const auto watch = [&](std::uint64_t bytes) {
        shared.bytes = bytes;
        return !shared.cancelled;
    };
    result.report = kestrel_recording::writeCsv(input, {}, sink, watch);
    if (shared.cancelled) {
        result.report.outcome.ending = Ending::Stopped;
        return result;
    }
    // Of what is no recording at all nothing is written.
    const bool hasTable = output.pos() > 0;
    if (result.report.outcome.ending == Ending::NotWritten || (hasTable && !finish(output))) {
        result.report.outcome.ending = Ending::NotWritten;
        result.error = output.errorString();
    }
    return result;
}

} // namespace workbench
