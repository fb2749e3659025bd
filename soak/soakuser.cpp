#include "soak/soakuser.h"

#include "host_api/metatypes.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr int beatMs = 100;
constexpr int inputSize = 4096;
constexpr const char* frameChannel = "fr";

long long monotonicMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

QAction* entryOf(const QMainWindow& window, const QString& menuTitle, int index) {
    const auto tops = window.menuBar()->actions();
    for (const QAction* top : tops) {
        if (top->menu() != nullptr && top->menu()->title() == menuTitle) {
            return top->menu()->actions().value(index);
        }
    }
    return nullptr;
}

} // namespace

SoakUser::SoakUser()
    : m_input(STDIN_FILENO, QSocketNotifier::Read) {
    connect(&m_beatTimer, &QTimer::timeout, this, &SoakUser::beat);
    connect(&m_input, &QSocketNotifier::activated, this, &SoakUser::readOrders);
    m_beatTimer.start(beatMs);
}

void SoakUser::set_param(QString key, QVariant value) {
    if (key == QLatin1String("CommandManager")) {
        m_host = value.value<IOManager*>();
    } else if (key == QLatin1String("ModuleParent")) {
        m_window = qobject_cast<QMainWindow*>(value.value<QWidget*>());
    }
}

QList<_GuiElement*> SoakUser::get_gui_elements() {
    m_host->register_data_requester(frameChannel, this);
    return {};
}

void SoakUser::about_to_exit_module() {
    m_host->unregister_data_requester(frameChannel, this);
}

int SoakUser::set_ascii_data(const char*, const char*) {
    ++m_frames;
    return 0;
}

void SoakUser::beat() {
    if (m_window == nullptr) {
        return;
    }
    const bool measuring = action("stop")->isEnabled();
    const bool idle = action("start")->isEnabled();
    const auto* const bar = m_window->findChild<QToolBar*>(QLatin1String("replayBar"));
    const bool replaying = bar != nullptr && bar->isVisible();
    const QWidget* const modal = QApplication::activeModalWidget();
    const QString name = modal == nullptr                ? QStringLiteral("-")
                         : modal->objectName().isEmpty() ? QStringLiteral("unnamed")
                                                         : modal->objectName();
    std::printf("beat %lld %llu %s %s\n", monotonicMs(),
                static_cast<unsigned long long>(m_frames.load()),
                replaying   ? "replay"
                : measuring ? "measuring"
                : idle      ? "idle"
                            : "away",
                qPrintable(name));
    std::fflush(stdout);
}

void SoakUser::readOrders() {
    char bytes[inputSize];
    const ssize_t size = ::read(STDIN_FILENO, bytes, sizeof(bytes));
    if (size <= 0) {
        m_input.setEnabled(false);
        return;
    }
    m_pending.append(bytes, static_cast<int>(size));
    for (int end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
        const QByteArray order = m_pending.left(end);
        m_pending.remove(0, end + 1);
        obey(order);
    }
}

void SoakUser::obey(const QByteArray& order) {
    const QByteArray word = order.left(order.indexOf(' '));
    const QByteArray value = order.mid(word.size() + 1);
    if (word == "seed") {
        m_habits.setSeed(value.toULongLong());
    } else if (word == "controller") {
        m_habits.setControllerPort(value.toUShort());
    } else if (word == "folder") {
        m_habits.setRecordingFolder(QString::fromLocal8Bit(value));
    } else if (word == "log") {
        fillLog(value.toInt());
    } else if (word == "open") {
        openDock(value);
    } else if (word == "rest") {
        m_habits.setResting(value == "yes");
    } else if (word == "do") {
        trigger(value);
    }
}

QAction* SoakUser::action(const QByteArray& name) const {
    static const QHash<QByteArray, QString> own = {
        {"start", QStringLiteral("actionStart")},
        {"stop", QStringLiteral("actionStop")},
        {"record", QStringLiteral("actionRecord")},
        {"stop-recording", QStringLiteral("actionStopRecording")},
        {"connect", QStringLiteral("actionConnect")},
        {"disconnect", QStringLiteral("actionDisconnect")},
        {"modules", QStringLiteral("actionModules")},
        {"replay", QStringLiteral("actionOpenRecording")},
        {"about", QStringLiteral("actionAbout")},
    };
    if (name == "display" || name == "show-display") {
        const auto* const dock =
            m_window->findChild<QDockWidget*>(QLatin1String("MtDataDisplayDock"));
        return dock == nullptr ? nullptr : dock->toggleViewAction();
    }
    if (name == "settings" || name == "calibration") {
        return entryOf(*m_window, QLatin1String("&Tracking"), name == "settings" ? 0 : 1);
    }
    return m_window->findChild<QAction*>(own.value(name));
}

// Afterwards: what the entry opens has its own loop, in which further orders are taken.
void SoakUser::trigger(const QByteArray& name) {
    QTimer::singleShot(0, this, [this, name] {
        QAction* const entry = action(name);
        QAbstractButton* const key = button(name);
        const bool isThere = name == "show-display" && entry != nullptr && entry->isChecked();
        const bool can = ((entry != nullptr && entry->isEnabled() && !isThere) ||
                          (key != nullptr && key->isEnabled())) &&
                         QApplication::activeModalWidget() == nullptr;
        std::printf("order %s %s\n", name.constData(), can ? "done" : "not possible");
        if (can) {
            entry != nullptr ? entry->trigger() : key->click();
        }
    });
}

QAbstractButton* SoakUser::button(const QByteArray& name) const {
    static const QHash<QByteArray, QString> own = {
        {"play", QStringLiteral("toolButton_replayPlay")},
        {"step", QStringLiteral("toolButton_replayStep")},
    };
    return own.contains(name) ? m_window->findChild<QAbstractButton*>(own.value(name)) : nullptr;
}

// The time plot may be missing.
void SoakUser::openDock(const QByteArray& name) {
    if (auto* const dock = m_window->findChild<QDockWidget*>(QLatin1String(name))) {
        dock->show();
        dock->raise();
    }
}

void SoakUser::fillLog(int lines) {
    for (int i = 0; i < lines; ++i) {
        const QByteArray text =
            QStringLiteral("Line %1 of those that fill the log up to its bound, as long as a usual "
                           "complaint")
                .arg(i)
                .toUtf8();
        m_host->write_log("SOAK", "user", 1, text.constData());
    }
}
