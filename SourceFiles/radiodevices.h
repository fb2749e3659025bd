#pragma once

#include "general/host/hostpointer.h"

#include <QString>

#include <vector>

/// A radio device as the controller names it; all texts empty: no device.
struct MtRadioDevice {
    MtRadioDevice() = default;
    MtRadioDevice(const QString& vendor_, const QString& model_, const QString& serial_,
                  const QString& desc_)
        : vendor(vendor_)
        , model(model_)
        , serial(serial_)
        , desc(desc_) {}

    QString vendor;
    QString model;
    QString serial; ///< at least 5 characters, padded with leading zeros
    QString desc;   ///< for people; does not take part in comparisons

    /// Vendor, model and serial joined: what lists are sorted by.
    QString sortKey() const { return vendor + model + serial; }

    friend bool operator==(const MtRadioDevice& a, const MtRadioDevice& b) {
        return a.vendor == b.vendor && a.model == b.model && a.serial == b.serial;
    }
};

/// Asks the controller for its radio devices, which there are from protocol 1.14 on. Failures are
/// logged. Without widgets; GUI thread.
class RadioDevices {
public:
    /// Both stay the host's.
    RadioDevices(const HostPointer& iom, const BackendVersions* versions);

    bool areSupported() const;

    /// The device assigned to a tool (0-based). -1, and `device` untouched, when there is none or
    /// it cannot be read, which is not logged; without a question when devices are not supported.
    int readAssigned(int tool, MtRadioDevice& device) const;

    /// The device at a place (0-based) of the controller's list; untouched when the query fails.
    void readListed(int place, MtRadioDevice& device) const;

    /// Fills `desc`: with the model when the controller knows no better or devices are not
    /// supported.
    void describe(MtRadioDevice& device) const;

    /// All of the controller's list, sorted; an unreadable one is empty.
    std::vector<MtRadioDevice> readList() const;

    /// Whether one of the transceivers is present.
    bool isTransceiverAvailable() const;

private:
    bool logUnlessRead(int result, const char* text) const;

    HostPointer m_iom;
    VersionsPointer m_versions;
};
