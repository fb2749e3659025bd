#include "simulator/controller/simulatedframes.h"

#include <cmath>

namespace kestrel_simulator {

namespace {

constexpr double longestDelay = 0.2; // seconds; frames older than that are not made up for

// what the noise of the body's pose does to its tip
Eigen::Matrix3d tipCovariance(const PoseNoise& noise, const Pose& body,
                              const Eigen::Vector3d& tip) {
    const Eigen::Vector3d arm = body.rotation * tip;
    const double turn = noise.rotation() * noise.rotation();
    Eigen::Matrix3d covariance =
        turn * (arm.squaredNorm() * Eigen::Matrix3d::Identity() - arm * arm.transpose());
    covariance.diagonal().array() += noise.position * noise.position;
    return covariance;
}

} // namespace

SimulatedFrames::SimulatedFrames(const Configuration& configuration, const Scene& scene,
                                 const ActiveChannels& channels, const PoseNoise& noise,
                                 const double& rate, std::uint64_t seed)
    : m_configuration(configuration)
    , m_scene(scene)
    , m_channels(channels)
    , m_noise(noise)
    , m_rate(rate)
    , m_random(seed) {}

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
        record.tracked = m_scene.isToolTracked(i, time);
        const Pose body = m_noise.measured(m_scene.toolBody(i, time), m_random);
        record.pose = body.withOrigin(tool.tip);
        record.buttons = m_scene.buttons(i, time);
        record.tipRadius = tool.tipRadius;
        record.covariance = tipCovariance(m_noise, body, tool.tip);
        records.push_back(record);
    }
    return records;
}

std::vector<datalines::BodyRecord> SimulatedFrames::measureReferences(double time) {
    std::vector<datalines::BodyRecord> records;
    records.reserve(static_cast<std::size_t>(m_configuration.referenceCount()));
    for (int i = 0; i < m_configuration.referenceCount(); ++i) {
        records.push_back({i, m_scene.isReferenceTracked(i),
                           m_noise.measured(m_scene.reference(i, time), m_random)});
    }
    return records;
}

std::vector<datalines::BodyRecord> SimulatedFrames::measureStandardBodies(double time) {
    std::vector<datalines::BodyRecord> records;
    records.reserve(static_cast<std::size_t>(m_scene.standardBodyCount()));
    for (int i = 0; i < m_scene.standardBodyCount(); ++i) {
        records.push_back({i, true, m_noise.measured(m_scene.standardBody(i, time), m_random)});
    }
    return records;
}

} // namespace kestrel_simulator
