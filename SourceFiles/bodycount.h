#pragma once

#include "general/host/hostlink.h"
#include "general/host/hostpointer.h"

#include <algorithm>
#include <optional>

/// How many tools or references there are. The count reaches the controller while it is edited and
/// can be taken back. Without widgets; GUI thread.
class BodyCount {
public:
    enum Kind { Tools, References };

    /// `iom` stays the host's.
    BodyCount(const HostPointer& iom, Kind kind);

    int current() const { return m_current; } ///< as the controller says, even if nonsense
    int primary() const { return m_primary; } ///< what is restored
    /// So many bodies are shown and asked for.
    int bounded() const { return std::clamp(m_current, 0, hostlink::mostBodies); }

    /// What the controller allows; none, and nothing changed, when the query fails.
    std::optional<int> readMaximum() const;
    /// Reads current and primary count. False when the query fails: then tools keep theirs and the
    /// current number of references is 0.
    bool read();

    /// Sets the controller's count, not yet the current one. A refusal is logged.
    bool set(int count) const;
    void accept(int count) { m_current = count; }

    /// Takes an edit back; false when there was none. A refusal is logged and not repeated.
    bool restore();

    /// Sets the controller to the current count unless it has it. A refusal is logged.
    void write() const;
    void settle() { m_primary = m_current; } ///< nothing is left to be restored

private:
    std::optional<int> ask() const;

    HostPointer m_iom;
    Kind m_kind;
    int m_primary = 0;
    int m_current = 0;
};
