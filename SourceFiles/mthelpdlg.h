#pragma once

#include "ui_mthelpdlg.h"

#include <QDialog>

/// Explains what a tip calibration does to the tool's coordinate system. Modal, of fixed size.
class MtHelpDlg : public QDialog {
    Q_OBJECT

public:
    explicit MtHelpDlg(QWidget* parent);

private Q_SLOTS:
    void on_pushButton_exit_clicked();

private:
    Ui_MtHelpDlgClass ui;
};
