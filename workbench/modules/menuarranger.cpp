#include "workbench/modules/menuarranger.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace workbench {

namespace {

QString plainTitle(const QString& title) {
    return QString(title).remove(QLatin1Char('&'));
}

} // namespace

MenuArranger::MenuArranger(QMenuBar* menuBar)
    : QObject(menuBar)
    , m_menuBar(menuBar) {}

void MenuArranger::add(const MenuEntry& entry) {
    if (entry.action != nullptr) {
        m_items.push_back({entry, entry.action});
    }
}

void MenuArranger::remove(MenuEntry::Owner owner) {
    m_items.erase(std::remove_if(m_items.begin(), m_items.end(),
                                 [owner](const Item& item) { return item.entry.owner == owner; }),
                  m_items.end());
}

bool MenuArranger::has(const QString& menuName) const {
    const QString title = plainTitle(menuName);
    return std::any_of(m_items.begin(), m_items.end(), [&title](const Item& item) {
        return item.action && plainTitle(item.entry.menuName) == title;
    });
}

void MenuArranger::arrange() {
    struct Menu {
        QString title;
        int order = 0;
        std::vector<const Item*> items;
    };
    std::vector<Menu> menus;
    for (const Item& item : m_items) {
        if (!item.action) {
            continue;
        }
        const QString title = plainTitle(item.entry.menuName);
        auto menu = std::find_if(menus.begin(), menus.end(), [&title](const Menu& candidate) {
            return plainTitle(candidate.title) == title;
        });
        if (menu == menus.end()) {
            menus.push_back({item.entry.menuName, item.entry.menuOrder, {}});
            menu = menus.end() - 1;
        }
        menu->order = std::min(menu->order, item.entry.menuOrder);
        menu->items.push_back(&item);
    }
    std::stable_sort(menus.begin(), menus.end(),
                     [](const Menu& a, const Menu& b) { return a.order < b.order; });
    // An old menu may be the one whose entry is being carried out right now.
    for (const QPointer<QMenu>& menu : m_menus) {
        if (menu) {
            m_menuBar->removeAction(menu->menuAction());
            menu->clear();
            menu->deleteLater();
        }
    }
    m_menus.clear();
    for (const Menu& menu : menus) {
        auto* const target = m_menuBar->addMenu(menu.title);
        target->setToolTipsVisible(true);
        connect(target, &QMenu::aboutToShow, this, &MenuArranger::aboutToShow);
        m_menus.emplace_back(target);
        fill(*target, menu.items);
    }
}

void MenuArranger::fill(QMenu& menu, const std::vector<const Item*>& items) {
    std::vector<const Item*> sorted = items;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Item* a, const Item* b) {
        return a->entry.entryOrder < b->entry.entryOrder;
    });
    const Item* before = nullptr;
    for (const Item* item : sorted) {
        if (before != nullptr && before->entry.entryOrder / 100 != item->entry.entryOrder / 100) {
            menu.addSeparator();
        }
        menu.addAction(item->action);
        before = item;
    }
}

} // namespace workbench
