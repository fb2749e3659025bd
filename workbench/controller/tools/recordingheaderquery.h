#pragma once

#include "libs/kestrel_wire/recording.h"

#include <QObject>

#include <deque>
#include <functional>
#include <string>

namespace workbench {

class ControllerSession;

/// Asks the controller, without blocking, for what a recording says about it: the versions, and the
/// parameters that a display of the recorded lines needs. What the controller refuses is left out.
class RecordingHeaderQuery : public QObject {
    Q_OBJECT

public:
    static constexpr int maxBodies = 999; ///< more than that is no number of tools
    /// Questions under way. A controller may take its time for each reply; others have questions
    /// too, and theirs come behind.
    static constexpr int mostAtOnce = 16;

    explicit RecordingHeaderQuery(ControllerSession& session, QObject* parent = nullptr);

    /// `done` is called once, from the event loop; with false when the connection was lost
    /// meanwhile. Not at all after cancel().
    void ask(const std::function<void(bool, const kestrel_wire::RecordingHeader&)>& done);
    bool isAsking() const { return static_cast<bool>(m_done); }
    void cancel() { m_done = nullptr; }

private:
    void goOn();
    void take(const std::string& parameter, const std::string& value);
    void finish(bool good);

    ControllerSession& m_session;
    std::deque<std::string> m_open; // not asked yet
    int m_underWay = 0;
    int m_number = 0; // of the ask()
    kestrel_wire::RecordingHeader m_header;
    std::function<void(bool, const kestrel_wire::RecordingHeader&)> m_done;
};

} // namespace workbench
