#include "tests/SourceFiles/settings/settingsflow.h"

#include <QLabel>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <utility>

namespace {

using faultsweep::Case;
using faultsweep::Outcome;
using Phase = SettingsFlow::Phase;

constexpr int mostRows = 255;

std::string lastWord(const std::string& text) {
    return text.substr(text.rfind(' ') + 1);
}

bool contains(const std::string& text, const char* fragment) {
    return text.find(fragment) != std::string::npos;
}

// The log line that the failure of an operation of a phase asks for; empty: none.
std::string logOf(const std::string& operation, Phase phase) {
    const std::string verb = operation.substr(0, operation.find(' '));
    const std::string text = operation.substr(verb.size() + 1);
    const bool isSet = verb == "set";
    if (isSet && contains(text, "number_of_tools ")) {
        return "Error: Unable to set number of mea tools = " + lastWord(text);
    }
    if (isSet && contains(text, "number_of_references ")) {
        const char* const what = phase == Phase::Cancel ? "references"
                                 : phase == Phase::Ok   ? "mea references"
                                                        : "mea tools";
        return std::string("Error: Unable to set number of ") + what + " = " + lastWord(text);
    }
    if (contains(text, "number_of_zelwpan_devices")) {
        return "Error: Unable to get number of Measurementtools";
    }
    if (contains(text, "zelwpan_device d")) {
        return "Error: Unable to get device info of MeasurementTool " + lastWord(text);
    }
    if (contains(text, "device_model_desc")) {
        const std::string vendorAndModel = text.substr(text.find("desc ") + 5);
        return "Error: Unable to get model description of vendor " +
               vendorAndModel.substr(0, vendorAndModel.find(' ')) + " model " +
               lastWord(vendorAndModel);
    }
    if (contains(text, "zelwpan transceiver_present")) {
        return "Error reading whether transceiver is present. Error number = 1";
    }
    if (contains(text, "zelwpan transceiver ")) {
        return "Error reading vendor, model, serial of transceiver. Error number = 1";
    }
    const std::map<std::string, std::string> whileReading = {
        {"zelwpan available", "Error reading zelwap available. Error number = 1"},
        {"zelwpan number_of_transceivers",
         "Error reading number of transceivers. Error number = 1"},
        {"measurementtool measurement_duration b01", "Error: Unable to get mea duration"},
        {"measurementtool measurement_tip_tolerance b01", "Error: Unable to get mea tip tolerance"},
        {"measurementtool measurement_start_simulation b01",
         "Error: Unable to get state of measurement start simulation"},
        {"measurementtool measurement_start_angle b01", "Error: Unable to get mea angular speed"},
        {"measurementtool measurement_start_lead_time b01",
         "Error: Unable to get mea start lead time"},
    };
    if (!isSet) {
        const auto found = whileReading.find(text);
        return found != whileReading.end() && phase != Phase::Ok ? found->second : std::string();
    }
    const std::size_t body = text.find(" b");
    const std::string parameter = text.substr(0, body);
    const std::string number =
        body == std::string::npos ? "" : text.substr(body + 2, text.find(' ', body + 1) - body - 2);
    const std::map<std::string, std::string> whileWriting = {
        {"measurementtool reference_of_tool", "Error: Unable to set ref. body"},
        {"measurementtool device", "Error: Unable to set radio device"},
        {"measurementtool measurement_duration",
         "Error: Unable to set mea duration for body b" + number},
        {"measurementtool measurement_tip_tolerance",
         "Error: Unable to set tip tolerance for body b" + number},
        {"measurementtool measurement_start_simulation",
         "Error: Unable to activate start simulation for body b" + number},
        {"measurementtool measurement_start_angle",
         "Error: Unable to set mea angular speed for body b" + number},
        {"measurementtool measurement_start_lead_time",
         "Error: Unable to set mea. start lead time for body b" + number},
        {"measurementtool output_6dmt no", "Error: Unable to (un)set to old output format"},
        {"measurementtool output_6dmt yes", "Error: Unable to set to old output format"},
        {"measurementtool tip_radius", "Error: Unable to set tip radius of mea tool b0" +
                                           std::to_string(std::atoi(number.c_str()))},
    };
    return whileWriting.at(parameter);
}

// The operations of a journal with the log line that each failed one asks for behind it.
Lines withLogs(const Lines& operations, const Case& fault, Phase phase) {
    Lines journal;
    for (int i = 0; i < static_cast<int>(operations.size()); ++i) {
        const std::string& operation = operations[static_cast<std::size_t>(i)];
        journal.push_back(operation);
        const std::string log = fault.isFaulty(i) ? logOf(operation, phase) : std::string();
        if (!log.empty()) {
            journal.push_back("log standard KESTREL3 1 " + log);
        }
    }
    return journal;
}

bool isWrite(const std::string& operation) {
    return operation.rfind("set ", 0) == 0;
}

bool isLog(const std::string& line) {
    return line.rfind("log ", 0) == 0;
}

bool shows(const SettingsRig& rig, const char* label) {
    return !rig.child<QLabel>(label)->isHidden();
}

bool refreshes(const SettingsRig& rig) {
    return rig.dialog->findChild<QTimer*>()->isActive();
}

} // namespace

SettingsPlayer::SettingsPlayer(SettingsFlow flow)
    : m_flow(std::move(flow)) {}

void SettingsPlayer::script(SettingsRig& rig, const SettingsFlow& flow) {
    rig.host.answer("config is_changeable", flow.locked ? "no" : "yes");
    rig.host.answer("measurementtool available", flow.available ? "yes" : "no");
    rig.host.answerInTurn("measurementtool max_number_of_tools",
                          {"4", flow.tradesBodies ? "1" : "4"});
    rig.setDevices({"V M 1", "V N 2"});
    rig.host.answer("measurementtool device b01", "zelwpan V M 00001");
    rig.host.answer("zelwpan available", "yes");
    rig.host.answer("zelwpan number_of_transceivers", "2");
    rig.host.answer("zelwpan transceiver d01", "V T 1");
    rig.host.answer("zelwpan transceiver_present V T 1", "no");
    rig.host.answer("zelwpan transceiver d02", "V T 2");
    rig.host.answer("zelwpan transceiver_present V T 2", "yes");
    rig.host.answer("zelwpan transceiver_present ", "no");
}

// Only a plain "yes" to "is it available" opens the dialog's controls, only a plain "no" to "is it
// changeable" locks them.
QString SettingsPlayer::objectionToShowing(const Case& fault) const {
    const bool available = m_flow.available && !fault.isFaulty(1);
    const bool locked = m_flow.locked && !fault.isFaulty(0);
    if (refreshes(*m_rig) != available || shows(*m_rig, "label_error") == available) {
        return QStringLiteral("availability");
    }
    if (m_rig->isEnabled("pushButton_ok") != (available && !locked)) {
        return QStringLiteral("OK button");
    }
    return m_rig->isEnabled("pushButton_cancel") ? QString() : QStringLiteral("Cancel button");
}

QString SettingsPlayer::objectionToOperations(const Lines& operations, const Case& fault) {
    if (!m_flow.always.empty() && operations != m_flow.always) {
        return QStringLiteral("other operations");
    }
    Lines written;
    std::copy_if(operations.begin(), operations.end(), std::back_inserter(written), isWrite);
    if (fault.isSound()) {
        m_written = written;
    }
    const bool leavesNothingOut =
        std::all_of(m_written.begin(), m_written.end(), [&](const std::string& write) {
            return contains(write, "output_6dmt") ||
                   std::find(written.begin(), written.end(), write) != written.end();
        });
    // A failed read makes OK write more, not less; only an unread output format counts as the old.
    if (m_flow.phase == Phase::Ok && fault.fault == ScriptedHost::Fault::Error &&
        !leavesNothingOut) {
        return QStringLiteral("not all is written");
    }
    return {};
}

QString SettingsPlayer::objectionTo(const Lines& journal, const Case& fault) {
    const bool stillOpen = m_flow.phase == Phase::Showing || m_flow.phase == Phase::Edit;
    if (m_rig->dialog->isVisible() != stillOpen) {
        return stillOpen ? QStringLiteral("closed") : QStringLiteral("still open");
    }
    if (m_flow.phase != Phase::Showing && refreshes(*m_rig) != stillOpen) {
        return QStringLiteral("refresh timer");
    }
    for (const char* table :
         {"tableWidget_meaBodies", "tableWidget_refBodies", "tableWidget_availableMt"}) {
        if (m_rig->child<QTableWidget>(table)->rowCount() > mostRows) {
            return QStringLiteral("rows of ") + QLatin1String(table);
        }
    }
    const Lines operations = without(journal, "log ");
    if (fault.fault == ScriptedHost::Fault::Error) {
        const Lines expected = withLogs(operations, fault, m_flow.phase);
        if (journal != expected) {
            return QStringLiteral("instead of\n") + asText(expected);
        }
    }
    for (const std::string& line : journal) {
        if (isLog(line) && line.rfind("log standard KESTREL3 1 Error", 0) != 0) {
            return QStringLiteral("odd log line ") + QString::fromStdString(line);
        }
    }
    const QString objection = objectionToOperations(operations, fault);
    return objection.isEmpty() && m_flow.phase == Phase::Showing ? objectionToShowing(fault)
                                                                 : objection;
}

Outcome SettingsPlayer::play(const Case& fault) {
    if (!m_rig || fault.operation == 0 || (m_flow.neverFilled && !fault.isSound())) {
        m_rig = std::make_unique<SettingsRig>(VersionInfo(1, m_flow.protocol, 0));
    }
    script(*m_rig, m_flow);
    Outcome outcome;
    outcome.objection = QStringLiteral("never shown");
    QTimer::singleShot(0, m_rig->dialog, [&] {
        if (m_flow.action) {
            if (m_flow.prepare) {
                m_flow.prepare(*m_rig);
            }
            fault.inject(m_rig->host);
            m_flow.action(*m_rig);
        }
        outcome.journal = m_rig->host.journal();
        outcome.objection = objectionTo(outcome.journal, fault);
        if (m_rig->dialog->isVisible()) {
            m_rig->dialog->reject(); // with the fault, if it stays
        }
    });
    if (!m_flow.action) {
        fault.inject(m_rig->host);
    }
    const int result = m_rig->dialog->update_and_exec();
    m_rig->host.clearFault();
    if (result != 0 || m_rig->dialog->isVisible() || refreshes(*m_rig)) {
        outcome.objection += QStringLiteral(" (not closed with 0)");
    }
    return outcome;
}
