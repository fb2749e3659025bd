#include "general/hostlink.h"

#include "host_api/backendversions.h"
#include "host_api/iomanager.h"

#include <cstring>

namespace hostlink {

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

} // namespace

char* Reply::buffer() {
    m_text.fill('\0');
    return m_text.data();
}

bool Reply::is(const char* expected) const {
    return std::strcmp(text(), expected) == 0;
}

void log(IOManager* iom, const QString& text) {
    iom->write_log("standard", "KESTREL3", 1, text.toUtf8().constData());
}

void log(IOManager* iom, const char* text, const QString& value) {
    log(iom, QString::fromUtf8(text).replace(QLatin1String("%1"), value));
}

IOManager* orDisconnected(IOManager* iom) {
    static DisconnectedHost disconnected;
    return iom != nullptr ? iom : &disconnected;
}

bool protocolPasses(const BackendVersions* versions, int major, int minor) {
    if (versions == nullptr) {
        return false;
    }
    const VersionInfo& protocol = versions->protocol();
    if (protocol.ma != major) {
        return protocol.ma > major;
    }
    if (protocol.mi != minor) {
        return protocol.mi > minor;
    }
    return protocol.pa >= -1; // unlike operator>=: an unknown patch passes
}

bool isMtAvailable(IOManager* iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 1, 3)) {
        return false;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "measurementtool available") == 0 &&
           reply.is("yes");
}

bool isTrackingAvailable(IOManager* iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 0, 17)) {
        return true;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "tracking available") != 0 || !reply.is("no");
}

bool isConfigLocked(IOManager* iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 1, 9)) {
        return false;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "config is_changeable") == 0 && reply.is("no");
}

} // namespace hostlink
