#pragma once

#include "host_api/guielement.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

class BackendVersions;
class IOManager;
class ModuleInterface;
class QPluginLoader;
class QWidget;

namespace workbench {

class LogModel;

/// What is known of a module file, for the user's list.
struct ModuleInfo {
    QString file;
    QString className; ///< from the metadata
    QString iid;
    QString name;    ///< as the module calls itself; empty when it is not loaded
    QString version; ///< the same
    QString reason;  ///< why it is not loaded; empty when it is
    bool isLoaded() const { return reason.isEmpty(); }
};

/// Loads modules and takes them through their life: set_param, get_gui_elements,
/// about_to_exit_module, exit_module. A file that is no module is listed with the reason; its
/// metadata is read before any of its code runs.
class ModuleHost : public QObject {
    Q_OBJECT

public:
    /// What modules are given. All of it outlives the modules.
    struct Services {
        IOManager* commandManager = nullptr;
        QWidget* moduleParent = nullptr;
        BackendVersions* versions = nullptr;
        bool observerMode = false;
    };

    ModuleHost(const Services& services, LogModel& log, QObject* parent = nullptr);
    ~ModuleHost() override;

    /// All library files of a folder, in the order of their names.
    void loadFolder(const QString& folder);
    void loadFile(const QString& file);

    QVector<ModuleInfo> modules() const;

    /// The recording that the modules which are built next will be shown; empty: none. Only while
    /// nothing is built.
    void setReplay(const QString& name);

    /// The entries of all modules, built when they are not. They are valid until tearDown().
    QList<_GuiElement*> build();
    bool isBuilt() const { return m_built; }

    /// about_to_exit_module of all, then exit_module of all; nothing when nothing is built.
    void tearDown();

    /// The folders that are searched when none is named: beside the programs of a build, and where
    /// plug-ins are installed.
    static QStringList usualFolders();

private:
    struct Module {
        ModuleInfo info;
        std::unique_ptr<QPluginLoader> loader;
        ModuleInterface* interface = nullptr;
    };
    bool isKnown(const QString& file) const;
    QString load(Module& module);
    QString readMetaData(Module& module) const;

    Services m_services;
    LogModel& m_log;
    std::vector<Module> m_modules;
    QString m_replay;
    bool m_built = false;
};

} // namespace workbench
