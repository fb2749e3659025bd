#include "probecheck/data/probedata.h"

#include "general/host/hostlink.h"
#include "general/host/toolqueries.h"
#include "host_api/iomanager.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

// A frame's number and time come on lines of their own, before those of the tools.
constexpr std::array<const char*, 5> channels = {
    "fr", "ts", toolqueries::channels[0], toolqueries::channels[1], toolqueries::channels[2]};
static_assert(channels.size() == 2 + std::size(toolqueries::channels));

QEvent::Type newsEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

} // namespace

ProbeData::ProbeData(IOManager* iom, BackendVersions* beVers, bool isReplay)
    : m_iom(iom)
    , m_versions(beVers, m_iom)
    , m_isReplay(isReplay) {
    newsEvent();
    m_timer.setInterval(refreshMs);
    connect(&m_timer, &QTimer::timeout, this, &ProbeData::deliver);
}

ProbeData::~ProbeData() {
    leave();
}

// A host may end the module inside a registration and finish that afterwards: then it is taken back
// at once.
void ProbeData::enter() {
    m_isRegistered = true;
    m_iom->register_measurement_requester(this);
    if (!m_isRegistered) {
        m_iom.afterHangingUp()->unregister_measurement_requester(this);
    }
}

// A host may end the module inside what it is told at the farewell.
void ProbeData::leave() {
    if (!m_iom.isHungUp() && !std::exchange(m_hasTakenLeave, true)) {
        Q_EMIT farewell(nullptr);
    }
    if (m_iom.isHungUp()) {
        return;
    }
    m_wanting.clear();
    m_timer.stop();
    m_tap.stop();
    unsubscribe();
    if (std::exchange(m_isRegistered, false)) {
        m_iom->unregister_measurement_requester(this);
    }
    m_iom.hangUp();
}

void ProbeData::serve(const QObject* user) {
    m_users.push_back(user);
}

void ProbeData::forget(const QObject* user) {
    Q_EMIT farewell(user);
    setWanted(user, false);
    m_buttons.leave(user);
    const auto found = std::find(m_users.begin(), m_users.end(), user);
    if (found == m_users.end()) {
        return;
    }
    m_users.erase(found);
    if (m_users.empty()) {
        leave();
    }
}

void ProbeData::setWanted(const QObject* user, bool wanted) {
    const auto found = std::find(m_wanting.begin(), m_wanting.end(), user);
    if (wanted == (found != m_wanting.end()) || m_iom.isHungUp() || m_isReplay) {
        return;
    }
    if (wanted) {
        m_wanting.push_back(user);
        m_toolsAreDue = true;
    } else {
        m_wanting.erase(found);
    }
    tellGuiThread();
}

int ProbeData::set_ascii_data(const char* /*channel*/, const char* line) {
    return m_tap.take(line);
}

void ProbeData::set_mea_started() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_generation;
        m_isMeasuring = true;
    }
    tellGuiThread();
}

void ProbeData::set_mea_stopped() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_generation;
        m_isMeasuring = false;
    }
    m_tap.stop();
    tellGuiThread();
}

void ProbeData::tellGuiThread() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (std::exchange(m_guiIsTold, true)) {
            return;
        }
    }
    QCoreApplication::postEvent(this, new QEvent(newsEvent()));
}

// Not asked for its type: following without news does nothing.
void ProbeData::customEvent(QEvent* /*event*/) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_guiIsTold = false;
    }
    follow();
}

// A host may have events handled while it is asked: what they bring is followed afterwards.
void ProbeData::follow() {
    Q_ASSERT(QThread::currentThread() == thread());
    if (m_isFollowing) {
        m_hasNews = true;
        return;
    }
    m_isFollowing = true;
    if (!m_iom.isHungUp()) {
        followOnce();
    }
    m_isFollowing = false;
    if (std::exchange(m_hasNews, false)) {
        tellGuiThread();
    }
}

void ProbeData::followOnce() {
    unsigned generation = 0;
    bool isMeasuring = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        generation = m_generation;
        isMeasuring = m_isMeasuring;
    }
    const bool isWanted = !m_wanting.empty();
    if (m_isReceiving && (!isWanted || generation != m_receivedGeneration)) {
        endReceiving();
    }
    if (!isWanted) {
        unsubscribe();
        return;
    }
    const bool begins = isMeasuring && !m_isReceiving;
    if (begins || m_toolsAreDue) {
        m_toolsAreDue = false;
        if (!readTools()) {
            return;
        }
        Q_EMIT toolsRead();
    }
    if (begins && isMeasured(generation)) {
        m_receivedGeneration = generation;
        beginReceiving();
    }
}

bool ProbeData::isMeasured(unsigned generation) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isMeasuring && m_generation == generation;
}

// False when the host has ended the module meanwhile.
bool ProbeData::readTools() {
    QVector<ProbeTool> tools;
    std::vector<int> references;
    int count = 0;
    m_isAvailable = hostlink::isMtAvailable(m_iom, m_versions);
    if (!m_isAvailable ||
        m_iom->get_parameter_int(&count, "measurementtool number_of_tools") != 0) {
        count = 0;
    }
    count = std::clamp(count, 0, hostlink::mostBodies);
    for (int tool = 0; tool < count && !m_iom.isHungUp(); ++tool) {
        ProbeTool description;
        description.calibrated = toolqueries::isToolCalibrated(m_iom, tool);
        description.reference = toolqueries::referenceOfTool(m_iom, tool).value_or(-1);
        tools.append(description);
        references.push_back(description.reference);
    }
    if (m_iom.isHungUp()) {
        return false;
    }
    m_tools = tools;
    m_tap.setReferences(std::move(references));
    return true;
}

void ProbeData::beginReceiving() {
    if (m_isAvailable) {
        m_useOldFormat = toolqueries::usesOldFormat(m_iom, m_versions, m_useOldFormat);
        toolqueries::activateLines(m_iom, m_useOldFormat);
    }
    m_tap.start();
    subscribe();
    if (m_iom.isHungUp()) {
        return;
    }
    m_isReceiving = true;
    if (!isMeasured(m_receivedGeneration)) {
        m_tap.stop(); // stopped while the host was asked; an event is on its way
    }
    m_timer.start();
    Q_EMIT receivingBegan();
}

void ProbeData::endReceiving() {
    deliver();
    m_timer.stop();
    m_isReceiving = false;
    m_tap.stop();
    Q_EMIT receivingEnded();
}

// From one measurement to the next it stays subscribed, for a host may keep each registration; what
// has failed is tried again.
void ProbeData::subscribe() {
    m_isSubscribed = true;
    for (const char* const channel : channels) {
        if (!m_isSubscribed) {
            return;
        }
        if (m_registered.count(channel) > 0) {
            continue;
        }
        const int result = m_iom->register_data_requester(channel, this);
        if (!m_isSubscribed) {
            m_iom.afterHangingUp()->unregister_data_requester(channel, this);
        } else if (result == 0) {
            m_registered.insert(channel);
        }
    }
}

// A host may end the module inside one of these calls: the others are made all the same.
void ProbeData::unsubscribe() {
    if (!std::exchange(m_isSubscribed, false)) {
        return;
    }
    m_registered.clear();
    for (const char* const channel : channels) {
        m_iom.afterHangingUp()->unregister_data_requester(channel, this);
    }
}

// Those who are told may ask the host, and that may have events handled.
void ProbeData::deliver() {
    Q_ASSERT(QThread::currentThread() == thread());
    if (m_isDelivering) {
        return;
    }
    m_isDelivering = true;
    m_tap.fetch(m_fetched);
    Q_EMIT samplesArrived(m_fetched.samples);
    if (m_fetched.overwritten > 0) {
        Q_EMIT samplesLost(static_cast<int>(m_fetched.overwritten));
    }
    m_isDelivering = false;
}
