#include "simulator/controller/scene.h"

namespace kestrel_simulator {

namespace {
constexpr int firstStandardBody = 1000; // keeps their paths apart from those of the references
}

Scene::Scene(const Configuration& configuration, std::uint64_t seed, int standardBodies)
    : m_configuration(configuration) {
    for (int i = 0; i < configuration.toolLimit(); ++i) {
        m_tools.push_back({ToolMotion(seed, i), {}, {}, {}});
    }
    for (int i = 0; i < configuration.referenceLimit(); ++i) {
        m_references.push_back({StandingMotion(seed, i), {}, false});
    }
    for (int i = 0; i < standardBodies; ++i) {
        m_standardBodies.emplace_back(seed, firstStandardBody + 2 * i + 1);
    }
}

Pose Scene::toolBody(int index, double time) const {
    const ToolScene& scene = tool(index);
    if (scene.body) {
        return *scene.body;
    }
    const Pose tip = scene.motion.tipPose(time);
    const Pose body = tip.withOrigin(-m_configuration.tool(index).trueTip);
    const int frame = m_configuration.referenceOf(index);
    return frame < 0 ? body : reference(frame, time).inverse() * body;
}

Pose Scene::reportedTool(int index, double time) const {
    return toolBody(index, time).withOrigin(m_configuration.tool(index).tip);
}

Pose Scene::reference(int index, double time) const {
    const StandingScene& scene = m_references[static_cast<std::size_t>(index)];
    return scene.placed ? *scene.placed : scene.motion.pose(time);
}

Pose Scene::standardBody(int index, double time) const {
    return m_standardBodies[static_cast<std::size_t>(index)].pose(time);
}

bool Scene::isToolTracked(int index, double time) const {
    const ToolScene& scene = tool(index);
    const int frame = m_configuration.referenceOf(index);
    if (!m_configuration.tool(index).bodyCalibrated || (frame >= 0 && !isReferenceTracked(frame))) {
        return false;
    }
    if (scene.occluded) {
        return !*scene.occluded;
    }
    return scene.body || !m_occlusions || !scene.motion.occluded(time);
}

bool Scene::isReferenceTracked(int index) const {
    return m_configuration.referenceCalibrated(index) &&
           !m_references[static_cast<std::size_t>(index)].occluded;
}

unsigned Scene::buttons(int index, double time) const {
    const ToolScene& scene = tool(index);
    return scene.buttons ? *scene.buttons : scene.motion.buttons(time);
}

void Scene::placeTool(int index, const Pose& pose) {
    tool(index).body = pose.withOrigin(-m_configuration.tool(index).tip);
}

void Scene::placeReference(int index, const Pose& pose) {
    m_references[static_cast<std::size_t>(index)].placed = pose;
}

void Scene::press(int index, unsigned mask) {
    tool(index).buttons = mask;
}

void Scene::occludeTool(int index, bool occluded) {
    tool(index).occluded = occluded;
}

void Scene::occludeReference(int index, bool occluded) {
    m_references[static_cast<std::size_t>(index)].occluded = occluded;
}

void Scene::releaseTool(int index) {
    tool(index).body.reset();
    tool(index).buttons.reset();
    tool(index).occluded.reset();
}

void Scene::releaseReference(int index) {
    m_references[static_cast<std::size_t>(index)].placed.reset();
    m_references[static_cast<std::size_t>(index)].occluded = false;
}

} // namespace kestrel_simulator
