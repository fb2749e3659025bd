#pragma once

#include <QObject>

namespace workbench {

class OutletHub;
class ToolFacts;

/// Sees to it that there is something to send: while there are outlets the facts about the tools
/// are wanted, with which the controller sends the lines of tools and references, and the hub is
/// told which reference each tool has. GUI thread.
class OutletFeed : public QObject {
    Q_OBJECT

public:
    OutletFeed(ToolFacts& facts, OutletHub& hub, QObject* parent = nullptr);

    /// To be called after an outlet was added or removed.
    void refresh();

private:
    void tellReferences();

    ToolFacts& m_facts;
    OutletHub& m_hub;
};

} // namespace workbench
