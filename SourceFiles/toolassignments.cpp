#include "SourceFiles/toolassignments.h"

#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "host_api/iomanager.h"

#include <algorithm>

ToolAssignments::ToolAssignments(const HostPointer& iom, const BackendVersions* versions)
    : m_iom(iom)
    , m_controllersDevices(iom, versions) {}

int ToolAssignments::readReference(int tool) const {
    hostlink::Reply reply;
    const int result = m_iom->get_parameter_string(
        reply.buffer(), "measurementtool reference_of_tool b%2.2d", tool + 1);
    if (result != 0 || reply.is("none")) {
        return none;
    }
    return std::max(0, bodytexts::bodyNumber(reply.toString())) - 1;
}

void ToolAssignments::read(int tools) {
    m_references.clear();
    m_remembered.clear();
    m_devices.clear();
    growTo(tools);
}

void ToolAssignments::growTo(int tools) {
    for (int tool = m_references.size(); tool < std::min(tools, hostlink::mostBodies); ++tool) {
        // All asked before anything is stored: a host may act on the dialog inside a question.
        const int reference = readReference(tool);
        MtRadioDevice device;
        m_controllersDevices.readAssigned(tool, device);
        m_references.append(reference);
        m_remembered.append(reference);
        m_devices.append(device);
    }
}

void ToolAssignments::choose(int tool, int reference) {
    m_remembered[tool] = reference;
    m_references[tool] = reference;
}

void ToolAssignments::choose(int tool, const MtRadioDevice& device) {
    m_devices[tool] = device;
}

void ToolAssignments::hideFrom(int reference) {
    for (int& assigned : m_references) {
        if (assigned >= reference) {
            assigned = none;
        }
    }
}

void ToolAssignments::restoreBelow(int references, int tools) {
    for (int tool = 0; tool < m_references.size(); ++tool) {
        if (m_remembered.at(tool) < references) {
            m_references[tool] = m_remembered.at(tool);
        }
    }
    for (int tool = 0; tool < std::min(tools, m_references.size()); ++tool) {
        if (m_references.at(tool) == none) {
            choose(tool, readReference(tool));
        }
    }
}

void ToolAssignments::writeReferences(int tools) const {
    for (int number = 1; number <= tools; ++number) {
        const int assigned = reference(number - 1);
        const int result =
            assigned < 0
                ? m_iom->set_parameter("measurementtool reference_of_tool b%2.2d none", number)
                : m_iom->set_parameter("measurementtool reference_of_tool b%2.2d b%2.2d", number,
                                       assigned + 1);
        if (result != 0) {
            hostlink::log(m_iom, QStringLiteral("Error: Unable to set ref. body"));
        }
    }
}

void ToolAssignments::writeDevices(int tools) const {
    if (!m_controllersDevices.areSupported()) {
        return;
    }
    for (int number = 1; number <= tools; ++number) {
        const MtRadioDevice assigned = device(number - 1);
        const int result =
            assigned == MtRadioDevice()
                ? m_iom->set_parameter("measurementtool device b%2.2d none", number)
                : m_iom->set_parameter("measurementtool device b%2.2d zelwpan %s %s %s", number,
                                       assigned.vendor.toUtf8().constData(),
                                       assigned.model.toUtf8().constData(),
                                       assigned.serial.toUtf8().constData());
        if (result != 0) {
            hostlink::log(m_iom, QStringLiteral("Error: Unable to set radio device"));
        }
    }
}
