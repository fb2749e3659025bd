#include "workbench/controller/tools/toollines.h"

#include "libs/kestrel_wire/bodynames.h"
#include "libs/kestrel_wire/command.h"
#include "workbench/controller/controllersession.h"

namespace workbench {

bool hasChoiceOfToolLine(const VersionInfo& protocol) {
    const VersionInfo choiceVersion(1, 13, -1); // any patch of it has the choice
    return !(protocol < choiceVersion);
}

bool isOldToolLine(const VersionInfo& protocol, const std::string& value) {
    return !hasChoiceOfToolLine(protocol) || value != "no";
}

void activateToolLines(ControllerSession& session, bool oldFormat) {
    for (const char* line : {oldFormat ? "6dmt" : "6dmt2", "6dmtr"}) {
        session.channel().askLater(
            kestrel_wire::setCommand(std::string("output active chmon ") + line + " yes"));
    }
}

std::optional<int> referenceOfTool(const std::string& value) {
    const int number = kestrel_wire::bodyNumber(value);
    if (number > 0 || value == "none") {
        return number;
    }
    return std::nullopt;
}

} // namespace workbench
