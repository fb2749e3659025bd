#include "workbench/controller/commandnews.h"

#include "libs/kestrel_wire/command.h"
#include "libs/kestrel_wire/startswith.h"
#include "workbench/controller/command/resultwords.h"
#include "workbench/controller/controllersession.h"
#include "workbench/text/logmodel.h"

#include <string_view>
#include <utility>

namespace workbench {

namespace {

using kestrel_wire::startsWith;

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// While it says one of these there is no result yet.
bool isOfRunningCalibration(const std::string& status) {
    return startsWith(status, "cal") || startsWith(status, "pause") || startsWith(status, "wait");
}

} // namespace

CommandNews::CommandNews(ControllerSession& session, LogModel& log)
    : m_session(session)
    , m_log(log) {
    connect(&session, &ControllerSession::answered, this, &CommandNews::take);
    connect(&session, &ControllerSession::stateChanged, this, &CommandNews::forgetIfAway);
}

void CommandNews::setDialogQuestion(std::function<bool()> question) {
    m_dialogQuestion = std::move(question);
}

bool CommandNews::isDialogOpen() const {
    return m_dialogQuestion && m_dialogQuestion();
}

void CommandNews::take(const std::string& command, const CommandChannel::Answer& answer) {
    if (m_isTrafficWanted) {
        tellTraffic(command, answer);
    }
    if (answer.result != Success) {
        return;
    }
    const std::string words = kestrel_wire::withSingleBlanks(command);
    if (words == "kestrel2 get status active") {
        takeStatus(answer.reply.value);
    } else {
        takeAction(words);
    }
}

void CommandNews::tellTraffic(const std::string& command, const CommandChannel::Answer& answer) {
    const QString reply =
        answer.line.empty() ? resultWords(answer.result) : QString::fromUtf8(answer.line.c_str());
    m_log.add(QStringLiteral("traffic"), QStringLiteral("CONTROLLER"), LogModel::Information,
              QStringLiteral("%1 → %2").arg(QString::fromUtf8(command.c_str()), reply));
}

// Only what was acknowledged comes here.
void CommandNews::takeAction(const std::string& words) {
    const std::string_view calibration = "kestrel2 cal ";
    if (words == "kestrel2 measurementtool accept_new_calibration") {
        m_log.info(tr("Calibration accepted"));
        m_calibration = Calibration::None;
    } else if (startsWith(words, calibration) && endsWith(words, " start")) {
        tellOfDiscarded();
        m_log.info(tr("Calibration started"));
        m_calibration = Calibration::Running;
        m_dialogSeen = isDialogOpen();
    } else if (startsWith(words, calibration) && endsWith(words, " stop") &&
               m_calibration == Calibration::Running) {
        m_log.info(tr("Calibration cancelled"));
        m_calibration = Calibration::None;
    }
}

void CommandNews::takeStatus(const std::string& status) {
    if (m_calibration == Calibration::None) {
        return;
    }
    if (status == "err") {
        m_log.problem(tr("Calibration failed"));
        m_calibration = Calibration::None;
        return;
    }
    const bool isOpen = isDialogOpen();
    m_dialogSeen = m_dialogSeen || isOpen;
    m_calibration = isOfRunningCalibration(status) ? Calibration::Running : Calibration::Ended;
    if (m_dialogSeen && !isOpen) {
        tellOfDiscarded();
    }
}

void CommandNews::tellOfDiscarded() {
    if (m_calibration == Calibration::Ended) {
        m_log.info(tr("Calibration discarded: the one before it stays in use"));
        m_calibration = Calibration::None;
    }
}

// What happens to it then is nowhere to be seen.
void CommandNews::forgetIfAway() {
    if (!m_session.isReady()) {
        m_calibration = Calibration::None;
    }
}

} // namespace workbench
