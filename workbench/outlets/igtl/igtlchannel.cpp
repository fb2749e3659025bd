#include "workbench/outlets/igtl/igtlchannel.h"

#include "workbench/outlets/igtl/igtlmessages.h"

#include <QCoreApplication>

namespace workbench {

namespace {

constexpr std::chrono::seconds retryInterval{5};

class ServerTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::IgtlChannel)
};

} // namespace

IgtlChannel::IgtlChannel(const OutletUrl& url)
    : m_server(url.host, url.port) {}

void IgtlChannel::tend() {
    if (!m_server.isListening() && Clock::now() >= m_nextTry) {
        QString reason;
        m_trouble = m_server.listen(&reason) ? QString()
                                             : ServerTexts::tr("nobody can connect to port %1: %2")
                                                   .arg(QString::number(m_server.port()), reason);
        m_nextTry = Clock::now() + retryInterval;
    }
    m_server.tend();
}

OutletWord IgtlChannel::word() const {
    OutletWord word;
    if (!m_trouble.isEmpty()) {
        word.state = OutletWord::State::Refused;
        word.text = m_trouble;
    } else if (m_server.clients() == 0) {
        word.text =
            m_server.slowClients() > 0
                ? ServerTexts::tr("a client was too slow and was dropped; nobody is connected")
                : ServerTexts::tr("nobody is connected");
    } else {
        word.state = OutletWord::State::Connected;
        word.text = ServerTexts::tr("clients: %1").arg(m_server.clients());
    }
    return word;
}

OutletChannel::Delivery IgtlChannel::send(const TrackedFrame& frame) {
    if (m_server.clients() == 0) {
        return Delivery::NobodyThere;
    }
    m_messages.clear();
    appendTransforms(frame, m_messages);
    m_server.send(m_messages);
    return Delivery::Sent;
}

void IgtlChannel::send(const ModuleResult& result) {
    m_messages.clear();
    appendPoint(result, m_messages);
    m_server.send(m_messages);
}

} // namespace workbench
