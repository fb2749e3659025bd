#include "general/widgets/widgetending.h"

#include "general/host/underway.h"

#include <QDialog>
#include <QEvent>

#include <utility>

namespace {

WidgetEnding* endingOf(const QWidget* widget) {
    return widget != nullptr
               ? widget->findChild<WidgetEnding*>(QString(), Qt::FindDirectChildrenOnly)
               : nullptr;
}

} // namespace

WidgetEnding::WidgetEnding(QWidget* widget, std::function<void()> farewell)
    : QObject(widget)
    , m_widget(widget)
    , m_farewell(std::move(farewell)) {
    widget->installEventFilter(this);
    followParent();
}

void WidgetEnding::end(QWidget* widget) {
    if (WidgetEnding* const ending = endingOf(widget)) {
        ending->begin();
    }
}

bool WidgetEnding::hasBegun(const QWidget* widget) {
    const WidgetEnding* const ending = endingOf(widget);
    return ending != nullptr && ending->m_begun;
}

bool WidgetEnding::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ParentChange) {
        followParent();
    } else if (event->type() == QEvent::DeferredDelete && (m_begun || underway::isOperation())) {
        begin(); // somebody's deleteLater(), come due inside an operation
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void WidgetEnding::followParent() {
    disconnect(m_parentGoes);
    if (QWidget* const parent = m_widget->parentWidget()) {
        // Sent before the parent deletes its children.
        m_parentGoes = connect(parent, &QObject::destroyed, this, &WidgetEnding::parentGoes);
    }
}

void WidgetEnding::parentGoes() {
    if (m_begun) {
        m_widget->setParent(nullptr); // it was about to
    } else {
        begin();
    }
}

void WidgetEnding::begin() {
    if (std::exchange(m_begun, true)) {
        return;
    }
    const underway::Ending ending;
    QWidget* const widget = m_widget;
    const auto dialogs = widget->findChildren<QDialog*>();
    for (QDialog* dialog : dialogs) {
        dialog->hide(); // ends its loop
    }
    widget->hide();
    m_farewell();
    widget->setParent(nullptr);
    underway::retire(widget);
}

SiblingsKept::SiblingsKept(const QWidget* widget) {
    for (const QWidget* parent = widget->parentWidget(); parent != nullptr;
         parent = parent->parentWidget()) {
        for (QObject* const sibling : parent->children()) {
            sibling->installEventFilter(this);
        }
    }
}

SiblingsKept::~SiblingsKept() {
    for (const QPointer<QObject>& sibling : std::as_const(m_due)) {
        if (!sibling.isNull()) {
            sibling->deleteLater();
        }
    }
}

bool SiblingsKept::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::DeferredDelete) {
        return QObject::eventFilter(watched, event);
    }
    m_due.append(watched);
    return true;
}
