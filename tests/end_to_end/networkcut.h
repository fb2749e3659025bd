#pragma once

#include <QString>
#include <QStringList>

/// A network of the test's own between this process and a simulator, whose packets can be made to
/// get lost without anybody's being told: neither end sees its interface go down.
class NetworkCut {
public:
    /// To be called before the process has a second thread: takes it into a network of its own,
    /// with a loopback. Without the right to do so nothing is changed, and whyNot() has the reason.
    static void enter();

    /// Lays the cable to a second network, in which a simulator is started by command().
    NetworkCut();
    ~NetworkCut();
    NetworkCut(const NetworkCut&) = delete;
    NetworkCut& operator=(const NetworkCut&) = delete;

    bool isThere() const { return m_whyNot.isEmpty(); }
    const QString& whyNot() const { return m_whyNot; }

    static QString simulatorsAddress();
    QStringList command() const; ///< runs what follows in the simulator's network

    void cut();  ///< packets in both directions are lost
    void mend(); ///< and get there again

private:
    bool inBoth(const QString& ours, const QString& theirs);

    QString m_whyNot;
    qint64 m_keeper = 0; // a process that keeps the second network
};
