#pragma once

#include <QObject>

#include <functional>

class QWidget;

/// Lets a widget of a plug-in end at any time, also while an operation of the host runs in its
/// code: it is hidden, taken from its parent and told to say farewell at once, and is deleted as
/// soon as no operation is under way. It ends by end() and when its parent dies, whoever that is by
/// then; that is why nothing else may own it. GUI thread only.
///
/// Whoever deletes the widget itself deletes it at once.
class WidgetEnding : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of the widget. `farewell` is called once, when the widget is hidden: takes
    /// back registrations and hangs up.
    WidgetEnding(QWidget* widget, std::function<void()> farewell);

    /// Ends a widget that has such a child. Nothing happens when it has begun to end, or is null.
    static void end(QWidget* widget);

    static bool hasBegun(const QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followParent();
    void parentGoes();
    void begin();

    QWidget* m_widget;
    std::function<void()> m_farewell;
    QMetaObject::Connection m_parentGoes;
    bool m_begun = false;
};
