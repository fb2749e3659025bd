#pragma once

#include "workbench/controller/controllersession.h"
#include "workbench/controller/datareceiver.h"
#include "workbench/controller/datawatch.h"
#include "workbench/controller/measurementmonitor.h"
#include "workbench/controller/measurementteller.h"
#include "workbench/controller/requesterregistry.h"
#include "workbench/modules/hostio.h"
#include "workbench/outlets/recorder.h"
#include "workbench/text/logmodel.h"

namespace workbench {

/// The workbench without its window: everything that modules and the window talk to, wired up.
struct Backend {
    LogModel log;
    RequesterRegistry registry;
    Recorder recorder;
    MeasurementTeller teller{registry};
    DataReceiver receiver{registry, recorder, &teller};
    MeasurementMonitor monitor{teller};
    DataWatch watch{receiver, monitor, teller};
    ControllerSession session{receiver, monitor, log};
    HostIo io{session, registry, log};
};

} // namespace workbench
