#include "SourceFiles/toolparameters.h"

#include "general/host/hostlink.h"
#include "host_api/iomanager.h"

#include <algorithm>
#include <cmath>

namespace {

// A tool number as log lines name it: "b%1" becomes b01.
QString twoDigits(int number) {
    return QString::number(number).rightJustified(2, QLatin1Char('0'));
}

} // namespace

const ToolParameters::Shared ToolParameters::Duration = {
    "measurementtool measurement_duration b%2.2d",
    "measurementtool measurement_duration b%2.2d %.3f", 1.0, "Error: Unable to get mea duration",
    "Error: Unable to set mea duration for body b%1"};

const ToolParameters::Shared ToolParameters::TipTolerance = {
    "measurementtool measurement_tip_tolerance b%2.2d",
    "measurementtool measurement_tip_tolerance b%2.2d %.3f", 1.5,
    "Error: Unable to get mea tip tolerance", "Error: Unable to set tip tolerance for body b%1"};

const ToolParameters::Shared ToolParameters::StartAngle = {
    "measurementtool measurement_start_angle b%2.2d",
    "measurementtool measurement_start_angle b%2.2d %.3f", 30.0,
    "Error: Unable to get mea angular speed",
    "Error: Unable to set mea angular speed for body b%1"};

const ToolParameters::Shared ToolParameters::StartLeadTime = {
    "measurementtool measurement_start_lead_time b%2.2d",
    "measurementtool measurement_start_lead_time b%2.2d %.3f", 0.2,
    "Error: Unable to get mea start lead time",
    "Error: Unable to set mea. start lead time for body b%1"};

ToolParameters::ToolParameters(const HostPointer& iom, const BackendVersions* versions)
    : m_iom(iom)
    , m_versions(versions, iom) {}

double ToolParameters::read(const Shared& parameter, bool hasTools) const {
    if (!hasTools) {
        return parameter.fallback;
    }
    constexpr int first = 1;
    double value = 0.0;
    if (m_iom->get_parameter_double(&value, parameter.question, first) == 0 &&
        std::isfinite(value)) {
        return value;
    }
    hostlink::log(m_iom, QString::fromLatin1(parameter.readFailure));
    return parameter.fallback;
}

void ToolParameters::write(const Shared& parameter, int tools, double value,
                           double unchanged) const {
    for (int number = 1; number <= tools; ++number) {
        double current = 0.0;
        if (m_iom->get_parameter_double(&current, parameter.question, number) != 0) {
            current = -1.0;
        }
        if (current != unchanged && m_iom->set_parameter(parameter.setting, number, value) != 0) {
            hostlink::log(m_iom, parameter.writeFailure, twoDigits(number));
        }
    }
}

bool ToolParameters::readStartSimulation(bool hasTools) const {
    if (!hasTools) {
        return false;
    }
    hostlink::Reply reply;
    if (m_iom->get_parameter_string(reply.buffer(),
                                    "measurementtool measurement_start_simulation b01") != 0) {
        hostlink::log(m_iom,
                      QStringLiteral("Error: Unable to get state of measurement start simulation"));
        return false;
    }
    return reply.is("yes");
}

void ToolParameters::writeStartSimulation(int tools, bool on) const {
    for (int number = 1; number <= tools; ++number) {
        hostlink::Reply reply;
        const int result = m_iom->get_parameter_string(
            reply.buffer(), "measurementtool measurement_start_simulation b%2.2d", number);
        if (result == 0 && reply.is("yes") == on) {
            continue;
        }
        if (m_iom->set_parameter("measurementtool measurement_start_simulation b%2.2d %s", number,
                                 on ? "yes" : "no") != 0) {
            hostlink::log(m_iom, "Error: Unable to activate start simulation for body b%1",
                          twoDigits(number));
        }
    }
}

bool ToolParameters::hasOutputFormats() const {
    return hostlink::protocolPasses(m_versions, 1, 13);
}

bool ToolParameters::readOldOutputFormat() const {
    if (!hasOutputFormats()) {
        return true;
    }
    hostlink::Reply reply;
    const int result = m_iom->get_parameter_string(reply.buffer(), "measurementtool output_6dmt");
    return result != 0 || !reply.is("no");
}

void ToolParameters::writeOldOutputFormat(bool old) const {
    bool isOld = true;
    if (m_iom->get_parameter_bool(&isOld, "measurementtool output_6dmt") != 0) {
        isOld = true;
    }
    if (!old && isOld) {
        if (m_iom->set_parameter("measurementtool output_6dmt no") != 0) {
            hostlink::log(m_iom, QStringLiteral("Error: Unable to (un)set to old output format"));
        }
    } else if (old && !isOld) {
        if (m_iom->set_parameter("measurementtool output_6dmt yes") != 0) {
            hostlink::log(m_iom, QStringLiteral("Error: Unable to set to old output format"));
        }
    }
}

double ToolParameters::diameterOnController(int number) const {
    if (number < 1 || !hostlink::protocolPasses(m_versions, 1, 13)) {
        return 0.0;
    }
    double radius = 0.0;
    const int result =
        m_iom->get_parameter_double(&radius, "measurementtool tip_radius b%2.2d", number);
    const double diameter = 2.0 * radius;
    return result == 0 && radius > 0.0 && std::isfinite(diameter) ? diameter : 0.0;
}

void ToolParameters::readDiameters(int tools) {
    m_diameters.clear();
    for (int number = 1; number <= tools; ++number) {
        m_diameters.append(diameterOnController(number));
    }
}

void ToolParameters::setDiameter(int index, double value) {
    if (index < m_diameters.size()) {
        m_diameters[index] = value;
    } else {
        m_diameters.append(value);
    }
}

void ToolParameters::writeDiameters(int tools) const {
    for (int number = 1; number <= tools; ++number) {
        const double radius = 0.5 * diameter(number - 1);
        if (radius == 0.5 * diameterOnController(number)) {
            continue;
        }
        if (m_iom->set_parameter("measurementtool tip_radius b%2.2d %.3f", number, radius) != 0) {
            hostlink::log(m_iom, "Error: Unable to set tip radius of mea tool b0%1",
                          QString::number(number));
        }
    }
}

int ToolParameters::truncated(double value) {
    constexpr double farBeyondEveryRange = 1e6;
    return static_cast<int>(std::clamp(value, -farBeyondEveryRange, farBeyondEveryRange));
}
