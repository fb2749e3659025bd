#include "SourceFiles/measurementtoolmodule.h"

#include "SourceFiles/mtcalibrationdlg.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtsettingsdlg.h"
#include "host_api/backendversions.h"
#include "host_api/iomanager.h"
#include "host_api/metatypes.h"

#include <QAction>
#include <QDockWidget>

namespace {

constexpr int versionMajor = 1;
constexpr int versionMinor = 3;
constexpr int versionPatch = 12;

} // namespace

MeasurementToolModule::MeasurementToolModule() = default;

QString MeasurementToolModule::get_module_name() {
    return tr("GUI Measurement Tool");
}

QString MeasurementToolModule::get_module_version() {
    return QStringLiteral("v%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionPatch);
}

void MeasurementToolModule::set_param(QString key, QVariant value) {
    if (key == QLatin1String("CommandManager")) {
        iom = value.value<IOManager*>();
    } else if (key == QLatin1String("ModuleParent")) {
        mod_parent = value.value<QWidget*>();
    } else if (key == QLatin1String("BackendVersions")) {
        beVers = value.value<BackendVersions*>();
    } else if (key == QLatin1String("ObserverMode")) {
        bObserverMode = value.toBool();
    }
}

QList<_GuiElement*> MeasurementToolModule::get_gui_elements() {
    if (!gui_elements.isEmpty() || isOldCompactSystem()) {
        return gui_elements;
    }
    if (!bObserverMode) {
        addSettings();
        addCalibration();
    }
    addDataDisplay();
    return gui_elements;
}

void MeasurementToolModule::about_to_exit_module() {
    if (MtDataDisplay* const display = dataDisplay()) {
        display->about_to_exit();
    }
}

void MeasurementToolModule::exit_module() {
    deleteContent(gui_mtSettings);
    deleteContent(gui_mtCalibration);
    if (MtDataDisplay* const display = dataDisplay()) {
        display->hide(); // ends its subscriptions; a visible widget that is deleted is not told
    }
    deleteContent(gui_mtDataDisplay);
    gui_elements.clear();
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
    auto* const dock = new QDockWidget(tr("Measurement Tool Display"), mod_parent);
    // No QStringLiteral: a main window remembers the name of a dock that is gone, and the literal
    // goes when the plug-in is unloaded.
    dock->setObjectName(QLatin1String("MtDataDisplayDock"));
    dock->setWidget(new MtDataDisplay(iom, mod_parent, beVers));

    QAction* const action = dock->toggleViewAction();
    action->setText(tr("&Measurement Tool"));
    action->setStatusTip(tr("Show the Measurement Tool tracking data"));
    action->setWhatsThis(tr("Show the Measurement Tool tracking data"));

    gui_mtDataDisplay.menu_entry = action;
    gui_mtDataDisplay.menu_entry_order_number = 270;
    gui_mtDataDisplay.menu_name = tr("&View");
    gui_mtDataDisplay.menu_order_number = 400;
    gui_mtDataDisplay.content = dock;
    gui_mtDataDisplay.action_active_during_measurement = 1;
    add(gui_mtDataDisplay);
}

MtDataDisplay* MeasurementToolModule::dataDisplay() const {
    const auto* const dock = qobject_cast<QDockWidget*>(gui_mtDataDisplay.content);
    return dock != nullptr ? dock->findChild<MtDataDisplay*>() : nullptr;
}

void MeasurementToolModule::add(_GuiElement& element) {
    connect(element.content, &QObject::destroyed, this, [&element] { element.content = nullptr; });
    // An entry may outlive its content, and another one have followed it.
    connect(element.menu_entry, &QObject::destroyed, this, [&element](QObject* gone) {
        if (element.menu_entry == gone) {
            element.menu_entry = nullptr;
        }
    });
    gui_elements.append(&element);
}

void MeasurementToolModule::deleteContent(_GuiElement& element) {
    delete element.content;
    element.content = nullptr;
}

bool MeasurementToolModule::isOldCompactSystem() const {
    return beVers != nullptr && beVers->hubModel().startsWith(QLatin1String("MINIRIG")) &&
           beVers->systemPt() < VersionInfo(2, 9, 4);
}
