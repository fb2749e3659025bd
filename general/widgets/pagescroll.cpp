#include "general/widgets/pagescroll.h"

#include <QScrollArea>
#include <QVBoxLayout>

QScrollArea* scrollUpAndDown(QWidget* page, QWidget* panel) {
    auto* const scrolled = new QScrollArea(panel);
    scrolled->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setWidgetResizable(true);
    scrolled->setFocusPolicy(Qt::NoFocus);
    scrolled->setWidget(page);
    auto* const whole = new QVBoxLayout(panel);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scrolled);
    return scrolled;
}
