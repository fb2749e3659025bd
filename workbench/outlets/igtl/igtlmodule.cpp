#include "workbench/outlets/igtl/igtlchannel.h"

namespace {

std::unique_ptr<workbench::OutletChannel>
make(const workbench::OutletUrl& url, const workbench::ChannelSurroundings& /*surroundings*/) {
    return std::make_unique<workbench::IgtlChannel>(url);
}

} // namespace

extern "C" __attribute__((visibility("default"))) const workbench::ChannelModule*
kestrelOutletModule() {
    static constexpr workbench::ChannelModule module = {KESTREL_VERSION, &make};
    return &module;
}
