#pragma once

#include "host_api/iomanager.h"
#include "host_api/moduleinterface.h"
#include "host_api/requester.h"
#include "soak/dialoghabits.h"

#include <QAbstractButton>
#include <QMainWindow>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <memory>

/// A module that plays the workbench's user. It takes orders, one a line, from standard input, and
/// tells about ten times a second on standard output that the window is alive:
///
///   beat <ms> <frames> <state> <modal>
///
/// with a monotonic time, the number of frames received so far, the state of the window ("away",
/// "idle", "measuring", "replay" as long as a recording is open) and the object name of the modal
/// dialog on top, or "-".
///
/// Orders: "seed N", "controller PORT", "folder PATH" (for recordings), "log N" (writes N log
/// lines), "open DOCK", "rest yes" (closes dialogs instead of playing with them), "rest no", and
/// "do NAME", which triggers a menu entry or a button if it is enabled and no dialog is open.
class SoakUser : public QObject, public ModuleInterface, public Requester {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.kestrel2.gui.SoakUser")
    Q_INTERFACES(ModuleInterface)

public:
    SoakUser();

    void about_to_exit_module() override;
    void exit_module() override {}
    QString get_module_name() override { return QStringLiteral("Soak user"); }
    QString get_module_version() override { return QStringLiteral("v1.0.0"); }
    QList<_GuiElement*> get_gui_elements() override;
    void set_param(QString key, QVariant value) override;

    int set_ascii_data(const char* type, const char* data) override; ///< counts the frames
    void set_mea_started() override {}
    void set_mea_stopped() override {}

private:
    void beat();
    void readOrders();
    void obey(const QByteArray& order);
    void trigger(const QByteArray& name);
    void openDock(const QByteArray& name);
    QAbstractButton* button(const QByteArray& name) const;
    QAction* action(const QByteArray& name) const;
    void fillLog(int lines);

    IOManager* m_host = nullptr;
    QMainWindow* m_window = nullptr;
    std::atomic<quint64> m_frames{0};
    DialogHabits m_habits;
    QTimer m_beatTimer;
    QSocketNotifier m_input;
    QByteArray m_pending;
};
