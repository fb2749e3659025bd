#include "tests/workbench/outlets/mqtt/broker.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

namespace {

constexpr int patience = 30000;

quint16 freePort() {
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost)) {
        qFatal("no free port");
    }
    return server.serverPort();
}

bool isAddress(const QString& name) {
    QHostAddress address;
    return address.setAddress(name);
}

void write(const QString& name, const QByteArray& text) {
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        qFatal("%s cannot be written", qPrintable(name));
    }
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace

Broker::Broker()
    : Broker(Manner()) {}

Broker::Broker(const Manner& manner)
    : m_port(freePort()) {
    // As root it would become somebody who may not read our folder.
    QByteArray text = "user root\n";
    if (!manner.isForgetful) {
        text += "persistence true\nautosave_interval 1\n";
        text += "persistence_location " + m_folder.path().toUtf8() + "/\n";
    }
    const auto listen = [&text](quint16 port) {
        text += "listener " + QByteArray::number(port) + " 127.0.0.1\n";
    };
    if (manner.isEncrypted && manner.access != Access::WithCertificate) {
        m_plainPort = freePort();
        listen(m_plainPort);
    }
    listen(m_port);
    text +=
        manner.access == Access::Everybody ? "allow_anonymous true\n" : "allow_anonymous false\n";
    if (manner.isEncrypted) {
        makeAuthority("ca");
        makeCertificate("server", manner.name);
        makeCertificate("client", QStringLiteral("press-7"));
        text += "cafile " + authorityFile().toUtf8() + "\n";
        text += "certfile " + file("server.pem").toUtf8() + "\n";
        text += "keyfile " + file("server.key").toUtf8() + "\n";
    }
    if (manner.access == Access::WithCertificate) {
        text += "require_certificate true\nuse_identity_as_username true\n";
    } else if (manner.access == Access::WithPassword) {
        run(QStringLiteral("mosquitto_passwd"),
            {QStringLiteral("-b"), QStringLiteral("-c"), file("users"), QStringLiteral("anna"),
             QLatin1String(password)});
        text += "password_file " + file("users").toUtf8() + "\n";
    }
    write(file("broker.conf"), text);
    start();
}

Broker::~Broker() {
    m_process.kill();
    m_process.waitForFinished(patience);
}

void Broker::run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(patience) || process.exitCode() != 0) {
        qFatal("%s: %s", qPrintable(program), process.readAll().constData());
    }
}

void Broker::start() {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral(MOSQUITTO), {QStringLiteral("-c"), file("broker.conf")});
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patience && m_process.state() != QProcess::NotRunning) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_port);
        if (socket.waitForConnected(1000)) {
            return;
        }
        m_process.waitForFinished(20);
    }
    qFatal("the broker does not listen: %s", m_process.readAll().constData());
}

void Broker::kill() {
    m_process.kill();
    m_process.waitForFinished(patience);
}

void Broker::pause() {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP);
}

void Broker::resume() {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
}

QString Broker::passwordFile(const QByteArray& text) const {
    const QString name = file("password");
    write(name, text + "\n");
    return name;
}

QString Broker::strangeAuthorityFile() const {
    makeAuthority("strange");
    return file("strange.pem");
}

void Broker::makeAuthority(const char* name) const {
    const QString base = file(name);
    run(QStringLiteral("openssl"),
        {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
         QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
         QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
         QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
         QStringLiteral("/CN=authority %1").arg(QLatin1String(name)), QStringLiteral("-keyout"),
         base + QStringLiteral(".key"), QStringLiteral("-out"), base + QStringLiteral(".pem")});
}

void Broker::makeCertificate(const char* name, const QString& subject) const {
    const QString base = file(name);
    run(QStringLiteral("openssl"),
        {QStringLiteral("req"), QStringLiteral("-newkey"), QStringLiteral("ec"),
         QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
         QStringLiteral("-nodes"), QStringLiteral("-subj"), QStringLiteral("/CN=%1").arg(subject),
         QStringLiteral("-keyout"), base + QStringLiteral(".key"), QStringLiteral("-out"),
         base + QStringLiteral(".csr")});
    write(base + QStringLiteral(".ext"),
          QStringLiteral("subjectAltName=%1:%2\n")
              .arg(isAddress(subject) ? QStringLiteral("IP") : QStringLiteral("DNS"), subject)
              .toUtf8());
    run(QStringLiteral("openssl"),
        {QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"),
         base + QStringLiteral(".csr"), QStringLiteral("-CA"), file("ca.pem"),
         QStringLiteral("-CAkey"), file("ca.key"), QStringLiteral("-CAcreateserial"),
         QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-extfile"),
         base + QStringLiteral(".ext"), QStringLiteral("-out"), base + QStringLiteral(".pem")});
}
