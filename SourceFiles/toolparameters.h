#pragma once

#include "general/host/hostpointer.h"

#include <QList>

/// What the settings hold besides counts and assignments: the values of the point measurement, the
/// output format and the tip diameters. They are read or have their default, and written where the
/// controller holds something else. Without widgets; GUI thread.
class ToolParameters {
public:
    /// A value of the point measurement: shown as that of the first tool, written to every tool.
    struct Shared {
        const char* question; ///< with the tool's number
        const char* setting;  ///< with the number and the value
        double fallback;
        const char* readFailure;
        const char* writeFailure; ///< with the number as two digits
    };
    static const Shared Duration;      ///< s
    static const Shared TipTolerance;  ///< mm
    static const Shared StartAngle;    ///< degrees
    static const Shared StartLeadTime; ///< s

    /// Both stay the host's. No version record counts as the oldest protocol.
    ToolParameters(const HostPointer& iom, const BackendVersions* versions);

    /// The controller's value. Without tools nothing is asked and it is the default, as it is
    /// (with a log line) when the query fails or brings no number.
    double read(const Shared& parameter, bool hasTools) const;

    /// For each of the tools: asks, and sets `value` unless the controller holds `unchanged`.
    void write(const Shared& parameter, int tools, double value, double unchanged) const;

    /// Whether the start simulation is on; off without tools and on every doubt.
    bool readStartSimulation(bool hasTools) const;
    void writeStartSimulation(int tools, bool on) const;

    /// The old output format is left only for a plain "no"; below protocol 1.13 there is no other.
    bool hasOutputFormats() const;
    bool readOldOutputFormat() const;
    void writeOldOutputFormat(bool old) const;

    /// The controller's diameter of a tool (1-based) in mm; 0.0 when it is unknown, without a
    /// question for numbers below 1 and protocols below 1.13.
    double diameterOnController(int number) const;

    /// The edited diameters, mm; 0.0 outside of the list.
    double diameter(int index) const { return m_diameters.value(index, 0.0); }
    void readDiameters(int tools);
    void setDiameter(int index, double value); ///< behind the end: appended
    void writeDiameters(int tools) const;      ///< as radii

    /// For a field of whole degrees; bounded, so that every double has a result.
    static int truncated(double value);

private:
    HostPointer m_iom;
    VersionsPointer m_versions;
    QList<double> m_diameters;
};
