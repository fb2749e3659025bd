#include <QAction>
#include <QApplication>
#include <QPluginLoader>

#include <cstdio>
#include <host_api/metatypes.h>
#include <host_api/moduleinterface.h>

namespace {

/// Has three tools and nothing else.
class TinyManager : public IOManager {
public:
    int set_channel_option(int, int, int) override { return -1; }
    int send_command(char*, const char*) override { return -1; }
    int get_parameter_string(char*, const char*, ...) override { return -1; }
    int get_parameter_int(int* value, const char*, ...) override {
        *value = 3;
        return 0;
    }
    int get_parameter_double(double*, const char*, ...) override { return -1; }
    int get_parameter_bool(bool*, const char*, ...) override { return -1; }
    int set_parameter(const char*, ...) override { return -1; }
    int register_data_requester(const char*, Requester*) override { return -1; }
    int unregister_data_requester(const char*, Requester*) override { return -1; }
    int register_measurement_requester(Requester*) override { return -1; }
    int unregister_measurement_requester(Requester*) override { return -1; }
    void write_log(const char*, const char*, int, const char*) override {}
};

} // namespace

/// Loads the module that is named on the command line and prints what it is.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QPluginLoader loader(application.arguments().value(1));
    auto* module = qobject_cast<ModuleInterface*>(loader.instance());
    if (module == nullptr) {
        std::fprintf(stderr, "%s\n", qPrintable(loader.errorString()));
        return 1;
    }
    TinyManager manager;
    BackendVersions versions(VersionInfo(2, 9, 4), VersionInfo(1, 14, 0), VersionInfo(),
                             QStringLiteral("TINY"));
    module->set_param(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager*>(&manager));
    module->set_param(QStringLiteral("BackendVersions"), QVariant::fromValue(&versions));
    std::printf("%s %s\n", qPrintable(module->get_module_name()),
                qPrintable(module->get_module_version()));
    const QList<_GuiElement*> elements = module->get_gui_elements();
    for (const _GuiElement* element : elements) {
        std::printf("%s: %s\n", qPrintable(element->menu_name),
                    qPrintable(element->menu_entry->text()));
    }
    module->about_to_exit_module();
    module->exit_module();
    return loader.unload() ? 0 : 1;
}
