#pragma once

class QScrollArea;
class QWidget;

/// Makes `page` all that `panel` shows, scrolled up and down alone: how wide it has to be is the
/// panel's to say. Both go with the panel. GUI thread.
QScrollArea* scrollUpAndDown(QWidget* page, QWidget* panel);
