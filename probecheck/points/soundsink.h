#pragma once

#include "probecheck/points/capture.h"
#include "probecheck/sounds/sounds.h"

#include <QString>

#include <functional>
#include <optional>

namespace points {

/// What is heard when a capture tells this; nothing while it goes on, and before its point is on
/// the disk.
std::optional<Sound> soundOf(Notice notice);

/// Where sounds go. GUI thread only.
class SoundSink {
public:
    SoundSink() = default;
    virtual ~SoundSink() = default;
    SoundSink(const SoundSink&) = delete;
    SoundSink& operator=(const SoundSink&) = delete;

    /// Returns at once.
    virtual void play(Sound sound) = 0;
};

/// The loudspeaker: the library of the sounds, looked for below `folder` with the first sound.
/// While there is none, or no sound server, the bell.
class Loudspeaker : public SoundSink {
public:
    explicit Loudspeaker(QString folder = folderOfThisLibrary());
    Loudspeaker(QString folder, std::function<void()> bell);

    void play(Sound sound) override;

    /// Of the plug-in that this code is part of, or of the program.
    static QString folderOfThisLibrary();

private:
    QString m_folder;
    std::function<void()> m_bell; ///< QApplication::beep() by default
    bool m_hasLooked = false;
    PlaySound m_play = nullptr;
};

} // namespace points
