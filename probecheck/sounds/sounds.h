#pragma once

namespace points {

/// What is heard of a capture.
enum class Sound { Begun, Captured, Failed, Lost };

/// The one function of the library of the sounds, and the library's file, in a folder beside the
/// plug-in. Never blocks; nobody waits for the sound, which is given up when it cannot begin within
/// two seconds. False when nobody would play it: there is no sound server. GUI thread only, with an
/// application.
using PlaySound = bool (*)(Sound sound);
constexpr const char* playSoundName = "probecheck_play_sound";
constexpr const char* soundLibraryFile = "probecheck/libProbeCheckSounds.so";

} // namespace points
