#include "workbench/controller/tools/toolfacts.h"

#include "libs/kestrel_wire/bodynames.h"
#include "libs/kestrel_wire/command.h"
#include "libs/kestrel_wire/startswith.h"
#include "workbench/controller/command/replyrules.h"
#include "workbench/controller/controllersession.h"
#include "workbench/controller/measurementmonitor.h"
#include "workbench/controller/tools/toollines.h"

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

using kestrel_wire::RecordingHeader;

constexpr int settingsMs = 300;

std::string valueOf(const RecordingHeader& header, const std::string& name) {
    const auto found = std::find_if(header.parameters.begin(), header.parameters.end(),
                                    [&](const auto& entry) { return entry.first == name; });
    return found == header.parameters.end() ? std::string() : found->second;
}

bool changesTools(const std::string& command) {
    const std::string words = kestrel_wire::withSingleBlanks(command);
    return kestrel_wire::startsWith(words, "kestrel2 set measurementtool ") ||
           kestrel_wire::startsWith(words, "kestrel2 measurementtool ");
}

} // namespace

ToolFacts::ToolFacts(ControllerSession& session, MeasurementMonitor& monitor, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_query(session) {
    m_settingsTimer.setSingleShot(true);
    m_settingsTimer.setInterval(settingsMs);
    connect(&m_settingsTimer, &QTimer::timeout, this, &ToolFacts::ask);
    connect(&session, &ControllerSession::ready, this, [this](bool first) {
        if (first) {
            forget();
        }
        ask();
    });
    connect(&session, &ControllerSession::stateChanged, this, [this] {
        if (m_session.state() == ControllerSession::State::Disconnected) {
            forget();
        }
    });
    connect(&session, &ControllerSession::answered, this,
            [this](const std::string& command, const CommandChannel::Answer& answer) {
                if (answer.result == Success && changesTools(command)) {
                    m_settingsTimer.start();
                }
            });
    connect(&monitor, &MeasurementMonitor::changed, this, [this](bool measuring) {
        m_toolsInLines = -1;
        if (measuring) {
            ask();
        }
    });
}

void ToolFacts::setWanted(const void* who, bool isWanted) {
    if (!isWanted) {
        m_wanting.remove(who);
    } else if (!m_wanting.contains(who)) {
        m_wanting.insert(who);
        ask();
    }
}

ToolFacts::Tool ToolFacts::tool(int number) const {
    return number >= 1 && number <= toolCount() ? m_tools[static_cast<std::size_t>(number - 1)]
                                                : Tool();
}

void ToolFacts::setToolsInLines(int count) {
    if (std::exchange(m_toolsInLines, count) != count && count != toolCount() && m_isKnown) {
        ask();
    }
}

void ToolFacts::forget() {
    ++m_controller;
    m_tools.clear();
    m_toolsInLines = -1;
    if (std::exchange(m_isKnown, false)) {
        Q_EMIT changed();
    }
}

void ToolFacts::ask() {
    if (m_wanting.isEmpty() || !m_session.isReady()) {
        return;
    }
    if (m_query.isAsking()) {
        m_isAskedAnew = true;
        return;
    }
    m_isAskedAnew = false;
    m_query.ask([this, controller = m_controller](bool good, const RecordingHeader& header) {
        if (good && controller == m_controller) {
            take(header);
        }
        if (m_isAskedAnew || controller != m_controller) {
            // Not from inside the query, which is about to end.
            QTimer::singleShot(0, this, &ToolFacts::ask);
        }
    });
}

void ToolFacts::take(const RecordingHeader& header) {
    int count = 0;
    if (replyrules::toInt(valueOf(header, "measurementtool number_of_tools"), &count) != Success) {
        count = 0;
    }
    m_tools.clear();
    for (int number = 1; number <= std::min(count, RecordingHeaderQuery::maxBodies); ++number) {
        const std::string name = kestrel_wire::bodyName(number);
        Tool tool;
        tool.isCalibrated = valueOf(header, "body calibrated measurementtool " + name) == "yes" &&
                            valueOf(header, "measurementtool tip_calibrated " + name) == "yes";
        tool.reference =
            referenceOfTool(valueOf(header, "measurementtool reference_of_tool " + name));
        m_tools.push_back(tool);
    }
    m_isKnown = true;
    activateLines(header);
    Q_EMIT changed();
}

void ToolFacts::activateLines(const RecordingHeader& header) {
    if (!m_session.isReady() || valueOf(header, "measurementtool available") != "yes") {
        return;
    }
    activateToolLines(m_session, isOldToolLine(m_session.versions()->protocol(),
                                               valueOf(header, "measurementtool output_6dmt")));
}

} // namespace workbench
