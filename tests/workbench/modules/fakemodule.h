#pragma once

#include "host_api/iomanager.h"
#include "host_api/moduleinterface.h"

#include <QAction>
#include <QDockWidget>
#include <QObject>
#include <QPointer>
#include <QTableWidget>

#include <memory>

class BackendVersions;

/// A small plug-in that the workbench does not know: two menu entries, one of them a dock with a
/// table of the last line of the channel "fake". What the host does to it is kept in the property
/// "calls" of the application object, so that it can be read after the plug-in is gone.
class FakeModule : public QObject, public ModuleInterface, public Requester {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.kestrel2.gui.FakeModule")
    Q_INTERFACES(ModuleInterface)

public:
    ~FakeModule() override;

    void about_to_exit_module() override;
    void exit_module() override;
    QString get_module_name() override;
    QString get_module_version() override;
    QList<_GuiElement*> get_gui_elements() override;
    void set_param(QString key, QVariant value) override;

    int set_ascii_data(const char* type, const char* data) override;
    void set_mea_started() override;
    void set_mea_stopped() override;

private:
    void note(const QString& call);

    IOManager* m_iom = nullptr;
    QWidget* m_parent = nullptr;
    BackendVersions* m_versions = nullptr;
    _GuiElement m_dialogEntry;
    _GuiElement m_dockEntry;
    QList<_GuiElement*> m_elements;
    std::unique_ptr<QAction> m_dialogAction;
};
