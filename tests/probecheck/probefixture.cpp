#include "tests/probecheck/probefixture.h"

#include <locale>
#include <sstream>

namespace probelines {

namespace {

template <typename Numbers>
void writeBlock(std::ostream& out, const Numbers& numbers) {
    out << '[';
    const char* separator = "";
    for (const double number : numbers) {
        out << separator << number;
        separator = " ";
    }
    out << ']';
}

std::ostringstream cStream() {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(17);
    return out;
}

} // namespace

std::string tools(const std::vector<Tool>& list) {
    std::ostringstream out = cStream();
    out << "6dmt2 " << list.size() << ' ' << list.size();
    for (std::size_t i = 0; i < list.size(); ++i) {
        out << " [" << i << ' ' << list[i].quality << " 3 1.5]";
        writeBlock(out, list[i].position);
        writeBlock(out, list[i].rotation);
        out << '[' << list[i].buttons << "][0 0 0 0 0 0]";
    }
    return out.str();
}

std::string oldTools(const std::vector<Tool>& list) {
    std::ostringstream out = cStream();
    out << "6dmt " << list.size();
    for (std::size_t i = 0; i < list.size(); ++i) {
        out << " [" << i << ' ' << list[i].quality << ' ' << list[i].buttons << ']';
        writeBlock(out, list[i].position);
        writeBlock(out, list[i].rotation);
    }
    return out.str();
}

std::string references(const std::vector<double>& qualities) {
    std::ostringstream out = cStream();
    out << "6dmtr " << qualities.size() << ' ' << qualities.size();
    for (std::size_t i = 0; i < qualities.size(); ++i) {
        out << " [" << i << ' ' << qualities[i] << "][0 0 0]";
        writeBlock(out, unturned);
    }
    return out.str();
}

std::string frame(unsigned number) {
    return "fr " + std::to_string(number);
}

std::string time(double seconds) {
    std::ostringstream out = cStream();
    out << "ts " << seconds;
    return out.str();
}

} // namespace probelines

void answerForTools(ScriptedHost& host) {
    host.answer("measurementtool available", "yes");
    host.answer("measurementtool output_6dmt", "no");
    host.answer("measurementtool number_of_tools", "2");
    for (const char* tool : {"b01", "b02"}) {
        host.answer(std::string("body calibrated measurementtool ") + tool, "yes");
        host.answer(std::string("measurementtool tip_calibrated ") + tool, "yes");
        host.answer(std::string("measurementtool measurement_tip_tolerance ") + tool, "0.5");
        host.answer(std::string("measurementtool measurement_duration ") + tool, "1.0");
    }
    host.answer("measurementtool reference_of_tool b01", "none");
    host.answer("measurementtool reference_of_tool b02", "b01");
}

ProbeController::ProbeController() {
    answerForTools(host);
}

void ProbeController::deliverFrame(unsigned number, double seconds,
                                   const std::vector<probelines::Tool>& tools) {
    host.deliver(probelines::frame(number));
    host.deliver(probelines::time(seconds));
    host.deliver(probelines::tools(tools));
}

QStringList probeJournal(const ScriptedHost& host) {
    QStringList lines;
    for (const std::string& line : host.operations()) {
        lines.append(QString::fromStdString(line));
    }
    return lines;
}
