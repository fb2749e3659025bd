#include "KestrelParser.h"
#include "LineReader.h"
#include "Tables.h"

using namespace KestrelSDK_Datatypes;

namespace {

constexpr int mostFingers = 5;
constexpr int mostJoints = 20;

void clearHand(Kestrel_Hand_Type_d& hand, int id) {
    Tables::clear(hand, id);
    hand.quality = -1.0;
}

bool readFinger(KestrelSDK_Parse::LineReader& line, Kestrel_Finger_Type_d& finger) {
    return line.pose(finger.loc, finger.rot) &&
           line.block(finger.radiustip, finger.lengthphalanx[0], finger.anglephalanx[0],
                      finger.lengthphalanx[1], finger.anglephalanx[1], finger.lengthphalanx[2]);
}

bool readJoint(KestrelSDK_Parse::LineReader& line, Kestrel_Joint_Type_d& joint) {
    int id = 0;
    double quality = 0;
    if (!line.block(id, quality)) {
        return false;
    }
    joint.id = id;
    joint.quality = quality;
    return line.block(joint.loc, joint.ang) && line.block(joint.rot);
}

} // namespace

bool KestrelParser::parseHands(Reader& line) {
    int entries = 0;
    const bool read = line.number(entries);
    if (Tables::tooMany(entries)) {
        return false;
    }
    if (entries > 0) {
        m_handBefore = act_hand;
    }
    for (std::size_t i = 0; i < act_hand.size(); ++i) {
        clearHand(act_hand[i], static_cast<int>(i));
    }
    for (int i = 0; i < entries; ++i) {
        if (!parseHand(line)) {
            return false;
        }
    }
    return read;
}

bool KestrelParser::parseHand(Reader& line) {
    int id = 0;
    double quality = 0;
    int side = 0;
    int fingers = 0;
    if (!line.block(id, quality, side, fingers)) {
        return false;
    }
    Kestrel_Hand_Type_d* hand = Tables::recordFor(act_hand, act_num_hand, id, m_handBefore);
    if (hand == nullptr) {
        return false;
    }
    hand->id = id;
    hand->quality = quality;
    hand->lr = side;
    if (fingers < 0 || fingers > mostFingers) {
        return false;
    }
    hand->nfinger = fingers;
    if (!line.pose(hand->loc, hand->rot)) {
        return false;
    }
    for (int i = 0; i < fingers; ++i) {
        if (!readFinger(line, hand->finger[i])) {
            return false;
        }
    }
    return true;
}

bool KestrelParser::parseHumans(Reader& line) {
    Tables::Counts counts;
    if (!Tables::readCounts(line, counts)) {
        return false;
    }
    Tables::resize(act_human, act_num_human, counts.defined);
    for (std::size_t i = 0; i < act_human.size(); ++i) {
        Tables::clear(act_human[i], static_cast<int>(i));
    }
    for (int i = 0; i < counts.listed; ++i) {
        int id = 0;
        int joints = 0;
        if (!line.block(id, joints) || id < 0 || id >= act_num_human || joints < 0 ||
            joints > mostJoints) {
            return false;
        }
        Kestrel_Human_Type_d& human = act_human[static_cast<std::size_t>(id)];
        human.num_joints = joints;
        for (int j = 0; j < joints; ++j) {
            if (!readJoint(line, human.joint[j])) {
                return false;
            }
        }
    }
    return counts.complete;
}
