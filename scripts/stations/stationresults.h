#pragma once

#include "host_api/iomanager.h"
#include "host_api/moduleinterface.h"

#include <QObject>
#include <QTimer>

/// A module that writes results by itself, numbered from 0 on, and goes on where a killed process
/// has stopped. The environment says how: STATION_RESULTS, how many; STATION_PERIOD_MS, how often;
/// STATION_FILE, which keeps how many are written and, behind it, the time of one that is being
/// written. A process that is killed in between writes that one again, with the same text.
class StationResults : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.kestrel2.gui.StationResults")
    Q_INTERFACES(ModuleInterface)

public:
    void about_to_exit_module() override { m_timer.stop(); }
    void exit_module() override {}
    QString get_module_name() override { return QStringLiteral("Station results"); }
    QString get_module_version() override { return QStringLiteral("v1.0.0"); }
    QList<_GuiElement*> get_gui_elements() override;
    void set_param(QString key, QVariant value) override;

private:
    void writeNext();
    bool note() const;

    IOManager* m_host = nullptr;
    QTimer m_timer;
    QString m_time; // of the next one, when it may have been written
    int m_next = 0;
    int m_count = 0;
};
