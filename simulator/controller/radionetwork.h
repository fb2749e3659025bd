#pragma once

#include "simulator/words/configuration.h"

#include <string>
#include <vector>

namespace kestrel_simulator {

struct RadioDevice {
    std::string vendor;
    std::string model;
    std::string serial;

    /// Serial numbers are compared without their leading zeros.
    bool operator==(const RadioDevice& other) const;
    std::string toString() const { return vendor + " " + model + " " + serial; }
};

/// The radio network "zelwpan": transceivers, the devices in range, and which device belongs to
/// which tool. One device comes and goes by itself.
class RadioNetwork {
public:
    static constexpr int maxDevices = 64;

    /// Devices in range at the start, the coming and going one included; the first two of them are
    /// assigned to tools 1 and 2 when those exist.
    RadioNetwork(const Configuration& configuration, int devices);

    /// Adds the "zelwpan" parameters and the "measurementtool" ones that concern devices. The
    /// network must outlive the table.
    void addParameters(ParameterTable& table, const Configuration::ChangeGuard& guard);

    /// Lets time pass for the device that comes and goes.
    void advance(double now);

    /// Puts a device into range. Without a description the model's known one is kept.
    Answer add(const RadioDevice& device, const std::string& description);
    Answer remove(const RadioDevice& device);

    void setAvailable(bool available) { m_available = available; }
    bool isAvailable() const { return m_available; }
    void setWandering(bool on);
    bool isWandering() const { return m_wandering; }

private:
    struct Description {
        std::string vendor;
        std::string model;
        std::string text;
    };

    void addNetwork(ParameterTable& table);
    Answer assign(int toolIndex, const text::Words& value);
    Answer describe(const std::string& vendor, const std::string& model) const;
    bool isInRange(const RadioDevice& device) const;

    const Configuration& m_configuration;
    bool m_available = true;
    bool m_wandering = true;
    std::vector<RadioDevice> m_transceivers;
    std::vector<bool> m_transceiverPresent;
    std::vector<RadioDevice> m_inRange;
    std::vector<RadioDevice> m_assigned; // by tool; an empty vendor is none
    std::vector<Description> m_descriptions;
};

} // namespace kestrel_simulator
