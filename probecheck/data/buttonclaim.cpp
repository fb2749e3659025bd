#include "probecheck/data/buttonclaim.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QEvent>
#include <QKeySequence>
#include <QLabel>
#include <QShortcutEvent>
#include <QStringList>
#include <QWidget>

#include <algorithm>

namespace {

constexpr std::uint32_t allButtons = ~std::uint32_t(0);

QString nameOf(int button, bool isRest) {
    if (button == ButtonClaim::anyButton) {
        return isRest ? ButtonClaim::tr("any other button") : ButtonClaim::tr("any button");
    }
    return ButtonClaim::tr("button %1").arg(button + 1);
}

bool isWithin(const QWidget* page, const QWidget* widget) {
    return widget != nullptr && (widget == page || page->isAncestorOf(widget));
}

} // namespace

std::uint32_t ButtonClaim::Page::wanted() const {
    if (!isInSight || button == noButton) {
        return 0U;
    }
    return button == anyButton ? allButtons : std::uint32_t(1) << button;
}

void ButtonClaim::join(QWidget* page) {
    m_pages.push_back({page, page->isVisible(), noButton, {}});
    page->installEventFilter(this);
    const auto children = page->findChildren<QWidget*>();
    for (QWidget* child : children) {
        child->installEventFilter(this);
    }
    if (auto* const dock = qobject_cast<QDockWidget*>(page->parentWidget())) {
        connect(dock, &QDockWidget::visibilityChanged, this,
                [this, page](bool isVisible) { followDock(page, isVisible); });
    }
    connect(qApp, &QApplication::focusChanged, this, &ButtonClaim::followFocus,
            Qt::UniqueConnection);
}

void ButtonClaim::leave(const QObject* page) {
    const auto found = find(page);
    if (found != m_pages.end()) {
        m_pages.erase(found);
        Q_EMIT moved();
    }
}

void ButtonClaim::want(const QWidget* page, int button, const QString& effect) {
    const auto found = find(page);
    if (found != m_pages.end() && (found->button != button || found->effect != effect)) {
        found->button = button;
        found->effect = effect;
        Q_EMIT moved();
    }
}

bool ButtonClaim::isInSight(const QWidget* page) const {
    return std::any_of(m_pages.begin(), m_pages.end(), [page](const Page& known) {
        return known.widget == page && known.isInSight;
    });
}

std::uint32_t ButtonClaim::shareOf(const QWidget* page, std::uint32_t pressed) const {
    for (auto other = m_pages.rbegin(); other != m_pages.rend(); ++other) {
        if (other->widget == page) {
            return pressed & other->wanted();
        }
        pressed &= ~other->wanted();
    }
    return 0U;
}

QString ButtonClaim::words() const {
    QStringList parts;
    std::uint32_t taken = 0U;
    bool isContested = false;
    for (auto page = m_pages.rbegin(); page != m_pages.rend(); ++page) {
        const std::uint32_t wanted = page->wanted();
        const bool isRest = (wanted & taken) != 0U;
        if ((wanted & ~taken) != 0U) {
            parts << page->effect.arg(nameOf(page->button, isRest));
        }
        taken |= wanted;
        isContested = isContested || isRest;
    }
    if (parts.isEmpty()) {
        return tr("The buttons on the tool do nothing.");
    }
    const QString all = tr("On the tool: %1.").arg(parts.join(QStringLiteral("; ")));
    return isContested ? all + QLatin1Char(' ') + tr("The dock that was used last has the button.")
                       : all;
}

ButtonClaim::Pages::iterator ButtonClaim::find(const QObject* page) {
    return std::find_if(m_pages.begin(), m_pages.end(),
                        [page](const Page& known) { return known.widget == page; });
}

ButtonClaim::Pages::iterator ButtonClaim::pageAround(const QObject* widget) {
    return std::find_if(m_pages.begin(), m_pages.end(), [widget](const Page& known) {
        return isWithin(known.widget, qobject_cast<const QWidget*>(widget));
    });
}

void ButtonClaim::use(Pages::iterator page) {
    if (page != m_pages.end() && page + 1 != m_pages.end()) {
        std::rotate(page, page + 1, m_pages.end());
        Q_EMIT moved();
    }
}

void ButtonClaim::setInSight(Pages::iterator page, bool isInSight) {
    if (page->isInSight != isInSight) {
        page->isInSight = isInSight;
        Q_EMIT moved();
    }
}

// As the widgets themselves do with a letter that stands there once.
bool ButtonClaim::giveLetter(const QKeySequence& letter) const {
    const auto page = std::find_if(m_pages.rbegin(), m_pages.rend(),
                                   [](const Page& known) { return known.isInSight; });
    if (page == m_pages.rend()) {
        return false;
    }
    const auto widgets = page->widget->findChildren<QWidget*>();
    for (QWidget* const widget : widgets) {
        if (!widget->isVisible()) {
            continue;
        }
        auto* const button = qobject_cast<QAbstractButton*>(widget);
        if (button != nullptr && button->isEnabled() && button->shortcut() == letter) {
            button->animateClick();
            return true;
        }
        const auto* const label = qobject_cast<const QLabel*>(widget);
        if (label != nullptr && label->buddy() != nullptr && label->buddy()->isEnabled() &&
            QKeySequence::mnemonic(label->text()) == letter) {
            label->buddy()->setFocus(Qt::ShortcutFocusReason);
            return true;
        }
    }
    return false;
}

// A window that comes back from being minimised shows its pages, too: none of them has been used.
bool ButtonClaim::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Shortcut: {
        const auto* const shortcut = static_cast<const QShortcutEvent*>(event);
        if (shortcut->isAmbiguous() && giveLetter(shortcut->key())) {
            return true;
        }
        use(pageAround(watched));
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
        use(pageAround(watched));
        break;
    case QEvent::Show:
    case QEvent::Hide: {
        const bool isShown = event->type() == QEvent::Show;
        if (find(watched) != m_pages.end()) {
            setInSight(find(watched), isShown);
            if (isShown && !event->spontaneous()) {
                use(find(watched));
            }
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// A dock behind another one's tab counts as visible, but says that it is not.
void ButtonClaim::followDock(const QWidget* page, bool isVisible) {
    const auto found = find(page);
    if (found == m_pages.end() || !page->isVisible() || found->isInSight == isVisible) {
        return;
    }
    setInSight(found, isVisible);
    if (isVisible) {
        use(find(page));
    }
}

// Without a widget before, it is the window that has become active.
void ButtonClaim::followFocus(const QWidget* before, const QWidget* now) {
    const auto page = before != nullptr ? pageAround(now) : m_pages.end();
    if (page != m_pages.end() && !isWithin(page->widget, before)) {
        use(page);
    }
}
