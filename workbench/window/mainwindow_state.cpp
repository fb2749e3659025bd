#include "workbench/window/mainwindow.h"
#include "workbench/window/statewords.h"

namespace workbench {

void MainWindow::showState() {
    m_words->showState();
    m_entryStates.apply(situation());
    showMiddle();
}

} // namespace workbench
