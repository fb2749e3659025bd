#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

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

/// Puts off the deletion by the event loop of a widget's siblings, and of those of its parents, for
/// as long as it lives. To be held while the host is asked inside a show or hide event: Qt is then
/// walking through the children of the parents, and a host that lets events be handled would have
/// some deleted under way, such as the animation of a dock that has come to its end. GUI thread
/// only.
class SiblingsKept : public QObject {
    Q_OBJECT

public:
    explicit SiblingsKept(const QWidget* widget);
    ~SiblingsKept() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<QPointer<QObject>> m_due;
};
