#pragma once

#include "host_api/guielement.h"
#include "host_api/moduleinterface.h"

#include <QAction>
#include <QObject>
#include <QPointer>
#include <QWidget>

class BackendVersions;
class IOManager;
class MtDataDisplay;

/// The plug-in's root object: takes the host's objects, builds the Measurement Tool dialogs on
/// demand and hands them to the host as menu entries. GUI thread only.
class MeasurementToolModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.MeasurementToolModule")
    Q_INTERFACES(ModuleInterface)

public:
    MeasurementToolModule();
    ~MeasurementToolModule() override; ///< ends what exit_module() has not ended

    void about_to_exit_module() override;
    void exit_module() override;
    QString get_module_name() override;
    QString get_module_version() override;
    QList<_GuiElement*> get_gui_elements() override;
    void set_param(QString key, QVariant value) override;

private:
    void addSettings();
    void addCalibration();
    void addDataDisplay();

    /// Fills the record of a modal dialog's entry and makes its action, a child of the module.
    QAction* fillTrackingEntry(_GuiElement& element, QWidget* dialog, int orderNumber,
                               const QString& text);
    MtDataDisplay* dataDisplay() const; ///< null before it is built and after it is gone

    /// Hands a filled record to the host; it forgets its widget and action when the widget dies,
    /// be it with the host's window.
    void add(_GuiElement& element);
    QList<QPointer<QAction>> actions() const; ///< all that there are
    static void retire(const QList<QPointer<QAction>>& entries);
    void retireFormerActions();

    QPointer<QWidget> mod_parent; ///< parent of all widgets; the host's
    QList<_GuiElement*> gui_elements;
    _GuiElement gui_mtSettings;
    _GuiElement gui_mtCalibration;
    _GuiElement gui_mtDataDisplay;
    IOManager* iom = nullptr;
    BackendVersions* beVers = nullptr;
    bool bObserverMode = false;
    QList<QPointer<QAction>> formerActions; ///< not of the last build, but of the one before
};
