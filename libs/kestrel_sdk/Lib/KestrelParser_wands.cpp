#include "KestrelParser.h"
#include "LineReader.h"
#include "Tables.h"

using namespace KestrelSDK_Datatypes;

namespace {

constexpr int mostWandButtons = 8;
constexpr int mostJoystickValues = 8;

/// -1 when the bit of the negative direction is set, else 1 when the other one is, else 0.
double axisOfBits(unsigned int word, unsigned int negativeBit, unsigned int positiveBit) {
    if (((word >> negativeBit) & 1U) != 0) {
        return -1.0;
    }
    return ((word >> positiveBit) & 1U) != 0 ? 1.0 : 0.0;
}

} // namespace

bool KestrelParser::parseWands(Reader& line) {
    int devices = 0;
    if (!line.number(devices) || Tables::tooMany(devices)) {
        return false;
    }
    Tables::resize(act_wand, act_num_wand, devices);
    loc_num_wand1 = act_num_wand;
    for (int i = 0; i < devices; ++i) {
        Kestrel_Wand_Type_d& wand = act_wand[static_cast<std::size_t>(i)];
        int id = 0;
        double quality = 0;
        int bits = 0;
        if (!line.block(id, quality, bits) || id != i) {
            return false;
        }
        const auto word = static_cast<unsigned int>(bits);
        wand.id = i;
        wand.quality = quality;
        wand.num_button = mostWandButtons;
        Tables::setButtons(wand.button, word, wand.num_button);
        wand.num_joystick = 2;
        wand.joystick[0] = axisOfBits(word, 5, 7);
        wand.joystick[1] = axisOfBits(word, 4, 6);
        if (!line.pose(wand.loc, wand.rot)) {
            return false;
        }
    }
    return true;
}

bool KestrelParser::parseWands2(Reader& line) {
    Tables::Counts counts;
    if (!Tables::readCounts(line, counts)) {
        return false;
    }
    Tables::resize(act_wand, act_num_wand, counts.defined);
    if (counts.listed > act_num_wand) {
        return false;
    }
    for (int i = 0; i < counts.listed; ++i) {
        if (!parseWand2(line, i)) {
            return false;
        }
    }
    return counts.complete;
}

bool KestrelParser::parseWand2(Reader& line, int index) {
    Kestrel_Wand_Type_d& wand = act_wand[static_cast<std::size_t>(index)];
    int id = 0;
    double quality = 0;
    int buttons = 0;
    int axes = 0;
    if (!line.block(id, quality, buttons, axes) || id != index) {
        return false;
    }
    wand.id = index;
    wand.quality = quality;
    if (buttons < 0 || buttons > mostWandButtons || axes < 0 || axes > mostJoystickValues) {
        return false;
    }
    wand.num_button = buttons;
    wand.num_joystick = axes;
    if (!line.pose(wand.loc, wand.rot)) {
        return false;
    }
    int word = 0;
    const KestrelSDK_Parse::NumberList joystick{wand.joystick, axes};
    if (buttons == 0 ? !line.block(joystick) : !line.block(word, joystick)) {
        return false;
    }
    Tables::setButtons(wand.button, static_cast<unsigned int>(word), buttons);
    return true;
}
