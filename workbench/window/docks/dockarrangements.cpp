#include "workbench/window/docks/dockarrangements.h"

#include <QMainWindow>
#include <QResizeEvent>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

bool areSameDocks(const DockSizes::ByName& a, const DockSizes::ByName& b) {
    return std::equal(a.keyBegin(), a.keyEnd(), b.keyBegin(), b.keyEnd());
}

} // namespace

DockArrangements::DockArrangements(QMainWindow& window, DockSizes& sizes)
    : QObject(&window)
    , m_window(window)
    , m_sizes(sizes) {
    m_give.setSingleShot(true);
    m_give.setInterval(0); // when the window has laid itself out
    connect(&m_give, &QTimer::timeout, this, &DockArrangements::give);
    m_giveBack.setSingleShot(true);
    m_giveBack.setInterval(0);
    connect(&m_giveBack, &QTimer::timeout, this, &DockArrangements::giveBack);
    connect(&sizes, &DockSizes::movedByUser, this, [this] { m_beforeStrip.reset(); });
    window.installEventFilter(this);
}

void DockArrangements::enter(Kind kind) {
    if (kind == m_kind) {
        return;
    }
    keep();
    m_kind = kind;
    if (m_beforeStrip) {
        m_beforeStrip->docks = m_known[kind];
    }
    m_isArranged = false;
    if (kind == Kind::Start) {
        arrange();
    }
}

void DockArrangements::arrange() {
    m_isArranged = true;
    m_give.start();
}

DockSizes::ByName DockArrangements::sizes(Kind kind) {
    if (kind == m_kind) {
        keep();
    }
    return m_known[kind];
}

void DockArrangements::setSizes(Kind kind, const DockSizes::ByName& sizes) {
    m_known[kind] = sizes;
}

bool DockArrangements::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_window && event->type() == QEvent::Resize) {
        onWindowResized(static_cast<const QResizeEvent*>(event)->oldSize());
    }
    return QObject::eventFilter(watched, event);
}

// What has just changed is not what the user made of it.
void DockArrangements::keep() {
    if (m_give.isActive() || !m_isArranged || !m_window.isVisible()) {
        return;
    }
    const DockSizes::ByName now = m_sizes.sizes();
    const bool isAsBefore = m_beforeStrip && areSameDocks(m_beforeStrip->docks, now);
    m_known[m_kind] = isAsBefore ? m_beforeStrip->docks : now;
}

void DockArrangements::give() {
    m_sizes.give(m_known[m_kind]);
}

void DockArrangements::onStripAppears() {
    if (m_giveBack.isActive()) {
        m_giveBack.stop();
        return;
    }
    m_beforeStrip = BeforeStrip{m_give.isActive() ? m_known[m_kind] : m_sizes.sizes(),
                                m_window.size(), QSize()};
}

void DockArrangements::giveBack() {
    const auto before = std::exchange(m_beforeStrip, std::nullopt);
    if (!before) {
        return;
    }
    if (m_window.size() == before->grown) {
        m_window.resize(before->window);
    }
    if (areSameDocks(before->docks, m_sizes.sizes())) {
        m_sizes.give(before->docks);
    }
}

// A window that is smaller than what is in it needs is made larger by its layout, and no more.
void DockArrangements::onWindowResized(const QSize& before) {
    if (!m_beforeStrip) {
        return;
    }
    const bool isOurs = before == m_beforeStrip->window || before == m_beforeStrip->grown;
    if (isOurs && m_window.size() == before.expandedTo(m_window.minimumSizeHint())) {
        m_beforeStrip->grown = m_window.size();
    } else {
        m_beforeStrip.reset();
    }
}

} // namespace workbench
