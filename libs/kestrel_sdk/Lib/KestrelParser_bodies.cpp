#include "KestrelParser.h"
#include "LineReader.h"
#include "Tables.h"

using namespace KestrelSDK_Datatypes;

bool KestrelParser::parseBodies(Reader& line) {
    int entries = 0;
    const bool read = line.number(entries);
    if (Tables::tooMany(entries)) {
        return false;
    }
    if (entries > 0) {
        m_bodyBefore = act_body;
    }
    for (std::size_t i = 0; i < act_body.size(); ++i) {
        Tables::markUntracked(act_body[i], static_cast<int>(i));
    }
    for (int i = 0; i < entries; ++i) {
        int id = 0;
        double quality = 0;
        if (!line.block(id, quality)) {
            return false;
        }
        Kestrel_Body_Type_d* body = Tables::recordFor(act_body, act_num_body, id, m_bodyBefore);
        if (body == nullptr) {
            return false;
        }
        body->quality = quality;
        if (!line.pose(body->loc, body->rot)) {
            return false;
        }
    }
    return read;
}

bool KestrelParser::parseInertials(Reader& line) {
    int entries = 0;
    const bool read = line.number(entries);
    if (Tables::tooMany(entries)) {
        return false;
    }
    if (entries > 0) {
        m_inertialBefore = act_inertial;
    }
    for (std::size_t i = 0; i < act_inertial.size(); ++i) {
        Tables::clear(act_inertial[i], static_cast<int>(i));
    }
    for (int i = 0; i < entries; ++i) {
        int id = 0;
        int state = 0;
        double error = 0;
        if (!line.block(id, state, error)) {
            return false;
        }
        Kestrel_Inertial_Type_d* body =
            Tables::recordFor(act_inertial, act_num_inertial, id, m_inertialBefore);
        if (body == nullptr) {
            return false;
        }
        body->st = state;
        body->error = error;
        if (!line.pose(body->loc, body->rot)) {
            return false;
        }
    }
    return read;
}

bool KestrelParser::parseMarkers(Reader& line) {
    int entries = 0;
    const bool read = line.number(entries);
    if (Tables::tooMany(entries)) {
        return false;
    }
    if (entries > static_cast<int>(act_marker.size())) {
        Tables::resize(act_marker, entries);
    }
    act_num_marker = entries < 0 ? 0 : entries;
    for (int i = 0; i < entries; ++i) {
        Kestrel_Marker_Type_d& marker = act_marker[static_cast<std::size_t>(i)];
        int id = 0;
        double quality = 0;
        if (!line.block(id, quality)) {
            return false;
        }
        marker.id = id;
        marker.quality = quality;
        if (!line.block(marker.loc)) {
            return false;
        }
    }
    return read;
}
