#include "workbench/window/look/toolbarroom.h"

#include <QEvent>
#include <QLayout>
#include <QToolBar>
#include <QToolButton>

namespace workbench {

ToolBarRoom::ToolBarRoom(QToolBar& bar)
    : QObject(&bar)
    , m_bar(bar) {
    bar.installEventFilter(this);
    connect(&bar, &QToolBar::orientationChanged, this, &ToolBarRoom::check);
    connect(&bar, &QToolBar::topLevelChanged, this, &ToolBarRoom::check);
}

bool ToolBarRoom::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ActionAdded:
    case QEvent::ActionRemoved:
    case QEvent::ActionChanged:
    case QEvent::FontChange:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::StyleChange:
        check();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// A window that grows gives the words back: each time it is tried anew how many have room.
void ToolBarRoom::check() {
    if (m_isChecking || !m_bar.isVisible()) {
        return;
    }
    m_isChecking = true;
    const bool isBounded = m_bar.orientation() == Qt::Horizontal && !m_bar.isFloating();
    const auto takeWords = [this](int withoutWords) {
        int place = 0;
        const auto actions = m_bar.actions();
        for (QAction* const action : actions) {
            auto* const button = qobject_cast<QToolButton*>(m_bar.widgetForAction(action));
            if (button != nullptr) {
                button->setToolButtonStyle(place < withoutWords ? Qt::ToolButtonIconOnly
                                                                : m_bar.toolButtonStyle());
                ++place;
            }
        }
        return place;
    };
    const int count = takeWords(0);
    for (int gone = 1; isBounded && m_bar.sizeHint().width() > m_bar.width() && gone <= count;
         ++gone) {
        takeWords(gone);
    }
    m_isChecking = false;
}

} // namespace workbench
