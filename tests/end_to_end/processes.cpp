#include "tests/end_to_end/processes.h"

#include <QProcessEnvironment>

namespace processes {

Simulator::Simulator(const QStringList& options)
    : Simulator(QStringList(), options) {}

Simulator::Simulator(const QStringList& before, const QStringList& options) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList command = before;
    command << QStringLiteral(KESTREL_SIMULATOR) << QStringLiteral("--port") << QStringLiteral("0")
            << options;
    m_process.start(command.takeFirst(), command);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(startTimeoutMs)) {
    }
    const QByteArray line = m_process.readLine().trimmed();
    const QByteArray greeting("listening on ");
    if (line.startsWith(greeting)) {
        const int colon = line.lastIndexOf(':');
        m_host = QString::fromLatin1(line.mid(greeting.size(), colon - greeting.size()));
        m_port = line.mid(colon + 1).toUShort();
    }
}

Simulator::~Simulator() {
    m_process.terminate();
    if (!m_process.waitForFinished(stopTimeoutMs)) {
        kill();
    }
}

void Simulator::kill() {
    m_process.kill();
    m_process.waitForFinished(stopTimeoutMs);
}

QString Simulator::ask(const QString& command) {
    if (m_control.state() != QAbstractSocket::ConnectedState) {
        m_control.connectToHost(m_host, m_port);
        m_control.waitForConnected(replyTimeoutMs);
    }
    m_control.write("kestrel2 " + command.toUtf8() + "\n");
    while (!m_control.canReadLine() && m_control.waitForReadyRead(replyTimeoutMs)) {
    }
    return QString::fromUtf8(m_control.readLine()).trimmed();
}

QString Simulator::value(const QString& parameter) {
    const QString start = QStringLiteral("kestrel2 set %1 ").arg(parameter);
    const QString reply = ask(QStringLiteral("get ") + parameter);
    return reply.startsWith(start) ? reply.mid(start.size()) : QString();
}

QVector<double> Simulator::numbers(const QString& parameter) {
    QVector<double> result;
    const QStringList words = value(parameter).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& word : words) {
        result += word.toDouble();
    }
    return result;
}

Workbench::Workbench(const QStringList& options, const QString& settingsFile,
                     const QString& locale) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(KESTREL_WORKBENCH),
                    QStringList{QStringLiteral("--plugins"), QStringLiteral(KESTREL_PLUGINS),
                                QStringLiteral("--settings"), settingsFile,
                                QStringLiteral("--open-docks"), QStringLiteral("--print-rows")} +
                        options);
    m_process.waitForStarted(startTimeoutMs);
}

Workbench::~Workbench() {
    m_process.terminate();
    if (!m_process.waitForFinished(stopTimeoutMs)) {
        m_process.kill();
        m_process.waitForFinished(stopTimeoutMs);
    }
}

bool Workbench::waitForEnd() {
    while (m_process.state() != QProcess::NotRunning && readRows(rowsTimeoutMs)) {
    }
    return m_process.waitForFinished(stopTimeoutMs) || !isRunning();
}

// Row 0 of a table begins its next picture.
bool Workbench::readRows(int timeoutMs) {
    if (!m_process.waitForReadyRead(timeoutMs)) {
        return false;
    }
    m_pending += m_process.readAllStandardOutput();
    int end = 0;
    while ((end = m_pending.indexOf('\n')) >= 0) {
        const QString line = QString::fromUtf8(m_pending.left(end));
        m_pending.remove(0, end + 1);
        m_output += line + QLatin1Char('\n');
        const QStringList cells = line.split(QLatin1Char('\t'));
        if (cells.size() < 3) {
            continue;
        }
        Row row;
        const QStringList values = cells.mid(2);
        for (const QString& cell : values) {
            const int brace = cell.indexOf(QLatin1String("{#"));
            row.texts += brace < 0 ? cell : cell.left(brace);
            row.colours += brace < 0 ? QString() : cell.mid(brace + 1).chopped(1);
        }
        const int number = cells.at(1).toInt();
        QVector<Row>& rows = m_rows[cells.at(0)];
        if (number == 0) {
            rows.clear();
        }
        rows += row;
    }
    return true;
}

} // namespace processes
