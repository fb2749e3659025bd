#pragma once

#include "SourceFiles/mtdatadisplay.h"
#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QTableWidget>

#include <array>
#include <memory>
#include <string>
#include <vector>

/// A tool or a reference as a data line reports it.
struct Pose {
    double quality = 1.0;
    std::array<double, 3> loc{};
    std::array<double, 9> rot{1, 0, 0, 0, 1, 0, 0, 0, 1};
};

struct Tool : Pose {
    int buttons = 0; ///< number of buttons
    unsigned pressed = 0;
};

/// Data lines as the controller writes them; numbers keep every digit.
std::string toolLine(const std::vector<Tool>& tools);               ///< "6dmt2 ..."
std::string oldToolLine(const std::vector<Tool>& tools);            ///< "6dmt ..."
std::string referenceLine(const std::vector<Pose>& references);     ///< "6dmtr ...", all listed
std::string referenceLine(int defined, int listed, const Pose& it); ///< one of many listed

/// A display on a scripted host that answers like a controller with four calibrated tools and two
/// calibrated references; tool 1 refers to reference 1, the others to none.
class DisplayFixture {
public:
    explicit DisplayFixture(VersionInfo protocol = VersionInfo(1, 14, 0));

    /// Builds the display; until then the answers can be changed.
    MtDataDisplay& build();

    /// Starts a measurement without waiting for timers.
    void start();

    QTableWidget* toolTable() const;
    QTableWidget* referenceTable() const;

    /// The texts of a row; "(none)" where there is no item.
    static QStringList row(const QTableWidget* table, int row);

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<MtDataDisplay> display;
};

Tool lostTool();
Tool toolAt(double x, double y, double z);

/// The fixture with a running measurement whose lines are shown at once.
class ShownFixture : public DisplayFixture {
public:
    ShownFixture();
    explicit ShownFixture(const std::vector<Tool>& tools);

    int show(const std::string& line); ///< the display's result
    int show(const std::vector<Tool>& tools) { return show(toolLine(tools)); }
    int showReferences(const std::vector<Pose>& poses) { return show(referenceLine(poses)); }

    /// The texts behind the buttons, and behind a reference's name.
    QStringList toolPose(int row) const;
    QStringList referencePose(int row) const;
};

/// A journal in QCOMPARE's terms.
QStringList lines(const std::vector<std::string>& journal);
