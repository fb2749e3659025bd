#include "KestrelParser.h"

#include "LineReader.h"
#include "Tables.h"

#include <new>
#include <tuple>
#include <utility>

using namespace KestrelSDK_Datatypes;

struct KestrelParser::LineKind {
    const char* prefix;
    bool (KestrelParser::*parse)(Reader&);
};

namespace {

/// Position behind the prefix; null when the text does not begin with it.
char* behindPrefix(char* text, const char* prefix) {
    for (; *prefix != '\0'; ++prefix, ++text) {
        if (*text != *prefix) {
            return nullptr;
        }
    }
    return text;
}

template <class Table>
auto* recordAt(Table& table, int count, int index) {
    return index < 0 || index >= count ? nullptr : &table.at(static_cast<std::size_t>(index));
}

} // namespace

KestrelParser::KestrelParser() = default;

KestrelParser::KestrelParser(KestrelParser&& other) noexcept
    : KestrelParser() {
    swap(other);
}

KestrelParser& KestrelParser::operator=(KestrelParser&& other) noexcept {
    KestrelParser taken(std::move(other));
    swap(taken);
    return *this;
}

KestrelParser::~KestrelParser() = default;

void KestrelParser::swap(KestrelParser& other) noexcept {
    const auto fieldsOf = [](KestrelParser& parser) {
        return std::tie(
            parser.act_framecounter, parser.act_timestamp, parser.act_num_body, parser.act_body,
            parser.act_num_wand, parser.act_wand, parser.act_num_meatool, parser.act_meatool,
            parser.act_num_mearef, parser.act_mearef, parser.act_num_hand, parser.act_hand,
            parser.act_num_human, parser.act_human, parser.act_num_inertial, parser.act_inertial,
            parser.act_num_marker, parser.act_marker, parser.loc_num_bodycal,
            parser.loc_num_handcal, parser.loc_num_wand1, parser.loc_num_meatool,
            parser.m_bodyBefore, parser.m_handBefore, parser.m_inertialBefore);
    };
    auto mine = fieldsOf(*this);
    auto others = fieldsOf(other);
    mine.swap(others);
}

void KestrelParser::startFrame() {
    act_framecounter = 0;
    act_timestamp = -1.0;
    loc_num_bodycal = -1;
    loc_num_handcal = -1;
    loc_num_meatool = 0;
    loc_num_wand1 = 0;
}

void KestrelParser::endFrame() {
    if (loc_num_bodycal >= 0) {
        Tables::resize(act_body, act_num_body, loc_num_bodycal - loc_num_wand1 - loc_num_meatool,
                       m_bodyBefore);
    }
    if (loc_num_handcal >= 0) {
        Tables::resize(act_hand, act_num_hand, loc_num_handcal, m_handBefore);
    }
}

bool KestrelParser::parseLine(char** line) {
    if (line == nullptr || *line == nullptr) {
        return false;
    }
    try {
        return parseKnownLine(*line);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool KestrelParser::parseLine(std::nullptr_t /*line*/) {
    return false;
}

bool KestrelParser::parseLine(const char* line) {
    char* position = const_cast<char*>(line); // nothing writes to it
    return parseLine(&position);
}

bool KestrelParser::parseKnownLine(char*& line) {
    static constexpr LineKind kinds[] = {
        {"fr ", &KestrelParser::parseFrameCounter},
        {"ts ", &KestrelParser::parseTimeStamp},
        {"6dcal ", &KestrelParser::parseCalibratedBodies},
        {"6d ", &KestrelParser::parseBodies},
        {"6df ", &KestrelParser::parseWands},
        {"6df2 ", &KestrelParser::parseWands2},
        {"6dmt ", &KestrelParser::parseMeaTools},
        {"6dmt2 ", &KestrelParser::parseMeaTools2},
        {"6dmtr ", &KestrelParser::parseMeaRefs},
        {"glcal ", &KestrelParser::parseCalibratedHands},
        {"gl ", &KestrelParser::parseHands},
        {"6dj ", &KestrelParser::parseHumans},
        {"6di ", &KestrelParser::parseInertials},
        {"3d ", &KestrelParser::parseMarkers},
    };
    for (const LineKind& kind : kinds) {
        if (char* rest = behindPrefix(line, kind.prefix)) {
            line = rest;
            Reader reader(line);
            return (this->*kind.parse)(reader);
        }
    }
    return true;
}

bool KestrelParser::parseFrameCounter(Reader& line) {
    return line.number(act_framecounter);
}

bool KestrelParser::parseTimeStamp(Reader& line) {
    const bool read = line.number(act_timestamp);
    if (!read) {
        act_timestamp = -1.0;
    }
    return read;
}

bool KestrelParser::parseCalibratedBodies(Reader& line) {
    int count = 0;
    const bool read = line.number(count);
    if (Tables::tooMany(count)) {
        return false;
    }
    loc_num_bodycal = count;
    return read;
}

bool KestrelParser::parseCalibratedHands(Reader& line) {
    int count = 0;
    const bool read = line.number(count);
    if (Tables::tooMany(count)) {
        return false;
    }
    loc_num_handcal = count;
    return read;
}

unsigned int KestrelParser::getFrameCounter() const {
    return act_framecounter;
}
double KestrelParser::getTimeStamp() const {
    return act_timestamp;
}

int KestrelParser::getNumBody() const {
    return act_num_body;
}
int KestrelParser::getNumWand() const {
    return act_num_wand;
}
int KestrelParser::getNumMeaTool() const {
    return act_num_meatool;
}
int KestrelParser::getNumMeaRef() const {
    return act_num_mearef;
}
int KestrelParser::getNumHand() const {
    return act_num_hand;
}
int KestrelParser::getNumHuman() const {
    return act_num_human;
}
int KestrelParser::getNumInertial() const {
    return act_num_inertial;
}
int KestrelParser::getNumMarker() const {
    return act_num_marker;
}

Kestrel_Body_Type_d* KestrelParser::getBody(int index) {
    return recordAt(act_body, act_num_body, index);
}
const Kestrel_Body_Type_d* KestrelParser::getBody(int index) const {
    return recordAt(act_body, act_num_body, index);
}
Kestrel_Wand_Type_d* KestrelParser::getWand(int index) {
    return recordAt(act_wand, act_num_wand, index);
}
const Kestrel_Wand_Type_d* KestrelParser::getWand(int index) const {
    return recordAt(act_wand, act_num_wand, index);
}
Kestrel_MeaTool_Type_d* KestrelParser::getMeaTool(int index) {
    return recordAt(act_meatool, act_num_meatool, index);
}
const Kestrel_MeaTool_Type_d* KestrelParser::getMeaTool(int index) const {
    return recordAt(act_meatool, act_num_meatool, index);
}
Kestrel_MeaRef_Type_d* KestrelParser::getMeaRef(int index) {
    return recordAt(act_mearef, act_num_mearef, index);
}
const Kestrel_MeaRef_Type_d* KestrelParser::getMeaRef(int index) const {
    return recordAt(act_mearef, act_num_mearef, index);
}
Kestrel_Hand_Type_d* KestrelParser::getHand(int index) {
    return recordAt(act_hand, act_num_hand, index);
}
const Kestrel_Hand_Type_d* KestrelParser::getHand(int index) const {
    return recordAt(act_hand, act_num_hand, index);
}
Kestrel_Human_Type_d* KestrelParser::getHuman(int index) {
    return recordAt(act_human, act_num_human, index);
}
const Kestrel_Human_Type_d* KestrelParser::getHuman(int index) const {
    return recordAt(act_human, act_num_human, index);
}
Kestrel_Inertial_Type_d* KestrelParser::getInertial(int index) {
    return recordAt(act_inertial, act_num_inertial, index);
}
const Kestrel_Inertial_Type_d* KestrelParser::getInertial(int index) const {
    return recordAt(act_inertial, act_num_inertial, index);
}
Kestrel_Marker_Type_d* KestrelParser::getMarker(int index) {
    return recordAt(act_marker, act_num_marker, index);
}
const Kestrel_Marker_Type_d* KestrelParser::getMarker(int index) const {
    return recordAt(act_marker, act_num_marker, index);
}
