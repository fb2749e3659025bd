#include "tests/workbench/controller/connectionrig.h"

#include <QDeadlineTimer>
#include <QThread>
#include <QtTest>

using workbench::ControllerSession;

namespace workbench {
struct ConnectionProbe {
    using Channel = CommandChannel::State;

    static QTimer& retryTimer(ControllerSession& session) { return session.m_retryTimer; }
    static QTimer& pollTimer(ControllerSession& session) { return session.m_pollTimer; }
    static QTimer& replyTimer(ControllerSession& session) { return session.channel().m_headTimer; }
    static std::size_t pending(ControllerSession& session) {
        return session.channel().m_pending.size();
    }
    static Channel channel(ControllerSession& session) { return session.channel().m_state; }

    /// What runs in the session: the timers of retry, poll and reply, and the channel.
    static QString works(ControllerSession& session) {
        static const std::map<Channel, QString> names = {
            {Channel::Closed, "closed"}, {Channel::Opening, "opening"}, {Channel::Open, "open"}};
        QStringList works = {names.at(channel(session))};
        works += retryTimer(session).isActive() ? QStringList("retry") : QStringList();
        works += pollTimer(session).isActive() ? QStringList("poll") : QStringList();
        works += replyTimer(session).isActive() ? QStringList("reply") : QStringList();
        return works.join(QLatin1Char(' '));
    }
};
} // namespace workbench

using workbench::ConnectionProbe;

namespace {

constexpr int patience = 8000;
constexpr int never = 3600 * 1000;
constexpr int shortTimeout = 50;
constexpr std::size_t versionsLeft = 3;
const std::string output = "output active chmon 6dmt2 yes";
const std::string question = "kestrel2 get status active";

// Lets a timer run out at once; one that does not run cannot.
void makeDue(QTimer& timer) {
    if (timer.isActive()) {
        if (timer.isSingleShot()) {
            timer.stop();
        }
        QMetaObject::invokeMethod(&timer, "timeout");
    }
}

} // namespace

bool waitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(patience);
    for (;;) {
        if (condition()) { // which need not hold for long
            return true;
        }
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents();
        QThread::msleep(1);
    }
}

bool isConnecting(Place place) {
    return place == Place::Connecting || place == Place::FailedConnecting ||
           place == Place::LostConnecting;
}

bool isReading(Place place) {
    return place == Place::Reading || place == Place::FailedReading || place == Place::LostReading;
}

ConnectionRig::ConnectionRig()
    : m_controller(std::make_unique<ScriptedController>())
    , m_other(std::make_unique<ScriptedController>())
    , m_backend(std::make_unique<BackendFixture>())
    , m_ready(std::make_unique<QSignalSpy>(&m_backend->session, &ControllerSession::ready)) {
    ConnectionProbe::retryTimer(m_backend->session).setInterval(never);
    ConnectionProbe::pollTimer(m_backend->session).setInterval(never);
    m_other->answer("version protocol", "1.9.0");
    m_other->answerRaw("kestrel2 get version system", "kestrel2 err 3 \"no\"\n");
}

Place ConnectionRig::place() const {
    using State = ControllerSession::State;
    ControllerSession& session = m_backend->session;
    const QString works = ConnectionProbe::works(session);
    const bool lost = session.state() == State::Lost;
    switch (session.state()) {
    case State::Disconnected:
        return works == "closed" ? Place::Disconnected : Place::Odd;
    case State::Connecting:
        return works == "opening reply" ? Place::Connecting : Place::Odd;
    case State::Reading:
        return works == "open reply" ? Place::Reading : Place::Odd;
    case State::Ready:
        return works == "open poll" ? Place::Ready : Place::Odd;
    case State::Failed:
    case State::Lost:
        if (works == "closed retry") {
            return lost ? Place::LostWaiting : Place::FailedWaiting;
        }
        if (works == "opening reply") {
            return lost ? Place::LostConnecting : Place::FailedConnecting;
        }
        if (works == "open reply") {
            return lost ? Place::LostReading : Place::FailedReading;
        }
        break;
    }
    return Place::Odd;
}

QString ConnectionRig::placeText() const {
    return m_backend->session.stateText() + ": " + ConnectionProbe::works(m_backend->session);
}

bool ConnectionRig::reach(Place place) {
    return waitFor([this, place] { return this->place() == place; });
}

void ConnectionRig::connectTo(ScriptedController& controller) {
    m_backend->connectTo(controller.port());
}

bool ConnectionRig::becomeReady() {
    m_controller->setSilent(false);
    connectTo(*m_controller);
    const bool ready = reach(Place::Ready);
    QCoreApplication::processEvents(); // what is to be told of the poll
    return ready && m_backend->host().set_parameter("%s", output.c_str()) == 0;
}

// All that is asked for in a reading place has come to the controller.
bool ConnectionRig::isAsked() const {
    return waitFor([this] {
        const std::vector<std::string> open = m_controller->unanswered();
        return !open.empty() && open.back() == "kestrel2 get version model";
    });
}

// The first version is known there, the others are not.
bool ConnectionRig::becomeReading() {
    if (!isAsked()) {
        return false;
    }
    m_controller->answerLate(m_controller->unanswered().size() - versionsLeft);
    m_controller->clearCommands();
    return waitFor([this] { return ConnectionProbe::pending(m_backend->session) == versionsLeft; });
}

bool ConnectionRig::bring(Place place, bool isAway) {
    const bool lost = place >= Place::LostWaiting;
    if ((place == Place::Ready || lost) && !becomeReady()) {
        return false;
    }
    m_controller->setSilent(place != Place::Ready);
    if (lost) {
        m_controller->dropConnections();
    } else if (place >= Place::FailedWaiting) {
        m_controller->refuseConnections();
        connectTo(*m_controller);
    }
    if ((lost && !reach(Place::LostWaiting)) ||
        (!lost && place >= Place::FailedWaiting && !reach(Place::FailedWaiting))) {
        return false;
    }
    m_controller->listenAgain();
    m_controller->clearCommands();
    m_ready->clear();
    if (isAway && !isReading(place)) {
        m_controller->refuseConnections();
    }
    switch (place) {
    case Place::Connecting:
    case Place::Reading:
        connectTo(*m_controller);
        break;
    case Place::FailedConnecting:
    case Place::FailedReading:
    case Place::LostConnecting:
    case Place::LostReading:
        makeDue(ConnectionProbe::retryTimer(m_backend->session));
        break;
    default:
        break;
    }
    return (!isReading(place) || becomeReading()) && this->place() == place;
}

bool ConnectionRig::comeBack() {
    ControllerSession& session = m_backend->session;
    if (isReading(place()) && !isAsked()) {
        return false;
    }
    controller().setSilent(false);
    controller().listenAgain();
    if (place() == Place::Disconnected) {
        connectTo(controller());
    }
    makeDue(ConnectionProbe::retryTimer(session));
    controller().answerLate(controller().unanswered().size());
    return reach(Place::Ready);
}

// What the other side does is done to a connection that it has got.
void ConnectionRig::awaitConnection() {
    const QDeadlineTimer deadline(patience);
    while (m_controller->openConnections() == 0 && !deadline.hasExpired()) {
        QThread::yieldCurrentThread();
    }
}

void ConnectionRig::answerVersions(const char* protocol) {
    m_controller->setSilent(!isReading(place()));
    m_controller->sendNow(std::string("kestrel2 set version protocol ") + protocol +
                          "\nkestrel2 set version system_ct 1.2.3\n"
                          "kestrel2 set version model SCRIPTED\n");
}

void ConnectionRig::command(const std::string& reply, int times) {
    m_controller->answerRaw(question, reply);
    char value[200];
    for (int i = 0; i < times; ++i) {
        m_backend->io.set_channel_option(0, reply.empty() ? shortTimeout : patience, 0);
        m_result = m_backend->io.get_parameter_string(value, "status active");
    }
    m_controller->forget(question);
}

void ConnectionRig::happen(Event event) {
    ControllerSession& session = m_backend->session;
    const std::string garbage = "kestrel2 \x01\xff{}\n";
    char reply[200];
    if (ConnectionProbe::channel(session) == ConnectionProbe::Channel::Opening &&
        m_controller->isListening()) {
        awaitConnection();
    }
    switch (event) {
    case Event::ConnectAsked:
        m_moved = true;
        connectTo(*m_other);
        break;
    case Event::ConnectAskedAgain:
        connectTo(*m_controller);
        break;
    case Event::DisconnectAsked:
        session.disconnectFromController();
        break;
    case Event::Accepted:
        QCoreApplication::processEvents();
        break;
    case Event::Refused:
        m_controller->refuseConnections();
        break;
    case Event::TimerOfReply:
        makeDue(ConnectionProbe::replyTimer(session));
        break;
    case Event::Dropped:
        m_controller->dropConnections();
        break;
    case Event::GoodVersions:
        answerVersions("1.14.0");
        break;
    case Event::OldVersions:
        answerVersions("0.9.0");
        break;
    case Event::OneVersionGarbled:
        answerVersions("?");
        break;
    case Event::AllVersionsGarbled:
        m_controller->sendNow(garbage + garbage + garbage);
        break;
    case Event::HalfLine:
        m_controller->sendNow("kestrel2 se");
        QCoreApplication::processEvents();
        command("", 1);
        break;
    case Event::EndlessLine:
        m_controller->sendNow(std::string(200 * 1024, 'x'));
        break;
    case Event::TimerOfRetry:
        makeDue(ConnectionProbe::retryTimer(session));
        break;
    case Event::TimerOfPoll:
        makeDue(ConnectionProbe::pollTimer(session));
        break;
    case Event::CommandAnswered:
        command("kestrel2 set status active none\n", 1);
        break;
    case Event::CommandGarbled:
        command(garbage, 1);
        break;
    case Event::CommandsGarbled:
        command(garbage, 3);
        break;
    case Event::CommandUnanswered:
        command("", 1);
        break;
    case Event::StartAcknowledged:
        m_controller->answer("status active", "tracking");
        m_result = m_backend->io.send_command(reply, "kestrel2 tracking start");
        break;
    case Event::StopAcknowledged:
        m_result = m_backend->io.send_command(reply, "kestrel2 tracking stop");
        break;
    case Event::StartElsewhere:
        m_controller->answer("status active", "tracking");
        makeDue(ConnectionProbe::pollTimer(session));
        break;
    }
}
