#include "workbench/window/plot/makeplot.h"

#ifdef KESTREL_HAS_PLOT
#include "workbench/window/plot/plotdock.h"
#endif

namespace workbench {

#ifdef KESTREL_HAS_PLOT
QDockWidget* makePlotDock(Backend& backend, ToolFacts& facts, QWidget* parent) {
    return new PlotDock(backend, facts, parent);
}
#else
QDockWidget* makePlotDock(Backend&, ToolFacts&, QWidget*) {
    return nullptr;
}
#endif

} // namespace workbench
