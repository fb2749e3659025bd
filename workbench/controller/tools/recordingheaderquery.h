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

    explicit RecordingHeaderQuery(ControllerSession& session, QObject* parent = nullptr);

    /// `done` is called once; with false when the connection was lost meanwhile.
    void ask(const std::function<void(bool, const kestrel_wire::RecordingHeader&)>& done);
    bool isAsking() const { return static_cast<bool>(m_done); }

private:
    void askNext();
    void take(const std::string& parameter, const std::string& value);
    void finish(bool good);

    ControllerSession& m_session;
    std::deque<std::string> m_open;
    kestrel_wire::RecordingHeader m_header;
    std::function<void(bool, const kestrel_wire::RecordingHeader&)> m_done;
};

} // namespace workbench
