#pragma once

#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"

#include <QSignalSpy>
#include <QString>

#include <functional>
#include <memory>

/// Where the connection stands, and what it waits for there. `Failed...` was never ready since the
/// user asked for the connection, `Lost...` was.
enum class Place {
    Disconnected,
    Connecting,       ///< the connection is asked for
    Reading,          ///< the versions are asked for
    Ready,            ///< nothing under way, the poll timer runs
    FailedWaiting,    ///< for the retry timer
    FailedConnecting, ///< again
    FailedReading,
    LostWaiting,
    LostConnecting,
    LostReading,
    Odd ///< none of these: a timer or a socket that does not belong to the state
};

/// Runs the event loop until `condition` holds. QtTest's own waits look every 10 to 50 ms only,
/// which adds up in a table. False when it never came to hold.
bool waitFor(const std::function<bool()>& condition);

bool isConnecting(Place place);
bool isReading(Place place);

/// A workbench's backend that can be brought to each place of the connection and be met there by
/// each event. Its retry and poll timers do not run out by themselves, the controller is silent
/// everywhere but in Ready.
class ConnectionRig {
public:
    enum class Event {
        ConnectAsked, ///< to another controller
        ConnectAskedAgain,
        DisconnectAsked,
        Accepted,
        Refused,
        TimerOfReply, ///< of a reply or of the connecting is due
        Dropped,
        GoodVersions,
        OldVersions,
        OneVersionGarbled,
        AllVersionsGarbled,
        HalfLine, ///< that nobody asked for
        EndlessLine,
        TimerOfRetry,
        TimerOfPoll,
        CommandAnswered,
        CommandGarbled,
        CommandsGarbled, ///< three in a row
        CommandUnanswered,
        StartAcknowledged,
        StopAcknowledged,
        StartElsewhere ///< found out by the poll
    };

    ConnectionRig();

    /// False when the connection did not get to `place`. The connecting places last until the event
    /// loop runs; they do not find the controller where it `isAway`.
    bool bring(Place place, bool isAway);
    void happen(Event event);

    Place place() const;
    QString placeText() const; ///< with the timers and the channel, for messages

    /// The way back to Ready, which exists everywhere.
    bool comeBack();

    BackendFixture& backend() { return *m_backend; }
    /// The controller that the session is to talk to now.
    ScriptedController& controller() { return *(m_moved ? m_other : m_controller); }
    ScriptedController& givenUp() { return *m_controller; }
    bool hasMoved() const { return m_moved; }
    int lastResult() const { return m_result; } ///< of the event's command
    const QSignalSpy& readySpy() const { return *m_ready; }
    void end() { m_backend.reset(); }

private:
    void awaitConnection();
    void connectTo(ScriptedController& controller);
    bool reach(Place place);
    bool isAsked() const;
    bool becomeReady();
    bool becomeReading();
    void answerVersions(const char* protocol);
    void command(const std::string& reply, int times);

    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<ScriptedController> m_other;
    std::unique_ptr<BackendFixture> m_backend;
    std::unique_ptr<QSignalSpy> m_ready;
    bool m_moved = false;
    int m_result = 0;
};
