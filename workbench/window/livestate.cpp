#include "workbench/window/livestate.h"

#include "workbench/controller/controllersession.h"
#include "workbench/controller/datawatch.h"
#include "workbench/window/banner.h"

#include <QAction>

#include <algorithm>

namespace workbench {

namespace {

// The entry of a dock follows its title; it belongs to the module all the same.
void setTitleAlone(QDockWidget& dock, const QString& title) {
    QAction* const entry = dock.toggleViewAction();
    const QString text = entry->text();
    dock.setWindowTitle(title);
    entry->setText(text);
}

} // namespace

LiveState::LiveState(const DataWatch& watch, const ControllerSession& session, Banner& banner,
                     QObject* parent)
    : QObject(parent)
    , m_watch(watch)
    , m_session(session)
    , m_banner(banner) {
    connect(&m_watch, &DataWatch::changed, this, &LiveState::showData);
    connect(&m_session, &ControllerSession::stateChanged, this, &LiveState::showConnection);
}

void LiveState::addDock(QDockWidget* dock) {
    m_docks.erase(std::remove_if(m_docks.begin(), m_docks.end(),
                                 [](const Titled& titled) { return titled.dock.isNull(); }),
                  m_docks.end());
    m_docks.push_back({dock, {}, {}});
}

void LiveState::showConnection() {
    if (m_session.state() == ControllerSession::State::Lost) {
        m_banner.set(BannerTopic::Connection, BannerLevel::Error,
                     tr("%1. No live data until it is back; check that the controller is switched "
                        "on and its cable plugged in.")
                         .arg(m_session.stateText()));
    } else {
        m_banner.clear(BannerTopic::Connection);
    }
}

void LiveState::showData() {
    const bool isOld = m_watch.age() > 0.0;
    if (isOld) {
        m_banner.set(BannerTopic::NoData,
                     m_watch.age() < DataWatch::stoppedAfter ? BannerLevel::Warning
                                                             : BannerLevel::Error,
                     tr("No data for %1 s: %2").arg(m_watch.ageText(), sentence()));
    } else {
        m_banner.clear(BannerTopic::NoData);
    }
    for (Titled& titled : m_docks) {
        if (titled.dock) {
            entitle(titled, isOld ? m_watch.ageText() : QString());
        }
    }
}

void LiveState::entitle(Titled& titled, const QString& age) {
    QDockWidget& dock = *titled.dock;
    if (titled.shown.isEmpty() || dock.windowTitle() != titled.shown) {
        titled.own = dock.windowTitle(); // also one that the module has changed meanwhile
    }
    titled.shown = age.isEmpty() ? QString() : tr("%1 – no data for %2 s").arg(titled.own, age);
    const QString title = age.isEmpty() ? titled.own : titled.shown;
    if (dock.windowTitle() != title) {
        setTitleAlone(dock, title);
    }
}

QString LiveState::sentence() const {
    switch (m_watch.cause()) {
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
