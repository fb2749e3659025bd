#pragma once

#include <string>
#include <string_view>

namespace kestrel_wire {

/// The word that every command and every reply begins with.
inline constexpr std::string_view protocolWord = "kestrel2";

/// The "version model" of a simulated controller that was not told to pass for another one.
inline constexpr const char* simulatorModel = "SIMULATOR";

/// The error numbers of "kestrel2 err <number> ...". All are above 0: negative numbers are left to
/// the client's own failures (no connection, no answer).
enum class ErrorNumber {
    Malformed = 1,   ///< not a command at all
    TooLong = 2,     ///< a command without an end; the connection is closed after this reply
    Unknown = 3,     ///< no such parameter or action
    BadValue = 4,    ///< the value is no number, out of range or otherwise not acceptable
    BadBody = 5,     ///< no such tool, reference, device or step
    ReadOnly = 6,    ///< the parameter can be read only
    Locked = 7,      ///< the configuration may not be changed now
    WrongState = 8,  ///< not possible in the controller's present state
    Unsupported = 9, ///< the protocol version that the controller speaks does not have it
    TooMany = 10,    ///< connections or channels used up
    Internal = 11    ///< the controller could not do what it should
};

enum class CommandKind {
    Get,   ///< "kestrel2 get <parameter>"
    Set,   ///< "kestrel2 set <parameter> <value>"
    Action ///< "kestrel2 <action>"
};

struct Command {
    CommandKind kind = CommandKind::Action;
    /// What follows the verb: parameter; parameter and value; the whole action. Without leading and
    /// trailing blanks, never empty.
    std::string text;
};

/// Reads one command line (without its end). On failure returns false and puts a reason for an
/// error reply into `reason`. Bytes below 32 and byte 127 are refused, so a reply that repeats
/// parts of a command is always one line.
bool parseCommand(std::string_view line, Command& command, std::string& reason);

/// "kestrel2 get <parameter>", "kestrel2 set <parameterAndValue>".
std::string getCommand(std::string_view parameter);
std::string setCommand(std::string_view parameterAndValue);

/// A line as its reader takes it, however many blanks stand between, before and behind its words:
/// the form in which lines can be compared.
std::string withSingleBlanks(std::string_view line);

} // namespace kestrel_wire
