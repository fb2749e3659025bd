#pragma once

#include "workbench/outlets/csvjob.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QProgressDialog;
class QWidget;

namespace workbench {

class LogModel;

/// The export of a recording as CSV from the user's side: asks which and where to, shows how far it
/// is, can be cancelled, and tells the log what becomes of it. The window stays usable meanwhile.
class CsvExport : public QObject {
    Q_OBJECT

public:
    CsvExport(LogModel& log, QWidget* window);
    ~CsvExport() override;

    /// Asks for recording and table, then begins; nothing while another export runs.
    void ask();

    /// Begins; nothing while another export runs.
    void start(const QString& recording, const QString& table);

    bool isRunning() const { return m_job != nullptr; }

    /// The dialog that tells how far an export to `table` is, from 0 to `steps`; `window` owns it.
    static QProgressDialog* makeDialog(const QString& table, QWidget* window);
    static constexpr int steps = 1000;

Q_SIGNALS:
    /// The export is over. `problem` is not empty when the table is not or not wholly there.
    void finished(const QString& problem);

private:
    void follow();
    void tellEnd(const CsvJob::Result& result);

    LogModel& m_log;
    QWidget* m_window;
    std::unique_ptr<CsvJob> m_job; // while one runs
    QPointer<QProgressDialog> m_dialog;
    QTimer m_followTimer;
    QString m_recording;
    QString m_table;
};

} // namespace workbench
