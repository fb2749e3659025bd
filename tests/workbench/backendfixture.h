#pragma once

#include "workbench/modules/backend.h"

/// The workbench without its window, and a module's view of it.
struct BackendFixture : workbench::Backend {
    void connectTo(quint16 port) {
        workbench::ControllerAddress address;
        address.port = port;
        session.connectTo(address);
    }

    IOManager& host() { return io; }
};
