#include "general/host/hostlink.h"
#include "probecheck/points/files/pointcsv.h"
#include "probecheck/points/pointspanel.h"
#include "probecheck/points/record/pointdistance.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QShortcut>

#include <algorithm>
#include <utility>

using points::PointListModel;
using points::PointRecord;

namespace {

/// "100.012 ± 0.050 mm", or why there is none.
QString lengthText(const points::UncertainLength& length) {
    return length.uncertainty
               ? PointsPanel::tr("%1 ± %2 mm (95 %)")
                     .arg(points::fixedText(length.length, 3),
                          points::fixedText(*length.uncertainty, 3))
               : PointsPanel::tr("%1 mm, uncertainty unknown: a point was held too briefly")
                     .arg(points::fixedText(length.length, 3));
}

} // namespace

void PointsPanel::setUpList() {
    m_sorted.setSourceModel(&m_list);
    m_sorted.setSortRole(PointListModel::SortRole);
    QTableView* const table = ui.tableView_points;
    table->setModel(&m_sorted);
    table->sortByColumn(PointListModel::Number, Qt::AscendingOrder);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    const int widest = fontMetrics().horizontalAdvance(QStringLiteral("-00000.000  "));
    for (int column = 0; column < PointListModel::ColumnCount; ++column) {
        table->resizeColumnToContents(column);
        if (column != PointListModel::Number) {
            table->setColumnWidth(column, std::max(widest, table->columnWidth(column)));
        }
    }
    table->setColumnWidth(PointListModel::Time,
                          fontMetrics().horizontalAdvance(points::utcText(0) + "  "));
    table->installEventFilter(this);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PointsPanel::showSelection);
    connect(&m_list, &QAbstractItemModel::modelReset, this, &PointsPanel::showSelection);
    for (const QDoubleSpinBox* const box :
         {ui.doubleSpinBox_nominal, ui.doubleSpinBox_lengthTolerance}) {
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                &PointsPanel::showSelection);
    }
    connect(ui.pushButton_undo, &QPushButton::clicked, this, &PointsPanel::undo);
    connect(ui.pushButton_redo, &QPushButton::clicked, this, &PointsPanel::redo);
    connect(ui.pushButton_delete, &QPushButton::clicked, this, &PointsPanel::deleteSelected);
    connect(ui.pushButton_copy, &QPushButton::clicked, this, &PointsPanel::copySelected);
    connect(ui.pushButton_export, &QPushButton::clicked, this, &PointsPanel::exportAll);
    connect(ui.exportBar, &ExportBar::over, this, [this](bool isWritten, const QString& words) {
        if (isWritten) {
            m_exportedChanges = m_exportingChanges;
        }
        showSelection();
        say(words);
    });
    connect(&m_list.undoStack(), &QUndoStack::indexChanged, this, &PointsPanel::showSelection);
    connect(&m_list, &QAbstractItemModel::rowsInserted, this, &PointsPanel::showSelection);
    addShortcut(QKeySequence::Undo, &PointsPanel::undo);
    addShortcut(Qt::CTRL + Qt::SHIFT + Qt::Key_Z, &PointsPanel::redo);
    addShortcut(QKeySequence::Delete, &PointsPanel::deleteSelected);
    addShortcut(QKeySequence::Copy, &PointsPanel::copySelected);
    showSelection();
}

void PointsPanel::addShortcut(const QKeySequence& keys, void (PointsPanel::*action)()) {
    auto* const shortcut = new QShortcut(keys, ui.tableView_points);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, action);
}

void PointsPanel::setUpSession() {
    using points::PointSession;
    connect(&m_list, &PointListModel::renamed, this, [this](int number, const QString& name) {
        ++m_changes;
        m_session.addRenaming(number, name);
    });
    connect(&m_list, &PointListModel::deleted, this,
            [this](const std::vector<int>& numbers) { m_session.addDeletion(numbers); });
    connect(&m_list, &PointListModel::restored, this, [this](const std::vector<int>& numbers) {
        ++m_changes;
        m_session.addRestoring(numbers);
    });
    connect(&m_session, &PointSession::settled, this, [this] {
        if (m_session.stepsOnDisk() == m_session.steps()) {
            ui.label_disk->hide();
            if (m_words == wordsOf(points::Notice::NotKept)) { // no longer true
                m_words = wordsOf(points::Notice::Kept);
                showNow();
            }
        }
        if (m_session.stepsOnDisk() >= m_awaitedStep) {
            answerDisk(true);
        }
    });
    connect(&m_session, &PointSession::failed, this, [this](const QString& reason) {
        say(tr("The points cannot be written to the disk: %1. They stay in the list and are tried "
               "again each second.")
                .arg(reason));
        answerDisk(false);
    });
    connect(&m_session, &PointSession::leftFound, this, &PointsPanel::offer);
    connect(&m_session, &PointSession::soundsFoundOff, this, [this] {
        const QSignalBlocker blocker(ui.checkBox_sounds);
        ui.checkBox_sounds->setChecked(false);
    });
    connect(ui.checkBox_sounds, &QCheckBox::toggled, &m_session, &PointSession::rememberSounds);
    connect(ui.pushButton_keep, &QPushButton::clicked, this, &PointsPanel::keepLeft);
    connect(ui.pushButton_discard, &QPushButton::clicked, this, &PointsPanel::discardLeft);
}

void PointsPanel::say(const QString& words) {
    ui.label_disk->setText(words);
    ui.label_disk->show();
}

// What the disk does not have yet is told while somebody listens. The host may end the module
// inside.
void PointsPanel::sayFarewell() {
    if (std::exchange(m_hasSaidFarewell, true)) {
        return;
    }
    const HostPointer host = m_host;
    const bool isExporting = ui.exportBar->isRunning();
    ui.exportBar->cancel();
    const points::SessionWriter::Unwritten unwritten = m_session.waitForDisk();
    answerDisk(m_session.steps() - unwritten.steps >= m_awaitedStep);
    if (unwritten.steps > 0) {
        hostlink::log(host, tr("Error: %n change(s) of the points are not on the disk: %1. Each "
                               "captured point is in this log.",
                               nullptr, static_cast<int>(unwritten.steps))
                                .arg(unwritten.reason));
    }
    if (isExporting) {
        hostlink::log(host, tr("Error: The export to %1 was not finished, nothing of it is kept.")
                                .arg(ui.exportBar->path()));
    }
}

void PointsPanel::offer(const std::vector<PointRecord>& left) {
    m_left = left;
    const auto newest =
        std::max_element(left.begin(), left.end(), [](const PointRecord& a, const PointRecord& b) {
            return a.utcMs < b.utcMs;
        });
    ui.label_left->setText(tr("%n point(s) of an earlier session were never exported, the last one "
                              "of %1. Keep or discard them?",
                              nullptr, static_cast<int>(left.size()))
                               .arg(points::utcText(newest->utcMs)));
    ui.frame_left->show();
}

void PointsPanel::keepLeft() {
    const int before = m_list.nextNumber() - 1;
    for (PointRecord& point : m_left) {
        if (point.name == QStringLiteral("P%1").arg(point.number)) {
            point.name = QStringLiteral("P%1").arg(point.number + before);
        }
        point.number += before;
    }
    ++m_changes;
    m_list.append(m_left);
    m_session.addPoints(m_left);
    discardLeft();
}

void PointsPanel::discardLeft() {
    m_left.clear();
    m_session.dropLeft();
    ui.frame_left->hide();
}

std::vector<int> PointsPanel::selectedRows() const {
    std::vector<int> rows;
    const QItemSelection selection =
        m_sorted.mapSelectionToSource(ui.tableView_points->selectionModel()->selection());
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void PointsPanel::showSelection() {
    const std::vector<int> rows = selectedRows();
    ui.pushButton_delete->setEnabled(!rows.empty());
    ui.pushButton_copy->setEnabled(!rows.empty());
    ui.pushButton_export->setEnabled(m_list.rowCount() > 0 && !ui.exportBar->isRunning());
    ui.pushButton_undo->setEnabled(m_list.undoStack().canUndo());
    ui.pushButton_redo->setEnabled(m_list.undoStack().canRedo());
    if (rows.size() != 2) {
        ui.label_distance->setText(tr("Select two points for their distance."));
        return;
    }
    const PointRecord& a = m_list.point(rows[0]);
    const PointRecord& b = m_list.point(rows[1]);
    const auto distance = points::distanceOf(a, b);
    QString text = tr("%1 to %2:").arg(a.name, b.name) + QLatin1Char(' ');
    if (!distance) {
        ui.label_distance->setText(text +
                                   tr("no distance, they are measured from different references"));
        return;
    }
    text += lengthText(*distance);
    if (ui.doubleSpinBox_nominal->value() > 0.0) {
        const auto comparison =
            points::compareToNominal(*distance, ui.doubleSpinBox_nominal->value(),
                                     ui.doubleSpinBox_lengthTolerance->value());
        text += tr("; error %1 mm: %2")
                    .arg(points::fixedText(comparison.error, 3),
                         points::verdictText(comparison.verdict));
    }
    ui.label_distance->setText(text);
}

void PointsPanel::deleteSelected() {
    m_list.remove(selectedRows());
    showSelection();
}

void PointsPanel::copySelected() {
    std::vector<PointRecord> selected;
    for (const int row : selectedRows()) {
        selected.push_back(m_list.point(row));
    }
    if (!selected.empty()) {
        QApplication::clipboard()->setText(points::toTabSeparated(selected));
    }
}

void PointsPanel::undo() {
    m_list.undoStack().undo();
}

void PointsPanel::redo() {
    m_list.undoStack().redo();
}

// Not modal by a loop of its own: the host may end the module while it is open.
void PointsPanel::exportAll() {
    auto* const dialog =
        new QFileDialog(this, tr("Export points"), QString(), tr("Comma-separated values (*.csv)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->selectFile(QStringLiteral("points.csv"));
    connect(dialog, &QFileDialog::fileSelected, this, &PointsPanel::exportTo);
    dialog->open();
}

void PointsPanel::exportTo(const QString& path) {
    if (ui.exportBar->isRunning()) {
        return;
    }
    m_exportingChanges = m_changes;
    ui.exportBar->start(m_list.points(), path);
    // The button's focus goes where the space bar goes on capturing.
    if (ui.pushButton_export->hasFocus()) {
        ui.tableView_points->setFocus();
    }
    showSelection();
}
