#pragma once

#include "host_api/guielement.h"
#include "host_api/moduleinterface.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

class BackendVersions;
class IOManager;
class ProbeData;

/// The plug-in's root object: takes the host's objects, builds the docks on demand and hands them
/// to the host as menu entries. GUI thread only.
class ProbeCheckModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.ProbeCheckModule")
    Q_INTERFACES(ModuleInterface)

public:
    ProbeCheckModule();
    ~ProbeCheckModule() override; ///< ends what exit_module() has not ended

    void about_to_exit_module() override;
    void exit_module() override;
    QString get_module_name() override;
    QString get_module_version() override;
    QList<_GuiElement*> get_gui_elements() override;
    void set_param(QString key, QVariant value) override;

private:
    /// What an entry of the menu says and where it stands.
    struct Entry {
        int orderNumber;
        QString text;
        QString tip;
        QString title;
        const char* name; ///< of the dock as an object
    };
    using MakePage = std::function<QWidget*(ProbeData* data, QWidget* parent)>;

    void addTipCheck();
    void addPoints();

    /// Builds a dock around what `makePage` makes for it, and hands it to the host. It is hidden
    /// until the user wants it.
    void addDock(_GuiElement& element, const Entry& entry, const MakePage& makePage);

    QPointer<QWidget> mod_parent; ///< parent of all widgets; the host's
    QList<_GuiElement*> gui_elements;
    _GuiElement gui_tipCheck;
    _GuiElement gui_points;
    IOManager* iom = nullptr;
    BackendVersions* beVers = nullptr;
    QString m_replay;           ///< the recording that is played; empty when there is none
    QPointer<ProbeData> m_data; ///< null before the docks are built and after they are gone
};
