#include <QAction>
#include <QObject>

#include <host_api/metatypes.h>
#include <host_api/moduleinterface.h>

/// Asks its host one question and says the answer in its one menu entry.
class TinyModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.TinyModule")
    Q_INTERFACES(ModuleInterface)

public:
    void about_to_exit_module() override { m_manager = nullptr; }
    void exit_module() override { m_action.setText(QString()); }
    QString get_module_name() override { return QStringLiteral("Tiny"); }
    QString get_module_version() override { return QStringLiteral("v0.1.0"); }

    QList<_GuiElement*> get_gui_elements() override {
        int tools = 0;
        if (m_manager == nullptr || m_versions == nullptr ||
            m_manager->get_parameter_int(&tools, "measurementtool number_of_tools") != 0) {
            return {};
        }
        m_action.setText(QStringLiteral("%1 tools, protocol %2")
                             .arg(tools)
                             .arg(m_versions->protocol().toString()));
        m_element.menu_entry = &m_action;
        m_element.menu_name = QStringLiteral("Tools");
        return {&m_element};
    }

    void set_param(QString key, QVariant value) override {
        if (key == QLatin1String("CommandManager")) {
            m_manager = value.value<IOManager*>();
        } else if (key == QLatin1String("BackendVersions")) {
            m_versions = value.value<BackendVersions*>();
        }
    }

private:
    IOManager* m_manager = nullptr;
    BackendVersions* m_versions = nullptr;
    QAction m_action;
    _GuiElement m_element;
};

#include "module.moc"
