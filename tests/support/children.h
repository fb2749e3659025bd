#pragma once

#include <QDebug>
#include <QLayout>
#include <QObject>
#include <QStringList>
#include <QWidget>

/// The child with this type and object name, which is its address in tests. When there is none the
/// test ends with the names that there are.
template <typename Child>
Child* child(const QObject& parent, const char* name) {
    auto* const found = parent.findChild<Child*>(QLatin1String(name));
    if (found == nullptr) {
        QStringList names;
        for (const QObject* other : parent.findChildren<QObject*>()) {
            names << QStringLiteral("%1 %2").arg(other->metaObject()->className(),
                                                 other->objectName());
        }
        qFatal("no '%s' in '%s', but: %s", name, qPrintable(parent.objectName()),
               qPrintable(names.join(QLatin1String(", "))));
    }
    return found;
}

/// Object names of what stands in a layout, in its order; nested layouts by their own name.
inline QStringList namesIn(const QLayout& layout) {
    QStringList names;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem* const item = layout.itemAt(i);
        if (item->widget() != nullptr) {
            names << item->widget()->objectName();
        } else if (item->layout() != nullptr) {
            names << item->layout()->objectName();
        } else {
            names << QStringLiteral("-");
        }
    }
    return names;
}

/// Object names of the window's own widgets that the tabulator key visits, in its order.
inline QStringList tabOrder(const QWidget& window) {
    QStringList names;
    for (const QWidget* widget = window.nextInFocusChain(); widget != &window;
         widget = widget->nextInFocusChain()) {
        if (widget->parentWidget() == &window && (widget->focusPolicy() & Qt::TabFocus) != 0) {
            names << widget->objectName();
        }
    }
    return names;
}
