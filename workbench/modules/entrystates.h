#pragma once

#include "workbench/modules/obstacle.h"

#include <QPointer>
#include <QString>

#include <vector>

class QAction;

namespace workbench {

/// Enables entries as the situation allows. One that cannot be used now says why instead of its own
/// texts: in its tool tip for the mouse, in its status tip for the keyboard.
class EntryStates {
public:
    /// Takes effect at once. The action stays its owner's; one that needs nothing is left alone.
    void add(QAction* action, Needs needs);

    /// Leaves it as it was found.
    void remove(const QAction* action);

    void apply(const Situation& now);

private:
    struct Entry {
        QPointer<QAction> action;
        Needs needs;
        Obstacle shown = Obstacle::None;
        bool isEnabled = true; // what follows is its own
        QString toolTip;       // empty: its text
        QString statusTip;
    };
    static void show(Entry& entry, Obstacle obstacle);

    std::vector<Entry> m_entries;
    Situation m_now;
};

} // namespace workbench
