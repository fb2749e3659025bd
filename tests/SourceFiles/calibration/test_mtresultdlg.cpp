#include "SourceFiles/mtresultdlg.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/scriptedhost.h"

#include <QHeaderView>
#include <QLayout>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

using Lines = std::vector<std::string>;

const std::string bodyId = "measurementtool calibration_body_id";
const std::string residual = "measurementtool calibration_tip_residual";
const std::string accept = "kestrel2 measurementtool accept_new_calibration";

void scriptResult(ScriptedHost& host) {
    host.answer(bodyId, "b03");
    host.answer("measurementtool reference_of_tool b03", "b02");
    host.answer(residual, "0.125");
}

QStringList rowOf(const QWidget& dialog) {
    const auto* const table = child<QTableWidget>(dialog, "tableWidget");
    QStringList row;
    for (int column = 0; column < table->columnCount(); ++column) {
        row << table->item(0, column)->text();
    }
    return row;
}

struct Outcome {
    QStringList row;
    int result = -2;
};

// Runs the dialog and clicks `button` as soon as it is shown.
Outcome run(IOManager* host, const char* button) {
    Outcome outcome;
    ModalWatchdog dog;
    dog.on("MtResultDlgClass", [&](QWidget* window) {
        outcome.row = rowOf(*window);
        child<QPushButton>(*window, button)->click();
    });
    MtResultDlg dialog(host, nullptr);
    outcome.result = dialog.update_and_exec();
    return outcome;
}

} // namespace

class TestMtResultDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itAsksForToolReferenceAndResidual() {
        ScriptedHost host;
        scriptResult(host);
        const Outcome outcome = run(&host, "pushButton_cancel");
        QCOMPARE(outcome.row, QStringList({"M3", "MR2", "0.12"}));
        QCOMPARE(host.journal(), Lines({"get_string measurementtool calibration_body_id",
                                        "get_string measurementtool reference_of_tool b03",
                                        "get_double measurementtool calibration_tip_residual"}));
    }

    void theRowShowsTheReplies_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("reference");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QStringList>("row");
        row("leading zeros are dropped", "b003", "b010", "1", QStringList{"M3", "MR10", "1.00"});
        row("eight is decimal", "b08", "b09", "2", QStringList{"M8", "MR9", "2.00"});
        row("two digits", "b12", "b34", "0.999", QStringList{"M12", "MR34", "1.00"});
        row("no reference", "b01", "none", "0.5", QStringList{"M1", "", "0.50"});
        row("none with a blank is a reply", "b01", "none ", "0.5",
            QStringList{"M1", "MR0", "0.50"});
        row("no number", "tool", "body", "0", QStringList{"M0", "MR0", "0.00"});
        row("no text", "", "", "0", QStringList{"M0", "MR0", "0.00"});
        row("lowest number there is", "b-2147483648", "b-1", "0", QStringList{"M0", "MR0", "0.00"});
        row("ties to even", "b01", "b01", "0.375", QStringList{"M1", "MR1", "0.38"});
        row("negative", "b01", "b01", "-0.001", QStringList{"M1", "MR1", "-0.00"});
        row("not a number", "b01", "b01", "nan", QStringList{"M1", "MR1", "nan"});
        row("a format", "%n%s", "%n", "0", QStringList{"M0", "MR0", "0.00"});
    }
    void theRowShowsTheReplies() {
        QFETCH(QString, id);
        QFETCH(QString, reference);
        QFETCH(QString, value);
        QFETCH(QStringList, row);
        ScriptedHost host;
        host.answer(bodyId, id.toStdString());
        host.answer("measurementtool reference_of_tool " + id.toStdString(),
                    reference.toStdString());
        host.answer(residual, value.toStdString());
        QCOMPARE(run(&host, "pushButton_cancel").row, row);
    }

    void withoutTheToolTheReferenceIsNotAsked() {
        ScriptedHost host;
        scriptResult(host);
        host.fail(bodyId);
        const Outcome outcome = run(&host, "pushButton_cancel");
        QCOMPARE(outcome.row, QStringList({"", "", "0.12"}));
        QCOMPARE(host.journal(), Lines({"get_string measurementtool calibration_body_id",
                                        "log standard KESTREL3 1 Error: Unable to get tool id",
                                        "get_double measurementtool calibration_tip_residual"}));
    }

    void withoutTheReferenceItsCellIsEmpty() {
        ScriptedHost host;
        scriptResult(host);
        host.fail("measurementtool reference_of_tool b03");
        QCOMPARE(run(&host, "pushButton_cancel").row, QStringList({"M3", "", "0.12"}));
        QCOMPARE(host.logTexts(), Lines({"Error: Unable to get reference body id"}));
        QCOMPARE(host.operationCount(), 3);
    }

    void withoutTheResidualItIsZero() {
        ScriptedHost host;
        scriptResult(host);
        host.fail(residual);
        QCOMPARE(run(&host, "pushButton_cancel").row, QStringList({"M3", "MR2", "0.00"}));
        QCOMPARE(host.logTexts(), Lines({"Error: Unable to get tool tip residual"}));
    }

    void cancelSendsNothing() {
        ScriptedHost host;
        scriptResult(host);
        QCOMPARE(run(&host, "pushButton_cancel").result, -1);
        QCOMPARE(host.operationCount(), 3);
        QCOMPARE(host.logTexts(), Lines());
    }

    void acceptTakesTheCalibrationOver() {
        ScriptedHost host;
        scriptResult(host);
        QCOMPARE(run(&host, "pushButton_accept").result, 0);
        QCOMPARE(host.journal().back(), "send " + accept);
        QCOMPARE(host.operationCount(), 4);
    }

    void acceptGivesZeroEvenWhenRefused_data() {
        QTest::addColumn<QString>("reply");
        row("an error", "kestrel2 err 12 \"no\"");
        row("a blank too many", "kestrel2 ok ");
        row("nothing", "");
    }
    void acceptGivesZeroEvenWhenRefused() {
        QFETCH(QString, reply);
        ScriptedHost host;
        scriptResult(host);
        host.answerCommand(accept, reply.toStdString());
        QCOMPARE(run(&host, "pushButton_accept").result, 0);
        QCOMPARE(host.logTexts(), Lines({"Error: Unable to accept calibration"}));
    }

    void aFailedSendIsLoggedAndTheReplyCheckedAllTheSame() {
        ScriptedHost host;
        scriptResult(host);
        host.fail(accept);
        QCOMPARE(run(&host, "pushButton_accept").result, 0);
        QCOMPARE(host.logTexts(), Lines({"Error: Unable to accept calibration",
                                         "Error: Unable to accept calibration"}));
    }

    void closingGivesZeroAndSendsNothing_data() {
        QTest::addColumn<bool>("escape");
        row("Escape", true);
        row("window close", false);
    }
    void closingGivesZeroAndSendsNothing() {
        QFETCH(bool, escape);
        ScriptedHost host;
        scriptResult(host);
        ModalWatchdog dog;
        dog.on("MtResultDlgClass", [&](QWidget* window) {
            escape ? QTest::keyClick(window, Qt::Key_Escape) : void(window->close());
        });
        MtResultDlg dialog(&host, nullptr);
        QCOMPARE(dialog.update_and_exec(), 0);
        QCOMPARE(host.operationCount(), 3);
        QCOMPARE(dog.strays(), QStringList());
    }

    void aMissingHostIsLikeOneThatFails() {
        const Outcome outcome = run(nullptr, "pushButton_accept");
        QCOMPARE(outcome.row, QStringList({"", "", "0.00"}));
        QCOMPARE(outcome.result, 0);
    }

    void theWidgetsAreAsLaidOut() {
        ScriptedHost host;
        const MtResultDlg dialog(&host, nullptr);
        QCOMPARE(dialog.objectName(), QString("MtResultDlgClass"));
        QCOMPARE(dialog.windowTitle(), QString("Measurement Tool Tip Calibration Result"));
        QCOMPARE(dialog.whatsThis(), QString("Shows the Measurement Tool tip calibration result"));
        QCOMPARE(dialog.size(), QSize(530, 250));
        QVERIFY(dialog.isSizeGripEnabled());

        const auto* const layout = child<QLayout>(dialog, "verticalLayout");
        QCOMPARE(dialog.layout(), layout);
        QCOMPARE(layout->spacing(), 6);
        QCOMPARE(layout->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(namesIn(*layout), QStringList({"tableWidget", "line", "horizontalLayout"}));
        const auto* const buttons = child<QLayout>(dialog, "horizontalLayout");
        QCOMPARE(buttons->spacing(), 6);
        QCOMPARE(namesIn(*buttons), QStringList({"-", "pushButton_accept", "pushButton_cancel"}));
        QCOMPARE(child<QFrame>(dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(child<QFrame>(dialog, "line")->frameShadow(), QFrame::Sunken);
    }

    void theButtonsAreAsLaidOut() {
        ScriptedHost host;
        const MtResultDlg dialog(&host, nullptr);
        const auto* const acceptButton = child<QPushButton>(dialog, "pushButton_accept");
        QCOMPARE(acceptButton->text(), QString("&Accept"));
        QCOMPARE(acceptButton->whatsThis(), QString("Accept the calibration result"));
        QVERIFY(acceptButton->isDefault());
        const auto* const cancelButton = child<QPushButton>(dialog, "pushButton_cancel");
        QCOMPARE(cancelButton->text(), QString("Cancel"));
        QCOMPARE(cancelButton->whatsThis(), QString("Discard the calibration result"));
        QVERIFY(!cancelButton->autoDefault());
        QCOMPARE(tabOrder(dialog),
                 QStringList({"tableWidget", "pushButton_accept", "pushButton_cancel"}));
    }

    void theTableIsAsLaidOut() {
        ScriptedHost host;
        scriptResult(host);
        MtResultDlg dialog(&host, nullptr);
        ModalWatchdog dog;
        dog.on("MtResultDlgClass", [](QWidget* window) { window->close(); });
        dialog.update_and_exec();
        const auto* const table = child<QTableWidget>(dialog, "tableWidget");
        QCOMPARE(table->rowCount(), 1);
        QCOMPARE(table->columnCount(), 3);
        QCOMPARE(table->horizontalHeaderItem(0)->text(), QString("Measurement Tool ID"));
        QCOMPARE(table->horizontalHeaderItem(1)->text(), QString("Reference ID"));
        QCOMPARE(table->horizontalHeaderItem(2)->text(), QString("Tool tip residual [mm]"));
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(!table->horizontalHeader()->sectionsClickable());
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
        QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(table->rowHeight(0), 28);
        QCOMPARE(table->item(0, 2)->textAlignment(), int(Qt::AlignRight | Qt::AlignVCenter));
    }
};

QTEST_MAIN(TestMtResultDlg)
#include "test_mtresultdlg.moc"
