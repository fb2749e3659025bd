#pragma once

#include "simulator/words/parametertable.h"

namespace kestrel_simulator {

class Replay;

/// "sim replay ...": playing, pausing, going about in a recording. `words` are those behind "sim
/// replay"; no replay is an error.
Answer actOnReplay(Replay* replay, const text::Words& words, double now, bool isSending);

/// The value of "sim replay": state, position, duration, speed, wall clock.
Answer describeReplay(const Replay* replay);

} // namespace kestrel_simulator
