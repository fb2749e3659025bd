#include "workbench/modules/modulehost.h"

#include "host_api/metatypes.h"
#include "host_api/moduleinterface.h"
#include "workbench/text/logmodel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QWidget>

#include <algorithm>

namespace workbench {

ModuleHost::ModuleHost(const Services& services, LogModel& log, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_log(log) {}

ModuleHost::~ModuleHost() {
    tearDown();
    for (Module& module : m_modules) {
        if (module.interface != nullptr) {
            module.loader->unload();
        }
    }
}

QStringList ModuleHost::usualFolders() {
    const QDir programs(QCoreApplication::applicationDirPath());
    return {programs.filePath(QStringLiteral("../plugins")),
            programs.filePath(QStringLiteral("../" KESTREL_PLUGIN_INSTALL_DIR))};
}

void ModuleHost::loadFolder(const QString& folder) {
    const QFileInfoList files =
        QDir(folder).entryInfoList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& file : files) {
        if (QLibrary::isLibrary(file.fileName())) {
            loadFile(file.filePath());
        }
    }
}

bool ModuleHost::isKnown(const QString& file) const {
    const QString path = QFileInfo(file).canonicalFilePath();
    return !path.isEmpty() &&
           std::any_of(m_modules.begin(), m_modules.end(), [&path](const Module& module) {
               return QFileInfo(module.info.file).canonicalFilePath() == path;
           });
}

void ModuleHost::loadFile(const QString& file) {
    if (isKnown(file)) {
        return;
    }
    Module module;
    module.info.file = QDir::cleanPath(QFileInfo(file).absoluteFilePath());
    module.info.reason = load(module);
    if (module.info.isLoaded()) {
        m_log.info(tr("Loaded module \"%1\" %2 from %3")
                       .arg(module.info.name, module.info.version, module.info.file));
    } else {
        m_log.problem(
            tr("Module %1 cannot be loaded: %2").arg(module.info.file, module.info.reason));
    }
    m_modules.push_back(std::move(module));
}

// An empty reason stands for success.
QString ModuleHost::load(Module& module) {
    if (!QFileInfo(module.info.file).isFile()) {
        return tr("there is no such file");
    }
    module.loader = std::make_unique<QPluginLoader>(module.info.file);
    const QString problem = readMetaData(module);
    if (!problem.isEmpty()) {
        return problem;
    }
    QObject* const root = module.loader->instance();
    if (root == nullptr) {
        return module.loader->errorString();
    }
    auto* const interface = qobject_cast<ModuleInterface*>(root);
    if (interface == nullptr) {
        module.loader->unload();
        return tr("%1 (%2) does not have the interface %3")
            .arg(module.info.className, module.info.iid,
                 QStringLiteral(KestrelModuleInterface_iid));
    }
    module.interface = interface;
    module.info.name = interface->get_module_name();
    module.info.version = interface->get_module_version();
    interface->set_param(QStringLiteral("CommandManager"),
                         QVariant::fromValue(m_services.commandManager));
    interface->set_param(QStringLiteral("ModuleParent"),
                         QVariant::fromValue(m_services.moduleParent));
    interface->set_param(QStringLiteral("BackendVersions"),
                         QVariant::fromValue(m_services.versions));
    interface->set_param(QStringLiteral("ObserverMode"), m_services.observerMode);
    interface->set_param(QStringLiteral("Replay"), m_replay);
    return {};
}

QString ModuleHost::readMetaData(Module& module) const {
    const QJsonObject metaData = module.loader->metaData();
    module.info.className = metaData.value(QStringLiteral("className")).toString();
    module.info.iid = metaData.value(QStringLiteral("IID")).toString();
    if (module.info.className.isEmpty() || module.info.iid.isEmpty()) {
        return tr("it is not a Qt plug-in");
    }
    if (module.info.iid.startsWith(QLatin1String("org.qt-project."))) {
        return tr("it is a plug-in of another kind (%1)").arg(module.info.iid);
    }
    for (const Module& other : m_modules) {
        if (other.interface != nullptr && other.info.className == module.info.className) {
            return tr("the module %1 is loaded already, from %2")
                .arg(module.info.className, other.info.file);
        }
    }
    return {};
}

QVector<ModuleInfo> ModuleHost::modules() const {
    QVector<ModuleInfo> infos;
    for (const Module& module : m_modules) {
        infos += module.info;
    }
    return infos;
}

void ModuleHost::setReplay(const QString& name) {
    Q_ASSERT(!m_built);
    if (name == m_replay) {
        return;
    }
    m_replay = name;
    for (const Module& module : m_modules) {
        if (module.interface != nullptr) {
            module.interface->set_param(QStringLiteral("Replay"), m_replay);
        }
    }
}

QList<_GuiElement*> ModuleHost::build() {
    m_built = true;
    QList<_GuiElement*> elements;
    for (const Module& module : m_modules) {
        if (module.interface == nullptr) {
            continue;
        }
        const QList<_GuiElement*> own = module.interface->get_gui_elements();
        if (own.isEmpty()) {
            m_log.info(
                tr("Module \"%1\" offers nothing for this controller").arg(module.info.name));
        }
        for (_GuiElement* element : own) {
            if (element == nullptr || element->menu_entry == nullptr) {
                m_log.problem(
                    tr("Module \"%1\" offers an entry without an action").arg(module.info.name));
            } else {
                elements += element;
            }
        }
    }
    return elements;
}

void ModuleHost::tearDown() {
    if (!m_built) {
        return;
    }
    m_built = false;
    for (const Module& module : m_modules) {
        if (module.interface != nullptr) {
            module.interface->about_to_exit_module();
        }
    }
    for (const Module& module : m_modules) {
        if (module.interface != nullptr) {
            module.interface->exit_module();
        }
    }
}

} // namespace workbench
