#include "simulator/words/datalines.h"

#include "simulator/words/text.h"

#include <algorithm>

namespace kestrel_simulator::datalines {

namespace {

void appendNumber(std::string& line, double value, int decimals) {
    if (line.back() != '[') {
        line += ' ';
    }
    text::appendFixed(line, value, decimals);
}

void openHeader(std::string& line, const BodyRecord& body) {
    line += " [" + std::to_string(body.id);
    appendNumber(line, body.tracked ? 1.0 : -1.0, 3);
}

void appendPose(std::string& line, const BodyRecord& body) {
    const Eigen::Vector3d position = body.tracked ? body.pose.position : Eigen::Vector3d::Zero();
    const Eigen::Matrix3d rotation = body.tracked ? body.pose.rotation : Eigen::Matrix3d::Zero();
    line += "[";
    for (int i = 0; i < 3; ++i) {
        appendNumber(line, position(i), 3);
    }
    line += "][";
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            appendNumber(line, rotation(row, column), 6);
        }
    }
    line += "]";
}

// the upper triangle, row by row
void appendCovariance(std::string& line, const ToolRecord& tool) {
    line += "[";
    for (int row = 0; row < 3; ++row) {
        for (int column = row; column < 3; ++column) {
            appendNumber(line, tool.tracked ? tool.covariance(row, column) : 0.0, 6);
        }
    }
    line += "]";
}

std::string listedBodies(std::string line, const std::vector<BodyRecord>& bodies) {
    line += std::to_string(std::count_if(bodies.begin(), bodies.end(),
                                         [](const BodyRecord& body) { return body.tracked; }));
    for (const BodyRecord& body : bodies) {
        if (body.tracked) {
            openHeader(line, body);
            line += "]";
            appendPose(line, body);
        }
    }
    return line;
}

} // namespace

std::string frameCounter(std::uint32_t counter) {
    return "fr " + std::to_string(counter);
}

std::string timeStamp(double seconds) {
    return "ts " + text::fixed(seconds, 6);
}

std::string calibratedBodies(int count) {
    return "6dcal " + std::to_string(count);
}

std::string standardBodies(const std::vector<BodyRecord>& bodies) {
    return listedBodies("6d ", bodies);
}

std::string toolsOldFormat(const std::vector<ToolRecord>& tools) {
    std::string line = "6dmt " + std::to_string(tools.size());
    for (const ToolRecord& tool : tools) {
        openHeader(line, tool);
        line += " " + std::to_string(tool.buttons) + "]";
        appendPose(line, tool);
    }
    return line;
}

std::string tools(const std::vector<ToolRecord>& tools) {
    const std::string count = std::to_string(tools.size());
    std::string line = "6dmt2 " + count + " " + count;
    for (const ToolRecord& tool : tools) {
        openHeader(line, tool);
        line += " " + std::to_string(buttonCount);
        appendNumber(line, tool.tipRadius, 3);
        line += "]";
        appendPose(line, tool);
        line += "[" + std::to_string(tool.buttons) + "]";
        appendCovariance(line, tool);
    }
    return line;
}

std::string references(const std::vector<BodyRecord>& references) {
    return listedBodies("6dmtr " + std::to_string(references.size()) + " ", references);
}

} // namespace kestrel_simulator::datalines
