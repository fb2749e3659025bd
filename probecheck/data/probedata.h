#pragma once

#include "general/host/hostpointer.h"
#include "host_api/requester.h"
#include "probecheck/data/buttonclaim.h"
#include "probecheck/data/linetap.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <mutex>
#include <set>
#include <vector>

/// A Measurement Tool as the controller describes it. Bodies are counted from 0.
struct ProbeTool {
    bool calibrated = false; ///< body and tip
    int reference = -1;      ///< -1: none
};

/// What the docks of this module share: the host's channel, the tools that the controller has, and
/// the stream of their samples. It asks and subscribes only while somebody wants data.
///
/// Nothing is ever written to the controller but the request to send the tools' lines.
///
/// The Requester operations may be called on any thread and never wait for the GUI thread.
/// Everything else runs on the GUI thread; signals but farewell() come from its event loop, never
/// from inside a call.
class ProbeData : public QObject, public Requester {
    Q_OBJECT

public:
    static constexpr int refreshMs = 50; ///< between two deliveries of samples

    /// The host's objects are borrowed. Null ones stand for a host that answers nothing. In a
    /// replay what comes was measured before: it is of no use here, and nobody gets any samples.
    ProbeData(IOManager* iom, BackendVersions* beVers, bool isReplay = false);
    ~ProbeData() override;

    /// Registers for measurement start and stop.
    void enter();

    /// Takes all registrations back and hangs up; nothing is told and asked any more.
    void leave();

    /// A user of the data: when forget() has been called for the last one, the data leave.
    void serve(const QObject* user);
    void forget(const QObject* user);

    /// Whether a user, such as a dock that is seen, wants samples. Takes effect a moment later.
    void setWanted(const QObject* user, bool wanted);

    /// Whose a press of a tool's button is. forget() takes a page out of it.
    ButtonClaim& buttons() { return m_buttons; }

    const HostPointer& host() const { return m_iom; }
    const BackendVersions* versions() const { return m_versions; } ///< null after leave()

    bool isReplay() const { return m_isReplay; }

    /// A measurement runs, and the tools are known.
    bool isReceiving() const { return m_isReceiving; }

    /// As the controller described them when they were last wanted or a measurement began.
    const QVector<ProbeTool>& tools() const { return m_tools; }

    int set_ascii_data(const char* channel, const char* line) override;
    void set_mea_started() override;
    void set_mea_stopped() override;

Q_SIGNALS:
    void toolsRead();      ///< tools() is new
    void receivingBegan(); ///< samples follow
    void receivingEnded(); ///< the measurement has stopped, or nobody wants samples
    /// Every 50 ms while receiving, also without samples: time goes on. Valid during the call.
    void samplesArrived(const ProbeSamples& samples);
    void samplesLost(int count); ///< this many were overwritten before they could be told
    /// From inside forget() for its user and from inside leave() for all (null): what a user has to
    /// tell the host it tells now, later it is not heard.
    void farewell(const QObject* user);

protected:
    void customEvent(QEvent* event) override;

private:
    void tellGuiThread();
    void follow();
    void followOnce();
    void beginReceiving();
    void endReceiving();
    void subscribe();
    void unsubscribe();
    bool readTools();
    void deliver();
    bool isMeasured(unsigned generation);

    ButtonClaim m_buttons;
    HostPointer m_iom;
    VersionsPointer m_versions;
    LineTap m_tap;
    LineTap::Fetched m_fetched;
    QTimer m_timer;
    QVector<ProbeTool> m_tools;
    std::vector<const QObject*> m_users;
    std::vector<const QObject*> m_wanting;
    const bool m_isReplay;
    bool m_useOldFormat = true;
    bool m_isRegistered = false;
    bool m_isSubscribed = false;
    std::set<const char*> m_registered; ///< channels that the host has accepted
    bool m_isReceiving = false;
    bool m_toolsAreDue = false;
    bool m_isFollowing = false;
    bool m_hasNews = false;
    bool m_isDelivering = false;
    bool m_isAvailable = false;
    bool m_hasTakenLeave = false;

    std::mutex m_mutex; ///< guards the next three; held for moments only
    bool m_isMeasuring = false;
    unsigned m_generation = 0; ///< moves on with each start and stop
    bool m_guiIsTold = false;  ///< an event for the GUI thread is on its way

    unsigned m_receivedGeneration = 0; ///< GUI thread only: of what is being received
};
