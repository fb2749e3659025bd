#pragma once

#include "ui_countdowndlg.h"

#include <QDialog>
#include <QTimer>

/// Counts down the seconds before a calibration step, so that the user can get into position.
/// exec() gives 1 when the count has run out or the user starts at once, 0 on cancel or close.
class CountdownDlg : public QDialog, private Ui::CountdownDialog {
    Q_OBJECT

public:
    explicit CountdownDlg(QWidget* parent);

    /// Starts the countdown; to be called before exec(). The display has one digit: 10 seconds and
    /// more overflow it. With 0 or less the dialog closes at the first tick, after one second.
    void setMessage(QString text, int seconds);

public Q_SLOTS:
    /// Called every second: shows one less and accepts at the end.
    void updateCountdown();

protected:
    bool event(QEvent* event) override; ///< grows when a large font needs it

private:
    friend struct CountdownProbe; // lets a test drive the time

    int countdown = 0;
    QTimer my_timer;
};
