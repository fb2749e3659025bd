#pragma once

#include "workbench/controller/tools/recordingheaderquery.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <optional>
#include <vector>

namespace workbench {

class ControllerSession;
class MeasurementMonitor;

/// What the controller says about its Measurement Tools beside their data lines: which are
/// calibrated, and their references. While somebody wants to know, it is asked with each connection
/// and each measurement, when the number of tools changes and when somebody here has changed a
/// setting, and has the controller send the lines of tools and references, as a module does that
/// displays them. Asks without blocking. GUI thread.
class ToolFacts : public QObject {
    Q_OBJECT

public:
    ToolFacts(ControllerSession& session, MeasurementMonitor& monitor, QObject* parent = nullptr);

    /// `who` is a name for whoever wants to know, and is not looked at.
    void setWanted(const void* who, bool isWanted);

    /// Whether this controller has been asked.
    bool isKnown() const { return m_isKnown; }
    int toolCount() const { return static_cast<int>(m_tools.size()); }

    struct Tool {
        bool isCalibrated = false;    ///< body and tip; false on any doubt
        std::optional<int> reference; ///< its number, 0 for none, nothing when that is not known
    };
    /// Of the tool with this number, from 1; one that is not known is not calibrated.
    Tool tool(int number) const;

    /// How many tools the latest data line has.
    void setToolsInLines(int count);

Q_SIGNALS:
    void changed();

private:
    void ask();
    void take(const kestrel_wire::RecordingHeader& header);
    void activateLines(const kestrel_wire::RecordingHeader& header);
    void forget();

    ControllerSession& m_session;
    RecordingHeaderQuery m_query;
    QSet<const void*> m_wanting;
    QTimer m_settingsTimer; // settings come in one after the other
    std::vector<Tool> m_tools;
    bool m_isKnown = false;
    bool m_isAskedAnew = false; // while it is asked already
    int m_toolsInLines = -1;
    int m_controller = 0; // counts them
};

} // namespace workbench
