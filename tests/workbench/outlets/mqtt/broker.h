#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A real broker on 127.0.0.1, with a folder of its own for what it keeps and for certificates.
class Broker {
public:
    enum class Access {
        Everybody,
        WithPassword,   ///< anna, with the one of passwordFile()
        WithCertificate ///< signed by the authority
    };
    struct Manner {
        bool isEncrypted = false;
        bool isForgetful = false; ///< writes nothing down
        Access access = Access::Everybody;
        QString name = QStringLiteral("127.0.0.1"); ///< in its certificate, a name or an address
    };

    Broker();
    explicit Broker(const Manner& manner);
    ~Broker();
    Broker(const Broker&) = delete;
    Broker& operator=(const Broker&) = delete;

    quint16 port() const { return m_port; }
    quint16 plainPort() const { return m_plainPort; } ///< without TLS, of one that is encrypted

    /// On the same port, with what it has kept. Ends the test when it does not listen.
    void start();
    /// As a power cut does.
    void kill();
    void pause(); ///< it takes nothing and says nothing, but its connections stay
    void resume();

    QString passwordFile(const QByteArray& password) const;
    QString authorityFile() const { return file("ca.pem"); }
    QString strangeAuthorityFile() const; ///< of an authority that nobody knows
    QString clientCertificateFile() const { return file("client.pem"); }
    QString clientKeyFile() const { return file("client.key"); }

    static constexpr const char* password = "pass word";

private:
    QString file(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    void makeAuthority(const char* name) const;
    void makeCertificate(const char* name, const QString& subject) const;
    static void run(const QString& program, const QStringList& arguments);

    QTemporaryDir m_folder;
    quint16 m_port = 0;
    quint16 m_plainPort = 0;
    QProcess m_process;
};
