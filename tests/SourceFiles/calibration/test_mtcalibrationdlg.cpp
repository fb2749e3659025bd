#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTextDocument>
#include <QtTest>

namespace {

// 1 to 4 for the frame that the picture label shows, 0 for none of them.
int frameOf(const MtCalibrationDlg& dialog) {
    const QImage shown =
        child<QLabel>(dialog, "label_picMesstaster")->pixmap(Qt::ReturnByValue).toImage();
    for (int frame = 1; frame <= 4; ++frame) {
        if (shown == QPixmap(QStringLiteral(":/image%1.png").arg(frame)).toImage()) {
            return frame;
        }
    }
    return 0;
}

void nextFrame(MtCalibrationDlg& dialog) {
    QVERIFY(QMetaObject::invokeMethod(&dialog, "update_image"));
}

} // namespace

class TestMtCalibrationDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFramesCycle() {
        CalibrationRig rig;
        QList<int> frames;
        QList<int> counters;
        for (int i = 0; i < 9; ++i) {
            nextFrame(*rig.dialog);
            frames << frameOf(*rig.dialog);
            counters << MtCalibrationProbe::counter(*rig.dialog);
        }
        QCOMPARE(frames, QList<int>({1, 2, 3, 4, 1, 2, 3, 4, 1}));
        QCOMPARE(counters, QList<int>({1, 2, 3, 4, 1, 2, 3, 4, 1}));
    }

    void aNegativeCounterShowsNothingNew_data() {
        QTest::addColumn<int>("counter");
        QTest::addColumn<int>("frame");
        QTest::addColumn<int>("next");
        row("-1", -1, 2, 0);
        row("-3", -3, 2, -2);
        row("-4 is a frame 1", -4, 1, 1);
        row("6", 6, 3, 7);
    }
    void aNegativeCounterShowsNothingNew() {
        QFETCH(int, counter);
        QFETCH(int, frame);
        QFETCH(int, next);
        CalibrationRig rig;
        nextFrame(*rig.dialog);
        nextFrame(*rig.dialog);
        MtCalibrationProbe::setCounter(*rig.dialog, counter);
        nextFrame(*rig.dialog);
        QCOMPARE(frameOf(*rig.dialog), frame);
        QCOMPARE(MtCalibrationProbe::counter(*rig.dialog), next);
    }

    void thePictureMovesWhileTheDialogIsShown() {
        CalibrationRig rig;
        QTimer& timer = MtCalibrationProbe::timer(*rig.dialog);
        QCOMPARE(timer.interval(), 300);
        QVERIFY(!timer.isSingleShot());
        QVERIFY(!timer.isActive());
        QCOMPARE(frameOf(*rig.dialog), 0);
        timer.setInterval(1);
        bool moved = false;
        rig.open({[&] {
            QTRY_COMPARE(frameOf(*rig.dialog), 4);
            QTRY_COMPARE(frameOf(*rig.dialog), 1);
            moved = true;
            rig.click("pushButton_exit");
        }});
        QVERIFY(moved);
        QVERIFY(!timer.isActive());
    }

    void everyWayOfClosingIsTheSame_data() {
        QTest::addColumn<QString>("way");
        row("Exit", "exit");
        row("Escape", "escape");
        row("window close", "close");
    }
    void everyWayOfClosingIsTheSame() {
        QFETCH(QString, way);
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "track"});
        const int result = rig.open({[&] {
            if (way == "exit") {
                rig.click("pushButton_exit");
            } else if (way == "escape") {
                QTest::keyClick(rig.dialog, Qt::Key_Escape);
            } else {
                rig.dialog->close();
            }
        }});
        QCOMPARE(result, 0);
        Lines expected = CalibrationRig::opening;
        expected.insert(expected.end(),
                        {"get_string status active", "send kestrel2 tracking stop"});
        QCOMPARE(rig.host.journal(), expected);
        QVERIFY(!MtCalibrationProbe::timer(*rig.dialog).isActive());
        QVERIFY(rig.dialog->isHidden());
    }

    void itCanBeOpenedAgain() {
        CalibrationRig rig;
        rig.open();
        const Lines first = rig.host.journal();
        rig.host.clearJournal();
        QCOMPARE(rig.open(), 0);
        QCOMPARE(rig.host.journal(), first);
    }

    void openingTwiceAsksNothingAndReturns() {
        CalibrationRig rig;
        int result = -1;
        std::size_t asked = 1;
        rig.open({[&] {
            const std::size_t before = rig.host.journal().size();
            QVERIFY(QMetaObject::invokeMethod(rig.dialog, "update_and_exec",
                                              Q_RETURN_ARG(int, result)));
            asked = rig.host.journal().size() - before;
            rig.click("pushButton_exit");
        }});
        QCOMPARE(result, 0);
        QCOMPARE(asked, std::size_t(0));
    }

    void dataAndMeasurementsAreIgnored() {
        CalibrationRig rig;
        Requester& requester = *rig.dialog;
        QCOMPARE(requester.set_ascii_data("6dmt", "6dmt 1"), 0);
        QCOMPARE(requester.set_ascii_data(nullptr, nullptr), 0);
        requester.set_mea_started();
        requester.set_mea_stopped();
        QCOMPARE(rig.host.journal(), Lines());
    }

    void withoutParentHostAndVersionsItOpensAndCloses() {
        MtCalibrationDlg dialog(nullptr, nullptr, nullptr);
        ModalWatchdog dog;
        bool disabled = false;
        dog.on("MtCalibrationDlgClass", [&](QWidget* shown) {
            auto* const button = child<QPushButton>(*shown, "pushButton_calibrate");
            disabled = !button->isEnabled();
            QVERIFY(QMetaObject::invokeMethod(shown, "on_pushButton_calibrate_clicked"));
            shown->close();
        });
        QCOMPARE(dialog.update_and_exec(), 0);
        QVERIFY(disabled);
        QCOMPARE(dog.seen(), QStringList("MtCalibrationDlgClass"));
    }

    void theWindowIsAsLaidOut() {
        const CalibrationRig rig;
        const MtCalibrationDlg& dialog = *rig.dialog;
        QCOMPARE(dialog.objectName(), QString("MtCalibrationDlgClass"));
        QCOMPARE(dialog.windowTitle(), QString("Measurement Tool Tip Calibration"));
        QCOMPARE(dialog.minimumSize(), QSize(650, 304));
        QCOMPARE(dialog.maximumSize(), QSize(1000, 1000));
        QTextDocument help;
        help.setHtml(dialog.whatsThis());
        QCOMPARE(help.toPlainText(), QString("During the calibration process the Measurement Tool "
                                             "must be seesawed without moving the tool tip"));
        QVERIFY(Qt::mightBeRichText(dialog.whatsThis()));
        QCOMPARE(namesIn(*dialog.layout()),
                 QStringList({"horizontalLayout_2", "line", "label_error", "horizontalLayout"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "horizontalLayout_2")),
                 QStringList({"label_picMesstaster", "verticalLayout"}));
        QCOMPARE(dialog.layout()->objectName(), QString("verticalLayout_2"));
        QCOMPARE(child<QFrame>(dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(tabOrder(dialog),
                 QStringList({"pushButton_help", "pushButton_calibrate", "pushButton_exit"}));
    }

    void theLabelsAreAsLaidOut_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("left");
        row("steps", "label_meaBody", "for the tool tip calibration follow these steps:", true);
        row("1", "label_meaBody_2", "1. start the calibration process", true);
        row("2", "label_meaBody_3", "2. during the calibration move the Measurement Tool", true);
        row("empty", "label_meaBody_5", "", true);
        row("tip", "label_fixedTip", "as shown in the picture with <b>fixed tip!</b>", false);
        row("picture", "label_picMesstaster", "", false);
        row("error", "label_error", "", false);
    }
    void theLabelsAreAsLaidOut() {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(bool, left);
        const CalibrationRig rig;
        const auto* const label = child<QLabel>(*rig.dialog, name.toLatin1());
        QCOMPARE(label->text(), text);
        if (left) {
            QCOMPARE(label->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
        }
        if (name == "label_meaBody_3") {
            QCOMPARE(label->minimumWidth(), 300);
        }
    }

    void theButtonsAreAsLaidOut_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("whatsThis");
        QTest::addColumn<bool>("isDefault");
        row("help", "pushButton_help", "&Help", "", false);
        row("calibrate", "pushButton_calibrate", "&Calibrate", "Start the calibration process",
            true);
        row("exit", "pushButton_exit", "E&xit", "Close the dialog", false);
    }
    void theButtonsAreAsLaidOut() {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(QString, whatsThis);
        QFETCH(bool, isDefault);
        const CalibrationRig rig;
        const auto* const button = child<QPushButton>(*rig.dialog, name.toLatin1());
        QCOMPARE(button->text(), text);
        QCOMPARE(button->whatsThis(), whatsThis);
        QCOMPARE(button->isDefault(), isDefault);
    }
};

QTEST_MAIN(TestMtCalibrationDlg)
#include "test_mtcalibrationdlg.moc"
