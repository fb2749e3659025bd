#pragma once

#include "simulator/words/parametertable.h"

#include <Eigen/Core>
#include <functional>
#include <optional>
#include <vector>

namespace kestrel_simulator {

/// How many bodies the controller can have.
struct BodyLimits {
    int tools = 4;      ///< at most this many Measurement Tools
    int references = 4; ///< at most this many references
    int bodies = 7;     ///< at most this many of both together
};

/// What the controller knows of one Measurement Tool.
struct Tool {
    int reference = 0; ///< 1-based, 0 for none
    double tipRadius = 1.5;
    double measurementDuration = 1.0;
    double tipTolerance = 1.5;
    bool startSimulation = false;
    double startAngle = 40.0;
    double startLeadTime = 0.2;
    bool bodyCalibrated = true;
    bool tipCalibrated = true;
    Eigen::Vector3d tip = Eigen::Vector3d::Zero(); ///< as calibrated last, body coordinates, mm

    /// The point that is reported as the tip: the body's origin while no tip is calibrated.
    Eigen::Vector3d usedTip() const {
        return tipCalibrated ? tip : Eigen::Vector3d(Eigen::Vector3d::Zero());
    }
};

/// The Measurement Tool configuration: counts within maxima that change with each other, what each
/// tool has, the output format. Settings of tools and references beyond the present counts are kept
/// and come back with the counts.
class Configuration {
public:
    /// Asked before each change; an answer refuses it.
    using ChangeGuard = std::function<std::optional<Answer>()>;

    /// Tools 1 and 2 are assigned to references 1 and 2 when those exist; the last of at least two
    /// tools has no calibrated tip.
    Configuration(const BodyLimits& limits, int tools, int references);

    /// Adds the "measurementtool" parameters of counts, assignments, values and output format, and
    /// "body calibrated". The configuration must outlive the table.
    void addParameters(ParameterTable& table, const ChangeGuard& guard);

    int toolCount() const { return m_toolCount; }
    int referenceCount() const { return m_referenceCount; }
    int toolLimit() const { return m_limits.tools; }
    int referenceLimit() const { return m_limits.references; }
    int maxTools() const;
    int maxReferences() const;

    /// `index` is 0-based and below the limit of tools.
    Tool& tool(int index) { return m_tools[static_cast<std::size_t>(index)]; }
    const Tool& tool(int index) const { return m_tools[static_cast<std::size_t>(index)]; }

    /// 0-based index of the tool's reference, -1 for none or one that does not exist at present.
    int referenceOf(int toolIndex) const;

    bool referenceCalibrated(int index) const;
    void setReferenceCalibrated(int index, bool calibrated);

    /// Index of an existing tool or reference named "b01", -1 when there is none.
    int toolIndex(const std::string& word) const;
    int referenceIndex(const std::string& word) const;

    /// Whether tools are sent in the line "6dmt" and not in "6dmt2".
    bool usesOldFormat() const { return m_usesOldFormat; }
    void setUsesOldFormat(bool old) { m_usesOldFormat = old; }

private:
    void addCounts(ParameterTable& table, const ChangeGuard& guard);
    void addAssignments(ParameterTable& table, const ChangeGuard& guard);
    void addNumber(ParameterTable& table, const ChangeGuard& guard, const std::string& name,
                   double Tool::*member, double minimum, double maximum, Version since);
    void addStartSimulation(ParameterTable& table, const ChangeGuard& guard);
    void addCalibrationStates(ParameterTable& table);
    Answer assignReference(int toolIndex, const std::string& reference);

    BodyLimits m_limits;
    int m_toolCount;
    int m_referenceCount;
    std::vector<Tool> m_tools;
    std::vector<bool> m_referenceCalibrated;
    bool m_usesOldFormat = false;
};

} // namespace kestrel_simulator
