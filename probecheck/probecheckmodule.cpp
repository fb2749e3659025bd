#include "probecheck/probecheckmodule.h"

#include "general/host/hostparameters.h"
#include "general/host/toolqueries.h"
#include "general/host/underway.h"
#include "general/widgets/menuentry.h"
#include "general/widgets/widgetending.h"
#include "host_api/backendversions.h"
#include "host_api/iomanager.h"
#include "probecheck/data/probedata.h"
#include "probecheck/points/pointspanel.h"
#include "probecheck/tipcheck/tipcheckpanel.h"

#include <QAction>
#include <QDockWidget>

#include <array>
#include <utility>

namespace {

constexpr int versionMajor = 1;
constexpr int versionMinor = 0;
constexpr int versionPatch = 0;

} // namespace

ProbeCheckModule::ProbeCheckModule() = default;

QString ProbeCheckModule::get_module_name() {
    return tr("GUI Measurement Tool check");
}

QString ProbeCheckModule::get_module_version() {
    return QStringLiteral("v%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionPatch);
}

void ProbeCheckModule::set_param(QString key, QVariant value) {
    if (key == QLatin1String("Replay")) {
        m_replay = value.toString();
    } else {
        hostparameters::take(key, value, iom, mod_parent, beVers);
    }
}

QList<_GuiElement*> ProbeCheckModule::get_gui_elements() {
    if (!m_data.isNull() || toolqueries::isOldCompactSystem(beVers)) {
        return gui_elements;
    }
    m_data = new ProbeData(iom, beVers, !m_replay.isEmpty());
    addTipCheck();
    addPoints();
    const QPointer<QObject> self = this;
    m_data->enter();
    return self.isNull() ? QList<_GuiElement*>() : gui_elements;
}

void ProbeCheckModule::about_to_exit_module() {
    if (!m_data.isNull()) {
        m_data->leave();
    }
}

void ProbeCheckModule::exit_module() {
    gui_elements.clear();
    const QPointer<ProbeData> data = std::exchange(m_data, nullptr);
    const std::array<QPointer<QWidget>, 2> contents = {std::exchange(gui_tipCheck.content, nullptr),
                                                       std::exchange(gui_points.content, nullptr)};
    const underway::Ending ending;
    for (const QPointer<QWidget>& content : contents) {
        WidgetEnding::end(content);
    }
    // The host is told of the end and may take this object away meanwhile.
    if (!data.isNull()) {
        data->leave();
        underway::retire(data);
    }
}

ProbeCheckModule::~ProbeCheckModule() {
    ProbeCheckModule::exit_module();
    underway::leave();
}

void ProbeCheckModule::addTipCheck() {
    addDock(gui_tipCheck,
            {70, tr("Measurement Tool tip &check"),
             tr("Check whether the tip of a Measurement Tool is where it is said to be"),
             tr("Measurement Tool Tip Check"), "ProbeTipCheckDock"},
            [](ProbeData* data, QWidget* parent) { return new TipCheckPanel(data, parent); });
}

void ProbeCheckModule::addPoints() {
    addDock(gui_points,
            {80, tr("Measurement Tool &points"),
             tr("Capture points with the tip of a Measurement Tool, and list them"),
             tr("Measurement Tool Points"), "ProbePointsDock"},
            [](ProbeData* data, QWidget* parent) { return new PointsPanel(data, parent); });
}

void ProbeCheckModule::addDock(_GuiElement& element, const Entry& entry, const MakePage& makePage) {
    auto* const dock = new QDockWidget(entry.title, mod_parent.data());
    // No QStringLiteral: a main window remembers the name of a dock that is gone, and the literal
    // goes when the plug-in is unloaded.
    dock->setObjectName(QLatin1String(entry.name));
    new WidgetEnding(dock, [data = m_data, dock] {
        if (!data.isNull()) {
            data->forget(dock->widget());
        }
    });
    dock->setWidget(makePage(m_data, dock));
    dock->hide();

    QAction* const action = dock->toggleViewAction();
    action->setText(entry.text);
    action->setStatusTip(entry.tip);
    action->setWhatsThis(entry.tip);
    element.menu_entry = action;
    element.menu_entry_order_number = entry.orderNumber;
    element.menu_name = tr("&Tracking");
    element.menu_order_number = 300;
    element.content = dock;
    element.action_active_during_measurement = 1;
    menuentry::forgetWhenGone(element, this);
    gui_elements.append(&element);
}
