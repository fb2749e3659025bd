#include "SourceFiles/bodycount.h"

#include "host_api/iomanager.h"

namespace {

constexpr const char* setting(BodyCount::Kind kind) {
    return kind == BodyCount::Tools ? "measurementtool number_of_tools %d"
                                    : "measurementtool number_of_references %d";
}

} // namespace

BodyCount::BodyCount(const HostPointer& iom, Kind kind)
    : m_iom(iom)
    , m_kind(kind) {}

std::optional<int> BodyCount::readMaximum() const {
    int maximum = 0;
    const int result = m_iom->get_parameter_int(
        &maximum, m_kind == Tools ? "measurementtool max_number_of_tools"
                                  : "measurementtool max_number_of_references");
    return result == 0 ? std::optional<int>(std::max(0, maximum)) : std::nullopt;
}

std::optional<int> BodyCount::ask() const {
    int count = 0;
    const int result =
        m_iom->get_parameter_int(&count, m_kind == Tools ? "measurementtool number_of_tools"
                                                         : "measurementtool number_of_references");
    return result == 0 ? std::optional<int>(count) : std::nullopt;
}

bool BodyCount::read() {
    if (m_kind == References) {
        m_current = 0;
    }
    const std::optional<int> count = ask();
    if (!count) {
        return false;
    }
    m_current = *count;
    m_primary = *count;
    return true;
}

bool BodyCount::set(int count) const {
    if (m_iom->set_parameter(setting(m_kind), count) != 0) {
        // Also of references: the text is required.
        hostlink::log(m_iom, "Error: Unable to set number of mea tools = %1",
                      QString::number(count));
        return false;
    }
    return true;
}

bool BodyCount::restore() {
    if (m_current == m_primary) {
        return false;
    }
    const int primary = m_primary;
    if (m_iom->set_parameter(setting(m_kind), primary) != 0) {
        hostlink::log(m_iom,
                      m_kind == Tools ? "Error: Unable to set number of mea tools = %1"
                                      : "Error: Unable to set number of references = %1",
                      QString::number(primary));
    }
    m_current = primary;
    return true;
}

void BodyCount::write() const {
    if (ask().value_or(-1) != m_current && m_iom->set_parameter(setting(m_kind), m_current) != 0) {
        hostlink::log(m_iom,
                      m_kind == Tools ? "Error: Unable to set number of mea tools = %1"
                                      : "Error: Unable to set number of mea references = %1",
                      QString::number(m_current));
    }
}
