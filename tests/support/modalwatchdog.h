#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <map>

class QWidget;

/// Keeps a test with modal dialogs from hanging. Polls for the active modal widget: when the test
/// has said what to do with a dialog of that object name it is done, once per appearance; a modal
/// dialog that stays longer than `patience` is closed and remembered as stray, so that the test
/// fails with its name instead of waiting for ever. Lives on the GUI thread.
class ModalWatchdog : public QObject {
public:
    explicit ModalWatchdog(int patienceMs = 3000);

    /// Runs `action` each time a modal widget with this object name becomes the active one.
    void on(const QString& objectName, const std::function<void(QWidget*)>& action);

    /// The dialogs that had to be closed; a test ends with QCOMPARE(dog.strays(), QStringList()).
    QStringList strays() const { return m_strays; }

    /// Object names of all modal dialogs in the order of their appearance.
    QStringList seen() const { return m_seen; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();
    void act(QWidget* modal);

    int m_patience;
    QTimer m_timer;
    std::map<QString, std::function<void(QWidget*)>> m_actions;
    QPointer<QWidget> m_current; // a new dialog may stand at the address of an old one
    qint64 m_since = 0;
    QStringList m_strays;
    QStringList m_seen;
};
