#include "general/widgets/growtofit.h"

#include <QLayout>
#include <QWidget>

#include <algorithm>

void growToFit(QWidget& window) {
    QLayout* const layout = window.layout();
    // Not the layout's minimum: a widget with a minimum size of its own may need more than that.
    QSize needed = layout->totalSizeHint().expandedTo(window.size());
    if (layout->hasHeightForWidth()) {
        needed.setHeight(std::max(window.height(), layout->totalHeightForWidth(needed.width())));
    }
    const bool fixed = window.minimumSize() == window.maximumSize();
    window.setMaximumSize(window.maximumSize().expandedTo(needed));
    if (fixed) {
        window.setMinimumSize(window.maximumSize());
    }
    window.resize(needed);
}
