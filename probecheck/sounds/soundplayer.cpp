#include "probecheck/sounds/sounds.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSoundEffect>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <array>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using points::Sound;

namespace {

constexpr int latestMs = 2000; // a sound that came later would be taken for another one
constexpr unsigned long endingMs = 1000;

const std::array<const char*, 4> sources = {
    "qrc:/probecheck/sounds/begun.wav", "qrc:/probecheck/sounds/captured.wav",
    "qrc:/probecheck/sounds/failed.wav", "qrc:/probecheck/sounds/lost.wav"};

// Made and used in a thread of its own: whatever the sound server does, nobody else waits for it.
class Player : public QObject {
public:
    void play(Sound sound) {
        if (m_effects[0].effect == nullptr) {
            load();
        }
        Effect& chosen = m_effects[static_cast<std::size_t>(sound)];
        chosen.effect->play();
        chosen.end->start(latestMs);
    }

private:
    struct Effect {
        std::unique_ptr<QSoundEffect> effect;
        std::unique_ptr<QTimer> end;
    };

    void load() {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Effect& made = m_effects[i];
            made.effect = std::make_unique<QSoundEffect>();
            made.effect->setSource(QUrl(QString::fromLatin1(sources[i])));
            made.end = std::make_unique<QTimer>();
            made.end->setSingleShot(true);
            connect(made.end.get(), &QTimer::timeout, made.effect.get(), &QSoundEffect::stop);
        }
    }

    std::array<Effect, sources.size()> m_effects;
};

QThread* thread = nullptr;
Player* player = nullptr; // deleted in its thread, at its end

// A thread that still hangs in the sound server's code is left alone: this library stays mapped.
void end() {
    thread->quit();
    if (thread->wait(endingMs)) {
        delete thread;
    }
    thread = nullptr;
    player = nullptr;
}

void begin() {
    thread = new QThread;
    player = new Player;
    player->moveToThread(thread);
    QObject::connect(thread, &QThread::finished, player, &QObject::deleteLater);
    thread->start();
    qAddPostRoutine(end);
}

bool listens(const QByteArray& path) {
    sockaddr_un address{};
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof(address.sun_path)) {
        return false;
    }
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (handle < 0) {
        return false;
    }
    const bool isThere =
        connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(handle);
    return isThere;
}

// Where PulseAudio's clients look first.
bool hasServer() {
    if (!qEnvironmentVariableIsEmpty("PULSE_SERVER")) {
        return true; // perhaps on another machine: somebody has chosen it
    }
    if (!qEnvironmentVariableIsEmpty("PULSE_RUNTIME_PATH")) {
        return listens(qgetenv("PULSE_RUNTIME_PATH") + "/native");
    }
    return listens(qgetenv("XDG_RUNTIME_DIR") + "/pulse/native") || listens("/run/pulse/native");
}

} // namespace

extern "C" Q_DECL_EXPORT bool probecheck_play_sound(Sound sound) {
    if (!hasServer()) {
        return false;
    }
    if (player == nullptr) {
        begin();
    }
    QMetaObject::invokeMethod(
        player,
        [target = player, sound, latest = QDeadlineTimer(latestMs)] {
            if (!latest.hasExpired()) {
                target->play(sound);
            }
        },
        Qt::QueuedConnection);
    return true;
}
