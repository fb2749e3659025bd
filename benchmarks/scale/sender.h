#pragma once

/// The other end, in a process of its own: a simulated controller with `tools` tools that answers
/// commands over TCP, and a thread that sends frames of its lines over UDP faster than a simulator
/// would. Prints "port N" first; for each line "send PORT RATE SECONDS" on standard input it sends
/// and then prints "sent N". Returns the process's exit code.
///
/// The frames are numbered from `firstFrame` on; their time stamp is the monotonic clock of the
/// machine at the moment of sending.
int runSender(int argc, char* argv[], int tools);

/// Above the numbers of the simulator's own frames.
constexpr long long firstFrame = 1000;

/// So many tools are sent in "6dmt" and with two decimals: with all digits a line would be longer
/// than the display's buffer of 10240 bytes.
constexpr int shortenedFrom = 100;
