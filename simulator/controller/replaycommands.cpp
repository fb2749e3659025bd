#include "simulator/controller/replaycommands.h"

#include "simulator/controller/replay.h"

namespace kestrel_simulator {

namespace {

Answer noReplay() {
    return Answer::wrongState("no recording is being replayed");
}

const char* nameOf(Replay::State state) {
    switch (state) {
    case Replay::State::Paused:
        return "paused";
    case Replay::State::Ended:
        return "ended";
    case Replay::State::Playing:
        break;
    }
    return "playing";
}

Answer setSpeed(Replay& replay, const std::string& word, double now) {
    double speed = 0.0;
    if (!text::readDouble(word, speed) || speed < Replay::minSpeed || speed > Replay::maxSpeed) {
        return Answer::outOfRange(Replay::minSpeed, Replay::maxSpeed);
    }
    replay.setSpeed(speed, now);
    return Answer::ok();
}

Answer seek(Replay& replay, const std::string& word, double now) {
    double position = 0.0;
    if (!text::readDouble(word, position) || position < 0.0) {
        return Answer::refuse(ErrorNumber::BadValue, "expected seconds from 0 on");
    }
    replay.seek(position, now);
    return Answer::ok();
}

} // namespace

Answer actOnReplay(Replay* replay, const text::Words& words, double now, bool isSending) {
    if (!replay) {
        return noReplay();
    }
    const std::string verb = words.empty() ? "" : words[0];
    if (words.size() == 1 && verb == "play") {
        replay->play(now);
        return Answer::ok();
    }
    if (words.size() == 1 && verb == "pause") {
        replay->pause(now);
        return Answer::ok();
    }
    if (words.size() == 2 && verb == "speed") {
        return setSpeed(*replay, words[1], now);
    }
    const bool isStep = words.size() == 1 && verb == "step";
    const bool isSeek = words.size() == 2 && verb == "seek";
    if (!isStep && !isSeek) {
        return Answer::refuse(ErrorNumber::Malformed,
                              "expected play, pause, step, speed F or seek SECONDS");
    }
    if (!isSending) {
        // And a start would begin with the first one.
        return Answer::wrongState("no frames are sent now");
    }
    if (isSeek) {
        return seek(*replay, words[1], now);
    }
    replay->step(now);
    return Answer::ok();
}

Answer describeReplay(const Replay* replay) {
    if (!replay) {
        return noReplay();
    }
    constexpr int decimals = 6;
    const auto utc = replay->utc();
    return Answer::value(
        std::string(nameOf(replay->state())) + " " + text::fixed(replay->position(), decimals) +
        " " + text::fixed(replay->duration(), decimals) + " " + text::shortest(replay->speed()) +
        " " + (utc ? kestrel_wire::formatUtc(*utc) : "none"));
}

} // namespace kestrel_simulator
