#pragma once

#include "tests/windows/windowtour.h"

/// The workbench's windows: the main window with docks, in which a measurement may run, and its
/// dialogs.
std::vector<TourStop> workbenchStops();

/// Shows a window that is not modal, lets it be looked at and closes it.
void showAndLook(QWidget& window, const Look& look);
