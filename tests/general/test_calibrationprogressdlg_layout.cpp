#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

class TestCalibrationProgressLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWindowIsAsLaidOut() {
        const CalibrationProgressDlg dialog(nullptr, nullptr, nullptr, false, true);
        QCOMPARE(dialog.objectName(), QString("CalibrationProgressDialog"));
        QCOMPARE(dialog.windowTitle(), QString("Calibration Progress"));
        QVERIFY(!dialog.windowIcon().isNull());
        QVERIFY(!QPixmap(":/images/icons/kestrel_16x16.png").isNull());
        QCOMPARE(dialog.windowIcon().pixmap(16).toImage(),
                 QPixmap(":/images/icons/kestrel_16x16.png").toImage());
        QCOMPARE(dialog.minimumSize(), QSize(400, 210));
        QCOMPARE(dialog.maximumSize(), QSize(2000, 1000));
    }

    void theRowsFollowEachOther() {
        const CalibrationProgressDlg dialog(nullptr, nullptr, nullptr, false, true);
        QCOMPARE(namesIn(*dialog.layout()),
                 QStringList({"label_desc", "label_step_desc", "hboxLayout", "hboxLayout1",
                              "horizontalLayout", "line", "hboxLayout2"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "hboxLayout")),
                 QStringList({"label", "progressBar_overall"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "hboxLayout1")),
                 QStringList({"label_progress_step", "progressBar_step"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "horizontalLayout")),
                 QStringList({"label_info", "label_remaining_time"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "hboxLayout2")), QStringList({"-", "pb_cancel"}));
    }

    void theTextsAreAsGiven_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        row("description", "label_desc", "TextLabel");
        row("step description", "label_step_desc", "TextLabel");
        row("overall", "label", "all");
        row("step", "label_progress_step", "step");
        row("info", "label_info", "");
        row("remaining time is emptied", "label_remaining_time", "");
    }
    void theTextsAreAsGiven() {
        QFETCH(QString, name);
        QFETCH(QString, text);
        const CalibrationProgressDlg dialog(nullptr, nullptr, nullptr, false, true);
        QCOMPARE(child<QLabel>(dialog, name.toLatin1())->text(), text);
    }

    void theWidgetsHaveTheirSizesAndValues() {
        const CalibrationProgressDlg dialog(nullptr, nullptr, nullptr, false, true);
        QCOMPARE(child<QLabel>(dialog, "label")->minimumWidth(), 50);
        QCOMPARE(child<QLabel>(dialog, "label_progress_step")->minimumWidth(), 50);
        QCOMPARE(child<QProgressBar>(dialog, "progressBar_overall")->minimumWidth(), 300);
        QCOMPARE(child<QProgressBar>(dialog, "progressBar_overall")->value(), 24);
        QCOMPARE(child<QProgressBar>(dialog, "progressBar_step")->value(), 24);
        QCOMPARE(child<QLabel>(dialog, "label_info")->minimumHeight(), 66);
        QCOMPARE(child<QFrame>(dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(child<QFrame>(dialog, "line")->frameShadow(), QFrame::Sunken);
        QCOMPARE(child<QPushButton>(dialog, "pb_cancel")->text(), QString("Cancel"));
    }

    void aLongDescriptionMakesTheWindowGrow() {
        ProgressRig rig;
        scriptProcedure(rig.host, 2, {"other"});
        rig.host.answer("cal type_desc measurementtool",
                        "Hold the tip in the hole of the block and swing the tool slowly in a cone "
                        "of sixty degrees until the bar is full, without lifting the tip");
        bool fits = false;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            const auto* const label = child<QLabel>(dialog, "label_desc");
            fits = label->height() >= label->heightForWidth(label->width()) &&
                   dialog.height() >= dialog.layout()->totalHeightForWidth(dialog.width());
            dialog.reject();
        });
        rig.run();
        QVERIFY(fits);
    }
};

QTEST_MAIN(TestCalibrationProgressLayout)
#include "test_calibrationprogressdlg_layout.moc"
