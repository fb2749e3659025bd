#pragma once

#include "libs/kestrel_recording/csv.h"

#include <QString>

#include <atomic>
#include <future>
#include <memory>

namespace workbench {

/// Writes a recording as a CSV file on a thread of its own. The file appears when it is whole, or
/// not at all: what was written of one that is cancelled is removed. GUI thread only.
class CsvJob {
public:
    struct Result {
        kestrel_recording::CsvReport report;
        QString error; ///< the recording cannot be read or the table not be written; empty else
    };

    /// Begins at once, and replaces `table` in the end.
    CsvJob(const QString& recording, const QString& table);
    /// Cancels, and waits for a moment. A thread that hangs in a disk is left to itself.
    ~CsvJob();
    CsvJob(const CsvJob&) = delete;
    CsvJob& operator=(const CsvJob&) = delete;

    /// 0 to 1, of the recording's bytes.
    double progress() const;
    bool isOver() const;
    /// The job is over soon, and has written nothing unless it was over already.
    void cancel();
    bool isCancelled() const;
    /// Once it is over.
    Result result() const { return m_result.get(); }

private:
    struct Shared {
        std::atomic<std::uint64_t> bytes{0};
        std::atomic<bool> cancelled{false};
    };

    static Result run(const QString& recording, const QString& table, Shared& shared);

    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
    qint64 m_size = 0;
    std::shared_future<Result> m_result;
};

} // namespace workbench
