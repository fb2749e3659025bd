#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace {

const std::string start = "send kestrel2 tracking start";
const std::string stop = "send kestrel2 tracking stop";
const std::string countLog = "Error: Unable to get number of mea tools";

// What the dialog shows while it is open.
struct Face {
    QString error;
    bool errorVisible = false;
    bool canCalibrate = false;
};

Face openAndLook(CalibrationRig& rig) {
    Face face;
    rig.open({[&] {
        const auto* const label = child<QLabel>(*rig.dialog, "label_error");
        face.error = label->text();
        face.errorVisible = label->isVisible();
        face.canCalibrate = child<QPushButton>(*rig.dialog, "pushButton_calibrate")->isEnabled();
        rig.click("pushButton_exit");
    }});
    return face;
}

QString red(const char* text) {
    return QStringLiteral("<b><font color=red>%1</font></b>").arg(QLatin1String(text));
}

bool sent(const ScriptedHost& host, const std::string& line) {
    const Lines lines = host.operations();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

} // namespace

class TestMtCalibrationOpening : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingReadyStartsTracking() {
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "track"});
        const Face face = openAndLook(rig);
        QCOMPARE(face.error, QString());
        QVERIFY(!face.errorVisible);
        QVERIFY(face.canCalibrate);
        Lines expected = CalibrationRig::opening;
        expected.insert(expected.end(), {"get_string status active", stop});
        QCOMPARE(rig.host.journal(), expected);
    }

    void theFirstFailingCheckDecides_data() {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("operations");
        QTest::addColumn<QStringList>("logged");
        const QString defined = "No Measurement Tool is defined!";
        const QString calibrated = "No Measurement Tool is calibrated!";
        const QString available = "Measurement Tool is not available!";
        const QString tracking = "Tracking is not available!";
        const QString count = QString::fromStdString(countLog);
        row("no support", "measurementtool available", "no", available, 2, QStringList());
        row("support with a blank", "measurementtool available", "yes ", available, 2,
            QStringList());
        row("support unknown", "measurementtool available", "FAIL", available, 2, QStringList());
        row("no tracking", "tracking available", "no", tracking, 3, QStringList());
        row("no tool", "measurementtool number_of_tools", "0", defined, 4, QStringList());
        row("fewer than none", "measurementtool number_of_tools", "-1", defined, 4, QStringList());
        row("tools unknown", "measurementtool number_of_tools", "FAIL", defined, 4,
            QStringList(count));
        row("none calibrated", "body calibrated measurementtool b02", "no", calibrated, 7,
            QStringList());
        row("calibrated with a blank", "body calibrated measurementtool b02", "yes ", calibrated, 7,
            QStringList());
        row("calibration unknown, not asked further", "body calibrated measurementtool b01", "FAIL",
            calibrated, 6,
            QStringList("Error: Unable to get calibration info for Measurement Tool"));
    }
    void theFirstFailingCheckDecides() {
        QFETCH(QString, parameter);
        QFETCH(QString, reply);
        QFETCH(QString, error);
        QFETCH(int, operations);
        QFETCH(QStringList, logged);
        CalibrationRig rig;
        rig.host.answer(parameter.toStdString(), reply.toStdString());
        if (reply == "FAIL") {
            rig.host.fail(parameter.toStdString());
        }
        const Face face = openAndLook(rig);
        QCOMPARE(face.error, red(error.toLatin1()));
        QVERIFY(face.errorVisible);
        QVERIFY(!face.canCalibrate);
        Lines expected(CalibrationRig::opening.begin(),
                       CalibrationRig::opening.begin() + operations);
        expected.emplace_back("get_string status active"); // of closing
        QCOMPARE(rig.host.operations(), expected);
        QStringList logs;
        for (const std::string& text : rig.host.logTexts()) {
            logs << QString::fromStdString(text);
        }
        QCOMPARE(logs, logged);
    }

    void trackingOnAnyDoubtIsAvailable_data() {
        QTest::addColumn<QString>("reply");
        QTest::newRow("no with a blank") << "no ";
        QTest::newRow("nothing") << "";
        QTest::newRow("failed") << "FAIL";
    }
    void trackingOnAnyDoubtIsAvailable() {
        QFETCH(QString, reply);
        CalibrationRig rig;
        rig.host.answer("tracking available", reply.toStdString());
        if (reply == "FAIL") {
            rig.host.fail("tracking available");
        }
        QVERIFY(openAndLook(rig).canCalibrate);
    }

    void oldProtocolsAreNotAsked_data() {
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("patch");
        QTest::addColumn<QStringList>("asked");
        const QString lock = "get_string config is_changeable";
        const QString tools = "get_string measurementtool available";
        QTest::newRow("1.9.0") << 9 << 0 << QStringList{lock, tools};
        QTest::newRow("1.9 with an unknown patch") << 9 << -1 << QStringList{lock, tools};
        QTest::newRow("1.8.99") << 8 << 99 << QStringList{tools};
        QTest::newRow("1.3 with an unknown patch") << 3 << -1 << QStringList{tools};
        QTest::newRow("1.3.-2") << 3 << -2 << QStringList{};
        QTest::newRow("1.2.99") << 2 << 99 << QStringList{};
    }
    void oldProtocolsAreNotAsked() {
        QFETCH(int, minor);
        QFETCH(int, patch);
        QFETCH(QStringList, asked);
        CalibrationRig rig;
        rig.versions =
            BackendVersions(VersionInfo(), VersionInfo(1, minor, patch), VersionInfo(), QString());
        openAndLook(rig);
        QStringList operations;
        for (const std::string& line : rig.host.operations()) {
            operations << QString::fromStdString(line);
        }
        QCOMPARE(operations.mid(0, asked.size()), asked);
        QCOMPARE(operations.filter("config").size(), asked.filter("config").size());
        QCOMPARE(operations.filter("measurementtool available").size(),
                 asked.filter("available").size());
    }

    void theLastCheckSetsTheButton_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("canCalibrate");
        QTest::addColumn<QString>("logged");
        const QString unavailable = red("Calibration Measurement Tool is not available!");
        row("yes", "yes", "", true, "");
        row("no", "no", unavailable, false, "");
        row("yes with a blank", "yes ", unavailable, false, "");
        row("nothing", "", unavailable, false, "");
        row("failed: left as it was", "FAIL", "", true,
            "Error: Unable to get info calibration for Measurement Tool is available");
    }
    void theLastCheckSetsTheButton() {
        QFETCH(QString, reply);
        QFETCH(QString, error);
        QFETCH(bool, canCalibrate);
        QFETCH(QString, logged);
        CalibrationRig rig;
        rig.host.answer("cal available measurementtool", reply.toStdString());
        if (reply == "FAIL") {
            rig.host.fail("cal available measurementtool");
        }
        const Face face = openAndLook(rig);
        QCOMPARE(face.error, error);
        QCOMPARE(face.errorVisible, !error.isEmpty());
        QCOMPARE(face.canCalibrate, canCalibrate);
        QCOMPARE(rig.host.logTexts(), logged.isEmpty() ? Lines() : Lines({logged.toStdString()}));
        QVERIFY(sent(rig.host, start)); // started on this path whatever the last check says
    }

    void theLastCountSetsTheButton_data() {
        QTest::addColumn<QString>("count");
        QTest::addColumn<bool>("canCalibrate");
        QTest::addColumn<bool>("availabilityAsked");
        QTest::newRow("tools") << "2" << true << true;
        QTest::newRow("no tool any more") << "0" << false << true;
        QTest::newRow("failed: left as it was") << "FAIL" << true << false;
    }
    void theLastCountSetsTheButton() {
        QFETCH(QString, count);
        QFETCH(bool, canCalibrate);
        QFETCH(bool, availabilityAsked);
        CalibrationRig rig;
        int counts = 0;
        rig.host.onOperation = [&](const std::string& line) {
            if (line == "get_int measurementtool number_of_tools" && ++counts == 3) {
                rig.host.answer("measurementtool number_of_tools", count.toStdString());
                if (count == "FAIL") {
                    rig.host.fail("measurementtool number_of_tools");
                }
            }
        };
        const Face face = openAndLook(rig);
        QCOMPARE(face.canCalibrate, canCalibrate);
        QVERIFY(!face.errorVisible);
        QCOMPARE(sent(rig.host, "get_string cal available measurementtool"), availabilityAsked);
        QCOMPARE(rig.host.logTexts(), count == "FAIL" ? Lines({countLog}) : Lines());
        QVERIFY(sent(rig.host, start));
    }

    void aLockedConfigurationDisablesCalibrate_data() {
        QTest::addColumn<QString>("supported");
        QTest::newRow("everything ready") << "yes";
        QTest::newRow("not available") << "no";
    }
    void aLockedConfigurationDisablesCalibrate() {
        QFETCH(QString, supported);
        CalibrationRig rig;
        QPixmap green(16, 16);
        green.fill(Qt::green);
        rig.window->setWindowIcon(QIcon(green));
        rig.host.answer("config is_changeable", "no");
        rig.host.answer("measurementtool available", supported.toStdString());
        const Face locked = openAndLook(rig);
        QVERIFY(!locked.canCalibrate);
        QCOMPARE(locked.errorVisible, supported == "no");
        QCOMPARE(rig.dialog->windowIcon().pixmap(16).toImage(),
                 QIcon(":/lock.png").pixmap(16).toImage());
        QCOMPARE(sent(rig.host, start), supported == "yes");

        rig.host.answer("config is_changeable", "yes");
        QCOMPARE(openAndLook(rig).canCalibrate, supported == "yes");
        QCOMPARE(rig.dialog->windowIcon().pixmap(16).toImage(), green.toImage());
    }

    void trackingIsStartedWhenItRests_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("started");
        QTest::newRow("none") << "none" << true;
        QTest::newRow("err") << "err" << true;
        QTest::newRow("tracking") << "track" << false;
        QTest::newRow("none with a blank") << "none " << false;
        QTest::newRow("nothing") << "" << false;
        QTest::newRow("failed") << "FAIL" << false;
    }
    void trackingIsStartedWhenItRests() {
        QFETCH(QString, state);
        QFETCH(bool, started);
        CalibrationRig rig;
        rig.host.answer("status active", state.toStdString());
        if (state == "FAIL") {
            rig.host.fail("status active");
        }
        openAndLook(rig);
        QCOMPARE(sent(rig.host, start), started);
        // Closing stops what runs, whoever has started it.
        QCOMPARE(sent(rig.host, stop), !started && state != "FAIL");
    }

    void oneCalibratedToolIsEnough() {
        CalibrationRig rig;
        rig.host.answer("measurementtool number_of_tools", "120");
        for (int tool = 1; tool <= 120; ++tool) {
            const QString name = QString::asprintf("body calibrated measurementtool b%02d", tool);
            rig.host.answer(name.toStdString(), tool == 101 ? "yes" : "no");
        }
        QVERIFY(openAndLook(rig).canCalibrate);
        QVERIFY(sent(rig.host, "get_string body calibrated measurementtool b101"));
        QVERIFY(!sent(rig.host, "get_string body calibrated measurementtool b102"));
    }

    void aMadToolCountDoesNotKeepItBusy() {
        CalibrationRig rig;
        rig.host.answer("measurementtool number_of_tools", "2000000000");
        // Once "yes" is out of reach every query succeeds and denies.
        rig.host.answer("body calibrated measurementtool b02", "no");
        rig.host.injectFault(5, ScriptedHost::Fault::EmptyReply, true);
        QCOMPARE(openAndLook(rig).error, red("No Measurement Tool is calibrated!"));
    }
};

QTEST_MAIN(TestMtCalibrationOpening)
#include "test_mtcalibrationdlg_opening.moc"
