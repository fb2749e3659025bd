#include "general/widgets/modalrun.h"

#include "general/host/hostpointer.h"
#include "general/host/underway.h"

int runModally(QDialog& dialog, const HostPointer& host) {
    if (host.isHungUp()) {
        return QDialog::Rejected;
    }
    const underway::ModalLoop loop;
    const QPointer<QDialog> alive(&dialog);
    const int result = dialog.exec();
    if (!alive.isNull() && dialog.isVisible()) {
        // The application quits. Hidden or destroyed without being modal, the dialog's window would
        // stay in Qt's list of modal windows for ever.
        dialog.setModal(true);
    }
    return result;
}
