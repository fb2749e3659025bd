#include "SourceFiles/mtsettingsdlg.h"

#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "general/widgets/dpiscaling.h"
#include "general/widgets/modalrun.h"
#include "general/widgets/widgetending.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int refreshIntervalMs = 1000;
constexpr int settingsRowHeight = 28;

template <typename... Widgets>
void setAllEnabled(bool enable, Widgets*... widgets) {
    (widgets->setEnabled(enable), ...);
}

} // namespace

MtSettingsDlg::MtSettingsDlg(IOManager* manager, QWidget* parent, BackendVersions* versions)
    : QDialog(parent)
    , iom(manager)
    , beVers(versions, iom)
    , m_parent(parent)
    , tools(iom, BodyCount::Tools)
    , references(iom, BodyCount::References)
    , radioDevices(iom, versions)
    , assignments(iom, versions)
    , parameters(iom, versions)
    , doubleSpinboxDelegate(nullptr)
    , m_updateTimer(this) {
    new WidgetEnding(this, [this] { iom.hangUp(); });
    ui.setupUi(this);
    scaleFormToDpi(*this);
    m_icon_lock.addFile(QStringLiteral(":/lock.png"));

    enableStartSimulationControls(false);
    setupTableMeaBodies();
    setupTableRefBodies();
    setupTablesDevices();
    arrange();
    followKeyboard();

    m_updateTimer.setInterval(refreshIntervalMs);
    connect(&m_updateTimer, &QTimer::timeout, this, &MtSettingsDlg::updateTableDevices);
}

void MtSettingsDlg::arrange() {
    // The two grids of the point measurement line up whatever the font.
    int labelWidth = 0;
    int editorWidth = 0;
    for (const QGridLayout* grid : {ui.layout_duration, ui.layout_startSimulation}) {
        for (int row = 0; row < grid->rowCount(); ++row) {
            const QLayoutItem* const editor = grid->itemAtPosition(row, 1);
            const QLayoutItem* const label = grid->itemAtPosition(row, 0);
            if (editor != label) {
                labelWidth = std::max(labelWidth, label->sizeHint().width());
                editorWidth = std::max(editorWidth, editor->sizeHint().width());
            }
        }
    }
    for (QGridLayout* grid : {ui.layout_duration, ui.layout_startSimulation}) {
        grid->setColumnMinimumWidth(0, labelWidth);
        grid->setColumnMinimumWidth(1, editorWidth);
    }

    // With a large font the form's size would cut off columns and leave room for hardly a row.
    constexpr int roomyRows = 5;
    const QTableWidget* const table = ui.tableWidget_meaBodies;
    const QHeaderView* const header = table->horizontalHeader();
    int columns = std::max(scaledToDpi(header->defaultSectionSize(), *table),
                           header->sectionSizeHint(SerialColumn)) +
                  2 * table->frameWidth();
    for (int column = IdColumn; column < SerialColumn; ++column) {
        columns += table->columnWidth(column);
    }
    const QSize hint = table->sizeHint().expandedTo(table->minimumSize());
    const int rows =
        header->sizeHint().height() + roomyRows * rowHeightFor(settingsRowHeight, *table);
    const QSize more(std::max(0, columns - hint.width()), std::max(0, rows - hint.height()));
    resize(size().expandedTo(sizeHint() + more));
}

int MtSettingsDlg::update_and_exec() {
    if (m_isRunning) {
        raise();
        activateWindow();
        return Rejected;
    }
    m_isRunning = true;
    onShowDlg();
    const QPointer<MtSettingsDlg> self(this);
    const int result = runModally(*this, iom);
    if (self.isNull()) {
        return result;
    }
    // The application quits or the host has hidden the dialog: none of the close paths was taken.
    if (isVisible()) {
        reject();
    } else {
        restoreCounts();
        onHideDlg();
    }
    if (!self.isNull()) {
        m_isRunning = false;
    }
    return result;
}

void MtSettingsDlg::onShowDlg() {
    m_is_config_locked = is_config_locked();
    if (m_is_config_locked) {
        setWindowIcon(m_icon_lock);
        setAllEnabled(false, ui.spinBox_noOfMeaBodies, ui.spinBox_noOfRefBodies,
                      ui.pushButton_select, ui.pushButton_deselect, ui.doubleSpinBox_duration,
                      ui.doubleSpinBox_tipTolerance, ui.checkBox_startSimulation,
                      ui.checkBox_useOldOutputFormat);
    } else {
        setWindowIcon(m_parent.isNull() ? QIcon() : m_parent->windowIcon());
    }
    if (!isMtAvailable()) {
        // What the last showing has left behind is not to be assigned.
        makeCurrent(ui.tableWidget_meaBodies, -1, -1);
        enableDialog(false);
        return;
    }
    bUserAction = false;
    enableDialog(true);

    updateSpinBoxNoOfMeaBodies();
    updateSpinBoxNoOfRefBodies();
    setupListAssingmentsMeaToRef();
    setupListToolTipDiameter();
    updateDoubleSpinboxDuration();
    updateDoubleSpinBoxTipTolerance();
    updateCheckBoxStartSimulation();
    updateSpinBoxStartAngle();
    updateDoubleSpinBoxStartLeadTime();
    updateCheckBoxUseOldOutputFormat();
    enableControls(tools.current() >= 1);

    updateTableMeaBodies(true);
    updateTableRefBodies();
    updateTableDevices();
    setSelection_tableWidget(ui.tableWidget_meaBodies, m_iLastSelection_tableWidget_meaBodies);
    setSelection_tableWidget(ui.tableWidget_refBodies, m_iLastSelection_tableWidget_refBodies);
    activateSelectButton();
    activateDeSelectButton();
    m_updateTimer.start();
    bUserAction = true;
}

void MtSettingsDlg::onHideDlg() {
    m_updateTimer.stop();
}

void MtSettingsDlg::enableDialog(bool enable) {
    ui.label_error->setText(
        enable ? QString() : bodytexts::redMessage(tr("Measurement Tool is not available!")));
    ui.label_error->setVisible(!enable);

    const bool locked = m_is_config_locked;
    const bool usable = enable && !locked;
    const auto selection =
        locked ? QAbstractItemView::NoSelection : QAbstractItemView::SingleSelection;
    if (!locked) {
        setAllEnabled(usable, ui.label_noOfMeaBodies, ui.label_noOfRefBodies);
    }
    setAllEnabled(usable, ui.spinBox_noOfMeaBodies, ui.spinBox_noOfRefBodies,
                  ui.tableWidget_meaBodies);
    ui.tableWidget_meaBodies->setSelectionMode(selection);
    activateSelectButton();
    activateDeSelectButton();
    setAllEnabled(usable, ui.tableWidget_refBodies, ui.tableWidget_availableMt);
    ui.tableWidget_refBodies->setSelectionMode(selection);
    ui.tableWidget_availableMt->setSelectionMode(selection);
    enableControls(usable);
    ui.pushButton_ok->setEnabled(usable);
}

void MtSettingsDlg::enableControls(bool enable) {
    const bool usable = enable && !m_is_config_locked;
    setAllEnabled(usable, ui.label_pointMeasurement, ui.label_duration, ui.label_tipTolerance,
                  ui.doubleSpinBox_duration, ui.doubleSpinBox_tipTolerance,
                  ui.checkBox_startSimulation);
    enableStartSimulationControls(enable);
    if (m_is_config_locked || parameters.hasOutputFormats()) {
        ui.checkBox_useOldOutputFormat->setEnabled(usable);
    }
}

void MtSettingsDlg::enableStartSimulationControls(bool enable) {
    const bool usable = enable && !m_is_config_locked && ui.checkBox_startSimulation->isChecked();
    if (!m_is_config_locked) {
        setAllEnabled(usable, ui.label_minAngularSpeed, ui.label_meaStartDelay);
    }
    setAllEnabled(usable, ui.spinBox_startAngle, ui.doubleSpinBox_startLeadTime);
}

bool MtSettingsDlg::isMtAvailable() {
    return hostlink::isMtAvailable(iom, beVers);
}

bool MtSettingsDlg::is_config_locked() {
    return hostlink::isConfigLocked(iom, beVers);
}

void MtSettingsDlg::on_tabWidget_currentChanged(int /*index*/) {
    activateSelectButton();
    activateDeSelectButton();
}

void MtSettingsDlg::on_tableWidget_meaBodies_cellClicked(int row, int /*column*/) {
    m_iLastSelection_tableWidget_meaBodies = row;
    activateSelectButton();
    activateDeSelectButton();
}

void MtSettingsDlg::on_tableWidget_refBodies_cellClicked(int row, int /*column*/) {
    m_iLastSelection_tableWidget_refBodies = row;
    activateSelectButton();
}

void MtSettingsDlg::on_tableWidget_availableMt_cellClicked(int row, int /*column*/) {
    m_iLastSelection_tableWidget_refBodies = row;
    activateSelectButton();
}

void MtSettingsDlg::on_pushButton_cancel_clicked() {
    restoreCounts();
    onHideDlg();
    done(Rejected);
}

void MtSettingsDlg::restoreCounts() {
    if (tools.primary() <= tools.current()) {
        restoreCount(tools, ui.spinBox_noOfMeaBodies);
        restoreCount(references, ui.spinBox_noOfRefBodies);
    } else {
        restoreCount(references, ui.spinBox_noOfRefBodies);
        restoreCount(tools, ui.spinBox_noOfMeaBodies);
    }
}

void MtSettingsDlg::restoreCount(BodyCount& count, QSpinBox* spinBox) {
    if (count.restore()) {
        const bool before = bUserAction;
        bUserAction = false;
        spinBox->setValue(count.current());
        bUserAction = before;
    }
}

void MtSettingsDlg::reject() {
    on_pushButton_cancel_clicked();
}

void MtSettingsDlg::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        on_pushButton_cancel_clicked();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void MtSettingsDlg::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
}

int MtSettingsDlg::set_ascii_data(const char* /*type*/, const char* /*data*/) {
    return 0;
}

void MtSettingsDlg::set_mea_started() {}

void MtSettingsDlg::set_mea_stopped() {}

void MtSettingsDlg::setSelection_tableWidget(QTableWidget* table, int& lastRow) {
    const int rows = table->rowCount();
    if (rows == 0) {
        return;
    }
    if (lastRow >= rows) {
        lastRow = std::min(lastRow - 1, rows - 1);
    }
    makeCurrent(table, lastRow, 0);
}

void MtSettingsDlg::makeCurrent(QTableWidget* table, int row, int column) {
    const QSignalBlocker blocker(table);
    table->setCurrentCell(row, column);
}

void MtSettingsDlg::setUpTable(QTableWidget* table, const QStringList& headers) {
    table->setColumnCount(headers.size());
    table->setHorizontalHeaderLabels(headers);
    table->horizontalHeader()->setSectionsClickable(false);
    const int height = rowHeightFor(settingsRowHeight, *table);
    table->verticalHeader()->setMinimumSectionSize(height); // Qt's own grows with the font
    table->verticalHeader()->setDefaultSectionSize(height);
}

void MtSettingsDlg::resizeTable(QTableWidget* table, int rows) {
    const QSignalBlocker blocker(table);
    table->setRowCount(rows);
}

QString MtSettingsDlg::cellText(const QTableWidget* table, int row, int column) {
    return table->model()->index(row, column).data().toString();
}

void MtSettingsDlg::setCell(QTableWidget* table, int row, int column, const QString& text,
                            CellStyle style) {
    QTableWidgetItem* item = table->item(row, column);
    if (item != nullptr) {
        item->setText(text); // does nothing when the cell holds this text
    } else {
        item = new QTableWidgetItem(text);
        if (style == CellStyle::Centred || style == CellStyle::Editable) {
            item->setTextAlignment(Qt::AlignCenter);
        }
        if (style != CellStyle::Editable) {
            item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        }
        table->setItem(row, column, item);
    }
    if (style == CellStyle::Told) {
        item->setToolTip(bodytexts::toolTip(text)); // may be longer than the column is wide
    }
}

void MtSettingsDlg::followKeyboard() {
    // Moving through a table with the arrow keys counts as a click on the row that is reached.
    const auto follow = [this](QTableWidget* table, void (MtSettingsDlg::*clicked)(int, int)) {
        connect(table, &QTableWidget::currentCellChanged, this,
                [this, table, clicked](int row, int column) {
                    if (row >= 0 && table->hasFocus()) {
                        (this->*clicked)(row, column);
                    }
                });
    };
    follow(ui.tableWidget_meaBodies, &MtSettingsDlg::on_tableWidget_meaBodies_cellClicked);
    follow(ui.tableWidget_refBodies, &MtSettingsDlg::on_tableWidget_refBodies_cellClicked);
    follow(ui.tableWidget_availableMt, &MtSettingsDlg::on_tableWidget_availableMt_cellClicked);
}
