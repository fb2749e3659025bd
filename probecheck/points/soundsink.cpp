#include "probecheck/points/soundsink.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include <dlfcn.h>
#include <utility>

namespace points {

std::optional<Sound> soundOf(Notice notice) {
    switch (notice) {
    case Notice::Begun:
        return Sound::Begun;
    case Notice::BegunAnew:
    case Notice::Captured:
        return {};
    case Notice::Kept:
        return Sound::Captured;
    case Notice::ToolHidden:
    case Notice::ReferenceLost:
    case Notice::Silent:
        return Sound::Lost;
    case Notice::NotKept:
    case Notice::Cancelled:
    case Notice::ReferenceChanged:
    case Notice::MeasurementEnded:
    case Notice::OutOfSight:
    case Notice::NotMeasuring:
    case Notice::NotCalibrated:
    case Notice::StillBusy:
        return Sound::Failed;
    }
    return {};
}

Loudspeaker::Loudspeaker(QString folder)
    : Loudspeaker(std::move(folder), &QApplication::beep) {}

Loudspeaker::Loudspeaker(QString folder, std::function<void()> bell)
    : m_folder(std::move(folder))
    , m_bell(std::move(bell)) {}

void Loudspeaker::play(Sound sound) {
    if (!std::exchange(m_hasLooked, true)) {
        // Qt remembers the name for longer than the plug-in is mapped: no literal.
        QLibrary library(m_folder + QLatin1Char('/') + QLatin1String(soundLibraryFile));
        m_play = reinterpret_cast<PlaySound>(library.resolve(playSoundName));
    }
    if (m_play == nullptr || !m_play(sound)) {
        m_bell();
    }
}

QString Loudspeaker::folderOfThisLibrary() {
    static const char inside = 0;
    Dl_info info{};
    if (dladdr(&inside, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

} // namespace points
