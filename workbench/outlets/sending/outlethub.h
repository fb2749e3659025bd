#pragma once

#include "workbench/outlets/sending/frames/framebuffer.h"
#include "workbench/outlets/sending/outlet.h"
#include "workbench/outlets/sending/outleturl.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace workbench {

class FrameDecoder;

/// All outlets: takes frames of data lines and results of modules, and hands them to each. The
/// lines are read once, on a thread of its own, which begins with the first outlet.
///
/// Outlets are added and removed on one thread, the GUI's; the rest may be called from any.
class OutletHub {
public:
    /// Makes the channel of a URL, or tells in a sentence why there is none.
    using Maker =
        std::function<std::unique_ptr<OutletChannel>(const OutletUrl& url, QString* error)>;

    explicit OutletHub(Maker maker);
    /// Ends all outlets and waits for them together, for two seconds at most.
    ~OutletHub();
    OutletHub(const OutletHub&) = delete;
    OutletHub& operator=(const OutletHub&) = delete;

    /// False with a sentence in `*error` when there cannot be an outlet of that URL, or there is
    /// one.
    bool add(const OutletUrl& url, QString* error);
    /// By the URL's text. Does not wait: the outlet takes leave by itself. False when there is
    /// none.
    bool remove(const QString& text);

    bool hasOutlets() const { return m_hasOutlets; }

    struct Entry {
        OutletUrl url;
        OutletStatus status;
    };
    /// In the order in which they were added. What came too fast to be read counts as dropped by
    /// each.
    std::vector<Entry> entries();

    /// Which reference each tool has, tool after tool: its number, 0 for none, nothing when that is
    /// not known. Holds for the frames to come.
    void setReferences(std::vector<std::optional<int>> references);

    /// In a replay nothing is handed to outlets and nothing counts as dropped: what comes was
    /// measured before. Outlets stay connected. Changed only while no lines come.
    void setReplay(bool isReplay) { m_isReplay = isReplay; }
    bool isReplay() const { return m_isReplay; }

    /// The lines of one datagram. Copies what is wanted and returns, at once when there is no
    /// outlet.
    void frame(const std::vector<std::string_view>& lines);

    /// A result that a module has written to the log. Waits until outlets that keep results have
    /// it, for a tenth of a second at most, and not at all for a disk that hangs already: what it
    /// returned from outlives a killed program.
    void result(const QString& source, const QString& text);

private:
    struct Link {
        OutletUrl url;
        std::uint64_t droppedBefore = 0; // frames, before it was there
        std::shared_ptr<Outlet> outlet;  // of others only while they wait for it
    };

    void run();
    void decode(const FrameBuffer::Batch& batch, FrameDecoder& decoder);
    void complete(TrackedFrame& frame) const;
    void forgetEnded();

    const Maker m_maker;
    FrameBuffer m_buffer;
    std::atomic<bool> m_hasOutlets{false};
    std::atomic<bool> m_isReplay{false};
    std::thread m_thread;
    std::vector<std::shared_ptr<Outlet>> m_ending; // of the adding thread alone

    mutable std::mutex m_mutex; // of what follows; held for moments
    std::vector<Link> m_links;
    std::vector<std::optional<int>> m_references;
};

} // namespace workbench
