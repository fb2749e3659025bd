#include "simulator/controller/scene/scene.h"

namespace kestrel_simulator {

namespace {
constexpr int firstStandardBody = 1000; // keeps their paths apart from those of the references
}

const Scene::Movement& Scene::ToolScene::movement() const {
    static const Movement wandering = Wandering();
    return ordered ? *ordered : calibrated ? *calibrated : wandering;
}

bool Scene::ToolScene::isPlaced() const {
    const Held* const held = std::get_if<Held>(&movement());
    return held && held->isPlaced;
}

Scene::Scene(const Configuration& configuration, std::uint64_t seed, int standardBodies)
    : m_configuration(configuration) {
    for (int i = 0; i < configuration.toolLimit(); ++i) {
        const ToolMotion path(seed, i);
        Probe probe;
        probe.tip = path.tip();
        m_tools.push_back({path, probe, {}, {}, {}, {}});
    }
    for (int i = 0; i < configuration.referenceLimit(); ++i) {
        m_references.push_back({StandingMotion(seed, i), {}, false});
    }
    for (int i = 0; i < standardBodies; ++i) {
        m_standardBodies.emplace_back(seed, firstStandardBody + 2 * i + 1);
    }
}

Eigen::Vector3d Scene::believedTip(int tool) const {
    return probe(tool).tip + toolScene(tool).path.tipError();
}

Pose Scene::bodyOnItsPath(int tool, double time) const {
    const Pose body = toolScene(tool).path.tipPose(time).withOrigin(-probe(tool).tip);
    const int frame = m_configuration.referenceOf(tool);
    return frame < 0 ? body : reference(frame, time).inverse() * body;
}

Pose Scene::toolBody(int tool, double time) const {
    const Movement& movement = toolScene(tool).movement();
    if (const Held* const held = std::get_if<Held>(&movement)) {
        return held->body;
    }
    if (const Swing* const swing = std::get_if<Swing>(&movement)) {
        return swing->tipPose(probe(tool), time).withOrigin(-probe(tool).tip);
    }
    return bodyOnItsPath(tool, time);
}

Pose Scene::reportedTool(int tool, double time) const {
    return toolBody(tool, time).withOrigin(m_configuration.tool(tool).usedTip());
}

Pose Scene::reference(int index, double time) const {
    const StandingScene& scene = m_references[static_cast<std::size_t>(index)];
    return scene.placed ? *scene.placed : scene.motion.pose(time);
}

Pose Scene::standardBody(int index, double time) const {
    return m_standardBodies[static_cast<std::size_t>(index)].pose(time);
}

bool Scene::isToolTracked(int tool, double time) const {
    const ToolScene& scene = toolScene(tool);
    const int frame = m_configuration.referenceOf(tool);
    if (!m_configuration.tool(tool).bodyCalibrated || (frame >= 0 && !isReferenceTracked(frame))) {
        return false;
    }
    if (scene.occluded) {
        return !*scene.occluded;
    }
    return scene.isPlaced() || !m_occlusions || !scene.path.occluded(time);
}

bool Scene::isReferenceTracked(int index) const {
    return m_configuration.referenceCalibrated(index) &&
           !m_references[static_cast<std::size_t>(index)].occluded;
}

unsigned Scene::buttons(int tool, double time) const {
    const ToolScene& scene = toolScene(tool);
    return scene.buttons ? *scene.buttons : scene.path.buttons(time);
}

void Scene::placeTool(int tool, const Pose& pose) {
    toolScene(tool).ordered =
        Held{pose.withOrigin(-m_configuration.tool(tool).usedTip()), /*isPlaced=*/true};
}

void Scene::holdTool(int tool, double now) {
    toolScene(tool).ordered = Held{toolBody(tool, now), /*isPlaced=*/false};
}

Swing Scene::swingFromHere(int tool, Pivot pivot, double now, double period) const {
    return {pivot, toolBody(tool, now).withOrigin(probe(tool).tip), now, period};
}

void Scene::swingTool(int tool, Pivot pivot, double now, double period) {
    toolScene(tool).ordered = swingFromHere(tool, pivot, now, period);
}

void Scene::letToolWander(int tool) {
    toolScene(tool).ordered = Wandering();
}

void Scene::placeReference(int index, const Pose& pose) {
    m_references[static_cast<std::size_t>(index)].placed = pose;
}

void Scene::press(int tool, unsigned mask) {
    toolScene(tool).buttons = mask;
}

void Scene::occludeTool(int tool, bool occluded) {
    toolScene(tool).occluded = occluded;
}

void Scene::occludeReference(int index, bool occluded) {
    m_references[static_cast<std::size_t>(index)].occluded = occluded;
}

void Scene::releaseTool(int tool) {
    toolScene(tool).ordered.reset();
    toolScene(tool).buttons.reset();
    toolScene(tool).occluded.reset();
}

void Scene::releaseReference(int index) {
    m_references[static_cast<std::size_t>(index)].placed.reset();
    m_references[static_cast<std::size_t>(index)].occluded = false;
}

void Scene::beginCalibration(int tool, Pivot pivot, double now, double period) {
    toolScene(tool).calibrated = swingFromHere(tool, pivot, now, period);
}

void Scene::endCalibration(int tool) {
    toolScene(tool).calibrated.reset();
}

} // namespace kestrel_simulator
