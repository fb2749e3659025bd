#pragma once

#include <QFlags>
#include <QString>

namespace workbench {

/// How things are, as far as it decides what can be done.
struct Situation {
    bool isChosen = false;    ///< there is a controller to be disconnected from
    bool isConnected = false; ///< commands are taken
    bool isMeasuring = false;
    bool isCalibrating = false; ///< the controller, whoever has started it
    bool isLocked = false;      ///< the controller's configuration
    bool isReplaying = false;   ///< what comes was measured before
    bool isStartingToRecord = false;
    bool isRecording = false;
    bool isExporting = false; ///< a recording
    bool isSimulatorStarting = false;
    bool isObserver = false;
    bool hasModules = true;
};

/// What an entry needs so that it can be used, or promises.
enum class Need : unsigned {
    Nothing = 0,
    Modules = 1U << 0U,
    Choice = 1U << 1U, ///< of a controller, connected or not
    Connection = 1U << 2U,
    Operator = 1U << 3U, ///< that it is not an observer who looks on
    Measurement = 1U << 4U,
    NoMeasurement = 1U << 5U,
    NoCalibration = 1U << 6U,
    Recording = 1U << 7U, ///< or that one is about to begin
    NoRecording = 1U << 8U,
    NoExport = 1U << 9U,
    NoSimulatorStart = 1U << 10U,
    Offer = 1U << 11U, ///< of a module that does not make one
    Unlocked = 1U << 12U,
    NoReplay = 1U << 13U
};
Q_DECLARE_FLAGS(Needs, Need)
Q_DECLARE_OPERATORS_FOR_FLAGS(Needs)

/// Why an entry cannot be used now.
enum class Obstacle {
    None,
    NoModules,
    NotConnected,
    Observer,
    Replaying,
    Measuring,
    NotMeasuring,
    Calibrating,
    StartingToRecord,
    Recording,
    NotRecording,
    Exporting,
    SimulatorStarting,
    NotOffered,
    Locked
};

/// The first one in the order of the enumeration: the one that goes away last.
Obstacle obstacleTo(Needs needs, const Situation& now);

/// Whether the entry is disabled. Locked is worth a word, but everything can still be looked at.
bool prevents(Obstacle obstacle);

/// In words, plain text; empty for None.
QString textOf(Obstacle obstacle);

} // namespace workbench
