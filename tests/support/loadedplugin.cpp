#include "tests/support/loadedplugin.h"

#include "host_api/metatypes.h"

#include <QFile>

LoadedPlugin::LoadedPlugin(const QString& file) {
    loader.setLoadHints(QLibrary::LoadHints()); // really unmap it
    loader.setFileName(file);
    module = qobject_cast<ModuleInterface*>(loader.instance());
}

void LoadedPlugin::setUp(bool observer) {
    module->set_param("CommandManager", QVariant::fromValue(static_cast<IOManager*>(&host)));
    module->set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(&window)));
    module->set_param("BackendVersions", QVariant::fromValue(&versions));
    module->set_param("ObserverMode", observer);
}

bool LoadedPlugin::unload() {
    if (module == nullptr) {
        return true;
    }
    module->about_to_exit_module();
    module->exit_module();
    module = nullptr;
    return loader.unload();
}

bool LoadedPlugin::isMapped(const QString& name) {
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(QFile::encodeName(name));
}
