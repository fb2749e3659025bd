#include "KestrelParser.h"
#include "KestrelPick.h"
#include "LineReader.h"
#include "Tables.h"

#include <algorithm>
#include <iterator>
#include <string_view>

using namespace KestrelSDK_Datatypes;

namespace {

constexpr int mostToolButtons = 16;
constexpr int oldToolButtons = 4;
constexpr int blocksOfTool2 = 5;

/// Reads the first four of the five blocks of tool `index` of a "6dmt2" line.
bool readTool2(KestrelSDK_Parse::LineReader& line, Kestrel_MeaTool_Type_d& tool, int index) {
    int id = 0;
    double quality = 0;
    int buttons = 0;
    double radius = 0;
    if (!line.block(id, quality, buttons, radius) || id != index) {
        return false;
    }
    tool.id = index;
    tool.quality = quality;
    if (buttons < 0) {
        return false;
    }
    tool.num_button = std::min(buttons, mostToolButtons);
    std::fill(tool.button + tool.num_button, std::end(tool.button), 0);
    tool.tipradius = radius;
    if (!line.pose(tool.loc, tool.rot)) {
        return false;
    }
    int word = 0;
    if (!(tool.num_button == 0 ? line.block() : line.block(word))) {
        return false;
    }
    Tables::setButtons(tool.button, static_cast<unsigned int>(word), tool.num_button);
    return true;
}

// The line tells the defined tools first; only the listed ones count.
bool readCount2(KestrelSDK_Parse::LineReader& line, int& tools) {
    return line.number(tools) && line.number(tools) && !Tables::tooMany(tools);
}

} // namespace

KestrelSDK_Pick::Found KestrelSDK_Pick::meaTool(const char* line, int index,
                                                Kestrel_MeaTool_Type_d& tool) {
    char* position = const_cast<char*>(line); // nothing writes to it
    for (const char c : std::string_view("6dmt2 ")) {
        if (*position++ != c) {
            return Found::NotListed;
        }
    }
    KestrelSDK_Parse::LineReader reader(position);
    int tools = 0;
    if (!readCount2(reader, tools)) {
        return Found::Malformed;
    }
    if (index < 0 || index >= tools) {
        return Found::NotListed;
    }
    for (int i = 0; i < blocksOfTool2 * index; ++i) {
        if (!reader.block()) {
            return Found::Malformed;
        }
    }
    return readTool2(reader, tool, index) && reader.block() ? Found::Yes : Found::Malformed;
}

bool KestrelParser::parseMeaTools(Reader& line) {
    int tools = 0;
    if (!line.number(tools) || Tables::tooMany(tools)) {
        return false;
    }
    Tables::resize(act_meatool, act_num_meatool, tools);
    loc_num_meatool = act_num_meatool;
    for (int i = 0; i < tools; ++i) {
        Kestrel_MeaTool_Type_d& tool = act_meatool[static_cast<std::size_t>(i)];
        int id = 0;
        double quality = 0;
        int bits = 0;
        if (!line.block(id, quality, bits) || id != i) {
            return false;
        }
        tool.id = i;
        tool.quality = quality;
        tool.num_button = oldToolButtons;
        Tables::setButtons(tool.button, static_cast<unsigned int>(bits), oldToolButtons);
        std::fill(tool.button + oldToolButtons, std::end(tool.button), 0);
        tool.tipradius = 0;
        if (!line.pose(tool.loc, tool.rot)) {
            return false;
        }
        std::fill(std::begin(tool.cov), std::end(tool.cov), 0.0);
    }
    return true;
}

bool KestrelParser::parseMeaTools2(Reader& line) {
    int tools = 0;
    if (!readCount2(line, tools)) {
        return false;
    }
    loc_num_meatool = 0;
    Tables::resize(act_meatool, act_num_meatool, tools);
    for (int i = 0; i < tools; ++i) {
        Kestrel_MeaTool_Type_d& tool = act_meatool[static_cast<std::size_t>(i)];
        if (!readTool2(line, tool, i) || !line.block(tool.cov)) {
            return false;
        }
    }
    return true;
}

bool KestrelParser::parseMeaRefs(Reader& line) {
    Tables::Counts counts;
    if (!Tables::readCounts(line, counts)) {
        return false;
    }
    Tables::resize(act_mearef, act_num_mearef, counts.defined);
    for (std::size_t i = 0; i < act_mearef.size(); ++i) {
        Tables::markUntracked(act_mearef[i], static_cast<int>(i));
    }
    for (int i = 0; i < counts.listed; ++i) {
        int id = 0;
        double quality = 0;
        if (!line.block(id, quality) || id < 0 || id >= act_num_mearef) {
            return false;
        }
        Kestrel_MeaRef_Type_d& reference = act_mearef[static_cast<std::size_t>(id)];
        reference.quality = quality;
        if (!line.pose(reference.loc, reference.rot)) {
            return false;
        }
    }
    return counts.complete;
}
