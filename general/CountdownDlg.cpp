#include "general/CountdownDlg.h"

#include "general/dpiscaling.h"

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
