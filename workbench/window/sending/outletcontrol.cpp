#include "workbench/window/sending/outletcontrol.h"

#include "workbench/controller/tools/outletfeed.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/settings/windowsettings.h"

#include <algorithm>

namespace workbench {

OutletControl::OutletControl(OutletHub& hub, OutletFeed& feed, LogModel& log,
                             WindowSettings& settings, QObject* parent)
    : QObject(parent)
    , m_hub(hub)
    , m_feed(feed)
    , m_log(log)
    , m_settings(settings) {
    m_timer.setInterval(followIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &OutletControl::follow);
}

void OutletControl::restore() {
    const QStringList urls = m_settings.outlets();
    for (const QString& text : urls) {
        OutletUrl url;
        QString error;
        if (!url.parse(text, &error) || !add(url, Memory::ThisRun, &error)) {
            m_log.problem(tr("No data go to %1: %2").arg(text, error));
        }
    }
}

bool OutletControl::add(const OutletUrl& url, Memory memory, QString* error) {
    if (!m_hub.add(url, error)) {
        return false;
    }
    if (memory == Memory::Kept) {
        m_settings.setOutlets(m_settings.outlets() + QStringList(url.text));
    }
    m_feed.refresh();
    m_timer.start();
    return true;
}

bool OutletControl::has(const QString& text) {
    const std::vector<OutletHub::Entry> all = entries();
    return std::any_of(all.begin(), all.end(),
                       [&text](const OutletHub::Entry& entry) { return entry.url.text == text; });
}

void OutletControl::remove(const QString& text) {
    QStringList urls = m_settings.outlets();
    if (urls.removeAll(text) > 0) {
        m_settings.setOutlets(urls);
    }
    if (m_hub.remove(text)) {
        m_feed.refresh();
        m_states.remove(text);
        m_log.info(tr("Data go to %1 no more").arg(text));
    }
}

void OutletControl::setReplay(bool isReplay) {
    if (isReplay && !m_hub.isReplay() && m_hub.hasOutlets()) {
        m_log.info(tr("A recording is played: nothing of it is sent to other programs"));
    }
    m_hub.setReplay(isReplay);
}

QString OutletControl::textOf(const OutletWord& word) const {
    return m_hub.isReplay() && word.state == OutletWord::State::Connected
               ? tr("nothing of the recording that is played is sent")
               : word.text;
}

QString OutletControl::stateText(OutletWord::State state) {
    switch (state) {
    case OutletWord::State::Waiting:
        return tr("Waiting");
    case OutletWord::State::Connected:
        return tr("Connected");
    case OutletWord::State::Refused:
        break;
    }
    return tr("Refused");
}

void OutletControl::follow() {
    const std::vector<OutletHub::Entry> entries = m_hub.entries();
    for (const OutletHub::Entry& entry : entries) {
        const OutletWord& word = entry.status.word;
        const auto known = m_states.constFind(entry.url.text);
        if (word.text.isEmpty() || (known != m_states.constEnd() && *known == word.state)) {
            continue;
        }
        m_states[entry.url.text] = word.state;
        const QString text = textOf(word);
        const QString line =
            tr("Data for %1: %2: %3").arg(entry.url.text, stateText(word.state), text);
        if (word.state == OutletWord::State::Refused) {
            m_log.problem(line);
        } else {
            m_log.info(line);
        }
        Q_EMIT stateChanged(entry.url.text, word.state, text);
    }
    if (entries.empty()) {
        m_timer.stop();
    }
}

} // namespace workbench
