#pragma once

#include "SourceFiles/radiodevices.h"

#include <QList>

/// Which reference body and which radio device belong to each tool, as edited until they are
/// written. The lists grow with the number of tools and never shrink before they are read anew, so
/// that a tool that comes back has its choices. Without widgets; GUI thread.
class ToolAssignments {
public:
    static constexpr int none = -1; ///< of references

    /// Both stay the host's.
    ToolAssignments(const HostPointer& iom, const BackendVersions* versions);

    /// The controller's reference (0-based) of a tool (0-based), none on every doubt.
    int readReference(int tool) const;

    /// Forgets all choices and reads those of so many tools.
    void read(int tools);
    /// Reads those of the tools beyond the known ones.
    void growTo(int tools);

    bool holds(int tool) const { return tool >= 0 && tool < m_references.size(); }
    int reference(int tool) const { return m_references.value(tool, none); }
    MtRadioDevice device(int tool) const { return m_devices.value(tool); }
    /// Also by a tool that is not shown.
    bool isAssigned(const MtRadioDevice& device) const { return m_devices.contains(device); }

    /// Choices for a tool that the lists hold; `none` or no device to take one back.
    void choose(int tool, int reference);
    void choose(int tool, const MtRadioDevice& device);

    /// Fewer references: what is assigned from this one on becomes none, and is remembered.
    void hideFrom(int reference);
    /// More references: what is remembered below `references` comes back; the controller is asked
    /// for the shown tools that then have none.
    void restoreBelow(int references, int tools);

    /// For each of the tools, changed or not.
    void writeReferences(int tools) const;
    void writeDevices(int tools) const; ///< nothing where devices are not supported

private:
    HostPointer m_iom;
    RadioDevices m_controllersDevices;
    QList<int> m_references;
    QList<int> m_remembered; ///< references as read or chosen, while fewer of them hide some
    QList<MtRadioDevice> m_devices;
};
