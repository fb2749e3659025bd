#include "workbench/controller/controllersession.h"

#include "libs/kestrel_wire/command.h"
#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/measurementmonitor.h"
#include "workbench/text/logmodel.h"
#include "workbench/text/versiontext.h"

namespace workbench {

namespace {

// Of a controller that has answered before: a network that is back is found out by the next packet
// alone, and the system itself repeats one only after a second.
constexpr int quickConnectTimeoutMs = 700;
constexpr int maxReported = 1000;
constexpr const char* outputPrefix = "kestrel2 set output active ";
constexpr const char* outputQuestion = "kestrel2 get output active ";

QString text(const std::string& bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

ControllerSession::ControllerSession(DataReceiver& receiver, MeasurementMonitor& monitor,
                                     LogModel& log, QObject* parent)
    : QObject(parent)
    , m_receiver(receiver)
    , m_monitor(monitor)
    , m_log(log) {
    m_retryTimer.setSingleShot(true);
    m_retryTimer.setInterval(retryIntervalMs);
    m_pollTimer.setInterval(pollIntervalMs);
    m_channel.setObserver([this](const std::string& command, const CommandChannel::Answer& answer) {
        observe(command, answer);
    });
    m_channel.setFailureObserver(
        [this](const std::string& command, const CommandChannel::Answer& answer) {
            Q_EMIT answered(command, answer);
        });
    connect(&m_channel, &CommandChannel::opened, this, &ControllerSession::onOpened);
    connect(&m_channel, &CommandChannel::lost, this, &ControllerSession::onLost);
    connect(&m_channel, &CommandChannel::unexpectedLine, this, [this](const QString& line) {
        problemOnce(tr("The controller sent a line that nobody asked for: %1").arg(line));
    });
    connect(&m_retryTimer, &QTimer::timeout, this, &ControllerSession::openChannel);
    connect(&m_pollTimer, &QTimer::timeout, this, &ControllerSession::poll);
}

ControllerSession::~ControllerSession() {
    m_channel.setObserver({});
    m_channel.setFailureObserver({});
}

void ControllerSession::connectTo(const ControllerAddress& address) {
    disconnectFromController();
    m_reported.clear();
    m_address = address;
    setState(State::Connecting);
    m_log.info(tr("Connecting to %1").arg(address.toString()));
    openChannel();
}

void ControllerSession::disconnectFromController() {
    m_retryTimer.stop();
    m_pollTimer.stop();
    m_channel.close();
    m_receiver.stop();
    m_monitor.forget();
    m_boundDataPort = 0;
    m_outputs.clear();
    m_versions = BackendVersions();
    if (m_wasReady) {
        m_log.info(tr("Disconnected from %1").arg(m_address.toString()));
    }
    m_wasReady = false;
    setState(State::Disconnected);
}

void ControllerSession::setState(State state, const QString& reason) {
    if (state != m_state || reason != m_reason) {
        m_state = state;
        m_reason = reason;
        Q_EMIT stateChanged();
    }
}

QString ControllerSession::stateText() const {
    const QString where = m_address.toString();
    switch (m_state) {
    case State::Disconnected:
        break;
    case State::Connecting:
        return tr("Connecting to %1").arg(where);
    case State::Reading:
        return tr("Connected to %1, reading its versions").arg(where);
    case State::Ready:
        return tr("Connected to %1").arg(where);
    case State::Failed:
        return tr("No connection to %1 (%2), trying again").arg(where, m_reason);
    case State::Lost:
        return tr("Connection to %1 lost (%2), reconnecting").arg(where, m_reason);
    }
    return tr("Not connected");
}

void ControllerSession::openChannel() {
    m_polling = false;
    m_channel.open(m_address.host, m_address.port,
                   m_wasReady ? quickConnectTimeoutMs : CommandChannel::connectTimeoutMs);
}

void ControllerSession::onLost(const QString& reason) {
    const State state = m_wasReady ? State::Lost : State::Failed;
    const bool known = m_state == state && m_reason == reason;
    m_pollTimer.stop();
    setState(state, reason);
    m_monitor.forget();
    if (!known) {
        m_log.problem(stateText());
    }
    m_retryTimer.start();
}

void ControllerSession::onOpened() {
    // A lost controller that accepts connections and then says nothing stays lost in words.
    if (m_state == State::Connecting) {
        setState(State::Reading);
    }
    nameDataPort();
    restoreOutputs();
    readVersions();
}

void ControllerSession::readVersions() {
    const auto read = std::make_shared<VersionTexts>();
    for (const char* const name : {"system", "protocol", "system_ct", "model"}) {
        const bool isLast = name == std::string_view("model");
        m_channel.askLater(kestrel_wire::getCommand(std::string("version ") + name),
                           [=](const CommandChannel::Answer& answer) {
                               if (answer.result == Success) {
                                   (*read)[name] = text(answer.reply.value);
                               }
                               if (isLast && m_channel.isOpen()) {
                                   finishHandshake(*read);
                               }
                           });
    }
}

// A version that cannot be read now keeps its last value.
void ControllerSession::takeVersions(const VersionTexts& texts) {
    const auto version = [&texts](const char* name, const VersionInfo& before) {
        bool good = false;
        const VersionInfo value = VersionInfo::fromString(texts.value(name), &good);
        return good ? value : before;
    };
    m_versions = BackendVersions(
        version("system", m_versions.systemPt()), version("protocol", m_versions.protocol()),
        version("system_ct", m_versions.systemCt()), texts.value("model", m_versions.hubModel()));
}

quint16 ControllerSession::bindDataPort(quint16 port, QString* error) {
    return m_receiver.start(m_channel.localAddress(), port, m_channel.peerAddress(), error);
}

void ControllerSession::nameDataPort() {
    // The same port after each reconnection: the command stays the one that the controller may have
    // seen already, and data under way still arrive.
    const quint16 before = m_boundDataPort;
    QString error;
    m_boundDataPort = bindDataPort(m_address.dataPort != 0 ? m_address.dataPort : before, &error);
    if (m_boundDataPort == 0 && m_address.dataPort == 0 && before != 0) {
        m_boundDataPort = bindDataPort(0, &error);
    }
    if (m_boundDataPort == 0) {
        problemOnce(tr("No data can be received on port %1: %2")
                        .arg(QString::number(m_address.dataPort), error));
        return;
    }
    m_channel.askLater(kestrel_wire::setCommand("data_port " + std::to_string(m_boundDataPort)));
}

void ControllerSession::restoreOutputs() {
    m_startedAnew.reset();
    for (const auto& [output, value] : m_outputs) {
        if (value == "yes") {
            askForOutput(output);
        }
        std::string command = output;
        command.append(" ").append(value);
        m_channel.askLater(command);
    }
}

// Before it is switched again: only a controller that was started anew has switched it off.
void ControllerSession::askForOutput(const std::string& setting) {
    const std::string parameter = setting.substr(std::string_view("kestrel2 set ").size());
    m_channel.askLater(
        kestrel_wire::getCommand(parameter), [this](const CommandChannel::Answer& answer) {
            if (answer.result == Success) {
                m_startedAnew = m_startedAnew.value_or(false) || answer.reply.value == "no";
            }
        });
}

// From here on the controller answers. What a connection has told that was lost before is
// forgotten: the next one may lead to another controller.
void ControllerSession::finishHandshake(const VersionTexts& texts) {
    takeVersions(texts);
    const bool first = !m_wasReady;
    m_wasReady = true;
    m_reported.clear();
    setState(State::Ready);
    m_log.info((first ? tr("Connected to %1: model %2, system %3, protocol %4")
                      : tr("Connection to %1 is back: model %2, system %3, protocol %4"))
                   .arg(m_address.toString(), m_versions.hubModel(),
                        versionText(m_versions.systemPt()), versionText(m_versions.protocol())));
    m_pollTimer.start();
    Q_EMIT ready(first);
    poll();
}

void ControllerSession::poll() {
    if (!isReady() || m_polling) {
        return;
    }
    m_polling = true;
    m_channel.askLater("kestrel2 get status active",
                       [this](const CommandChannel::Answer&) { m_polling = false; });
}

void ControllerSession::observe(const std::string& command, const CommandChannel::Answer& answer) {
    m_monitor.observe(command, answer);
    Q_EMIT answered(command, answer);
    if (answer.result == Success) {
        const std::size_t valueAt = command.rfind(' ');
        if (command.rfind(outputPrefix, 0) == 0 && valueAt != std::string::npos) {
            m_outputs[command.substr(0, valueAt)] = command.substr(valueAt + 1);
        }
    } else if (isReady() || command.rfind(outputQuestion, 0) != 0) { // not every one can tell
        report(command, answer);
    }
}

void ControllerSession::report(const std::string& command, const CommandChannel::Answer& answer) {
    const QString line =
        answer.result > 0
            ? tr("The controller refused \"%1\": %2 (error %3)")
                  .arg(text(command), text(answer.reply.errorText), QString::number(answer.result))
            : tr("Malformed reply to \"%1\": %2").arg(text(command), text(answer.line));
    // Dialogs, the poll and each opening repeat their commands; the answer is news only once.
    if (!isReady() || command.rfind("kestrel2 get ", 0) == 0) {
        problemOnce(line);
    } else {
        m_log.problem(line);
    }
}

void ControllerSession::problemOnce(const QString& line) {
    if (!m_reported.contains(line) && m_reported.size() < maxReported) {
        m_reported.insert(line);
        m_log.problem(line);
    }
}

} // namespace workbench
