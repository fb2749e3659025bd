#pragma once

#include "SourceFiles/mtdatadisplay_cells.h"
#include "SourceFiles/mtdatadisplay_settledrows.h"
#include "general/host/hostpointer.h"
#include "host_api/requester.h"
#include "ui_mtdatadisplay.h"

#include <QList>
#include <QMutex>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <mutex>
#include <vector>

class BackendVersions;
class IOManager;
class KestrelParser;
class QTableWidget;
namespace KestrelSDK_Datatypes {
struct Kestrel_MeaRef_Type_d;
struct Kestrel_MeaTool_Type_d;
} // namespace KestrelSDK_Datatypes

/// The live display of all Measurement Tools and their references. While it is visible it is
/// subscribed to their data lines; while a measurement runs it parses them and refreshes its two
/// tables every 200 ms.
///
/// Threads: the Requester operations may be called on any thread, in any order, also several at
/// once and from inside a query to the host. They never wait for the GUI thread. Everything else
/// runs on the GUI thread.
class MtDataDisplay : public QWidget, public Requester {
    Q_OBJECT

public:
    /// The host's objects are borrowed. Null ones stand for a host that answers nothing.
    MtDataDisplay(IOManager* iom, QWidget* parent, BackendVersions* beVers);
    ~MtDataDisplay() override;

    // The first two of the meta-object's slots; the slots' order is binary contract.
protected Q_SLOTS:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

public Q_SLOTS:
    /// One refresh of both tables. Called while another one is under way it does nothing.
    void onUpdateDataDisplay();

    /// Starts the measurement now: availability, output lines, parser, timer. A stop that arrives
    /// while the host is asked cancels it.
    void set_mea_started_deferred();

public:
    /// Returns 0 when the parser took the line, -1 when it rejected it or the line is longer than
    /// 10239 characters, -2 when no measurement runs.
    int set_ascii_data(const char* channel, const char* line) override;
    void set_mea_started() override; ///< starts a moment later, on the GUI thread
    void set_mea_stopped() override; ///< no line is taken any more when it returns

    /// Withdraws the registration for measurement start and stop.
    void about_to_exit();

    bool isMtAvailable();
    void checkDesiredOutput6dmt();
    void checkActivateChmon6dmt();
    void register6dmtRequest(bool on);

    void setupTableWidget6dmt();
    void updateDisplayMeaBodies();
    bool setInfoMeaBodyCalibrated(int i);
    QString getRefBodyForMeaBody(int i);
    void showTrackingStatusRefBody(int row);

    void setupTableWidget6dmtref();
    void updateDisplayRefBodies();
    bool setInfoRefBodyCalibrated(int i);

protected:
    void customEvent(QEvent* event) override;

private:
    void registerForMeasurements();
    void withdraw();
    void sizeBodyLists();
    void tellGuiThread();
    void followMeasurement();
    void clearAfterStop(unsigned generation);
    void startUnlessStopped(unsigned generation);
    bool stoppedSince(unsigned generation);
    bool takeLinesUnlessStopped(unsigned generation);
    void copyTools();
    void copyReferences();
    template <class Record>
    void copyRecords(std::vector<Record>& records, int (KestrelParser::*count)() const,
                     Record* (KestrelParser::*record)(int));

    /// Empties a table and fills so many new rows. False, as from the two `fill` functions, when a
    /// stop emptied the tables while the host was asked.
    bool fillNewRows(QTableWidget* table, int rows, bool (MtDataDisplay::*fill)(int, unsigned));
    bool fillMeaBody(int row, unsigned generation);
    bool fillRefBody(int row, unsigned generation);
    trackingcells::RowContent contentOfTool(int row) const;
    trackingcells::RowContent contentOfReference(int row) const;
    trackingcells::BodyState referenceState(int row) const; ///< of the tool's reference
    void showMeaBody(int row, const trackingcells::RowContent& content);
    void showReferenceState(int row);
    void showRefBody(int row, const trackingcells::RowContent& content);

    Ui_MtDataDisplayClass ui;
    HostPointer iom;
    VersionsPointer beVers;
    QMutex dataMutex; ///< held during a refresh
    QTimer timer;
    std::unique_ptr<char[]> ascii_buf;
    QList<int> listRefBodyOfMeaBody;
    QList<bool> listMeaBodyCalibrated;
    QList<bool> listRefBodyCalibrated;
    std::unique_ptr<KestrelParser> parser; ///< null while no measurement runs
    bool bUseChmon6dmt = true;
    bool bIsChmon6dmtActive = false;
    bool bIsMtAvailable = false;
    bool m_isRegistered = false; ///< for measurement start and stop
    bool m_isSubscribed = false; ///< to the data lines

    /// Guards ascii_buf, parser and the next three. Held for moments only: never while the host is
    /// asked or a widget is touched.
    std::mutex parserMutex;
    unsigned currentGeneration = 0; ///< moves on with each stop; what began before is void
    int pendingStarts = 0;          ///< starts that the GUI thread has not seen yet
    bool guiIsTold = false;         ///< an event for the GUI thread is on its way

    // GUI thread only.
    unsigned shownGeneration = 0; ///< the one whose rows the tables show
    std::vector<KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d> tools; ///< copies to paint from
    std::vector<KestrelSDK_Datatypes::Kestrel_MeaRef_Type_d> references;
    SettledRows<trackingcells::RowContent> settledTools;
    SettledRows<trackingcells::RowContent> settledReferences;
};
