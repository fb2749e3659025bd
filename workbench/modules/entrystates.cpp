#include "workbench/modules/entrystates.h"

#include <QAction>

#include <algorithm>

namespace workbench {

namespace {

// Without a tool tip of its own an action tells its text again, which a menu does not need.
QString ownToolTip(const QAction& action) {
    QAction same(action.text());
    same.setIconText(action.iconText());
    return same.toolTip() == action.toolTip() ? QString() : action.toolTip();
}

} // namespace

void EntryStates::add(QAction* action, Needs needs) {
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                   [](const Entry& entry) { return entry.action.isNull(); }),
                    m_entries.end());
    if (action == nullptr || !needs) {
        return;
    }
    m_entries.push_back({action, needs, Obstacle::None, true, {}, {}});
    show(m_entries.back(), obstacleTo(needs, m_now));
}

void EntryStates::remove(const QAction* action) {
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [action](const Entry& entry) { return entry.action == action; });
    if (action != nullptr && found != m_entries.end()) {
        show(*found, Obstacle::None);
        m_entries.erase(found);
    }
}

void EntryStates::apply(const Situation& now) {
    m_now = now;
    for (Entry& entry : m_entries) {
        if (entry.action) {
            show(entry, obstacleTo(entry.needs, now));
        }
    }
}

void EntryStates::show(Entry& entry, Obstacle obstacle) {
    if (obstacle == entry.shown) {
        return;
    }
    QAction& action = *entry.action;
    const QString said = textOf(entry.shown);
    if (said.isEmpty() || action.toolTip() != said) {
        entry.toolTip = ownToolTip(action); // also one that the owner has changed meanwhile
    }
    if (said.isEmpty() || action.statusTip() != said) {
        entry.statusTip = action.statusTip();
    }
    if (!prevents(entry.shown)) {
        entry.isEnabled = action.isEnabled();
    }
    entry.shown = obstacle;
    const bool isObstructed = obstacle != Obstacle::None;
    action.setToolTip(isObstructed ? textOf(obstacle) : entry.toolTip);
    action.setStatusTip(isObstructed ? textOf(obstacle) : entry.statusTip);
    action.setEnabled(!prevents(obstacle) && entry.isEnabled);
}

} // namespace workbench
