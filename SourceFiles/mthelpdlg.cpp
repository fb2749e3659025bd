#include "SourceFiles/mthelpdlg.h"

#include "general/widgets/dpiscaling.h"

#include <QPixmap>

MtHelpDlg::MtHelpDlg(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint) {
    ui.setupUi(this);
    scaleFormToDpi(*this);
    ui.label_pic->setPixmap(scaledToDpi(ui.label_pic->pixmap(Qt::ReturnByValue), *this));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void MtHelpDlg::on_pushButton_exit_clicked() {
    done(0);
}
