#include "workbench/outlets/sending/outlethub.h"

#include "workbench/outlets/quietthread.h"
#include "workbench/outlets/sending/frames/framedecoder.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestEnd{2000};
constexpr std::chrono::milliseconds longestKeeping{100};

class HubTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::OutletHub)
};

kestrel_wire::UtcMilliseconds now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

OutletHub::OutletHub(Maker maker)
    : m_maker(std::move(maker)) {}

OutletHub::~OutletHub() {
    m_hasOutlets = false;
    m_buffer.end();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    for (Link& link : m_links) {
        link.outlet->end();
        m_ending.push_back(std::move(link.outlet));
    }
    const Clock::time_point deadline = Clock::now() + longestEnd;
    for (const auto& outlet : m_ending) {
        outlet->waitForEnd(deadline);
    }
}

bool OutletHub::add(const OutletUrl& url, QString* error) {
    forgetEnded();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (std::any_of(m_links.begin(), m_links.end(),
                        [&](const Link& link) { return link.url.text == url.text; })) {
            *error = HubTexts::tr("data go there already");
            return false;
        }
    }
    std::unique_ptr<OutletChannel> channel = m_maker(url, error);
    if (channel == nullptr) {
        return false;
    }
    Link link{url, m_buffer.dropped(), std::make_shared<Outlet>(std::move(channel))};
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { run(); });
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_links.push_back(std::move(link));
    m_hasOutlets = true;
    return true;
}

bool OutletHub::remove(const QString& text) {
    forgetEnded();
    std::shared_ptr<Outlet> outlet;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = std::find_if(m_links.begin(), m_links.end(),
                                        [&](const Link& link) { return link.url.text == text; });
        if (found == m_links.end()) {
            return false;
        }
        outlet = std::move(found->outlet);
        m_links.erase(found);
        m_hasOutlets = !m_links.empty();
    }
    outlet->end();
    m_ending.push_back(std::move(outlet));
    return true;
}

void OutletHub::forgetEnded() {
    m_ending.erase(std::remove_if(m_ending.begin(), m_ending.end(),
                                  [](const auto& outlet) { return outlet->isOver(); }),
                   m_ending.end());
}

std::vector<OutletHub::Entry> OutletHub::entries() {
    forgetEnded();
    const std::uint64_t dropped = m_buffer.dropped();
    std::vector<Entry> entries;
    const std::lock_guard<std::mutex> lock(m_mutex);
    entries.reserve(m_links.size());
    for (const Link& link : m_links) {
        entries.push_back({link.url, link.outlet->status()});
        entries.back().status.droppedFrames += dropped - link.droppedBefore;
    }
    return entries;
}

void OutletHub::setReferences(std::vector<std::optional<int>> references) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_references = std::move(references);
}

void OutletHub::frame(const std::vector<std::string_view>& lines) {
    if (m_hasOutlets && !m_isReplay) {
        m_buffer.add(lines, now());
    }
}

void OutletHub::result(const QString& source, const QString& text) {
    if (m_isReplay) {
        return;
    }
    const ModuleResult result{source, text, now()};
    std::vector<std::shared_ptr<Outlet>> outlets;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        outlets.reserve(m_links.size());
        for (const Link& link : m_links) {
            link.outlet->add(result);
            outlets.push_back(link.outlet);
        }
    }
    const Clock::time_point deadline = Clock::now() + longestKeeping;
    for (const auto& outlet : outlets) {
        outlet->waitForResults(deadline);
    }
}

void OutletHub::run() {
    blockSignalsOfThread();
    FrameDecoder decoder;
    FrameBuffer::Batch batch;
    do {
        m_buffer.take(batch);
        decode(batch, decoder);
    } while (!batch.isEnd);
}

void OutletHub::decode(const FrameBuffer::Batch& batch, FrameDecoder& decoder) {
    const char* line = batch.text.data();
    for (const FrameBuffer::Frame& frame : batch.frames) {
        const char* const end = batch.text.data() + frame.end;
        decoder.begin(frame.arrival);
        while (line < end) {
            decoder.add(line);
            line = std::find(line, end, '\0') + 1;
        }
        auto decoded = std::make_shared<TrackedFrame>(decoder.end());
        const std::lock_guard<std::mutex> lock(m_mutex);
        complete(*decoded);
        for (const Link& link : m_links) {
            link.outlet->add(decoded);
        }
    }
}

// With the mutex held.
void OutletHub::complete(TrackedFrame& frame) const {
    for (TrackedBody& body : frame.bodies) {
        const auto index = static_cast<std::size_t>(body.number) - 1;
        if (body.kind == TrackedBody::Kind::Tool && index < m_references.size()) {
            body.reference = m_references[index];
        }
    }
}

} // namespace workbench
