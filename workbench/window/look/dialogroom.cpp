#include "workbench/window/look/dialogroom.h"

#include "workbench/window/look/screenroom.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench {

namespace {

// All but the last.
void moveItems(QBoxLayout& from, QBoxLayout& to) {
    while (from.count() > 1) {
        const int stretch = from.stretch(0);
        QLayoutItem* const item = from.takeAt(0);
        if (QLayout* const layout = item->layout()) {
            to.addLayout(layout, stretch);
        } else {
            to.addItem(item);
            to.setStretch(to.count() - 1, stretch);
        }
    }
}

// Its beginning, where it is larger than the area.
void showWhole(QScrollArea& area, const QWidget& inside) {
    const QRect place(inside.mapTo(area.widget(), QPoint()), inside.size());
    area.ensureVisible(place.x() + place.width(), place.y() + place.height(), 0, 0);
    area.ensureVisible(place.x(), place.y(), 0, 0);
}

} // namespace

DialogRoom::DialogRoom(QDialog& dialog)
    : QObject(&dialog)
    , m_dialog(dialog) {
    m_check.setSingleShot(true);
    m_check.setInterval(0); // when the dialog has laid itself out
    connect(&m_check, &QTimer::timeout, this, &DialogRoom::check);
    dialog.installEventFilter(this);
}

bool DialogRoom::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        check(); // before it is seen, and before it is placed
    } else if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) {
        m_check.start();
    }
    return QObject::eventFilter(watched, event);
}

void DialogRoom::check() {
    const QSize room = screenRoom(m_dialog);
    if (!room.isValid()) {
        return;
    }
    const QSize needed = this->needed(std::min(m_dialog.width(), room.width()));
    if (m_area == nullptr && needed.boundedTo(room) != needed) {
        letScroll();
    }
    if (m_dialog.layout() == nullptr) {
        m_dialog.setMinimumSize(m_dialog.minimumSize().boundedTo(room));
    }
    if (m_dialog.size().boundedTo(room) != m_dialog.size()) {
        m_dialog.resize(m_dialog.size().boundedTo(room));
    }
}

// At the least. Texts that may be wrapped are higher the narrower they are.
QSize DialogRoom::needed(int width) const {
    const QLayout* const layout = m_dialog.layout();
    if (layout == nullptr) {
        return m_dialog.minimumSize();
    }
    const QSize least = layout->totalMinimumSize().expandedTo(m_dialog.minimumSize());
    return layout->hasHeightForWidth() ? least.expandedTo({0, layout->minimumHeightForWidth(width)})
                                       : least;
}

void DialogRoom::letScroll() {
    auto* const rows = qobject_cast<QVBoxLayout*>(m_dialog.layout());
    if (rows == nullptr || rows->count() < 2) {
        return;
    }
    m_area = new QScrollArea;
    m_area->setObjectName(QStringLiteral("scrollArea_dialog"));
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus); // what stands in it scrolls into view by itself
    auto* const page = new QWidget;
    auto* const pageRows = new QVBoxLayout(page);
    pageRows->setContentsMargins(0, 0, 0, 0);
    pageRows->setSpacing(rows->spacing());
    const QSize wanted = m_dialog.size().expandedTo(m_dialog.sizeHint());
    moveItems(*rows, *pageRows);
    m_area->setWidget(page);
    rows->insertWidget(0, m_area, 1);
    m_area->show();
    const auto follow = [area = m_area](const QWidget*, const QWidget* focus) {
        if (focus != nullptr && area->widget()->isAncestorOf(focus)) {
            // The area itself looks no further than to the cursor, and after this.
            QTimer::singleShot(0, focus, [area, focus] { showWhole(*area, *focus); });
        }
    };
    connect(qApp, &QApplication::focusChanged, m_area, follow);
    follow(nullptr, m_dialog.focusWidget());
    m_dialog.setMinimumSize(0, 0);
    rows->activate();
    m_dialog.resize(wanted + QSize(m_area->verticalScrollBar()->sizeHint().width(), 0));
}

} // namespace workbench
