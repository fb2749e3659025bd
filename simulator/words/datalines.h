#pragma once

#include "simulator/geometry/pose.h"

#include <cstdint>
#include <string>
#include <vector>

/// The texts of the controller's data lines. Positions in mm with three decimals, rotation matrices
/// column by column with six. A body that is not tracked has quality -1 and zeros.
namespace kestrel_simulator::datalines {

struct BodyRecord {
    int id = 0;
    bool tracked = false;
    Pose pose;
};

struct ToolRecord : BodyRecord {
    unsigned buttons = 0;
    double tipRadius = 0.0;
    Eigen::Matrix3d covariance = Eigen::Matrix3d::Zero(); ///< of the tip's position, mm^2
};

/// Buttons of each simulated tool.
inline constexpr int buttonCount = 4;

std::string frameCounter(std::uint32_t counter);
std::string timeStamp(double seconds);
std::string calibratedBodies(int count);

/// "6d": only the tracked ones are listed.
std::string standardBodies(const std::vector<BodyRecord>& bodies);

/// "6dmt" and "6dmt2": all tools are listed, tracked or not.
std::string toolsOldFormat(const std::vector<ToolRecord>& tools);
std::string tools(const std::vector<ToolRecord>& tools);

/// "6dmtr": only the tracked ones are listed.
std::string references(const std::vector<BodyRecord>& references);

} // namespace kestrel_simulator::datalines
