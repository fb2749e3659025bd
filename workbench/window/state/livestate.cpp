#include "workbench/window/state/livestate.h"

#include "workbench/controller/controllersession.h"
#include "workbench/controller/datawatch.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/docks/docktitle.h"
#include "workbench/window/state/banner.h"

#include <QApplication>
#include <QFileDialog>
#include <QMainWindow>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

// The workbench's own dialogs do not mind a controller that is gone.
bool isOfWorkbench(const QWidget& widget) {
    return QLatin1String(widget.metaObject()->className()).startsWith(QLatin1String("workbench::"));
}

// Nor do the questions of its docks and of file dialogs. Modules ask over the window itself.
bool isDialogOfModuleOpen() {
    const QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || isOfWorkbench(*dialog) ||
        dialog->objectName() == QLatin1String("messageBox_about")) {
        return false;
    }
    for (const QWidget* of = dialog; of != nullptr; of = of->parentWidget()) {
        const bool isOwn = isOfWorkbench(*of) && qobject_cast<const QMainWindow*>(of) == nullptr;
        if (isOwn || qobject_cast<const QFileDialog*>(of) != nullptr) {
            return false;
        }
    }
    return true;
}

} // namespace

LiveState::LiveState(const DataWatch& watch, ControllerSession& session, LogModel& log,
                     Banner& banner, QObject* parent)
    : QObject(parent)
    , m_watch(watch)
    , m_session(session)
    , m_log(log)
    , m_banner(banner) {
    connect(&m_watch, &DataWatch::changed, this, &LiveState::showData);
    connect(&m_session, &ControllerSession::stateChanged, this, &LiveState::showConnection);
    connect(&m_session, &ControllerSession::ready, this, &LiveState::tellOfInterruption);
    m_session.channel().setWaitObserver([this](bool isWaiting) { showWaiting(isWaiting); });
}

void LiveState::addDock(QDockWidget* dock) {
    m_docks.erase(std::remove_if(m_docks.begin(), m_docks.end(),
                                 [](const Titled& titled) { return titled.dock.isNull(); }),
                  m_docks.end());
    m_docks.push_back({dock, {}, {}});
    showTitles();
}

void LiveState::setReplay(const QString& words) {
    m_replay = words;
    showData();
}

void LiveState::showConnection() {
    if (m_session.state() == ControllerSession::State::Lost) {
        m_dialogInterrupted = m_dialogInterrupted || isDialogOfModuleOpen();
        const QString text =
            m_replay.isEmpty()
                ? tr("%1. No live data until it is back; check that the controller is switched "
                     "on and its cable plugged in.")
                : tr("%1. The program that plays the recording does not answer; open the "
                     "recording again if it does not come back.");
        m_banner.set(BannerTopic::Connection, Severity::Error, text.arg(m_session.stateText()));
    } else {
        m_banner.clear(BannerTopic::Connection);
    }
}

void LiveState::tellOfInterruption(bool first) {
    const bool isToTell = std::exchange(m_dialogInterrupted, false) && !first;
    if (!isToTell) {
        return;
    }
    const QString text =
        m_session.wasStartedAnew().value_or(false)
            ? tr("The controller was started anew while a dialog was open. A calibration that was "
                 "under way is lost: repeat it. Settings that the dialog shows may be out of "
                 "date: close it and open it again.")
            : tr("The connection was interrupted while a dialog was open. Repeat a calibration "
                 "that was under way. Settings that the dialog shows may be out of date: close it "
                 "and open it again.");
    m_log.problem(text);
    m_banner.set(BannerTopic::Restart, Severity::Warning, text, Banner::Ending::ByUser);
}

// Called while the GUI thread waits: nothing but this is painted, and no event is handled.
void LiveState::showWaiting(bool isWaiting) {
    if (isWaiting) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        m_banner.showAtOnce(Severity::Information, tr("Waiting for the controller…"));
    } else {
        m_banner.hideAtOnce();
        QApplication::restoreOverrideCursor();
    }
}

void LiveState::showData() {
    const bool isOld = m_watch.age() > 0.0;
    if (isOld) {
        m_banner.set(BannerTopic::NoData,
                     m_watch.age() < DataWatch::stoppedAfter ? Severity::Warning : Severity::Error,
                     tr("No data for %1 s: %2").arg(m_watch.ageText(), sentence()));
    } else {
        m_banner.clear(BannerTopic::NoData);
    }
    showTitles();
}

void LiveState::showTitles() {
    QString remark = m_replay;
    if (m_watch.age() > 0.0) {
        remark += (remark.isEmpty() ? QString() : QStringLiteral(" – ")) +
                  tr("no data for %1 s").arg(m_watch.ageText());
    }
    for (Titled& titled : m_docks) {
        if (titled.dock) {
            entitle(titled, remark);
        }
    }
}

void LiveState::entitle(Titled& titled, const QString& remark) {
    QDockWidget& dock = *titled.dock;
    if (titled.shown.isEmpty() || dock.windowTitle() != titled.shown) {
        titled.own = dock.windowTitle(); // also one that the module has changed meanwhile
    }
    // What is cut off where the dock is narrow is the end.
    titled.shown = remark.isEmpty() ? QString() : remark + QStringLiteral(" – ") + titled.own;
    const QString title = remark.isEmpty() ? titled.own : titled.shown;
    if (dock.windowTitle() != title) {
        setTitleAlone(dock, title);
    }
}

QString LiveState::sentence() const {
    const DataWatch::Cause cause = m_watch.cause();
    const bool isSilence =
        cause == DataWatch::Cause::NeverCame || cause == DataWatch::Cause::Stopped;
    if (!m_replay.isEmpty() && isSilence) {
        return tr("the recording has no frames here. The replay goes on with the next one.");
    }
    if (!m_replay.isEmpty() && cause == DataWatch::Cause::LineMissing) {
        return tr("the recording has no line %1 here.").arg(m_watch.line());
    }
    switch (cause) {
    case DataWatch::Cause::LineMissing:
        return tr("the controller sends frames, but no longer the line %1. Another program may "
                  "have switched it off: connect again.")
            .arg(m_watch.line());
    case DataWatch::Cause::LineRefused:
        return tr("the line %1 arrives, but can no longer be read. Check that the controller's "
                  "version is supported.")
            .arg(m_watch.line());
    case DataWatch::Cause::NoPort:
        return tr("the port for the data could not be opened. Connect again, with another data "
                  "port.");
    case DataWatch::Cause::WaitsForSync:
        return tr("the controller waits for its sync signal. Check its source and the cable.");
    case DataWatch::Cause::Unreadable:
        return tr("data lines arrive, but cannot be read. Check the network, and that the "
                  "controller's version is supported.");
    case DataWatch::Cause::Foreign:
        return tr("data arrive from another address than the controller's and are refused. Check "
                  "whether two controllers use the same data port.");
    case DataWatch::Cause::NeverCame:
        return tr("the controller says that it measures, but nothing arrives at UDP port %1. "
                  "Check that no firewall blocks it.")
            .arg(m_session.boundDataPort());
    case DataWatch::Cause::Stopped:
        break;
    }
    return tr("the controller says that it measures, but its data no longer arrive at UDP port "
              "%1. Check the network; if another program uses the controller too, connect again.")
        .arg(m_session.boundDataPort());
}

} // namespace workbench
