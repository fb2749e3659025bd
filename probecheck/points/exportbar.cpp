#include "probecheck/points/exportbar.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <utility>

using points::PointExport;

namespace {

constexpr int followMs = 50;
constexpr int progressSteps = 1000;

} // namespace

ExportBar::ExportBar(QWidget* parent)
    : QFrame(parent)
    , m_label(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_cancel(new QPushButton(tr("Stop exportin&g"), this)) {
    setFrameShape(QFrame::StyledPanel);
    m_label->setObjectName(QLatin1String("label_export"));
    m_label->setTextFormat(Qt::PlainText);
    m_progress->setObjectName(QLatin1String("progressBar_export"));
    m_progress->setAccessibleName(tr("Progress of the export"));
    m_progress->setRange(0, progressSteps);
    m_cancel->setObjectName(QLatin1String("pushButton_cancelExport"));
    m_cancel->setToolTip(tr("Ends the export; nothing of it is kept"));
    m_cancel->setAutoDefault(false);
    auto* const row = new QHBoxLayout(this);
    row->addWidget(m_label);
    row->addWidget(m_progress, 1);
    row->addWidget(m_cancel);
    setFocusProxy(m_cancel);
    hide();
    m_followTimer.setInterval(followMs);
    connect(&m_followTimer, &QTimer::timeout, this, &ExportBar::follow);
    connect(m_cancel, &QPushButton::clicked, this, &ExportBar::cancel);
}

void ExportBar::start(const std::vector<points::PointRecord>& points, const QString& path) {
    if (m_export) {
        return;
    }
    m_path = path;
    m_export = std::make_unique<PointExport>(points, path);
    m_label->setText(tr("Exporting to %1").arg(QFileInfo(path).fileName()));
    m_progress->setValue(0);
    m_cancel->setEnabled(true);
    show();
    m_followTimer.start();
}

void ExportBar::cancel() {
    if (m_export) {
        m_export->cancel();
        m_label->setText(tr("Cancelling the export..."));
        m_cancel->setEnabled(false);
    }
}

void ExportBar::follow() {
    m_progress->setValue(static_cast<int>(m_export->progress() * progressSteps));
    if (m_export->isOver()) {
        end();
    }
}

void ExportBar::end() {
    m_followTimer.stop();
    const std::unique_ptr<PointExport> done = std::exchange(m_export, nullptr);
    hide();
    switch (done->ending()) {
    case PointExport::Ending::Written:
        Q_EMIT over(true, tr("%n point(s) exported to %1", nullptr, done->count()).arg(m_path));
        break;
    case PointExport::Ending::Cancelled:
        Q_EMIT over(false, tr("Nothing exported: cancelled"));
        break;
    case PointExport::Ending::Failed:
        Q_EMIT over(false, tr("Nothing exported: %1: %2").arg(m_path, done->reason()));
        break;
    }
}
