#include "workbench/controller/tools/recordingheaderquery.h"

#include "libs/kestrel_wire/bodynames.h"
#include "libs/kestrel_wire/command.h"
#include "workbench/controller/command/replyrules.h"
#include "workbench/controller/controllersession.h"
#include "workbench/controller/tools/toollines.h"
#include "workbench/text/versiontext.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr const char* numberOfTools = "measurementtool number_of_tools";
constexpr const char* numberOfReferences = "measurementtool number_of_references";

} // namespace

RecordingHeaderQuery::RecordingHeaderQuery(ControllerSession& session, QObject* parent)
    : QObject(parent)
    , m_session(session) {}

void RecordingHeaderQuery::ask(
    const std::function<void(bool, const kestrel_wire::RecordingHeader&)>& done) {
    if (isAsking()) {
        return;
    }
    const BackendVersions& versions = *m_session.versions();
    m_header = kestrel_wire::RecordingHeader();
    m_header.system = versionText(versions.systemPt()).toStdString();
    m_header.protocol = versionText(versions.protocol()).toStdString();
    m_header.systemCt = versionText(versions.systemCt()).toStdString();
    m_header.model = versions.hubModel().toStdString();
    m_open = {"measurementtool available", "measurementtool max_number_of_tools",
              "measurementtool max_number_of_references"};
    if (hasChoiceOfToolLine(versions.protocol())) {
        m_open.emplace_back("measurementtool output_6dmt");
    }
    m_open.insert(m_open.end(), {numberOfTools, numberOfReferences});
    m_done = done;
    m_underWay = 0;
    ++m_number;
    goOn();
}

void RecordingHeaderQuery::goOn() {
    for (; !m_open.empty() && m_underWay < mostAtOnce; ++m_underWay) {
        m_session.channel().askLater(
            kestrel_wire::getCommand(m_open.front()),
            [this, self = QPointer<RecordingHeaderQuery>(this), parameter = m_open.front(),
             number = m_number](const CommandChannel::Answer& answer) {
                if (!self || !isAsking() || number != m_number) {
                    return;
                }
                --m_underWay;
                if (answer.result == Success) {
                    take(parameter, answer.reply.value);
                }
                if (!m_session.isReady() || !m_session.channel().isOpen()) {
                    finish(false);
                } else {
                    goOn();
                }
            });
        m_open.pop_front();
    }
    if (m_underWay == 0) {
        finish(true);
    }
}

void RecordingHeaderQuery::take(const std::string& parameter, const std::string& value) {
    m_header.parameters.emplace_back(parameter, value);
    int count = 0;
    if ((parameter != numberOfTools && parameter != numberOfReferences) ||
        replyrules::toInt(value, &count) != Success) {
        return;
    }
    for (int i = 1; i <= std::min(count, maxBodies); ++i) {
        if (parameter == numberOfTools) {
            m_open.push_back("body calibrated measurementtool " + kestrel_wire::bodyName(i));
            m_open.push_back("measurementtool tip_calibrated " + kestrel_wire::bodyName(i));
            m_open.push_back("measurementtool reference_of_tool " + kestrel_wire::bodyName(i));
        } else {
            m_open.push_back("body calibrated measurementtool_reference " +
                             kestrel_wire::bodyName(i));
        }
    }
}

void RecordingHeaderQuery::finish(bool good) {
    const auto done = std::exchange(m_done, nullptr);
    done(good, m_header);
}

} // namespace workbench
