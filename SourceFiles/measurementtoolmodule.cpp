#include "SourceFiles/measurementtoolmodule.h"

#include "SourceFiles/mtcalibrationdlg.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtsettingsdlg.h"
#include "general/host/hostparameters.h"
#include "general/host/toolqueries.h"
#include "general/host/underway.h"
#include "general/widgets/menuentry.h"
#include "general/widgets/widgetending.h"
#include "host_api/iomanager.h"

#include <QAction>
#include <QDockWidget>

#include <array>
#include <utility>

namespace {

constexpr int versionMajor = 1;
constexpr int versionMinor = 3;
constexpr int versionPatch = 12;

MtDataDisplay* displayIn(const QDockWidget* dock) {
    return dock->findChild<MtDataDisplay*>();
}

} // namespace

MeasurementToolModule::MeasurementToolModule() = default;

QString MeasurementToolModule::get_module_name() {
    return tr("GUI Measurement Tool");
}

QString MeasurementToolModule::get_module_version() {
    return QStringLiteral("v%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionPatch);
}

void MeasurementToolModule::set_param(QString key, QVariant value) {
    hostparameters::take(key, value, iom, mod_parent, beVers);
    if (key == QLatin1String("ObserverMode")) {
        bObserverMode = value.toBool();
    }
}

QList<_GuiElement*> MeasurementToolModule::get_gui_elements() {
    const bool isBeingBuilt = gui_mtDataDisplay.content != nullptr;
    if (!gui_elements.isEmpty() || isBeingBuilt || toolqueries::isOldCompactSystem(beVers)) {
        return gui_elements;
    }
    retireFormerActions();
    if (!bObserverMode) {
        addSettings();
        addCalibration();
    }
    const QPointer<QObject> self = this;
    addDataDisplay();
    return self.isNull() ? QList<_GuiElement*>() : gui_elements;
}

void MeasurementToolModule::about_to_exit_module() {
    if (MtDataDisplay* const display = dataDisplay()) {
        display->about_to_exit();
    }
}

void MeasurementToolModule::exit_module() {
    gui_elements.clear();
    const std::array<QPointer<QWidget>, 3> contents = {
        std::exchange(gui_mtSettings.content, nullptr),
        std::exchange(gui_mtCalibration.content, nullptr),
        std::exchange(gui_mtDataDisplay.content, nullptr)};
    // The host is told of the display's end and may take this object away meanwhile.
    for (const QPointer<QWidget>& content : contents) {
        WidgetEnding::end(content);
    }
}

MeasurementToolModule::~MeasurementToolModule() {
    MeasurementToolModule::exit_module();
    retire(actions());
    underway::leave();
}

QList<QPointer<QAction>> MeasurementToolModule::actions() const {
    const auto children = findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    return QList<QPointer<QAction>>(children.cbegin(), children.cend());
}

// One of them may have been triggered by the user whose wish is being carried out.
void MeasurementToolModule::retire(const QList<QPointer<QAction>>& entries) {
    const underway::Ending ending;
    for (const QPointer<QAction>& action : entries) {
        if (!action.isNull()) {
            action->setParent(nullptr);
            underway::retire(action);
        }
    }
}

// Each build makes others. A host may still hold those of the build before, no older ones.
void MeasurementToolModule::retireFormerActions() {
    retire(formerActions);
    formerActions = actions();
}

void MeasurementToolModule::addSettings() {
    auto* const dialog = new MtSettingsDlg(iom, mod_parent, beVers);
    QAction* const action = fillTrackingEntry(gui_mtSettings, dialog, 50, tr("&Measurement Tool"));
    action->setStatusTip(tr("Open the Measurement Tool settings dialog"));
    action->setWhatsThis(tr("Change the Measurement Tool settings"));
    connect(action, &QAction::triggered, dialog, &MtSettingsDlg::update_and_exec);
    add(gui_mtSettings);
}

void MeasurementToolModule::addCalibration() {
    auto* const dialog = new MtCalibrationDlg(iom, mod_parent, beVers);
    QAction* const action =
        fillTrackingEntry(gui_mtCalibration, dialog, 60, tr("Measurement &Tool tip calibration"));
    action->setStatusTip(tr("Open the Measurement Tool tip calibration"));
    action->setWhatsThis(tr("Perform Measurement Tool tip calibration"));
    connect(action, &QAction::triggered, dialog, &MtCalibrationDlg::update_and_exec);
    add(gui_mtCalibration);
}

QAction* MeasurementToolModule::fillTrackingEntry(_GuiElement& element, QWidget* dialog,
                                                  int orderNumber, const QString& text) {
    element.menu_entry = new QAction(text, this);
    element.menu_entry_order_number = orderNumber;
    element.menu_name = tr("&Tracking");
    element.menu_order_number = 300;
    element.content = dialog;
    element.action_active_during_measurement = 0;
    return element.menu_entry;
}

void MeasurementToolModule::addDataDisplay() {
    const QPointer<QObject> self = this;
    const QPointer<QDockWidget> dock =
        new QDockWidget(tr("Measurement Tool Display"), mod_parent.data());
    // No QStringLiteral: a main window remembers the name of a dock that is gone, and the literal
    // goes when the plug-in is unloaded.
    dock->setObjectName(QLatin1String("MtDataDisplayDock"));
    new WidgetEnding(dock, [dock] { WidgetEnding::end(displayIn(dock)); });
    // The display asks the host while it is being built: everything else can find it already.
    gui_mtDataDisplay.content = dock;
    auto* const display = new MtDataDisplay(iom, dock, beVers);
    if (dock.isNull() || WidgetEnding::hasBegun(display)) {
        if (!self.isNull() && gui_mtDataDisplay.content == dock) {
            gui_mtDataDisplay.content = nullptr;
        }
        WidgetEnding::end(dock);
        return;
    }
    dock->setWidget(display);

    QAction* const action = dock->toggleViewAction();
    action->setText(tr("&Measurement Tool"));
    action->setStatusTip(tr("Show the Measurement Tool tracking data"));
    action->setWhatsThis(tr("Show the Measurement Tool tracking data"));

    gui_mtDataDisplay.menu_entry = action;
    gui_mtDataDisplay.menu_entry_order_number = 270;
    gui_mtDataDisplay.menu_name = tr("&View");
    gui_mtDataDisplay.menu_order_number = 400;
    gui_mtDataDisplay.action_active_during_measurement = 1;
    add(gui_mtDataDisplay);
}

MtDataDisplay* MeasurementToolModule::dataDisplay() const {
    const auto* const dock = qobject_cast<QDockWidget*>(gui_mtDataDisplay.content);
    return dock != nullptr ? displayIn(dock) : nullptr;
}

void MeasurementToolModule::add(_GuiElement& element) {
    menuentry::forgetWhenGone(element, this);
    gui_elements.append(&element);
}
