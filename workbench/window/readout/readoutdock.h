#pragma once

#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/window/readout/latestlines.h"
#include "workbench/window/readout/readout.h"

#include <QDockWidget>
#include <QTimer>

#include <memory>

namespace Ui {
class ReadoutDock;
}

namespace workbench {

struct Backend;
class ToolFacts;

/// One tool in digits that can be read from afar. Follows the data while it is visible.
class ReadoutDock : public QDockWidget {
    Q_OBJECT

public:
    static constexpr int refreshMs = 200;

    /// Both outlive the dock.
    ReadoutDock(Backend& backend, ToolFacts& facts, QWidget* parent = nullptr);
    ~ReadoutDock() override;

    const ReadoutView& view() const { return m_readout.view(); }

    void choose(int tool);

private:
    void setUpKeys();
    void follow(bool isVisible);
    void refresh();
    void takeLines();
    void offerTools();
    void setFrozen(bool isFrozen);
    void copy();

    Backend& m_backend;
    ToolFacts& m_facts;
    std::unique_ptr<Ui::ReadoutDock> m_ui;
    QTimer m_timer;
    LatestLines m_latest;
    LatestLines::Lines m_lines;
    FrameDecoder m_decoder;
    TrackedFrame m_frame; // of m_lines
    int m_toolCount = 0;  // in it
    Readout m_readout;
};

} // namespace workbench
