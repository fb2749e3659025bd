#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace workbench {

/// One entry of the menu bar.
struct MenuEntry {
    enum class Owner { Workbench, Module, StandIn, Simulator };

    QString menuName; ///< title; menus of the same title (with or without "&") are one menu
    int menuOrder = 0;
    int entryOrder = 0; ///< a line is drawn where the hundreds change
    QAction* action = nullptr;
    Owner owner = Owner::Workbench;
};

/// Fills a menu bar by order numbers: menus and the entries in them stand in ascending order, those
/// with the same number in the order in which they were added. When a menu has several numbers the
/// lowest counts.
class MenuArranger : public QObject {
    Q_OBJECT

public:
    explicit MenuArranger(QMenuBar* menuBar);

    /// The action stays its owner's; when it is deleted the entry is gone.
    void add(const MenuEntry& entry);
    void remove(MenuEntry::Owner owner);

    /// Whether a menu of this title has an entry.
    bool has(const QString& menuName) const;

    /// Builds the menu bar anew from the entries. Its menus show tool tips.
    void arrange();

Q_SIGNALS:
    void aboutToShow(); ///< one of the menus

private:
    struct Item {
        MenuEntry entry;
        QPointer<QAction> action;
    };
    void fill(QMenu& menu, const std::vector<const Item*>& items);

    QMenuBar* m_menuBar;
    std::vector<Item> m_items;
    std::vector<QPointer<QMenu>> m_menus;
};

} // namespace workbench
