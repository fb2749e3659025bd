#include "tests/SourceFiles/display/displayfixture.h"

#include <charconv>

namespace {

std::string number(double value) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return std::string(text.data(), end.ptr);
}

template <typename Numbers>
std::string block(const Numbers& numbers) {
    std::string text = "[";
    for (const double value : numbers) {
        text += (text.size() > 1 ? " " : "") + number(value);
    }
    return text + "]";
}

std::string entry(int id, const Pose& pose, const std::string& more) {
    return " [" + std::to_string(id) + ' ' + number(pose.quality) + more + "]" + block(pose.loc) +
           block(pose.rot);
}

} // namespace

std::string toolLine(const std::vector<Tool>& tools) {
    const std::string count = std::to_string(tools.size());
    std::string line = "6dmt2 " + count + ' ' + count;
    for (std::size_t i = 0; i < tools.size(); ++i) {
        const Tool& tool = tools[i];
        line += entry(static_cast<int>(i), tool, ' ' + std::to_string(tool.buttons) + " 1.5");
        line += tool.buttons > 0 ? "[" + std::to_string(tool.pressed) + "]" : "[]";
        line += "[0 0 0 0 0 0]";
    }
    return line;
}

std::string oldToolLine(const std::vector<Tool>& tools) {
    std::string line = "6dmt " + std::to_string(tools.size());
    for (std::size_t i = 0; i < tools.size(); ++i) {
        line += entry(static_cast<int>(i), tools[i], ' ' + std::to_string(tools[i].pressed));
    }
    return line;
}

std::string referenceLine(const std::vector<Pose>& references) {
    const std::string count = std::to_string(references.size());
    std::string line = "6dmtr " + count + ' ' + count;
    for (std::size_t i = 0; i < references.size(); ++i) {
        line += entry(static_cast<int>(i), references[i], std::string());
    }
    return line;
}

std::string referenceLine(int defined, int listed, const Pose& it) {
    return "6dmtr " + std::to_string(defined) + " 1" + entry(listed, it, std::string());
}

DisplayFixture::DisplayFixture(VersionInfo protocol)
    : versions(VersionInfo(3, 0, 0), protocol, VersionInfo(3, 0, 0), QStringLiteral("KESTREL")) {
    host.answer("measurementtool available", "yes");
    host.answer("measurementtool output_6dmt", "no");
    host.answer("measurementtool max_number_of_tools", "4");
    host.answer("measurementtool max_number_of_references", "4");
    for (const char* tool : {"b01", "b02", "b03", "b04"}) {
        host.answer(std::string("body calibrated measurementtool ") + tool, "yes");
        host.answer(std::string("measurementtool tip_calibrated ") + tool, "yes");
        host.answer(std::string("measurementtool reference_of_tool ") + tool, "none");
    }
    host.answer("measurementtool reference_of_tool b01", "b01");
    host.answer("body calibrated measurementtool_reference b01", "yes");
    host.answer("body calibrated measurementtool_reference b02", "yes");
}

MtDataDisplay& DisplayFixture::build() {
    display = std::make_unique<MtDataDisplay>(&host, nullptr, &versions);
    return *display;
}

void DisplayFixture::start() {
    display->set_mea_started_deferred();
}

QTableWidget* DisplayFixture::toolTable() const {
    return display->findChild<QTableWidget*>(QStringLiteral("tableWidget6dmt"));
}

QTableWidget* DisplayFixture::referenceTable() const {
    return display->findChild<QTableWidget*>(QStringLiteral("tableWidget6dmtref"));
}

QStringList DisplayFixture::row(const QTableWidget* table, int row) {
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column) {
        const QTableWidgetItem* const item = table->item(row, column);
        texts << (item != nullptr ? item->text() : QStringLiteral("(none)"));
    }
    return texts;
}

Tool lostTool() {
    Tool tool;
    tool.quality = -1.0;
    return tool;
}

Tool toolAt(double x, double y, double z) {
    Tool tool;
    tool.loc = {x, y, z};
    return tool;
}

ShownFixture::ShownFixture() {
    build();
    start();
}

ShownFixture::ShownFixture(const std::vector<Tool>& tools)
    : ShownFixture() {
    show(tools);
}

int ShownFixture::show(const std::string& line) {
    const int result = display->set_ascii_data("", line.c_str());
    display->onUpdateDataDisplay();
    return result;
}

QStringList ShownFixture::toolPose(int row) const {
    return DisplayFixture::row(toolTable(), row).mid(12);
}

QStringList ShownFixture::referencePose(int row) const {
    return DisplayFixture::row(referenceTable(), row).mid(3);
}

QStringList lines(const std::vector<std::string>& journal) {
    QStringList texts;
    for (const std::string& line : journal) {
        texts << QString::fromStdString(line);
    }
    return texts;
}
