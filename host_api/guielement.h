#pragma once

#include <QString>

class QAction;
class QWidget;

/// One menu entry that a module hands to the host. The record, the action and the widget stay the
/// module's; they are valid until ModuleInterface::exit_module.
///
/// The order of the fields is binary contract.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is fixed by the contract
struct _GuiElement {
    QAction* menu_entry = nullptr;   ///< the host puts it into its menu
    int menu_entry_order_number = 0; ///< place of the entry inside its menu, ascending
    QString menu_name;               ///< translated title of the host menu that takes the entry
    int menu_order_number = 0;       ///< place of that menu in the menu bar, ascending
    QWidget* content = nullptr;      ///< what the entry shows; a QDockWidget is docked by the host
    int action_active_during_measurement = 0; ///< 0: disabled while a measurement runs
};
