#pragma once

#include "general/host/hostpointer.h"
#include "ui_mtresultdlg.h"

#include <QDialog>

/// Shows the outcome of a finished tip calibration - tool, reference and tip residual in mm, all
/// asked from the controller - and lets the user take it over or discard it. GUI thread.
class MtResultDlg : public QDialog {
    Q_OBJECT

public:
    /// `iom` stays the host's.
    MtResultDlg(HostPointer host, QWidget* parent);

    /// Fills the row and runs the dialog. 0 after Accept, even when the controller has refused the
    /// calibration (the log tells), and when the dialog was closed; -1 after Cancel.
    int update_and_exec();

private Q_SLOTS:
    void on_pushButton_cancel_clicked();
    void on_pushButton_accept_clicked();

private:
    void showBodies();
    void showResidual();
    int widthOfColumns() const;

    Ui_MtResultDlgClass ui;
    HostPointer iom;
};
