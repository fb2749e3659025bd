#include "probecheck/points/pointspanel.h"

using points::Capture;
using points::Notice;

QString PointsPanel::wordsOf(Notice notice) const {
    switch (notice) {
    case Notice::Begun:
        return tr("Hold the tip still.");
    case Notice::BegunAnew:
        return tr("The tip has left the tolerance: begun anew.");
    case Notice::Captured:
        return tr("Captured, being written to the disk.");
    case Notice::Kept:
        return m_capture.state() == Capture::State::Leaving ? stateWords() : tr("Point captured.");
    case Notice::NotKept:
        return tr("Point captured, but it is not on the disk yet.");
    case Notice::Cancelled:
        return tr("Cancelled.");
    case Notice::ToolHidden:
        return tr("Given up: the tool is hidden.");
    case Notice::ReferenceLost:
        return tr("Given up: the reference is lost.");
    case Notice::ReferenceChanged:
        return tr("Given up: the tool's reference has changed.");
    case Notice::Silent:
        return tr("Given up: no data for a second.");
    case Notice::MeasurementEnded:
        return tr("Given up: the measurement has ended.");
    case Notice::OutOfSight:
        return tr("Given up: the points are out of sight.");
    case Notice::NotMeasuring:
        return tr("Nothing captured: no measurement is running.");
    case Notice::NotCalibrated:
        return tr("Nothing captured: the tool is not calibrated.");
    case Notice::StillBusy:
        return tr("One at a time: a point is being captured.");
    }
    return {};
}

QString PointsPanel::stateWords() const {
    if (m_isReplay) {
        return tr("A recording is played: nothing is captured.");
    }
    switch (m_capture.state()) {
    case Capture::State::Off:
        return tr("No measurement is running.");
    case Capture::State::Ready:
        return m_capture.position() ? tr("Ready.") : tr("Waiting for the tool to be seen.");
    case Capture::State::Holding:
        return tr("Hold the tip still.");
    case Capture::State::Keeping:
        return tr("Captured, being written to the disk.");
    case Capture::State::Leaving:
        return tr("Point captured. Move the tip to the next one.");
    }
    return {};
}
