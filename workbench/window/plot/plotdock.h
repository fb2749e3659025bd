#pragma once

#include "workbench/window/plot/tipfeed.h"
#include "workbench/window/plot/tiptracks.h"
#include "workbench/window/readout/readout.h"

#include <QDockWidget>
#include <QRectF>
#include <QTimer>

#include <array>
#include <memory>
#include <optional>

class QLabel;
class QwtPlot;
namespace Ui {
class PlotDock;
}

namespace workbench {

struct Backend;
class ToolFacts;
class TrackItem;

/// One tool's tip against its mean over the last seconds or minutes, and its standard deviation for
/// each axis. Takes every frame while it is visible, and draws a few times a second.
class PlotDock : public QDockWidget {
    Q_OBJECT

public:
    /// Both outlive the dock.
    PlotDock(Backend& backend, ToolFacts& facts, QWidget* parent = nullptr);
    ~PlotDock() override;

    const Readout& readout() const { return m_readout; }
    const TipStatistics& statistics() const { return m_statistics; } ///< of what is shown
    const TipTracks& tracks() const { return m_tracks; }
    bool isPaused() const { return m_isPaused; }
    QRectF shownRange() const; ///< seconds before the newest sample, mm

    void choose(int tool);

    /// False with a reason in `*error`.
    bool savePicture(const QString& fileName, QString* error) const;
    bool saveTable(const QString& fileName, QString* error) const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void setUpPlot();
    void setUpControls();
    void follow(bool isVisible);
    void follow();
    void takeSamples();
    void askForRoom();
    void draw();
    void showState();
    void setPaused(bool isPaused);
    void zoomBy(double factor);
    void zoomTo(const QRectF& range);
    void showWhole();
    void colourAxes();
    bool isOfNow() const;
    void save(bool isTable);

    double span() const;
    const TipRing& shown() const { return m_isPaused ? m_paused : m_ring; }

    Backend& m_backend;
    ToolFacts& m_facts;
    std::unique_ptr<Ui::PlotDock> m_ui;
    QwtPlot* m_plot;
    std::array<TrackItem*, 3> m_items{}; // the plot's
    std::array<QLabel*, 3> m_keys{};     // to the lines
    std::array<QLabel*, 3> m_deviations{};
    QTimer m_timer;
    TipFeed m_feed;
    TipFeed::Batch m_batch;
    TipRing m_ring;
    TipRing m_paused; // what is shown then
    bool m_isInView = false;
    bool m_isPaused = false;
    Readout m_readout;
    TipStatistics m_statistics;
    TipTracks m_tracks;
    bool m_looksLive = true;
    QColor m_stateColour; // the one that is shown
    QRectF m_whole;       // what is to be seen without a zoom
    std::optional<QRectF> m_zoom;
};

} // namespace workbench
