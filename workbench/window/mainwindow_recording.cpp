#include "workbench/window/look/savefile.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"
#include "workbench/window/statewords.h"

#include <QAction>

namespace workbench {

void MainWindow::setUpRecording() {
    auto* const exportAction = new QAction(tr("Export recording as &CSV…"), this);
    exportAction->setObjectName(QStringLiteral("actionExportCsv"));
    exportAction->setStatusTip(tr("Write the frames of a recording as a table"));
    m_menus->add({tr("&File"), 100, 60, exportAction});
    m_entryStates.add(exportAction, Need::NoExport);
    connect(exportAction, &QAction::triggered, this, [this] {
        m_csvExport.ask();
        showState();
    });
    connect(&m_csvExport, &CsvExport::finished, this, [this](const QString& problem) {
        showState();
        if (problem.isEmpty()) {
            m_banner->clear(BannerTopic::Notice);
        } else {
            m_banner->set(BannerTopic::Notice, Severity::Warning, problem, Banner::Ending::ByUser);
        }
    });
    connect(&m_recording, &RecordingControl::starting, this, [this] {
        showState();
        m_words->showNumbers();
    });
    connect(&m_recording, &RecordingControl::changed, this,
            [this](bool running, const QString& error) {
                showState();
                m_words->showNumbers();
                if (running) {
                    m_banner->clear(BannerTopic::Recording);
                }
                Q_EMIT recordingChanged(running, error);
            });
    connect(&m_recording, &RecordingControl::failed, this, [this](const QString& text) {
        m_banner->set(BannerTopic::Recording, Severity::Error, text, Banner::Ending::ByUser);
    });
    connect(&m_recording, &RecordingControl::roomIsShort, this, [this](const QString& left) {
        if (left.isEmpty()) {
            m_banner->clear(BannerTopic::Recording);
        } else {
            m_banner->set(BannerTopic::Recording, Severity::Warning,
                          tr("The disk is nearly full: room for %1 of recording").arg(left));
        }
    });
}

void MainWindow::askForRecording() {
    const QString fileName = askForFileToSave(
        {tr("Record to"), tr("Recordings (*.kestrel);;All files (*)"), QStringLiteral("kestrel")},
        m_recording.suggestedFile(), this);
    if (!fileName.isEmpty()) {
        startRecording(fileName);
    }
}

void MainWindow::startRecording(const QString& fileName) {
    m_recording.start(fileName);
}

} // namespace workbench
