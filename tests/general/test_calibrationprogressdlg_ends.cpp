#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

namespace {

const std::string askState = "get_string status active";
const std::string askError = "kestrel2 get status err";
const std::string stop = "send kestrel2 cal measurementtool stop";
const Lines pollOfStep1 = {askState, "get_double status progress",
                           "get_string status step_progress",
                           "get_string cal step_duration measurementtool s01"};

} // namespace

class TestCalibrationProgressEnds : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anErrorIsShownAndEndsTheRun_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("text");
        row("quoted", "kestrel2 set status err 12 \"motion too small\"", "motion too small");
        row("more quotes", "a \"b\" c \"d\"", "b");
        row("one quote: the rest", "kestrel2 err \"no end", "no end");
        row("no quote", "kestrel2 err 12", "");
        row("no HTML, no format", "\"<b>%1 %n %s</b>\"", "<b>%1 %n %s</b>");
        row("UTF-8", QString::fromUtf8("\"\xc3\xbc\""), QString::fromUtf8("\xc3\xbc"));
        row("failed", "FAIL", "");
    }
    void anErrorIsShownAndEndsTheRun() {
        QFETCH(QString, reply);
        QFETCH(QString, text);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"cal", "err"});
        rig.host.answerCommand(askError, reply.toStdString());
        if (reply == "FAIL") {
            rig.host.fail(askError);
        }
        rig.answerBoxes();
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.boxes, QStringList(text));
        Lines expected = pollOfStep1;
        expected.insert(expected.end(), {askState, "send " + askError});
        QCOMPARE(rig.afterStart(), expected);
        QVERIFY(!rig.timerActiveAtEnd);
    }

    void theErrorBoxHasOneButton() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"err"});
        rig.dog.on("messageBox_calibrationError", [](QWidget* window) {
            const auto* const box = qobject_cast<QMessageBox*>(window);
            QCOMPARE(box->windowTitle(), QString("Calibration Error"));
            QCOMPARE(box->icon(), QMessageBox::Critical);
            QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->parentWidget()->objectName(), QString("CalibrationProgressDialog"));
            window->close();
        });
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.dog.seen().count("messageBox_calibrationError"), 1);
    }

    void aHostThatStopsItInsideTheErrorQueryShowsNoError() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"err"});
        rig.host.answerCommand(askError, "\"lost\"");
        rig.answerBoxes();
        CalibrationProgressDlg* dialog = nullptr;
        rig.prepare = [&](CalibrationProgressDlg& made) { dialog = &made; };
        rig.host.onOperation = [&](const std::string& line) {
            if (line == "send " + askError) {
                dialog->close();
            }
        };
        QCOMPARE(rig.run(), 0);
        const Lines operations = rig.host.operations();
        QCOMPARE(std::count(operations.begin(), operations.end(), stop), 1);
        QCOMPARE(rig.boxes, QStringList());
        QVERIFY(!rig.timerActiveAtEnd);
    }

    void theUserStopsTheProcedure_data() {
        QTest::addColumn<QString>("way");
        row("Cancel", "pb_cancel");
        row("Escape", "escape");
        row("window close", "close");
    }
    void theUserStopsTheProcedure() {
        QFETCH(QString, way);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"other"});
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            if (way == "escape") {
                QTest::keyClick(&dialog, Qt::Key_Escape);
            } else if (way == "close") {
                dialog.close();
            } else {
                child<QPushButton>(dialog, way.toLatin1())->click();
            }
        });
        QCOMPARE(rig.run(), 0);
        const Lines operations = rig.host.operations();
        QCOMPARE(operations.back(), stop);
        QCOMPARE(std::count(operations.begin(), operations.end(), stop), 1);
        QVERIFY(!rig.timerActiveAtEnd);
    }
};

QTEST_MAIN(TestCalibrationProgressEnds)
#include "test_calibrationprogressdlg_ends.moc"
