#pragma once

#include "workbench/translations.h"

#include <QFont>

#include <functional>
#include <vector>

class QWidget;

/// What is done with a window that is shown, active and laid out. It may close the window.
using Look = std::function<void(QWidget& window)>;

/// A window in one of its states.
struct TourStop {
    const char* name;
    std::function<void(const Look& look)> open; ///< shows it, lets it be looked at, closes it
};

/// Every window of workbench and module in the states that look different.
const std::vector<TourStop>& tourStops();

/// The stops as rows of a test table, columns "stop" (an index).
void addTourRows();

/// The index of the stop with this name.
int stopNamed(const char* name);

/// Opens a stop and looks at it; the test fails when the window did not come.
void visit(int stop, const Look& look);

/// The texts' language and the size of the font for as long as this object lives.
class Surroundings {
public:
    Surroundings(const char* language, int fontPercent);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

private:
    QFont m_before;
    workbench::Translations m_translations;
};
