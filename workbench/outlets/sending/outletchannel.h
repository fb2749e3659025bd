#pragma once

#include "workbench/outlets/sending/frames/trackedframe.h"
#include "workbench/outlets/sending/resultmessage.h"

#include <QString>

#include <chrono>

namespace workbench {

/// How an outlet is, for people.
struct OutletWord {
    enum class State {
        Waiting,   ///< tries, or waits for somebody to come
        Connected, ///< somebody takes the data, as far as can be known
        Refused    ///< it is of no use before somebody changes something; tries again, seldom
    };
    State state = State::Waiting;
    QString text; ///< one plain sentence without a full stop
    quint64 sentResults = 0;
    quint64 waitingResults = 0; ///< kept until somebody takes them
    quint64 droppedResults = 0;
};

/// What is particular to one kind of outlet. Made on any thread; everything else is called by one
/// thread of the outlet's own, for which nobody ever waits: a call may take its time, at the cost
/// of the frames that come meanwhile.
class OutletChannel {
public:
    enum class Delivery {
        Sent,
        Dropped,    ///< it could not be sent
        NobodyThere ///< there is nobody to send it to, which is nobody's fault
    };

    OutletChannel() = default;
    virtual ~OutletChannel() = default;
    OutletChannel(const OutletChannel&) = delete;
    OutletChannel& operator=(const OutletChannel&) = delete;

    /// Above 0: only the latest frame of each such time is wanted; the others are not missed. The
    /// same in all calls, and called on any thread.
    virtual std::chrono::milliseconds frameInterval() const { return {}; }

    /// Whether results are wanted; the same in all calls, and called on any thread.
    virtual bool takesResults() const { return false; }

    /// Whether a result outlives the program once keep() has returned; the same in all calls, and
    /// called on any thread.
    virtual bool keepsResults() const { return false; }

    /// Called often, some twenty times a second: connects, listens, notices who has gone.
    virtual void tend() = 0;

    virtual OutletWord word() const = 0;
    virtual Delivery send(const TrackedFrame& frame) = 0;
    virtual void send(const ModuleResult& result) { static_cast<void>(result); }

    /// After the last of several results: a disk is waited for once.
    virtual void keep() {}

    /// The last call but for the destructor: takes leave, within two seconds.
    virtual void close() {}
};

} // namespace workbench
