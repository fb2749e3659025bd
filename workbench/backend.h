#pragma once

#include "workbench/controllersession.h"
#include "workbench/datareceiver.h"
#include "workbench/hostio.h"
#include "workbench/measurementmonitor.h"
#include "workbench/recorder.h"
#include "workbench/requesterregistry.h"
#include "workbench/text/log.h"

namespace workbench {

/// The workbench without its window: everything that modules and the window talk to, wired up.
struct Backend {
    Log log;
    RequesterRegistry registry;
    Recorder recorder;
    DataReceiver receiver{registry, recorder};
    MeasurementMonitor monitor{registry};
    ControllerSession session{receiver, monitor, log};
    HostIo io{session, registry, log};
};

} // namespace workbench
