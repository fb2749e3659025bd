#include "general/CountdownDlg.h"

#include "general/widgets/dpiscaling.h"
#include "general/widgets/growtofit.h"

#include <QEvent>

namespace {
constexpr int tickMs = 1000;
}

CountdownDlg::CountdownDlg(QWidget* parent)
    : QDialog(parent) {
    setupUi(this);
    scaleFormToDpi(*this);
    connect(&my_timer, &QTimer::timeout, this, &CountdownDlg::updateCountdown);
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
}

void CountdownDlg::setMessage(QString text, int seconds) {
    msg->setText(text);
    countdown = seconds;
    lcdNumber->display(seconds);
    my_timer.start(tickMs);
}

void CountdownDlg::updateCountdown() {
    --countdown;
    lcdNumber->display(countdown);
    if (countdown < 1) {
        done(Accepted);
    }
}

bool CountdownDlg::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest) {
        growToFit(*this);
    }
    return handled;
}
