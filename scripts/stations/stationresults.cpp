#include "scripts/stations/stationresults.h"

#include "host_api/metatypes.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>

namespace {

QString stateFile() {
    return qEnvironmentVariable("STATION_FILE");
}

} // namespace

void StationResults::set_param(QString key, QVariant value) {
    if (key == QLatin1String("CommandManager")) {
        m_host = value.value<IOManager*>();
    }
}

QList<_GuiElement*> StationResults::get_gui_elements() {
    if (m_timer.isActive()) {
        return {};
    }
    QFile file(stateFile());
    if (file.open(QIODevice::ReadOnly)) {
        const QStringList words = QString::fromLatin1(file.readAll()).split(QLatin1Char(' '));
        m_next = words.value(0).toInt();
        m_time = words.value(1);
    }
    m_count = qEnvironmentVariableIntValue("STATION_RESULTS");
    connect(&m_timer, &QTimer::timeout, this, &StationResults::writeNext);
    m_timer.start(qEnvironmentVariableIntValue("STATION_PERIOD_MS"));
    return {};
}

void StationResults::writeNext() {
    if (m_next >= m_count) {
        return;
    }
    if (m_time.isEmpty()) {
        m_time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
        if (!note()) {
            m_time.clear();
            return; // with the next turn
        }
    }
    const QString text = QStringLiteral("{\"type\":\"count\",\"time\":\"%1\",\"number\":%2}");
    m_host->write_log("result", "STATION", 1, text.arg(m_time).arg(m_next).toUtf8().constData());
    ++m_next;
    m_time.clear();
    note();
}

bool StationResults::note() const {
    QSaveFile file(stateFile());
    return file.open(QIODevice::WriteOnly) &&
           file.write(QStringLiteral("%1 %2").arg(m_next).arg(m_time).toLatin1()) > 0 &&
           file.commit();
}
