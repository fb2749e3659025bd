#include "workbench/window/mainwindow.h"
#include "workbench/window/plot/makeplot.h"
#include "workbench/window/readout/readoutdock.h"
#include "workbench/window/state/livestate.h"

namespace workbench {

// Closed until somebody wants them.
void MainWindow::setUpFigures() {
    auto* const readout = new ReadoutDock(m_backend, m_backend.facts, this);
    readout->toggleViewAction()->setText(tr("&Read-out"));
    m_menus->add({tr("&View"), 400, 22, readout->toggleViewAction()});
    m_figureDocks += readout;
    if (QDockWidget* const plot = makePlotDock(m_backend, m_backend.facts, this)) {
        plot->toggleViewAction()->setText(tr("Time &plot"));
        m_menus->add({tr("&View"), 400, 24, plot->toggleViewAction()});
        m_figureDocks += plot;
    }
    for (QDockWidget* dock : qAsConst(m_figureDocks)) {
        addDockWidget(Qt::BottomDockWidgetArea, dock, Qt::Horizontal);
        dock->hide();
        m_liveState->addDock(dock);
        watchDock(dock);
        connect(dock, &QDockWidget::visibilityChanged, this, &MainWindow::showMiddle);
    }
    m_menus->arrange();
}

} // namespace workbench
