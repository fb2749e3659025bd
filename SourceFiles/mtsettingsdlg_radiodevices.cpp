#include "SourceFiles/mtsettingsdlg.h"
#include "general/dpiscaling.h"
#include "general/hostlink.h"
#include "host_api/iomanager.h"

#include <QEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <vector>

namespace {

enum DeviceColumn { SortKey, Vendor, InternalModel, Description, Serial };
constexpr int modelExtraWidth = 85;
constexpr int serialLength = 5;
constexpr QChar serialPadding = QLatin1Char('0');

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

QString sortKey(const MtSettingsDlg::MtRadioDevice& device) {
    return device.vendor + device.model + device.serial;
}

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
                          table->columnWidth(Description) + scaledToDpi(modelExtraWidth, *table));
}

int MtSettingsDlg::getAssignedMtDeviceFromHub(int toolIndex, MtRadioDevice& device) {
    if (!protocolIsAtLeast(1, 14)) {
        return -1;
    }
    hostlink::Reply reply;
    const int result =
        iom->get_parameter_string(reply.buffer(), "measurementtool device b%2.2d", toolIndex + 1);
    if (result != 0 || reply.is("none")) {
        return -1;
    }
    const QStringList fields = reply.toString().split(QLatin1Char(' '));
    if (fields.size() < 4) {
        return -1; // no serial: nothing that could be written back
    }
    device.vendor = fields.at(1);
    device.model = fields.at(2);
    device.serial = fields.at(3).rightJustified(serialLength, serialPadding);
    getMtDeviceDesc(device);
    return 0;
}

void MtSettingsDlg::getMtDeviceValues(int deviceIndex, MtRadioDevice& device) {
    const int number = deviceIndex + 1;
    hostlink::Reply reply;
    if (iom->get_parameter_string(reply.buffer(), "measurementtool zelwpan_device d%2.2d",
                                  number) != 0) {
        hostlink::log(iom, "Error: Unable to get device info of MeasurementTool d0%1",
                      QString::number(number));
        return;
    }
    device = MtRadioDevice();
    if (reply.is("none")) {
        return;
    }
    const QStringList fields = reply.toString().split(QLatin1Char(' '));
    if (fields.size() < 3) {
        return;
    }
    device.vendor = fields.at(0);
    device.model = fields.at(1);
    device.serial = fields.at(2).rightJustified(serialLength, serialPadding, true);
    getMtDeviceDesc(device);
}

void MtSettingsDlg::getMtDeviceDesc(MtRadioDevice& device) {
    device.desc = device.model;
    if (!protocolIsAtLeast(1, 14)) {
        return;
    }
    hostlink::Reply reply;
    // The controller expects the parameter with this spelling.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
    const int result = iom->get_parameter_string(reply.buffer(), "zelwpan device_model_desc %s % s",
                                                 device.vendor.toLatin1().constData(),
                                                 device.model.toLatin1().constData());
#pragma GCC diagnostic pop
    if (result == 0) {
        device.desc = reply.toString().remove(QLatin1Char('"'));
        return;
    }
    // In one pass: a vendor that reads "%2" stays what it is.
    hostlink::log(iom,
                  QStringLiteral("Error: Unable to get model description of vendor %1 model %2")
                      .arg(device.vendor, device.model));
}

bool MtSettingsDlg::isRadioTransceiverAvailable() {
    const auto logUnlessRead = [this](int result, const char* text) {
        if (result != 0) {
            hostlink::log(iom, text, QString::number(result));
        }
        return result == 0;
    };
    hostlink::Reply reply;
    if (!logUnlessRead(iom->get_parameter_string(reply.buffer(), "zelwpan available"),
                       "Error reading zelwap available. Error number = %1") ||
        !reply.is("yes")) {
        return false;
    }
    int count = 0;
    if (!logUnlessRead(iom->get_parameter_int(&count, "zelwpan number_of_transceivers"),
                       "Error reading number of transceivers. Error number = %1")) {
        return false;
    }
    for (int number = 1; number <= std::min(count, MaxEntries); ++number) {
        hostlink::Reply name;
        if (!logUnlessRead(
                iom->get_parameter_string(name.buffer(), "zelwpan transceiver d%2.2d", number),
                "Error reading vendor, model, serial of transceiver. Error number = %1")) {
            name.buffer(); // what a failed query has left behind is no name
        }
        if (logUnlessRead(iom->get_parameter_string(reply.buffer(),
                                                    "zelwpan transceiver_present %s", name.text()),
                          "Error reading whether transceiver is present. Error number = %1") &&
            reply.is("yes")) {
            return true;
        }
    }
    return false;
}

int MtSettingsDlg::numberOfDevicesOnHub() {
    int count = 0;
    if (iom->get_parameter_int(&count, "measurementtool number_of_zelwpan_devices") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to get number of Measurementtools"));
        return 0;
    }
    return std::clamp(count, 0, MaxEntries);
}

void MtSettingsDlg::updateTableDevices() {
    if (m_isRefreshingDevices) {
        return; // the host runs the event loop inside a query
    }
    const QScopedValueRollback<bool> refreshing(m_isRefreshingDevices, true);
    QTableWidget* const table = ui.tableWidget_availableMt;
    const int currentRow = table->currentRow();
    if (!protocolIsAtLeast(1, 14)) {
        table->clearContents();
        return;
    }

    std::vector<MtRadioDevice> devices(static_cast<std::size_t>(numberOfDevicesOnHub()));
    for (std::size_t k = 0; k < devices.size(); ++k) {
        getMtDeviceValues(static_cast<int>(k), devices[k]);
    }
    std::stable_sort(
        devices.begin(), devices.end(),
        [](const MtRadioDevice& a, const MtRadioDevice& b) { return sortKey(a) < sortKey(b); });

    resizeTable(table, static_cast<int>(devices.size()));
    int row = 0;
    for (const MtRadioDevice& device : devices) {
        setCell(table, row, SortKey, sortKey(device));
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
