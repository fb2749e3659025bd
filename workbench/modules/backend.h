#pragma once

#include "workbench/controller/commandnews.h"
#include "workbench/controller/controllersession.h"
#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/data/measurementteller.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/controller/datawatch.h"
#include "workbench/controller/measurementmonitor.h"
#include "workbench/controller/simulator/replaycontrol.h"
#include "workbench/controller/tools/outletfeed.h"
#include "workbench/controller/tools/toolfacts.h"
#include "workbench/modules/hostio.h"
#include "workbench/outlets/recorder.h"
#include "workbench/outlets/sending/channelmaker.h"
#include "workbench/outlets/sending/outlethub.h"
#include "workbench/text/logmodel.h"

namespace workbench {

/// The workbench without its window: everything that modules and the window talk to, wired up.
struct Backend {
    LogModel log;
    RequesterRegistry registry;
    Recorder recorder;
    OutletHub outlets{makeOutletChannel};
    MeasurementTeller teller{registry};
    DataReceiver receiver{registry, recorder, &teller, &outlets};
    MeasurementMonitor monitor{teller};
    DataWatch watch{receiver, monitor, teller};
    ControllerSession session{receiver, monitor, log};
    CommandNews news{session, log};
    ReplayControl replay{session, receiver, watch, monitor};
    HostIo io{session, registry, log, &outlets};
    ToolFacts facts{session, monitor};
    OutletFeed feed{facts, outlets};
};

} // namespace workbench
