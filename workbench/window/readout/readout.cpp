#include "workbench/window/readout/readout.h"

#include "workbench/outlets/sending/frames/trackedframe.h"

#include <algorithm>

namespace workbench {

namespace {

const TrackedBody* bodyOf(const TrackedFrame* frame, TrackedBody::Kind kind, int number) {
    if (frame == nullptr) {
        return nullptr;
    }
    const auto found =
        std::find_if(frame->bodies.begin(), frame->bodies.end(), [&](const TrackedBody& body) {
            return body.kind == kind && body.number == number;
        });
    return found == frame->bodies.end() ? nullptr : &*found;
}

} // namespace

void Readout::choose(int tool) {
    if (tool != m_view.tool) {
        m_view = ReadoutView();
        m_view.tool = tool;
    }
}

bool Readout::setFrozen(bool isFrozen) {
    if (m_view.isFrozen && !isFrozen) {
        m_view.figures.reset(); // what has become of the tool meanwhile is not known
    }
    m_view.isFrozen = isFrozen && m_view.figures;
    return m_view.isFrozen == isFrozen;
}

void Readout::forget() {
    const int tool = m_view.tool;
    m_view = ReadoutView();
    m_view.tool = tool;
}

ReadoutState Readout::stateOf(const ReadoutNews& news) const {
    if (!news.isConnected) {
        return ReadoutState::NotConnected;
    }
    if (!news.isMeasuring) {
        return ReadoutState::NotMeasuring;
    }
    if (news.isOld) {
        return ReadoutState::Old;
    }
    const TrackedBody* const tool = bodyOf(news.frame, TrackedBody::Kind::Tool, m_view.tool);
    if (tool == nullptr) {
        return news.frame == nullptr ? ReadoutState::NoData : ReadoutState::NoTool;
    }
    if (!news.isCalibrated) {
        return ReadoutState::NoData;
    }
    if (!*news.isCalibrated) {
        return ReadoutState::NotCalibrated;
    }
    return tool->isTracked() ? ReadoutState::Live : ReadoutState::Hidden;
}

void Readout::dropFigures() {
    if (!m_view.isFrozen) {
        m_view.figures.reset();
    }
}

void Readout::update(const ReadoutNews& news) {
    m_view.state = stateOf(news);
    m_view.buttonCount = 0;
    m_view.pressedButtons = 0;
    switch (m_view.state) {
    case ReadoutState::Live:
    case ReadoutState::Hidden:
        takeFrame(news);
        break;
    case ReadoutState::Old:
        if (news.frame == nullptr) { // the measurement counts as stopped
            dropFigures();
        }
        break;
    default:
        dropFigures();
    }
    if (!m_view.isFrozen) {
        m_view.isReplay = news.isReplay;
        m_view.reference = news.reference;
        const TrackedBody* const reference =
            bodyOf(news.frame, TrackedBody::Kind::Reference, news.reference.value_or(0));
        m_view.referenceSight = reference == nullptr || m_view.state == ReadoutState::Old
                                    ? ReadoutView::Sight::Unknown
                                : reference->isTracked() ? ReadoutView::Sight::Seen
                                                         : ReadoutView::Sight::Hidden;
    }
    m_view.age = m_view.figures ? std::max(0.0, news.now - m_view.figures->measured) : 0.0;
}

void Readout::takeFrame(const ReadoutNews& news) {
    if (m_view.isFrozen) {
        return;
    }
    const TrackedBody& tool = *bodyOf(news.frame, TrackedBody::Kind::Tool, m_view.tool);
    m_view.buttonCount = tool.buttonCount;
    m_view.pressedButtons = tool.pressedButtons;
    if (!tool.isTracked()) {
        return;
    }
    ReadoutView::Figures figures;
    std::copy(std::begin(tool.position), std::end(tool.position), figures.position.begin());
    figures.angles = KestrelSDK_Angles::rotationAngles(tool.rotation);
    figures.measured = news.frameCame;
    m_view.figures = figures;
}

} // namespace workbench
