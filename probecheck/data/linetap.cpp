#include "probecheck/data/linetap.h"

#include "KestrelParser.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

// A step of the controller's clock beyond these is one that was set anew.
constexpr double longestStepBack = 1.0;
constexpr double longestStep = 10.0;

// As the parser has it: a word alone is a line of another kind.
bool startsWith(const char* line, std::string_view word) {
    return std::strncmp(line, word.data(), word.size()) == 0 && line[word.size()] == ' ';
}

bool isFinite(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool) {
    const auto finite = [](double number) { return std::isfinite(number); };
    return std::all_of(std::begin(tool.loc), std::end(tool.loc), finite) &&
           std::all_of(std::begin(tool.rot), std::end(tool.rot), finite);
}

ProbeSample sampleOf(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool) {
    ProbeSample sample;
    sample.quality = tool.quality;
    sample.tracked = tool.quality >= 0.0 && isFinite(tool);
    sample.buttonCount = std::clamp(tool.num_button, 0, static_cast<int>(std::size(tool.button)));
    for (int button = 0; button < sample.buttonCount; ++button) {
        sample.buttons |= (tool.button[button] == 1 ? 1U : 0U) << button;
    }
    sample.tipRadius = tool.tipradius;
    std::copy(std::begin(tool.loc), std::end(tool.loc), sample.position.begin());
    std::copy(std::begin(tool.rot), std::end(tool.rot), sample.rotation.begin());
    return sample;
}

} // namespace

LineTap::LineTap() = default;
LineTap::~LineTap() = default;

double LineTap::now() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void LineTap::start() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_parser) {
        return;
    }
    m_parser = std::make_unique<KestrelParser>();
    m_frame.clear();
    m_frameFormats = 0;
    m_ring.clear();
    m_ring.reserve(mostSamples);
    m_oldest = 0;
    m_overwritten = 0;
    m_lastArrival = -1.0;
    m_lastStamp = -1.0;
    m_referenceArrival = -1.0;
}

void LineTap::stop() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_parser.reset();
    m_frame.clear();
}

void LineTap::setReferences(std::vector<int> references) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_references = std::move(references);
}

int LineTap::take(const char* line, double arrival) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_parser) {
        return -2;
    }
    if (line == nullptr || strnlen(line, longestLine + 1) > longestLine) {
        return -1;
    }
    const bool isTime = startsWith(line, "ts");
    if (startsWith(line, "fr") || (isTime && !m_frame.empty())) {
        settleFrame();
        m_parser->startFrame();
    }
    if (!m_parser->parseLine(line)) {
        return -1;
    }
    if (startsWith(line, "6dmt")) {
        takeTools(1U, arrival);
    } else if (startsWith(line, "6dmt2")) {
        takeTools(2U, arrival);
    } else if (startsWith(line, "6dmtr")) {
        m_referenceArrival = arrival;
    }
    return 0;
}

void LineTap::takeTools(unsigned format, double arrival) {
    // A controller may send both formats: the frame is the same then.
    const bool isSameFrame = !m_frame.empty() && (m_frameFormats & format) == 0 &&
                             arrival - m_frame.front().arrival < frameTime;
    if (!isSameFrame) {
        settleFrame();
        advanceClock(arrival);
    }
    m_frame.clear();
    m_frameFormats |= format;
    const int count = std::min(m_parser->getNumMeaTool(), mostTools);
    for (int tool = 0; tool < count; ++tool) {
        ProbeSample sample = sampleOf(*m_parser->getMeaTool(tool));
        sample.seconds = m_seconds;
        sample.arrival = arrival;
        sample.timeStamp = m_parser->getTimeStamp();
        sample.frame = m_parser->getFrameCounter();
        sample.tool = tool;
        const auto index = static_cast<std::size_t>(tool);
        sample.reference = index < m_references.size() ? m_references[index] : -1;
        m_frame.push_back(sample);
    }
}

void LineTap::settleFrame() {
    for (ProbeSample& sample : m_frame) {
        sample.referenceTracked = isReferenceTracked(sample.reference, sample.arrival);
        keep(sample);
    }
    m_frame.clear();
    m_frameFormats = 0;
}

void LineTap::advanceClock(double arrival) {
    const double stamp = m_parser->getTimeStamp();
    const double step = stamp - m_lastStamp;
    const bool isTold = stamp >= 0.0 && m_lastStamp >= 0.0 && step != 0.0 &&
                        step > -longestStepBack && step < longestStep;
    if (m_lastArrival < 0.0) {
        m_seconds = arrival;
    } else {
        m_seconds += isTold ? step : arrival - m_lastArrival;
    }
    m_lastArrival = arrival;
    m_lastStamp = stamp;
}

bool LineTap::isReferenceTracked(int reference, double arrival) const {
    if (reference < 0) {
        return true;
    }
    return m_parser && m_referenceArrival >= 0.0 && arrival - m_referenceArrival <= referenceAge &&
           reference < m_parser->getNumMeaRef() && m_parser->getMeaRef(reference)->quality >= 0.0;
}

void LineTap::keep(const ProbeSample& sample) {
    if (m_ring.size() < mostSamples) {
        m_ring.push_back(sample);
        return;
    }
    m_ring[m_oldest] = sample;
    m_oldest = (m_oldest + 1) % mostSamples;
    ++m_overwritten;
}

void LineTap::fetch(Fetched& into, double time) {
    into.samples.clear();
    into.samples.reserve(mostSamples); // not under the lock
    std::size_t oldest = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_frame.empty() && time - m_frame.front().arrival >= frameTime) {
            settleFrame();
        }
        std::swap(m_ring, into.samples);
        oldest = std::exchange(m_oldest, 0);
        into.overwritten = std::exchange(m_overwritten, 0);
    }
    std::rotate(into.samples.begin(), into.samples.begin() + static_cast<std::ptrdiff_t>(oldest),
                into.samples.end());
}
