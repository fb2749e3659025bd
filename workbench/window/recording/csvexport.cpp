#include "workbench/window/recording/csvexport.h"

#include "workbench/text/elidedlabel.h"
#include "workbench/text/logmodel.h"
#include "workbench/text/recordingreason.h"
#include "workbench/window/look/dialogroom.h"
#include "workbench/window/look/savefile.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QProgressBar>
#include <QProgressDialog>

namespace workbench {

using Ending = kestrel_recording::Outcome::Ending;

namespace {

constexpr int progressIntervalMs = 100;
constexpr int widthInCharacters = 50; // of the dialog: its title is to be read

} // namespace

CsvExport::CsvExport(LogModel& log, QWidget* window)
    : QObject(window)
    , m_log(log)
    , m_window(window) {
    m_followTimer.setInterval(progressIntervalMs);
    connect(&m_followTimer, &QTimer::timeout, this, &CsvExport::follow);
}

CsvExport::~CsvExport() = default;

void CsvExport::ask() {
    if (isRunning()) {
        return;
    }
    const QString recordings = tr("Recordings (*.kestrel);;All files (*)");
    const QString recording = QFileDialog::getOpenFileName(
        m_window, tr("Recording to export"), QFileInfo(m_recording).path(), recordings);
    if (recording.isEmpty()) {
        return;
    }
    const QFileInfo file(recording);
    const QString suggested = file.dir().filePath(file.completeBaseName() + QStringLiteral(".csv"));
    const QString table = askForFileToSave(
        {tr("Export as CSV"), tr("Tables (*.csv);;All files (*)"), QStringLiteral("csv")},
        suggested, m_window);
    if (!table.isEmpty()) {
        start(recording, table);
    }
}

void CsvExport::start(const QString& recording, const QString& table) {
    if (isRunning()) {
        return;
    }
    m_recording = recording;
    m_table = table;
    if (QFileInfo(recording).canonicalFilePath() == QFileInfo(table).canonicalFilePath() &&
        QFileInfo::exists(table)) {
        const QString problem = tr("%1 is the recording itself").arg(table);
        m_log.problem(problem);
        Q_EMIT finished(problem);
        return;
    }
    m_job = std::make_unique<CsvJob>(recording, table);
    m_dialog = makeDialog(table, m_window);
    const auto cancel = [this] {
        if (m_job) {
            m_job->cancel();
        }
    };
    connect(m_dialog, &QProgressDialog::canceled, this, cancel);
    connect(m_dialog, &QDialog::rejected, this, cancel);
    m_followTimer.start();
}

QProgressDialog* CsvExport::makeDialog(const QString& table, QWidget* window) {
    auto* const dialog = new QProgressDialog(QString(), tr("Cancel"), 0, steps, window);
    dialog->setLabel(new ElidedLabel); // names may be long
    dialog->setLabelText(tr("Writing %1").arg(QFileInfo(table).fileName()));
    dialog->setObjectName(QStringLiteral("progressDialog_csv"));
    dialog->setWindowTitle(tr("Export as CSV"));
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->findChild<QProgressBar*>()->setAccessibleName(tr("Progress of the export"));
    dialog->setMinimumWidth(widthInCharacters * dialog->fontMetrics().averageCharWidth());
    new DialogRoom(*dialog);
    return dialog;
}

void CsvExport::follow() {
    if (!m_job->isOver()) {
        if (m_dialog) {
            m_dialog->setValue(static_cast<int>(m_job->progress() * steps));
        }
        return;
    }
    m_followTimer.stop();
    const CsvJob::Result result = m_job->result();
    m_job.reset();
    delete m_dialog;
    tellEnd(result);
}

void CsvExport::tellEnd(const CsvJob::Result& result) {
    const kestrel_recording::Outcome& outcome = result.report.outcome;
    QString problem;
    if (outcome.ending == Ending::NotWritten) {
        problem = tr("%1 could not be written to %2: %3")
                      .arg(m_recording, m_table, recordingReason(result.error));
    } else if (outcome.ending == Ending::Malformed) {
        const QString fault = tr("line %1: %2")
                                  .arg(QString::number(outcome.line),
                                       recordingReason(QString::fromStdString(outcome.reason)));
        problem =
            result.report.rows > 0
                ? tr("%1 is damaged, %2; %3 has what is before it").arg(m_recording, fault, m_table)
                : tr("%1 is damaged, %2").arg(m_recording, fault);
    } else if (outcome.ending == Ending::Stopped) {
        m_log.info(tr("The export to %1 was cancelled").arg(m_table));
        Q_EMIT finished(tr("The export to %1 was cancelled").arg(m_table));
        return;
    }
    if (!problem.isEmpty()) {
        m_log.problem(problem);
    } else {
        m_log.info(tr("Wrote %1 rows to %2").arg(QString::number(result.report.rows), m_table));
    }
    if (outcome.ending == Ending::Truncated) {
        m_log.info(tr("The last line of %1 is cut and left out").arg(m_recording));
    }
    if (result.report.unreadableLines > 0) {
        m_log.problem(tr("%1 data lines of %2 could not be read and have no rows")
                          .arg(QString::number(result.report.unreadableLines), m_recording));
    }
    Q_EMIT finished(problem);
}

} // namespace workbench
