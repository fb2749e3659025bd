#pragma once

#include <QDockWidget>
#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

namespace workbench {

class Banner;
class ControllerSession;
class DataWatch;
class LogModel;

/// Says over the docks, and in the titles of the modules' docks, that what they show is not live:
/// the connection is lost, or the data have stopped. Titles and entries are as the modules gave
/// them before and afterwards, whatever the modules make of them meanwhile.
class LiveState : public QObject {
    Q_OBJECT

public:
    LiveState(const DataWatch& watch, ControllerSession& session, LogModel& log, Banner& banner,
              QObject* parent = nullptr);

    /// The dock of a module; may be deleted at any time.
    void addDock(QDockWidget* dock);

    /// What the docks show is a replay, in these words; empty: it is not.
    void setReplay(const QString& words);

private:
    struct Titled {
        QPointer<QDockWidget> dock;
        QString own;   ///< the module's title while another one is shown
        QString shown; ///< by us; empty while the title is the module's
    };

    void showConnection();
    void showData();
    void showWaiting(bool isWaiting);
    void tellOfInterruption(bool first);
    QString sentence() const;
    void showTitles();
    static void entitle(Titled& titled, const QString& remark);

    const DataWatch& m_watch;
    ControllerSession& m_session;
    LogModel& m_log;
    Banner& m_banner;
    std::vector<Titled> m_docks;
    QString m_replay;
    bool m_dialogInterrupted = false;
};

} // namespace workbench
