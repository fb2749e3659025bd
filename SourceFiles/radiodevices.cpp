#include "SourceFiles/radiodevices.h"

#include "general/host/hostlink.h"
#include "host_api/iomanager.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr int serialLength = 5;
constexpr QChar serialPadding = QLatin1Char('0');

} // namespace

RadioDevices::RadioDevices(const HostPointer& iom, const BackendVersions* versions)
    : m_iom(iom)
    , m_versions(versions, iom) {}

bool RadioDevices::areSupported() const {
    return hostlink::protocolPasses(m_versions, 1, 14);
}

int RadioDevices::readAssigned(int tool, MtRadioDevice& device) const {
    if (!areSupported()) {
        return -1;
    }
    hostlink::Reply reply;
    const int result =
        m_iom->get_parameter_string(reply.buffer(), "measurementtool device b%2.2d", tool + 1);
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
    describe(device);
    return 0;
}

void RadioDevices::readListed(int place, MtRadioDevice& device) const {
    const int number = place + 1;
    hostlink::Reply reply;
    if (m_iom->get_parameter_string(reply.buffer(), "measurementtool zelwpan_device d%2.2d",
                                    number) != 0) {
        hostlink::log(m_iom, "Error: Unable to get device info of MeasurementTool d0%1",
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
    describe(device);
}

void RadioDevices::describe(MtRadioDevice& device) const {
    device.desc = device.model;
    if (!areSupported()) {
        return;
    }
    hostlink::Reply reply;
    // The controller expects the parameter with this spelling.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
    const int result = m_iom->get_parameter_string(
        reply.buffer(), "zelwpan device_model_desc %s % s", device.vendor.toLatin1().constData(),
        device.model.toLatin1().constData());
#pragma GCC diagnostic pop
    if (result == 0) {
        device.desc = reply.toString().remove(QLatin1Char('"'));
        return;
    }
    // In one pass: a vendor that reads "%2" stays what it is.
    hostlink::log(m_iom,
                  QStringLiteral("Error: Unable to get model description of vendor %1 model %2")
                      .arg(device.vendor, device.model));
}

std::vector<MtRadioDevice> RadioDevices::readList() const {
    int count = 0;
    if (m_iom->get_parameter_int(&count, "measurementtool number_of_zelwpan_devices") != 0) {
        hostlink::log(m_iom, QStringLiteral("Error: Unable to get number of Measurementtools"));
        count = 0;
    }
    std::vector<MtRadioDevice> devices(
        static_cast<std::size_t>(std::clamp(count, 0, hostlink::mostBodies)));
    int place = 0;
    for (MtRadioDevice& device : devices) {
        readListed(place, device);
        ++place;
    }
    std::stable_sort(
        devices.begin(), devices.end(),
        [](const MtRadioDevice& a, const MtRadioDevice& b) { return a.sortKey() < b.sortKey(); });
    return devices;
}

bool RadioDevices::logUnlessRead(int result, const char* text) const {
    if (result != 0) {
        hostlink::log(m_iom, text, QString::number(result));
    }
    return result == 0;
}

bool RadioDevices::isTransceiverAvailable() const {
    hostlink::Reply reply;
    if (!logUnlessRead(m_iom->get_parameter_string(reply.buffer(), "zelwpan available"),
                       "Error reading zelwap available. Error number = %1") ||
        !reply.is("yes")) {
        return false;
    }
    int count = 0;
    if (!logUnlessRead(m_iom->get_parameter_int(&count, "zelwpan number_of_transceivers"),
                       "Error reading number of transceivers. Error number = %1")) {
        return false;
    }
    for (int number = 1; number <= std::min(count, hostlink::mostBodies); ++number) {
        hostlink::Reply name;
        if (!logUnlessRead(
                m_iom->get_parameter_string(name.buffer(), "zelwpan transceiver d%2.2d", number),
                "Error reading vendor, model, serial of transceiver. Error number = %1")) {
            name.buffer(); // what a failed query has left behind is no name
        }
        if (logUnlessRead(m_iom->get_parameter_string(
                              reply.buffer(), "zelwpan transceiver_present %s", name.text()),
                          "Error reading whether transceiver is present. Error number = %1") &&
            reply.is("yes")) {
            return true;
        }
    }
    return false;
}
