#pragma once

#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QString>
#include <QStringList>

#include <array>
#include <string>
#include <vector>

/// Data lines as a controller sends them, and a scripted controller with Measurement Tools.
namespace probelines {

constexpr std::array<double, 9> unturned = {1, 0, 0, 0, 1, 0, 0, 0, 1};

/// A tool as a line reports it; a quality of -1 stands for one that is not tracked.
struct Tool {
    std::array<double, 3> position{};
    std::array<double, 9> rotation = unturned;
    double quality = 1.0;
    unsigned buttons = 0; ///< bit n: button n
};

std::string tools(const std::vector<Tool>& tools);            ///< "6dmt2 ...", three buttons each
std::string oldTools(const std::vector<Tool>& tools);         ///< "6dmt ..."
std::string references(const std::vector<double>& qualities); ///< "6dmtr ...", all listed
std::string frame(unsigned number);                           ///< "fr ..."
std::string time(double seconds);                             ///< "ts ..."

} // namespace probelines

/// Answers of a controller with two calibrated tools, the second with the first reference.
void answerForTools(ScriptedHost& host);

/// Such a controller.
struct ProbeController {
    ProbeController();

    /// Hands over a frame with number and time.
    void deliverFrame(unsigned number, double seconds, const std::vector<probelines::Tool>& tools);

    ScriptedHost host;
    BackendVersions versions{VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0),
                             QStringLiteral("KESTREL")};
};

QStringList probeJournal(const ScriptedHost& host); ///< without log lines
