#include "workbench/modules/obstacle.h"

#include <QCoreApplication>

namespace workbench {

namespace {

struct Rule {
    Need need;
    bool (*isMet)(const Situation& now);
    Obstacle obstacle;
};

const Rule rules[] = {
    {Need::Modules, [](const Situation& now) { return now.hasModules; }, Obstacle::NoModules},
    {Need::Choice, [](const Situation& now) { return now.isChosen; }, Obstacle::NotConnected},
    {Need::Connection, [](const Situation& now) { return now.isConnected; },
     Obstacle::NotConnected},
    {Need::Operator, [](const Situation& now) { return !now.isObserver; }, Obstacle::Observer},
    {Need::NoReplay, [](const Situation& now) { return !now.isReplaying; }, Obstacle::Replaying},
    {Need::NoMeasurement, [](const Situation& now) { return !now.isMeasuring; },
     Obstacle::Measuring},
    {Need::Measurement, [](const Situation& now) { return now.isMeasuring; },
     Obstacle::NotMeasuring},
    {Need::NoCalibration, [](const Situation& now) { return !now.isCalibrating; },
     Obstacle::Calibrating},
    {Need::NoRecording, [](const Situation& now) { return !now.isStartingToRecord; },
     Obstacle::StartingToRecord},
    {Need::NoRecording, [](const Situation& now) { return !now.isRecording; }, Obstacle::Recording},
    {Need::Recording,
     [](const Situation& now) { return now.isRecording || now.isStartingToRecord; },
     Obstacle::NotRecording},
    {Need::NoExport, [](const Situation& now) { return !now.isExporting; }, Obstacle::Exporting},
    {Need::NoSimulatorStart, [](const Situation& now) { return !now.isSimulatorStarting; },
     Obstacle::SimulatorStarting},
    {Need::Offer, [](const Situation&) { return false; }, Obstacle::NotOffered},
    {Need::Unlocked, [](const Situation& now) { return !now.isLocked; }, Obstacle::Locked},
};

QString translated(const char* text) {
    return QCoreApplication::translate("workbench::Obstacle", text);
}

} // namespace

Obstacle obstacleTo(Needs needs, const Situation& now) {
    for (const Rule& rule : rules) {
        if (needs.testFlag(rule.need) && !rule.isMet(now)) {
            return rule.obstacle;
        }
    }
    return Obstacle::None;
}

bool prevents(Obstacle obstacle) {
    return obstacle != Obstacle::None && obstacle != Obstacle::Locked;
}

QString textOf(Obstacle obstacle) {
    switch (obstacle) {
    case Obstacle::None:
        break;
    case Obstacle::NoModules:
        return translated(
            QT_TRANSLATE_NOOP("workbench::Obstacle", "No module is loaded: see Help, Modules"));
    case Obstacle::NotConnected:
        return translated(
            QT_TRANSLATE_NOOP("workbench::Obstacle", "Not connected to a controller"));
    case Obstacle::Observer:
        return translated(QT_TRANSLATE_NOOP(
            "workbench::Obstacle", "Not for observers: the workbench was started with --observer"));
    case Obstacle::Replaying:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle", "A recording is being played"));
    case Obstacle::Measuring:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle", "A measurement is running"));
    case Obstacle::NotMeasuring:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle", "No measurement is running"));
    case Obstacle::Calibrating:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle",
                                            "The controller is busy: a calibration is running"));
    case Obstacle::StartingToRecord:
        return translated(
            QT_TRANSLATE_NOOP("workbench::Obstacle", "A recording is about to begin"));
    case Obstacle::Recording:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle", "A recording is running"));
    case Obstacle::NotRecording:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle", "No recording is running"));
    case Obstacle::Exporting:
        return translated(
            QT_TRANSLATE_NOOP("workbench::Obstacle", "A recording is being exported already"));
    case Obstacle::SimulatorStarting:
        return translated(
            QT_TRANSLATE_NOOP("workbench::Obstacle", "The simulated controller is being started"));
    case Obstacle::NotOffered:
        return translated(QT_TRANSLATE_NOOP("workbench::Obstacle",
                                            "The modules offer nothing for this controller"));
    case Obstacle::Locked:
        return translated(QT_TRANSLATE_NOOP(
            "workbench::Obstacle", "The configuration is locked: it can be read, but not changed"));
    }
    return {};
}

} // namespace workbench
