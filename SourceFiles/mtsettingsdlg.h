#pragma once

#include "SourceFiles/bodycount.h"
#include "SourceFiles/doublespinboxdelegate.h"
#include "SourceFiles/radiodevices.h"
#include "SourceFiles/toolassignments.h"
#include "SourceFiles/toolparameters.h"
#include "general/host/hostlink.h"
#include "general/host/hostpointer.h"
#include "host_api/requester.h"
#include "ui_mtsettingsdlg.h"

#include <QDialog>
#include <QIcon>
#include <QPointer>
#include <QTimer>

class BackendVersions;
class IOManager;

/// The modal settings dialog of the Measurement Tools. Reads everything from the controller each
/// time it is shown. The two counts reach the controller while they are edited and are restored by
/// cancel; everything else is written by OK. All on the GUI thread.
class MtSettingsDlg : public QDialog, public Requester {
    Q_OBJECT

public:
    using MtRadioDevice = ::MtRadioDevice;

    static constexpr int MaxEntries = hostlink::mostBodies;

    /// `manager` and `versions` stay the host's and may be null (every query then fails); `parent`
    /// owns the dialog when it is not null.
    MtSettingsDlg(IOManager* manager, QWidget* parent, BackendVersions* versions);

    /// The device assigned to a tool (0-based); -1, and `device` untouched, when there is none, it
    /// cannot be read or the protocol is below 1.14 (nothing is asked then).
    int getAssignedMtDeviceFromHub(int toolIndex, MtRadioDevice& device);

    /// The device at a place (0-based) of the controller's list.
    void getMtDeviceValues(int deviceIndex, MtRadioDevice& device);

    /// Fills `desc` from vendor and model: the model itself when the controller knows no better or
    /// is below protocol 1.14 and not asked.
    void getMtDeviceDesc(MtRadioDevice& device);

    /// Whether the controller has a radio transceiver that is present.
    bool isRadioTransceiverAvailable();

    /// The controller's tip diameter in mm of a tool (1-based). 0.0 when it is unknown, also
    /// without a question for numbers below 1 and protocols below 1.13.
    double getToolTipDiameterFromHub(int toolNumber);

    /// Makes `lastRow` the current row of a table, corrected in place when the table is shorter.
    static void setSelection_tableWidget(QTableWidget* table, int& lastRow);

    void reject() override; ///< the cancel path

    int set_ascii_data(const char* type, const char* data) override;
    void set_mea_started() override;
    void set_mea_stopped() override;

public Q_SLOTS:
    /// Reads the controller's state and runs the dialog until it is closed. Returns 0 after OK as
    /// after cancel, also when the dialog was deleted meanwhile or is already open.
    int update_and_exec();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private Q_SLOTS:
    // Connected by name; the order is the meta-object's.
    void on_tableWidget_refBodies_cellClicked(int row, int column);
    void on_tableWidget_availableMt_cellClicked(int row, int column);
    void on_tableWidget_meaBodies_cellClicked(int row, int column);
    void on_tabWidget_currentChanged(int index);
    void on_pushButton_deselect_clicked();
    void on_pushButton_select_clicked();
    void on_doubleSpinBox_startLeadTime_valueChanged(double value);
    void on_spinBox_startAngle_valueChanged(int value);
    void on_doubleSpinBox_tipTolerance_valueChanged(double value);
    void on_doubleSpinBox_duration_valueChanged(double value);
    void on_spinBox_noOfRefBodies_valueChanged(int count);
    void on_spinBox_noOfMeaBodies_valueChanged(int count);
    void on_checkBox_startSimulation_stateChanged(int state);
    void on_pushButton_ok_clicked();
    void on_pushButton_cancel_clicked();
    void updateTableDevices();

private:
    enum ToolColumn { IdColumn, DiameterColumn, ReferenceColumn, ModelColumn, SerialColumn };
    enum class CellStyle { Plain, Told, Centred, Editable }; // Told: whole by a tool tip as well

    // Frame
    void arrange();
    void onShowDlg();
    void onHideDlg();
    void enableDialog(bool enable);
    void enableControls(bool enable);
    void enableStartSimulationControls(bool enable);
    bool isMtAvailable();
    bool is_config_locked();
    void restoreCounts();
    void restoreCount(BodyCount& count, QSpinBox* spinBox);

    // Tables
    static void setUpTable(QTableWidget* table, const QStringList& headers);
    static void resizeTable(QTableWidget* table, int rows);
    static void makeCurrent(QTableWidget* table, int row, int column);
    static QString cellText(const QTableWidget* table, int row, int column); ///< empty: no cell
    static void setCell(QTableWidget* table, int row, int column, const QString& text,
                        CellStyle style = CellStyle::Plain);
    void followKeyboard();

    // Tools, references and assignments
    void setupTableMeaBodies();
    void setupTableRefBodies();
    void updateSpinBoxNoOfMeaBodies();
    void updateSpinBoxNoOfRefBodies();
    static bool readMaximum(const BodyCount& count, QSpinBox* spinBox);
    void setupListAssingmentsMeaToRef();
    void updatePointMeasurement(int count);
    int getRefIdFromHub(int toolIndex);
    QString getRefBodyForMeaBody(int toolIndex) const;
    void updateTableMeaBodies(bool);
    void updateTableRefBodies();
    void refreshAfterAssignment();
    void activateSelectButton();
    void activateDeSelectButton();
    bool isReferenceTabCurrent() const;
    void update_max_body_num_warning();

    // Radio devices
    void setupTablesDevices();
    MtRadioDevice deviceInRow(int row) const;

    // Measurement parameters
    double getToolTipDiameter(int toolIndex) const;
    void setupListToolTipDiameter();
    void updateListToolTipDiameter();
    void writeToolTipDiameterToHub();
    bool showsTools() const;
    void updateDoubleSpinboxDuration();
    void updateDoubleSpinBoxTipTolerance();
    void updateCheckBoxStartSimulation();
    void updateSpinBoxStartAngle();
    void updateDoubleSpinBoxStartLeadTime();
    void updateCheckBoxUseOldOutputFormat();
    void setDefaultStartMeaSimuValues();
    void setActualStartMeaSimuValues();
    void writePointMeasurement();

    Ui_MtSettingsDlgClass ui;
    HostPointer iom;
    VersionsPointer beVers;
    QPointer<QWidget> m_parent;
    bool bUserAction = false; ///< value changes come from the user, not from the dialog itself
    BodyCount tools;
    BodyCount references;
    RadioDevices radioDevices;
    ToolAssignments assignments;
    ToolParameters parameters;
    double m_dMeasurementDuration = ToolParameters::Duration.fallback;         ///< s
    double m_dMeasurementTipTolerance = ToolParameters::TipTolerance.fallback; ///< mm
    bool m_bStartSimulation = false;
    double m_dMeasurementAngularSpeed =
        ToolParameters::StartAngle.fallback; ///< the start angle, degrees
    double m_dMeasurementStartLeadTime = ToolParameters::StartLeadTime.fallback; ///< s
    int m_iLastSelection_tableWidget_meaBodies = 0;
    int m_iLastSelection_tableWidget_refBodies = 0; ///< also of the table of radio devices
    bool m_is_config_locked = false;
    QIcon m_icon_lock;
    DoubleSpinboxDelegate doubleSpinboxDelegate;
    QTimer m_updateTimer;
    bool m_isRunning = false;
    bool m_isRefreshingDevices = false;
};
