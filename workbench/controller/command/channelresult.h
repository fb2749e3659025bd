#pragma once

namespace workbench {

/// What the command channel itself reports; 0 is success and numbers above 0 are the controller's
/// own error numbers.
enum ChannelResult : int {
    Success = 0,
    NotConnected = -1,   ///< no connection, or it was lost while the command was under way
    TimedOut = -2,       ///< no reply in time; the connection counts as lost from then on
    MalformedReply = -3, ///< cut, garbled, the answer to another question or not of the asked kind
    ReplyTooLong = -4,   ///< does not fit into the 200 bytes of the caller
    BadCommand = -5,     ///< a line break or NUL inside, empty, or longer than a line may be
    BadArgument = -6,    ///< a null pointer, an unknown option
    WrongThread = -7,    ///< the command channel belongs to the GUI thread
    QueueFull = -8       ///< too many commands wait for their replies
};

} // namespace workbench
