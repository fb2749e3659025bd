#include "general/host/hostpointer.h"

#include "host_api/iomanager.h"

#include <utility>

namespace {

class DisconnectedHost final : public IOManager {
public:
    int set_channel_option(int, int, int) override { return failed; }
    int send_command(char*, const char*) override { return failed; }
    int get_parameter_string(char*, const char*, ...) override { return failed; }
    int get_parameter_int(int*, const char*, ...) override { return failed; }
    int get_parameter_double(double*, const char*, ...) override { return failed; }
    int get_parameter_bool(bool*, const char*, ...) override { return failed; }
    int set_parameter(const char*, ...) override { return failed; }
    int register_data_requester(const char*, Requester*) override { return failed; }
    int unregister_data_requester(const char*, Requester*) override { return failed; }
    int register_measurement_requester(Requester*) override { return failed; }
    int unregister_measurement_requester(Requester*) override { return failed; }
    void write_log(const char*, const char*, int, const char*) override {}

private:
    static constexpr int failed = -1;
};

IOManager* disconnected() {
    static DisconnectedHost host;
    return &host;
}

} // namespace

HostPointer::HostPointer(IOManager* host)
    : m_line(std::make_shared<Line>(Line{host != nullptr ? host : disconnected(), false})) {}

HostPointer::Operation HostPointer::operator->() const {
    return Operation(m_line->hungUp ? disconnected() : m_line->host);
}

void HostPointer::hangUp() const {
    m_line->hungUp = true;
}

bool HostPointer::isHungUp() const {
    return m_line->hungUp;
}

HostPointer::Operation HostPointer::afterHangingUp() const {
    return Operation(m_line->host);
}

VersionsPointer::VersionsPointer(const BackendVersions* versions, HostPointer host)
    : m_versions(versions)
    , m_host(std::move(host)) {}

VersionsPointer::operator const BackendVersions*() const {
    return m_host.isHungUp() ? nullptr : m_versions;
}
