#include "simulator/controller/scene/simulatedframes.h"

#include <cmath>

namespace kestrel_simulator {

namespace {

constexpr double longestDelay = 0.2; // seconds; frames older than that are not made up for

} // namespace

SimulatedFrames::SimulatedFrames(const Configuration& configuration, const Scene& scene,
                                 Cameras& cameras, const ActiveChannels& channels,
                                 const double& rate)
    : m_configuration(configuration)
    , m_scene(scene)
    , m_cameras(cameras)
    , m_channels(channels)
    , m_rate(rate) {}

void SimulatedFrames::start(double now) {
    m_counter = 0;
    m_nextDue = now;
}

std::vector<std::string> SimulatedFrames::take(double now) {
    const double period = 1.0 / m_rate;
    if (now - m_nextDue > longestDelay) {
        const double missed = std::floor((now - m_nextDue) / period);
        m_counter += static_cast<std::uint32_t>(missed);
        m_nextDue += missed * period;
    }
    const double time = m_nextDue;
    ++m_counter;
    m_nextDue += period;

    const bool oldFormat = m_configuration.usesOldFormat();
    const bool toolsActive = m_channels.count(oldFormat ? "6dmt" : "6dmt2") > 0;
    const int calibrated =
        m_scene.standardBodyCount() + (toolsActive && oldFormat ? m_configuration.toolCount() : 0);
    std::vector<std::string> lines = {datalines::frameCounter(m_counter),
                                      datalines::timeStamp(time),
                                      datalines::calibratedBodies(calibrated)};
    if (m_channels.count("6d") > 0) {
        lines.push_back(datalines::standardBodies(measureStandardBodies(time)));
    }
    if (toolsActive) {
        const auto tools = measureTools(time);
        lines.push_back(oldFormat ? datalines::toolsOldFormat(tools) : datalines::tools(tools));
    }
    if (m_channels.count("6dmtr") > 0) {
        lines.push_back(datalines::references(measureReferences(time)));
    }
    return lines;
}

std::vector<datalines::ToolRecord> SimulatedFrames::measureTools(double time) {
    std::vector<datalines::ToolRecord> records;
    records.reserve(static_cast<std::size_t>(m_configuration.toolCount()));
    for (int i = 0; i < m_configuration.toolCount(); ++i) {
        const Tool& tool = m_configuration.tool(i);
        datalines::ToolRecord record;
        record.id = i;
        record.buttons = m_scene.buttons(i, time);
        record.tipRadius = tool.tipRadius;
        if (const std::optional<Pose> body = m_cameras.toolBody(i, time)) {
            record.tracked = true;
            record.pose = body->withOrigin(tool.usedTip());
            record.covariance = m_cameras.tipCovariance(*body, tool.usedTip());
        }
        records.push_back(record);
    }
    return records;
}

std::vector<datalines::BodyRecord> SimulatedFrames::measureReferences(double time) {
    std::vector<datalines::BodyRecord> records;
    records.reserve(static_cast<std::size_t>(m_configuration.referenceCount()));
    for (int i = 0; i < m_configuration.referenceCount(); ++i) {
        const std::optional<Pose> pose = m_cameras.reference(i, time);
        records.push_back({i, pose.has_value(), pose.value_or(Pose())});
    }
    return records;
}

std::vector<datalines::BodyRecord> SimulatedFrames::measureStandardBodies(double time) {
    std::vector<datalines::BodyRecord> records;
    records.reserve(static_cast<std::size_t>(m_scene.standardBodyCount()));
    for (int i = 0; i < m_scene.standardBodyCount(); ++i) {
        records.push_back({i, true, m_cameras.standardBody(i, time)});
    }
    return records;
}

} // namespace kestrel_simulator
