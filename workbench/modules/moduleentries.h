#pragma once

#include "host_api/guielement.h"

#include <QAction>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace workbench {

class EntryStates;
class MenuArranger;

/// What is kept of a module's entry while there is no module that offers it.
struct EntryMemo {
    QString menuName;
    int menuOrder = 0;
    QString text;
    int entryOrder = 0;

    bool operator==(const EntryMemo& other) const;
};

/// The entries of modules in the menus. While nothing is offered, entries that were offered before
/// have a stand-in that says why they cannot be used, and so have those that an observer is not
/// offered. The menu that modules are made for is there in any case.
class ModuleEntries {
public:
    static constexpr int maxKnown = 50;

    /// Both outlive this object.
    ModuleEntries(MenuArranger& menus, EntryStates& states);
    ~ModuleEntries();

    /// What was offered to whom was no observer; the last times count too.
    const QVector<EntryMemo>& known() const { return m_known; }
    void setKnown(const QVector<EntryMemo>& known);

    /// The modules offer these from now on, until withdraw().
    void offer(const QList<_GuiElement*>& elements, bool isObserver);

    /// The modules are about to be torn down.
    void withdraw();

private:
    void removeAll();
    void standIn(const QVector<EntryMemo>& absent);

    MenuArranger& m_menus;
    EntryStates& m_states;
    QVector<EntryMemo> m_known;
    QList<QPointer<QAction>> m_offered;
    std::vector<std::unique_ptr<QAction>> m_standIns;
};

} // namespace workbench
