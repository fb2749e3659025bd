#pragma once

#include "host_api/backendversions.h"
#include "host_api/moduleinterface.h"
#include "tests/support/scriptedhost.h"

#include <QMainWindow>
#include <QPluginLoader>

/// A plug-in as a host loads it: nothing of it is linked into the test. GUI thread only.
class LoadedPlugin {
public:
    /// Loads the file; `module` is null when it is no plug-in, which loader.errorString() explains.
    explicit LoadedPlugin(const QString& file);
    ~LoadedPlugin() { unload(); }

    /// Hands over what a module needs before it builds its entries.
    void setUp(bool observer);

    /// Ends the module, once; false when the library stays.
    bool unload();

    /// Whether a library of this name is in this process.
    static bool isMapped(const QString& name);

    ScriptedHost host;
    BackendVersions versions{VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0),
                             QStringLiteral("KESTREL")};
    QMainWindow window;
    QPluginLoader loader;
    ModuleInterface* module = nullptr;
};
