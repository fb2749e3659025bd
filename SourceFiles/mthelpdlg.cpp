#include "SourceFiles/mthelpdlg.h"

MtHelpDlg::MtHelpDlg(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint) {
    ui.setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void MtHelpDlg::on_pushButton_exit_clicked() {
    done(0);
}
