#pragma once

#include "workbench/controller/controllersession.h"
#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/data/datawatch.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/controller/measurementmonitor.h"
#include "workbench/controller/measurementteller.h"
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
