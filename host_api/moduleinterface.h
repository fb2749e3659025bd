#pragma once

#include "guielement.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QtPlugin>

/// What a plug-in's root object implements to be a module of the front end. All operations are
/// called on the host's GUI thread, in the order set_param, get_gui_elements, about_to_exit_module,
/// exit_module.
///
/// The declaration order is binary contract: it is the order of the virtual slots.
class ModuleInterface {
public:
    virtual ~ModuleInterface() = default;

    /// The host is about to exit: stop receiving. The module's widgets still exist.
    virtual void about_to_exit_module() = 0;

    /// Delete everything that get_gui_elements has built; afterwards it may be called anew.
    virtual void exit_module() = 0;

    virtual QString get_module_name() = 0;    ///< translated, for people
    virtual QString get_module_version() = 0; ///< such as "v1.3.12"

    /// The module's menu entries, built on the first call. The records stay the module's.
    virtual QList<_GuiElement*> get_gui_elements() = 0;

    /// Hands the module an object or a flag of the host before the first get_gui_elements:
    /// "CommandManager" (IOManager*), "ModuleParent" (QWidget*), "BackendVersions"
    /// (BackendVersions*), "ObserverMode" (bool). The objects stay the host's and outlive the
    /// module. Unknown keys are ignored.
    ///
    /// "Replay" (QString) may be handed over as well: the name of a recording that is played in
    /// place of a controller, so that what comes was measured before, and elsewhere. Never handed
    /// over, or empty: what comes is measured now. It holds until another one is handed over,
    /// which happens after exit_module only.
    virtual void set_param(QString key, QVariant value) = 0;
};

#define KestrelModuleInterface_iid "org.kestrel.kestrel2.gui.Module/0.2.0"
Q_DECLARE_INTERFACE(ModuleInterface, KestrelModuleInterface_iid)
