#pragma once

#include "workbench/controllersession.h"
#include "workbench/datareceiver.h"
#include "workbench/hostio.h"
#include "workbench/log.h"
#include "workbench/measurementmonitor.h"
#include "workbench/recorder.h"
#include "workbench/requesterregistry.h"

#include <memory>

/// The workbench without its window, put together as the window does it.
struct WorkbenchParts {
    workbench::Log log;
    workbench::RequesterRegistry registry;
    workbench::Recorder recorder;
    workbench::DataReceiver receiver{registry, recorder};
    workbench::MeasurementMonitor monitor{registry};
    workbench::ControllerSession session{receiver, monitor, log};
    workbench::HostIo io{session, registry, log};

    void connectTo(quint16 port) {
        workbench::ControllerAddress address;
        address.port = port;
        session.connectTo(address);
    }

    IOManager& host() { return io; } ///< as a module sees it
};
