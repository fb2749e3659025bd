#include "tests/workbench/modules/fakemodule.h"

#include "host_api/metatypes.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

FakeModule::~FakeModule() {
    note(QStringLiteral("destroyed"));
}

void FakeModule::note(const QString& call) {
    QStringList calls = qApp->property("calls").toStringList();
    calls += call;
    qApp->setProperty("calls", calls);
}

void FakeModule::set_param(QString key, QVariant value) {
    if (key == QLatin1String("Replay")) {
        note(QStringLiteral("set_param Replay \"%1\"").arg(value.toString()));
        return;
    }
    note(QStringLiteral("set_param ") + key);
    if (key == QLatin1String("CommandManager")) {
        m_iom = value.value<IOManager*>();
    } else if (key == QLatin1String("ModuleParent")) {
        m_parent = value.value<QWidget*>();
    } else if (key == QLatin1String("BackendVersions")) {
        m_versions = value.value<BackendVersions*>();
    } else if (key == QLatin1String("ObserverMode")) {
        note(value.toBool() ? QStringLiteral("observer") : QStringLiteral("no observer"));
    }
}

QString FakeModule::get_module_name() {
    return QStringLiteral("Fake");
}

QString FakeModule::get_module_version() {
    return QStringLiteral("v0.1.2");
}

QList<_GuiElement*> FakeModule::get_gui_elements() {
    if (!m_elements.isEmpty()) {
        return m_elements;
    }
    note(QStringLiteral("built for ") + m_versions->hubModel());
    char reply[200];
    const int result = m_iom->get_parameter_string(reply, "version model");
    note(result == 0 ? QStringLiteral("asked while building") : QStringLiteral("could not ask"));
    m_dialogAction = std::make_unique<QAction>(QStringLiteral("Fake dialog"));
    m_dialogEntry = {m_dialogAction.get(), 50, QStringLiteral("&Tracking"), 300, nullptr, 0};
    auto* const dock = new QDockWidget(QStringLiteral("Fake display"), m_parent);
    dock->setObjectName(QStringLiteral("FakeDock"));
    auto* const table = new QTableWidget(1, 2, dock);
    table->setObjectName(QStringLiteral("fakeTable"));
    table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("a\tb")));
    table->setItem(0, 1, new QTableWidgetItem(QStringLiteral("green")));
    table->item(0, 1)->setBackground(QColor(0, 255, 0));
    table->setRowHeight(0, std::max(30, qApp->property("fakeDockRow").toInt()));
    table->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    dock->setWidget(table);
    if (qApp->property("fakeDockIsHidden").toBool()) {
        dock->hide();
    }
    m_dockEntry = {dock->toggleViewAction(), 270, QStringLiteral("&View"), 400, dock, 1};
    m_iom->register_data_requester("fake", this);
    m_iom->register_measurement_requester(this);
    m_elements = {&m_dialogEntry, &m_dockEntry};
    return m_elements;
}

void FakeModule::about_to_exit_module() {
    note(m_parent != nullptr && m_dockEntry.content != nullptr
             ? QStringLiteral("about_to_exit_module with window")
             : QStringLiteral("about_to_exit_module"));
    m_iom->unregister_data_requester("fake", this);
    m_iom->unregister_measurement_requester(this);
}

void FakeModule::exit_module() {
    note(QStringLiteral("exit_module"));
    delete m_dockEntry.content;
    m_dockEntry.content = nullptr;
    m_dialogAction.reset();
    m_elements.clear();
}

int FakeModule::set_ascii_data(const char*, const char*) {
    return 0;
}

void FakeModule::set_mea_started() {
    note(QStringLiteral("started"));
}

void FakeModule::set_mea_stopped() {
    note(QStringLiteral("stopped"));
}
