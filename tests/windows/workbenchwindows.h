#pragma once

#include "tests/windows/windowtour.h"

/// The workbench's windows: the main window with docks, in which a measurement may run, and its
/// dialogs.
std::vector<TourStop> workbenchStops();

/// The main window with more in it than a small screen has room for, while a tool is measured and a
/// frame was lost.
std::vector<TourStop> crowdedStops();

/// Shows a window that is not modal, lets it be looked at and closes it.
void showAndLook(QWidget& window, const Look& look);
