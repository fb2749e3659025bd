#include "SourceFiles/mtsettingsdlg.h"
#include "general/widgets/dpiscaling.h"

#include <QEvent>
#include <QScopedValueRollback>

#include <vector>

namespace {

enum DeviceColumn { SortKey, Vendor, InternalModel, Description, Serial };
constexpr int deviceExtraWidth = 85;

// A refresh makes a cell of a hidden column the current one, from which no arrow key leads on: a
// key press starts from the row's first visible cell.
class VisibleCursor final : public QObject {
public:
    explicit VisibleCursor(QTableWidget* table)
        : QObject(table)
        , m_table(table) {
        table->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        // Other events also come while the table is being destroyed and is no table any more.
        if (event->type() == QEvent::KeyPress) {
            const int column = m_table->currentColumn();
            if (column >= 0 && m_table->isColumnHidden(column)) {
                m_table->setCurrentCell(m_table->currentRow(), Description,
                                        QItemSelectionModel::NoUpdate);
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QTableWidget* m_table;
};

} // namespace

void MtSettingsDlg::setupTablesDevices() {
    QTableWidget* const table = ui.tableWidget_availableMt;
    setUpTable(table,
               {tr("SortColumn_Key"), tr("Vendor"), tr("Model_intern"), tr("Model"), tr("Serial")});
    for (const int column : {SortKey, Vendor, InternalModel}) {
        table->setColumnHidden(column, true);
    }
    new VisibleCursor(table);
    table->resizeColumnsToContents();
    table->setColumnWidth(Description,
                          table->columnWidth(Description) + scaledToDpi(deviceExtraWidth, *table));
}

int MtSettingsDlg::getAssignedMtDeviceFromHub(int toolIndex, MtRadioDevice& device) {
    return radioDevices.readAssigned(toolIndex, device);
}

void MtSettingsDlg::getMtDeviceValues(int deviceIndex, MtRadioDevice& device) {
    radioDevices.readListed(deviceIndex, device);
}

void MtSettingsDlg::getMtDeviceDesc(MtRadioDevice& device) {
    radioDevices.describe(device);
}

bool MtSettingsDlg::isRadioTransceiverAvailable() {
    return radioDevices.isTransceiverAvailable();
}

void MtSettingsDlg::updateTableDevices() {
    if (m_isRefreshingDevices) {
        return; // the host runs the event loop inside a query
    }
    const QScopedValueRollback<bool> refreshing(m_isRefreshingDevices, true);
    QTableWidget* const table = ui.tableWidget_availableMt;
    const int currentRow = table->currentRow();
    if (!radioDevices.areSupported()) {
        table->clearContents();
        return;
    }

    const std::vector<MtRadioDevice> devices = radioDevices.readList();
    resizeTable(table, static_cast<int>(devices.size()));
    int row = 0;
    for (const MtRadioDevice& device : devices) {
        setCell(table, row, SortKey, device.sortKey());
        setCell(table, row, Vendor, device.vendor);
        setCell(table, row, InternalModel, device.model);
        setCell(table, row, Description, device.desc, CellStyle::Told);
        setCell(table, row, Serial, device.serial, CellStyle::Centred);
        ++row;
    }
    makeCurrent(table, currentRow, InternalModel);
    // The row may now hold a device that belongs to a tool already.
    activateSelectButton();

    if (m_updateTimer.isActive()) {
        // Counted from now: a slow controller does not take the pauses between two refreshes, in
        // which the user is served.
        m_updateTimer.start();
    }
}

MtSettingsDlg::MtRadioDevice MtSettingsDlg::deviceInRow(int row) const {
    const QTableWidget* const table = ui.tableWidget_availableMt;
    return {cellText(table, row, Vendor), cellText(table, row, InternalModel),
            cellText(table, row, Serial), cellText(table, row, Description)};
}
