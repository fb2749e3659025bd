#pragma once

#include "workbench/window/docks/docksizes.h"

#include <QObject>
#include <QSize>
#include <QTimer>

#include <map>
#include <optional>

class QMainWindow;

namespace workbench {

/// The sizes of a window's docks beside its start page, and those while it works, with the modules'
/// docks: what the user made of each is there again when its turn comes. A strip that comes and
/// goes over the docks leaves no trace either, not even of a window that had to grow for it.
class DockArrangements : public QObject {
    Q_OBJECT

public:
    enum class Kind {
        Start,
        Working,
    };

    /// Neither is owned. Begins with the start page.
    DockArrangements(QMainWindow& window, DockSizes& sizes);

    /// To be called while the docks of the present kind are still there. For work arrange() is to
    /// follow.
    void enter(Kind kind);

    /// All docks of the present kind are there: they get their sizes when the window has laid
    /// itself out.
    void arrange();

    /// Around the time in which the strip is there; its docks are still as they were.
    void onStripAppears();
    void onStripGone() { m_giveBack.start(); }

    /// As of now for the present kind, for the others as they were left; empty if never.
    DockSizes::ByName sizes(Kind kind);
    void setSizes(Kind kind, const DockSizes::ByName& sizes);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct BeforeStrip {
        DockSizes::ByName docks;
        QSize window;
        QSize grown; // for the strip's sake; else invalid
    };

    void keep();
    void give();
    void giveBack();
    void onWindowResized(const QSize& before);

    QMainWindow& m_window;
    DockSizes& m_sizes;
    Kind m_kind = Kind::Start;
    bool m_isArranged = true;
    std::map<Kind, DockSizes::ByName> m_known;
    std::optional<BeforeStrip> m_beforeStrip; // unless the user has moved something since
    QTimer m_give;
    QTimer m_giveBack; // what the strip took
};

} // namespace workbench
