#include "workbench/modules/moduleentries.h"

#include "workbench/modules/entrystates.h"
#include "workbench/modules/menuarranger.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace workbench {

namespace {

constexpr int trackingOrder = 300; // where modules put their menu

QString trackingName() {
    return QCoreApplication::translate("workbench::ModuleEntries", "&Tracking");
}

EntryMemo memoOf(const _GuiElement& element) {
    return {element.menu_name, element.menu_order_number, element.menu_entry->text(),
            element.menu_entry_order_number};
}

// An entry that does not mind a measurement shows or hides what is there in any case.
Needs needsOf(const _GuiElement& element) {
    return element.action_active_during_measurement != 0
               ? Needs(Need::Nothing)
               : Need::Connection | Need::NoMeasurement | Need::Unlocked;
}

} // namespace

bool EntryMemo::operator==(const EntryMemo& other) const {
    return menuName == other.menuName && menuOrder == other.menuOrder && text == other.text &&
           entryOrder == other.entryOrder;
}

ModuleEntries::ModuleEntries(MenuArranger& menus, EntryStates& states)
    : m_menus(menus)
    , m_states(states) {}

ModuleEntries::~ModuleEntries() = default;

void ModuleEntries::setKnown(const QVector<EntryMemo>& known) {
    m_known = known.mid(0, maxKnown);
    withdraw();
}

void ModuleEntries::offer(const QList<_GuiElement*>& elements, bool isObserver) {
    removeAll();
    QVector<EntryMemo> offered;
    for (const _GuiElement* element : elements) {
        const EntryMemo memo = memoOf(*element);
        m_menus.add({memo.menuName, memo.menuOrder, memo.entryOrder, element->menu_entry,
                     MenuEntry::Owner::Module});
        m_states.add(element->menu_entry, needsOf(*element));
        m_offered += element->menu_entry;
        offered += memo;
    }
    if (!isObserver) {
        m_known = offered.mid(0, maxKnown);
    }
    QVector<EntryMemo> absent;
    std::copy_if(m_known.cbegin(), m_known.cend(), std::back_inserter(absent),
                 [&offered](const EntryMemo& memo) { return !offered.contains(memo); });
    standIn(absent);
    m_menus.arrange();
}

void ModuleEntries::withdraw() {
    removeAll();
    standIn(m_known);
    m_menus.arrange();
}

void ModuleEntries::removeAll() {
    for (const QPointer<QAction>& action : qAsConst(m_offered)) {
        m_states.remove(action);
    }
    m_offered.clear();
    m_menus.remove(MenuEntry::Owner::Module);
    m_menus.remove(MenuEntry::Owner::StandIn);
    m_standIns.clear();
}

void ModuleEntries::standIn(const QVector<EntryMemo>& absent) {
    const Needs needs = Need::Modules | Need::Connection | Need::Operator | Need::Offer;
    const auto add = [this, needs](const EntryMemo& memo) {
        m_standIns.push_back(std::make_unique<QAction>(memo.text));
        m_menus.add({memo.menuName, memo.menuOrder, memo.entryOrder, m_standIns.back().get(),
                     MenuEntry::Owner::StandIn});
        m_states.add(m_standIns.back().get(), needs);
    };
    std::for_each(absent.cbegin(), absent.cend(), add);
    if (!m_menus.has(trackingName())) {
        add({trackingName(), trackingOrder,
             QCoreApplication::translate("workbench::ModuleEntries", "&Entries of modules"), 0});
    }
}

} // namespace workbench
