#include "workbench/window/readout/toolbox.h"

#include "workbench/window/readout/readouttexts.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <algorithm>

namespace workbench {

void offerTools(QComboBox& box, int count, int chosen) {
    const QSignalBlocker blocked(box);
    const int offered = std::max(count, chosen);
    while (box.count() > offered) {
        box.removeItem(box.count() - 1);
    }
    while (box.count() < offered) {
        box.addItem(readouttexts::toolName(box.count() + 1));
    }
    box.setCurrentIndex(chosen - 1);
}

} // namespace workbench
