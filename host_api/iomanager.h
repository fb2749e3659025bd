#pragma once

#include "requester.h"

#if defined(__GNUC__)
/// Lets the compiler check a printf-style call; `this` counts as the first argument.
#define KESTREL_PRINTF_FORMAT(text, first) __attribute__((format(printf, text, first)))
#else
#define KESTREL_PRINTF_FORMAT(text, first)
#endif

/// The host's command channel to the controller. Owned by the host; modules borrow it.
///
/// All operations are called on the host's GUI thread and block until the controller has answered
/// or the channel has given up. Results: 0 success; above 0 the controller's error number; below 0
/// a failure of the channel itself (not connected, timed out, malformed or overlong reply). After a
/// result other than 0 the content of `reply` and `*value` means nothing.
///
/// A `reply` buffer belongs to the caller and has 200 bytes; the host never writes more, terminator
/// included. A `format` is a printf-style parameter name ("measurementtool reference_of_tool
/// b%2.2d") without protocol prefix and verb; numbers are written with a decimal point whatever the
/// locale.
///
/// The declaration order is binary contract: it is the order of the virtual slots. The operations
/// named `unused_*` keep the places of operations that modules do not call.
class IOManager {
public:
    virtual ~IOManager() = default; // slots 1 and 2

    virtual void unused_slot_3() {} ///< keeps its place

    /// Sets an option of the command channel for the next command: `channel` (0 is the command
    /// channel), `timeout_ms` (reply time-out in milliseconds), `flags` (0).
    virtual int set_channel_option(int channel, int timeout_ms, int flags) = 0;

    /// Sends a whole command line with its protocol prefix ("kestrel2 tracking start") and writes
    /// the controller's whole reply line ("kestrel2 ok") into `reply`.
    virtual int send_command(char* reply, const char* command) = 0;

    virtual void unused_slot_6() {} ///< keeps its place

    /// Asks for a parameter and writes the value part of the answer into `reply`.
    virtual int get_parameter_string(char* reply, const char* format, ...)
        KESTREL_PRINTF_FORMAT(3, 4) = 0;

    /// Asks for a parameter whose value is a whole number.
    virtual int get_parameter_int(int* value, const char* format, ...)
        KESTREL_PRINTF_FORMAT(3, 4) = 0;

    /// Asks for a parameter whose value is a number.
    virtual int get_parameter_double(double* value, const char* format, ...)
        KESTREL_PRINTF_FORMAT(3, 4) = 0;

    /// Asks for a parameter whose value is "yes" or "no".
    virtual int get_parameter_bool(bool* value, const char* format, ...)
        KESTREL_PRINTF_FORMAT(3, 4) = 0;

    virtual void unused_slot_11() {} ///< keeps its place
    virtual void unused_slot_12() {} ///< keeps its place

    /// Sets a parameter; `format` yields its name and value ("output active chmon 6dmt yes").
    virtual int set_parameter(const char* format, ...) KESTREL_PRINTF_FORMAT(2, 3) = 0;

    /// Subscribes `requester` to the data lines of `channel`, the first word of the line. May be
    /// called from inside a notification.
    virtual int register_data_requester(const char* channel, Requester* requester) = 0;

    /// Ends a subscription. When it returns, no call for this channel is in flight or to come,
    /// except the one that it is itself called from.
    virtual int unregister_data_requester(const char* channel, Requester* requester) = 0;

    /// From now on `requester` is told of measurement start and stop.
    virtual int register_measurement_requester(Requester* requester) = 0;

    /// Ends that; the same promise as unregister_data_requester.
    virtual int unregister_measurement_requester(Requester* requester) = 0;

    /// Writes one line into the host's log. `level` 1 is the level of all messages of modules.
    virtual void write_log(const char* category, const char* source, int level,
                           const char* text) = 0;
};
