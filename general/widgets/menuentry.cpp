#include "general/widgets/menuentry.h"

#include "host_api/guielement.h"

#include <QAction>
#include <QObject>
#include <QWidget>

namespace menuentry {

void forgetWhenGone(_GuiElement& element, QObject* module) {
    // An entry and its content may each be gone late, when others have followed them.
    QObject::connect(element.content, &QObject::destroyed, module, [&element](QObject* gone) {
        if (element.content == gone) {
            element.content = nullptr;
        }
    });
    QObject::connect(element.menu_entry, &QObject::destroyed, module, [&element](QObject* gone) {
        if (element.menu_entry == gone) {
            element.menu_entry = nullptr;
        }
    });
}

} // namespace menuentry
