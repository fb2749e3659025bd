#include "SourceFiles/mtresultdlg.h"

#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "general/widgets/dpiscaling.h"
#include "general/widgets/modalrun.h"
#include "host_api/iomanager.h"

#include <utility>

using hostlink::Reply;

namespace {

enum Column { ResultTool, ResultReference, ResultResidual };
constexpr int rowHeight = 28;
constexpr int discarded = -1;

} // namespace

MtResultDlg::MtResultDlg(HostPointer host, QWidget* parent)
    : QDialog(parent)
    , iom(std::move(host)) {
    ui.setupUi(this);
    scaleFormToDpi(*this);
    ui.tableWidget->horizontalHeader()->setSectionsClickable(false);
    ui.tableWidget->resizeColumnsToContents();
}

int MtResultDlg::update_and_exec() {
    showBodies();
    showResidual();
    ui.tableWidget->setRowHeight(0, rowHeightFor(rowHeight, *ui.tableWidget));
    ui.tableWidget->resizeColumnsToContents();
    ui.tableWidget->setMinimumWidth(widthOfColumns());
    ui.pushButton_accept->setFocus();
    return runModally(*this, iom);
}

int MtResultDlg::widthOfColumns() const {
    const QHeaderView* const header = ui.tableWidget->horizontalHeader();
    return ui.tableWidget->columnWidth(ResultTool) + ui.tableWidget->columnWidth(ResultReference) +
           header->sectionSizeHint(ResultResidual) + 2 * ui.tableWidget->frameWidth();
}

void MtResultDlg::showBodies() {
    QString toolLabel;
    QString referenceLabel;
    Reply id;
    if (iom->get_parameter_string(id.buffer(), "measurementtool calibration_body_id") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to get tool id"));
    } else {
        toolLabel = bodytexts::toolName(bodytexts::bodyNumber(id.toString()) - 1);
        Reply reference;
        if (iom->get_parameter_string(reference.buffer(), "measurementtool reference_of_tool %s",
                                      id.text()) != 0) {
            hostlink::log(iom, QStringLiteral("Error: Unable to get reference body id"));
        } else if (!reference.is("none")) {
            referenceLabel =
                bodytexts::referenceName(bodytexts::bodyNumber(reference.toString()) - 1);
        }
    }
    ui.tableWidget->setItem(0, ResultTool, new QTableWidgetItem(toolLabel));
    ui.tableWidget->setItem(0, ResultReference, new QTableWidgetItem(referenceLabel));
}

void MtResultDlg::showResidual() {
    double residual = 0.0;
    if (iom->get_parameter_double(&residual, "measurementtool calibration_tip_residual") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to get tool tip residual"));
        residual = 0.0;
    }
    auto* const item = new QTableWidgetItem(bodytexts::fixed(residual, 2));
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ui.tableWidget->setItem(0, ResultResidual, item);
}

void MtResultDlg::on_pushButton_accept_clicked() {
    Reply reply;
    if (iom->send_command(reply.buffer(), "kestrel2 measurementtool accept_new_calibration") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to accept calibration"));
        done(discarded);
    }
    if (!reply.is(hostlink::ok)) {
        hostlink::log(iom, QStringLiteral("Error: Unable to accept calibration"));
        done(discarded);
    }
    // Always: the caller goes on as usual, a failure is told by the log alone.
    done(0);
}

void MtResultDlg::on_pushButton_cancel_clicked() {
    done(discarded);
}
