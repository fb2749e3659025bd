#pragma once

#include "workbench/outlets/sending/outlethub.h"

#include <QMap>
#include <QObject>
#include <QTimer>

#include <vector>

namespace workbench {

class LogModel;
class OutletFeed;
class WindowSettings;

/// The outlets from the user's side: those that are remembered come back with the next start, the
/// log tells when one begins or ceases to be of use, and the controller is asked for what they
/// need. GUI thread.
class OutletControl : public QObject {
    Q_OBJECT

public:
    static constexpr int followIntervalMs = 500;

    OutletControl(OutletHub& hub, OutletFeed& feed, LogModel& log, WindowSettings& settings,
                  QObject* parent = nullptr);

    /// Adds those that are remembered; what is amiss with one is a line of the log.
    void restore();

    enum class Memory {
        ThisRun, ///< forgotten with the program's end
        Kept
    };
    /// False with a sentence in `*error`.
    bool add(const OutletUrl& url, Memory memory, QString* error);
    /// Whether data go there, by the URL's text.
    bool has(const QString& text);

    /// By the URL's text; it is forgotten as well.
    void remove(const QString& text);

    std::vector<OutletHub::Entry> entries() { return m_hub.entries(); }

    /// Whether a recording is shown, of which nothing goes out. The log tells who sends elsewhere.
    void setReplay(bool isReplay);
    bool isReplay() const { return m_hub.isReplay(); }

    /// The outlet's own word, but for one that would send and must not.
    QString textOf(const OutletWord& word) const;

    /// "Connected", "Waiting", "Refused".
    static QString stateText(OutletWord::State state);

Q_SIGNALS:
    /// An outlet has begun or ceased to be of use; `text` is its own word.
    void stateChanged(const QString& url, workbench::OutletWord::State state, const QString& text);

private:
    void follow();

    OutletHub& m_hub;
    OutletFeed& m_feed;
    LogModel& m_log;
    WindowSettings& m_settings;
    QMap<QString, OutletWord::State> m_states; // as the log has them
    QTimer m_timer;
};

} // namespace workbench
