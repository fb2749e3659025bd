#include "simulator/controller/radionetwork.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel_simulator {

namespace {

const Version withRadio = {1, 14, 0};
constexpr double wanderingPeriod = 20.0;
constexpr double wanderingPresence = 12.0;
constexpr std::size_t maxModels = 100;
const RadioDevice wanderer = {"KST", "MTS1", "90210"};

std::string_view withoutZeros(std::string_view serial) {
    serial.remove_prefix(std::min(serial.find_first_not_of('0'), serial.size()));
    return serial;
}

RadioDevice deviceAt(int index) {
    static const std::array<RadioDevice, 3> first = {
        {{"KST", "MTS1", "417"}, {"KST", "MTL2", "00523"}, {"ACQ", "P7", "12"}}};
    if (index < static_cast<int>(first.size())) {
        return first[static_cast<std::size_t>(index)];
    }
    return {"KST", "MTS1", std::to_string(1000 + index)};
}

} // namespace

bool RadioDevice::operator==(const RadioDevice& other) const {
    return vendor == other.vendor && model == other.model &&
           withoutZeros(serial) == withoutZeros(other.serial);
}

RadioNetwork::RadioNetwork(const Configuration& configuration, int devices)
    : m_configuration(configuration)
    , m_transceivers({{"KST", "TRX1", "7001"}, {"KST", "TRX1", "7002"}})
    , m_transceiverPresent({false, true})
    , m_descriptions({{"KST", "MTS1", "Measurement Tool short"},
                      {"KST", "MTL2", "Measurement Tool long"},
                      {"ACQ", "P7", "Probe with 7 mm ball"},
                      {"KST", "TRX1", "Radio transceiver"}}) {
    for (int i = 0; i < devices - 1; ++i) {
        m_inRange.push_back(deviceAt(i));
    }
    if (devices > 0) {
        m_inRange.push_back(wanderer);
    }
    m_wandering = devices > 0;
    m_assigned.resize(static_cast<std::size_t>(configuration.toolLimit()));
    const auto tools = static_cast<std::size_t>(configuration.toolCount());
    for (std::size_t i = 0; i < std::min({tools, m_inRange.size(), std::size_t{2}}); ++i) {
        m_assigned[i] = m_inRange[i];
    }
}

void RadioNetwork::advance(double now) {
    if (!m_wandering) {
        return;
    }
    const bool present = std::fmod(now, wanderingPeriod) < wanderingPresence;
    const auto found = std::find(m_inRange.begin(), m_inRange.end(), wanderer);
    if (present && found == m_inRange.end()) {
        m_inRange.push_back(wanderer);
    } else if (!present && found != m_inRange.end()) {
        m_inRange.erase(found);
    }
}

void RadioNetwork::setWandering(bool on) {
    m_wandering = on;
}

bool RadioNetwork::isInRange(const RadioDevice& device) const {
    return std::find(m_inRange.begin(), m_inRange.end(), device) != m_inRange.end();
}

Answer RadioNetwork::add(const RadioDevice& device, const std::string& description) {
    if (isInRange(device)) {
        return Answer::wrongState("the device is in range already");
    }
    if (m_inRange.size() >= maxDevices) {
        return Answer::refuse(ErrorNumber::TooMany, "too many radio devices");
    }
    std::string text = description;
    std::replace(text.begin(), text.end(), '"', '\'');
    const auto known =
        std::find_if(m_descriptions.begin(), m_descriptions.end(), [&](const Description& each) {
            return each.vendor == device.vendor && each.model == device.model;
        });
    if (known != m_descriptions.end()) {
        known->text = text.empty() ? known->text : text;
    } else if (m_descriptions.size() < maxModels) {
        m_descriptions.push_back(
            {device.vendor, device.model, text.empty() ? "Measurement Tool" : text});
    } else {
        return Answer::refuse(ErrorNumber::TooMany, "too many models of radio devices");
    }
    m_inRange.push_back(device);
    return Answer::ok();
}

Answer RadioNetwork::remove(const RadioDevice& device) {
    const auto found = std::find(m_inRange.begin(), m_inRange.end(), device);
    if (found == m_inRange.end()) {
        return Answer::refuse(ErrorNumber::BadBody, "no such radio device in range");
    }
    m_inRange.erase(found);
    return Answer::ok();
}

void RadioNetwork::addParameters(ParameterTable& table, const Configuration::ChangeGuard& guard) {
    addNetwork(table);
    table.add("measurementtool number_of_zelwpan_devices",
              {0, withRadio,
               [this](const text::Words&) {
                   return Answer::value(std::to_string(m_available ? m_inRange.size() : 0));
               },
               nullptr});
    table.add("measurementtool zelwpan_device",
              {1, withRadio,
               [this](const text::Words& arguments) {
                   const int number = text::readNumbered(arguments[0], 'd');
                   if (number < 1 || number > maxDevices) {
                       return Answer::refuse(ErrorNumber::BadBody, "no such radio device");
                   }
                   // one that has just gone is no error: the asker counted a moment ago
                   const auto index = static_cast<std::size_t>(number - 1);
                   const bool there = m_available && index < m_inRange.size();
                   return Answer::value(there ? m_inRange[index].toString() : "none");
               },
               nullptr});
    table.add(
        "measurementtool device",
        {1, withRadio,
         [this](const text::Words& arguments) {
             const int index = m_configuration.toolIndex(arguments[0]);
             if (index < 0) {
                 return Answer::noSuchTool();
             }
             const RadioDevice& device = m_assigned[static_cast<std::size_t>(index)];
             return Answer::value(device.vendor.empty() ? "none" : "zelwpan " + device.toString());
         },
         [this, guard](const text::Words& arguments, const text::Words& value) {
             const std::optional<Answer> refusal = guard();
             const int index = m_configuration.toolIndex(arguments[0]);
             return refusal ? *refusal : index < 0 ? Answer::noSuchTool() : assign(index, value);
         }});
}

Answer RadioNetwork::assign(int toolIndex, const text::Words& value) {
    RadioDevice& assigned = m_assigned[static_cast<std::size_t>(toolIndex)];
    if (value == text::Words{"none"}) {
        assigned = RadioDevice();
        return Answer::ok();
    }
    if (value.size() != 4 || value[0] != "zelwpan") {
        return Answer::refuse(ErrorNumber::BadValue,
                              "expected none, or zelwpan with vendor, model and serial");
    }
    const RadioDevice device = {value[1], value[2], value[3]};
    const auto holder = std::find(m_assigned.begin(), m_assigned.end(), device);
    const auto seen = std::find(m_inRange.begin(), m_inRange.end(), device);
    if (holder == m_assigned.end() && seen == m_inRange.end()) {
        return Answer::refuse(ErrorNumber::BadBody, "the radio device is not known");
    }
    const RadioDevice known = holder != m_assigned.end() ? *holder : *seen;
    if (holder != m_assigned.end()) {
        *holder = RadioDevice(); // a device belongs to one tool: it moves
    }
    assigned = known;
    return Answer::ok();
}

Answer RadioNetwork::describe(const std::string& vendor, const std::string& model) const {
    for (const Description& each : m_descriptions) {
        if (each.vendor == vendor && each.model == model) {
            return Answer::value("\"" + each.text + "\"");
        }
    }
    return Answer::refuse(ErrorNumber::BadBody, "no such model");
}

void RadioNetwork::addNetwork(ParameterTable& table) {
    table.add("zelwpan available",
              {0, withRadio,
               [this](const text::Words&) { return Answer::value(text::yesNo(m_available)); },
               nullptr});
    table.add("zelwpan number_of_transceivers",
              {0, withRadio,
               [this](const text::Words&) {
                   return Answer::value(std::to_string(m_available ? m_transceivers.size() : 0));
               },
               nullptr});
    table.add("zelwpan transceiver",
              {1, withRadio,
               [this](const text::Words& arguments) {
                   const int number = text::readNumbered(arguments[0], 'd');
                   if (number < 1 || number > static_cast<int>(m_transceivers.size())) {
                       return Answer::refuse(ErrorNumber::BadBody, "no such transceiver");
                   }
                   return Answer::value(
                       m_transceivers[static_cast<std::size_t>(number - 1)].toString());
               },
               nullptr});
    table.add("zelwpan transceiver_present",
              {3, withRadio,
               [this](const text::Words& arguments) {
                   const RadioDevice asked = {arguments[0], arguments[1], arguments[2]};
                   for (std::size_t i = 0; i < m_transceivers.size(); ++i) {
                       if (m_transceivers[i] == asked) {
                           return Answer::value(
                               text::yesNo(m_available && m_transceiverPresent[i]));
                       }
                   }
                   return Answer::refuse(ErrorNumber::BadBody, "no such transceiver");
               },
               nullptr});
    table.add("zelwpan device_model_desc", {2, withRadio,
                                            [this](const text::Words& arguments) {
                                                return describe(arguments[0], arguments[1]);
                                            },
                                            nullptr});
}

} // namespace kestrel_simulator
