#pragma once

/// Receiver of data lines and of measurement start and stop; implemented by modules, called by the
/// host after the object was handed to IOManager::register_data_requester or
/// IOManager::register_measurement_requester.
///
/// Each operation may be called on any thread, also on several at once. An implementation returns
/// quickly and never waits for the GUI thread inside a call: the host waits for a call in flight
/// when the requester is unregistered. The host calls an object no more after unregistering it and
/// never owns it.
///
/// The declaration order is binary contract: it is the order of the virtual slots.
class Requester {
public:
    /// One line of a channel that the object has subscribed to. `type` is the channel ("6dmt2"),
    /// `data` the whole line with its first word and without a line break, NUL-terminated; both are
    /// valid during the call only. Returns 0 when the line was taken, below 0 when it was not.
    virtual int set_ascii_data(const char* type, const char* data) = 0;

    /// A measurement has started on the controller.
    virtual void set_mea_started() = 0;

    /// The measurement has stopped.
    virtual void set_mea_stopped() = 0;

protected:
    ~Requester() = default; // never destroyed through this interface; not virtual: no slot
};
