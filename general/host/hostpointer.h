#pragma once

#include "general/host/underway.h"

#include <memory>

class BackendVersions;
class IOManager;

/// The host's command channel as the classes of a plug-in hold it: used like an `IOManager*`, never
/// null. It counts each operation as under way until the end of the expression that calls it, and
/// can be hung up: from then on every operation fails at once and does not reach the host any more.
/// Copies hang up together. GUI thread only.
class HostPointer {
public:
    /// One operation; a temporary.
    class Operation {
    public:
        explicit Operation(IOManager* host)
            : m_host(host) {}
        IOManager* operator->() const { return m_host; }

    private:
        underway::Operation m_underWay;
        IOManager* m_host;
    };

    /// Null stands for a host that answers nothing.
    HostPointer(IOManager* host); // implicit: the dialogs take an IOManager*

    Operation operator->() const;

    void hangUp() const;
    bool isHungUp() const;

    /// Reaches the host also after hanging up: to take back what it was asked before.
    Operation afterHangingUp() const;

private:
    struct Line {
        IOManager* host;
        bool hungUp;
    };
    std::shared_ptr<Line> m_line;
};

/// The host's version record, for as long as the host has not been hung up; null from then on.
class VersionsPointer {
public:
    VersionsPointer(const BackendVersions* versions, HostPointer host);

    operator const BackendVersions*() const; // implicit: used like the pointer

private:
    const BackendVersions* m_versions;
    HostPointer m_host;
};
