#pragma once

#include <QEvent>
#include <QImage>
#include <QPaintEvent>
#include <QPixmap>
#include <QRegion>
#include <QScreen>
#include <QWidget>

/// What is painted of a widget, and how often it is asked to lay itself out anew.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }

    void forget() {
        painted = QRegion();
        layoutRequests = 0;
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
        } else if (event->type() == QEvent::LayoutRequest) {
            ++layoutRequests;
        }
        return QObject::eventFilter(watched, event);
    }

    QRegion painted;
    int layoutRequests = 0;
};

/// A window as the screen has it: what was not painted again is still there.
inline QImage onScreen(const QWidget& window) {
    return window.screen()
        ->grabWindow(window.winId())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

/// The same with all of it painted anew.
inline QImage paintedAnew(QWidget& window) {
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}
