#include "general/host/toolqueries.h"

#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "host_api/backendversions.h"
#include "host_api/iomanager.h"

namespace toolqueries {

bool usesOldFormat(const HostPointer& iom, const BackendVersions* versions, bool current) {
    if (!hostlink::protocolPasses(versions, 1, 13)) {
        return current;
    }
    // The result is not looked at: a query that fails without a value leaves the current choice.
    bool oldFormat = current;
    iom->get_parameter_bool(&oldFormat, "measurementtool output_6dmt");
    return oldFormat;
}

void activateLines(const HostPointer& iom, bool oldFormat) {
    iom->set_parameter(oldFormat ? "output active chmon 6dmt yes"
                                 : "output active chmon 6dmt2 yes");
    iom->set_parameter("output active chmon 6dmtr yes");
}

bool isToolCalibrated(const HostPointer& iom, int tool) {
    hostlink::Reply reply;
    return iom->get_parameter_string(reply.buffer(), "body calibrated measurementtool b%2.2d",
                                     tool + 1) == 0 &&
           reply.is("yes") &&
           iom->get_parameter_string(reply.buffer(), "measurementtool tip_calibrated b%2.2d",
                                     tool + 1) == 0 &&
           reply.is("yes");
}

std::optional<int> referenceOfTool(const HostPointer& iom, int tool) {
    hostlink::Reply reply;
    if (iom->get_parameter_string(reply.buffer(), "measurementtool reference_of_tool b%2.2d",
                                  tool + 1) != 0 ||
        reply.is("none")) {
        return std::nullopt;
    }
    return bodytexts::bodyNumber(reply.toString()) - 1;
}

bool isOldCompactSystem(const BackendVersions* versions) {
    return versions != nullptr && versions->hubModel().startsWith(QLatin1String("MINIRIG")) &&
           versions->systemPt() < VersionInfo(2, 9, 4);
}

} // namespace toolqueries
