#include "general/host/hostlink.h"

#include "host_api/backendversions.h"
#include "host_api/iomanager.h"

#include <cstring>

namespace hostlink {

char* Reply::buffer() {
    m_text.fill('\0');
    return m_text.data();
}

bool Reply::is(const char* expected) const {
    return std::strcmp(text(), expected) == 0;
}

void log(const HostPointer& iom, const QString& text) {
    iom->write_log("standard", "KESTREL3", 1, text.toUtf8().constData());
}

void log(const HostPointer& iom, const char* text, const QString& value) {
    log(iom, QString::fromUtf8(text).replace(QLatin1String("%1"), value));
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

bool isMtAvailable(const HostPointer& iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 1, 3)) {
        return false;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "measurementtool available") == 0 &&
           reply.is("yes");
}

bool isTrackingAvailable(const HostPointer& iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 0, 17)) {
        return true;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "tracking available") != 0 || !reply.is("no");
}

bool isConfigLocked(const HostPointer& iom, const BackendVersions* versions) {
    if (!protocolPasses(versions, 1, 9)) {
        return false;
    }
    Reply reply;
    return iom->get_parameter_string(reply.buffer(), "config is_changeable") == 0 && reply.is("no");
}

} // namespace hostlink
