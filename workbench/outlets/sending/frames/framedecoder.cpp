#include "workbench/outlets/sending/frames/framedecoder.h"

#include "libs/kestrel_recording/buttons.h"
#include "libs/kestrel_wire/recording.h"

#include <algorithm>
#include <iterator>

namespace workbench {

namespace {

using KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d;

template <typename Record>
TrackedBody bodyOf(TrackedBody::Kind kind, int index, const Record& record) {
    TrackedBody body;
    body.kind = kind;
    body.number = index + 1;
    body.quality = record.quality;
    std::copy(std::begin(record.loc), std::end(record.loc), body.position);
    std::copy(std::begin(record.rot), std::end(record.rot), body.rotation);
    return body;
}

} // namespace

bool FrameDecoder::isWanted(std::string_view line) {
    const std::string_view channel = kestrel_wire::channelOf(line);
    return channel == "6dmt" || channel == "6dmt2" || channel == "6dmtr" || channel == "fr" ||
           channel == "ts";
}

void FrameDecoder::begin(kestrel_wire::UtcMilliseconds arrival) {
    m_arrival = arrival;
    m_hasCounter = m_hasTime = m_hasTools = m_hasRadii = m_hasReferences = false;
    m_parser.startFrame();
}

void FrameDecoder::add(const char* line) {
    const std::string_view channel = kestrel_wire::channelOf(line);
    const bool isRead = m_parser.parseLine(line);
    if (channel == "6dmt" || channel == "6dmt2") {
        m_hasTools = isRead;
        m_hasRadii = isRead && channel == "6dmt2";
    } else if (channel == "6dmtr") {
        m_hasReferences = isRead;
    } else if (channel == "fr") {
        m_hasCounter = isRead;
    } else if (channel == "ts") {
        m_hasTime = isRead;
    }
}

TrackedFrame FrameDecoder::end() {
    m_parser.endFrame();
    TrackedFrame frame;
    frame.arrival = m_arrival;
    if (m_hasCounter) {
        frame.counter = m_parser.getFrameCounter();
    }
    if (m_hasTime) {
        frame.seconds = m_parser.getTimeStamp();
    }
    const int tools = m_hasTools ? std::min(m_parser.getNumMeaTool(), mostBodies) : 0;
    const int references = m_hasReferences ? std::min(m_parser.getNumMeaRef(), mostBodies) : 0;
    frame.bodies.reserve(static_cast<std::size_t>(tools + references));
    for (int i = 0; i < tools; ++i) {
        const Kestrel_MeaTool_Type_d& tool = *m_parser.getMeaTool(i);
        TrackedBody body = bodyOf(TrackedBody::Kind::Tool, i, tool);
        body.buttonCount = tool.num_button;
        body.pressedButtons = kestrel_recording::pressedButtons(tool.button, tool.num_button);
        if (m_hasRadii) {
            body.radius = tool.tipradius;
        }
        frame.bodies.push_back(body);
    }
    for (int i = 0; i < references; ++i) {
        frame.bodies.push_back(bodyOf(TrackedBody::Kind::Reference, i, *m_parser.getMeaRef(i)));
    }
    return frame;
}

} // namespace workbench
