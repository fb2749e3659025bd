#include "general/widgets/spinboxes.h"
#include "tests/probecheck/tipcheck/tipcheckfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QStandardPaths>

namespace {

constexpr int patienceMs = TipCheckFixture::patienceMs;
constexpr double frameStep = TipCheckFixture::frameStep;

} // namespace

Q_DECLARE_METATYPE(Pivoting::Motion)

class TestTipCheckPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void withoutMeasurementNothingCanBeStarted() {
        TipCheckFixture f;
        QTRY_COMPARE_WITH_TIMEOUT(f.find<QComboBox>("comboBox_tool")->count(), 2, patienceMs);
        QVERIFY(!f.start()->isEnabled());
        QVERIFY(!f.stop()->isEnabled());
        QVERIFY(f.words().startsWith("No tracking runs."));
    }

    void onlyCalibratedToolsAreOffered() {
        TipCheckFixture f;
        f.controller.host.answer("measurementtool tip_calibrated b01", "no");
        QVERIFY(f.measure());
        auto* const tools = f.find<QComboBox>("comboBox_tool");
        QCOMPARE(tools->count(), 1);
        QCOMPARE(tools->currentText(), QString("M2"));
    }

    void aControllerWithoutCalibratedToolIsTold() {
        TipCheckFixture f;
        f.controller.host.answer("measurementtool number_of_tools", "0");
        f.controller.host.startMeasurement();
        QVERIFY(f.wordsBecome("no calibrated Measurement Tool"));
        QVERIFY(!f.start()->isEnabled());
    }

    void theToleranceIsTheControllers_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<double>("tolerance");
        QTest::newRow("told") << "0.35" << 0.35;
        QTest::newRow("nonsense") << "nan" << 1.5;
        QTest::newRow("negative") << "-1" << 1.5;
        QTest::newRow("not told") << "" << 1.5;
    }
    void theToleranceIsTheControllers() {
        QFETCH(QString, reply);
        TipCheckFixture f;
        const std::string parameter = "measurementtool measurement_tip_tolerance b01";
        if (reply.isEmpty()) {
            f.controller.host.fail("get_double " + parameter);
            f.controller.host.fail(parameter);
        } else {
            f.controller.host.answer(parameter, reply.toStdString());
        }
        QVERIFY(f.measure());
        QTEST(f.find<DecimalSpinBox>("doubleSpinBox_tolerance")->value(), "tolerance");
    }

    void anEditedToleranceStays() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        auto* const tolerance = f.find<DecimalSpinBox>("doubleSpinBox_tolerance");
        QCOMPARE(tolerance->value(), 0.5);
        tolerance->setFocus();
        tolerance->selectAll();
        QTest::keyClicks(tolerance, "0,25");
        QCOMPARE(tolerance->value(), 0.25);
        f.controller.host.stopMeasurement();
        QVERIFY(f.wordsBecome("No tracking runs."));
        QVERIFY(f.measure());
        QCOMPARE(tolerance->value(), 0.25);
        f.find<QComboBox>("comboBox_tool")->setCurrentIndex(1);
        QCOMPARE(tolerance->value(), 0.5);
        f.find<QComboBox>("comboBox_tool")->setCurrentIndex(0);
        QCOMPARE(tolerance->value(), 0.25);
    }

    void aCheckFindsTheErrorAndWritesItDown() {
        TipCheckFixture f;
        f.controller.host.answer("measurementtool measurement_tip_tolerance b01", "0.2");
        QVERIFY(f.measure());
        f.start()->click();
        QVERIFY(f.isRunning());
        QVERIFY(!f.start()->isEnabled());
        Pivoting tool;
        f.deliver(tool, 12.0);
        QVERIFY(f.wordsBecome("So far: 0."));
        f.stop()->click();
        QVERIFY(!f.isRunning());
        QVERIFY2(f.words().startsWith("The tip does not conform: wrong by 0."),
                 qPrintable(f.words()));
        QVERIFY(f.words().contains("\"Measurement Tool tip calibration\""));
        QVERIFY(f.table().contains("95"));
        const QJsonObject result = f.result();
        QCOMPARE(result.value("type").toString(), QString("tip_check"));
        QCOMPARE(result.value("tool").toString(), QString("M1"));
        QCOMPARE(result.value("reference").toString(), QString("none"));
        QCOMPARE(result.value("verdict").toString(), QString("does_not_conform"));
        QCOMPARE(result.value("ended_by").toString(), QString("stopped"));
        QCOMPARE(result.value("tolerance_mm").toDouble(), 0.2);
        const double radius = result.value("radius95_mm").toDouble();
        QVERIFY(radius > 0.0 && radius < 0.2);
        QVERIFY(std::abs(result.value("error_mm").toDouble() - 0.5) <= radius);
        QVERIFY(
            QDateTime::fromString(result.value("time").toString(), Qt::ISODateWithMs).isValid());
        QVERIFY(result.value("time").toString().endsWith('Z'));
    }

    void motionsThatDetermineNoTipGiveNoNumber_data() {
        QTest::addColumn<Pivoting::Motion>("motion");
        QTest::addColumn<QString>("advice");
        QTest::newRow("planar") << Pivoting::Motion::AcrossX << "Tilt more to front and back.";
        QTest::newRow("across") << Pivoting::Motion::AcrossY << "Tilt more to left and right.";
        QTest::newRow("twist") << Pivoting::Motion::Twist << "Tilt the tool to all sides.";
        QTest::newRow("still") << Pivoting::Motion::Still << "Tilt the tool to all sides.";
    }
    void motionsThatDetermineNoTipGiveNoNumber() {
        QFETCH(Pivoting::Motion, motion);
        QFETCH(QString, advice);
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        Pivoting tool;
        tool.motion = motion;
        f.deliver(tool, 12.0);
        QVERIFY2(f.wordsBecome(advice), qPrintable(f.words()));
        f.stop()->click();
        QVERIFY(f.words().startsWith("No result: "));
        QVERIFY(f.words().endsWith(advice));
        static const QRegularExpression digit("[0-9]");
        QVERIFY(!f.words().contains(digit));
        QVERIFY(!f.table().contains("Error of the tip"));
        const QJsonObject result = f.result();
        QCOMPARE(result.value("determined"), QJsonValue(false));
        for (const char* key : {"error_mm", "radius95_mm", "error_xyz_mm", "slip_mm"}) {
            QVERIFY(!result.contains(key));
        }
    }

    void aSlipIsTold() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        Pivoting tool;
        tool.slip = 4.0;
        f.deliver(tool, 12.0);
        QVERIFY(f.wordsBecome("slip"));
        // It ends by itself when more poses confirm it.
        QVERIFY(QTest::qWaitFor(
            [&] {
                f.deliver(tool, 0.1);
                return !f.isRunning();
            },
            patienceMs));
        QVERIFY(f.words().startsWith("No result: the tip has slipped by "));
        QCOMPARE(f.result().value("ended_by").toString(), QString("slipped"));
        QVERIFY(!f.result().contains("error_mm"));
    }

    void whatKeepsItFromGoingOnIsTold() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        QVERIFY(f.wordsBecome("No data come."));
        QVERIFY(QTest::qWaitFor(
            [&] {
                f.deliverHidden();
                return f.words() == "The tool is hidden.";
            },
            patienceMs));
        QVERIFY(f.isRunning());
    }

    void aLostReferenceIsTold() {
        TipCheckFixture f;
        f.controller.host.answer("measurementtool reference_of_tool b01", "b01");
        QVERIFY(f.measure());
        f.start()->click();
        Pivoting tool;
        QVERIFY(QTest::qWaitFor(
            [&] {
                f.controller.host.deliver(probelines::references({-1.0}));
                f.deliver(tool, frameStep);
                return f.words() == "The reference MR1 is lost.";
            },
            patienceMs));
    }

    void theMeasurementStopsInTheMiddle() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        Pivoting tool;
        f.deliver(tool, 12.0);
        f.controller.host.stopMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!f.isRunning(), patienceMs);
        QCOMPARE(f.result().value("ended_by").toString(), QString("measurement_stopped"));
        QVERIFY(!f.start()->isEnabled());
        QVERIFY(f.measure());
        f.start()->click();
        QVERIFY(f.isRunning());
    }

    void theToolsFirstButtonStarts_data() {
        QTest::addColumn<unsigned>("before");
        QTest::addColumn<unsigned>("buttons");
        QTest::addColumn<bool>("starts");
        QTest::newRow("pressed") << 0U << 1U << true;
        QTest::newRow("another one") << 0U << 2U << false;
        QTest::newRow("held all the time") << 1U << 1U << false;
    }
    void theToolsFirstButtonStarts() {
        QFETCH(unsigned, before);
        QFETCH(unsigned, buttons);
        QFETCH(bool, starts);
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.find<QComboBox>("comboBox_tool")->setCurrentIndex(1);
        Pivoting tool;
        f.deliver(tool, 0.1, before);
        f.deliver(tool, 0.1, buttons);
        if (starts) {
            QTRY_VERIFY_WITH_TIMEOUT(f.isRunning(), patienceMs);
            QCOMPARE(f.find<QComboBox>("comboBox_tool")->currentText(), QString("M1"));
            return;
        }
        // Both tools in one delivery: the second one's button shows that the first one's was seen.
        QVERIFY(QTest::qWaitFor(
            [&f, buttons] {
                for (const unsigned second : {0U, 1U}) {
                    f.controller.deliverFrame(++f.frame, 200.0,
                                              {{{}, {}, -1.0, buttons}, {{}, {}, -1.0, second}});
                }
                return f.isRunning();
            },
            patienceMs));
        QCOMPARE(f.find<QComboBox>("comboBox_tool")->currentText(), QString("M2"));
    }

    void theButtonOfAToolThatCannotBeCheckedDoesNothing_data() {
        QTest::addColumn<int>("tool");
        QTest::newRow("not calibrated") << 1;
        QTest::newRow("not in the controller's list") << 2;
    }
    void theButtonOfAToolThatCannotBeCheckedDoesNothing() {
        QFETCH(int, tool);
        TipCheckFixture f;
        f.controller.host.answer("measurementtool tip_calibrated b02", "no");
        QVERIFY(f.measure());
        // Both in one delivery: the first one's check shows that the other's button was seen.
        const auto deliver = [&](unsigned others, unsigned firsts) {
            std::vector<probelines::Tool> tools(3);
            tools[static_cast<std::size_t>(tool)].buttons = others;
            f.controller.deliverFrame(++f.frame, 200.0, tools);
            tools[0].buttons = firsts;
            f.controller.deliverFrame(++f.frame, 200.0, tools);
        };
        QVERIFY(QTest::qWaitFor(
            [&] {
                deliver(0U, 0U);
                deliver(1U, 1U);
                return f.isRunning();
            },
            patienceMs));
        QCOMPARE(f.find<QComboBox>("comboBox_tool")->currentText(), QString("M1"));
    }

    void theDataMayGoFirst_data() {
        QTest::addColumn<bool>("isRunning");
        QTest::newRow("idle") << false;
        QTest::newRow("running") << true;
    }
    void theDataMayGoFirst() {
        QFETCH(bool, isRunning);
        ProbeController controller;
        auto data = std::make_unique<ProbeData>(&controller.host, &controller.versions);
        TipCheckPanel panel(data.get(), nullptr);
        panel.show();
        data->enter();
        controller.host.startMeasurement();
        auto* const start = panel.findChild<QPushButton*>("pushButton_start");
        auto* const stop = panel.findChild<QPushButton*>("pushButton_stop");
        QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patienceMs);
        if (isRunning) {
            start->click();
        }
        data.reset();
        panel.findChild<QCheckBox*>()->click();
        auto* const tools = panel.findChild<QComboBox*>();
        tools->setCurrentIndex(1);
        stop->click();
        panel.hide();
        panel.show();
        QVERIFY(!start->isEnabled());
        QVERIFY(!stop->isEnabled());
        if (!isRunning) {
            QCOMPARE(panel.findChild<QLabel*>("label_words")->text(),
                     QString("No tracking runs. Start it to check a tip."));
        }
    }

    void theButtonDoesNotStartWhenThatIsNotWanted() {
        ProbeController controller;
        ProbeData data(&controller.host, &controller.versions);
        TipCheckPanel panel(&data, nullptr);
        panel.findChild<QCheckBox*>()->setChecked(false);
        panel.show();
        data.enter();
        controller.host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(data.isReceiving(), patienceMs);
        std::size_t seen = 0;
        connect(&data, &ProbeData::samplesArrived, this,
                [&seen](const ProbeSamples& samples) { seen += samples.size(); });
        for (const unsigned buttons : {0U, 1U, 0U}) {
            controller.deliverFrame(1, 100.0, {{{}, probelines::unturned, 1.0, buttons}});
        }
        QTRY_COMPARE_WITH_TIMEOUT(seen, std::size_t(3), patienceMs);
        QVERIFY(!panel.findChild<QPushButton*>("pushButton_stop")->isEnabled());
        data.leave();
    }

    void aCheckGoesOnInAHiddenDock() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        f.dock->hide();
        QCoreApplication::processEvents();
        Pivoting tool;
        f.deliver(tool, 12.0);
        f.controller.host.stopMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!f.result().isEmpty(), patienceMs);
        QVERIFY(f.result().value("poses").toInt() > 600);
        QTRY_VERIFY_WITH_TIMEOUT(f.controller.host.requesters("6dmt2").empty(), patienceMs);
    }

    void nothingIsWrittenToTheController() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        Pivoting tool;
        f.deliver(tool, 12.0);
        f.stop()->click();
        const QStringList written =
            probeJournal(f.controller.host).filter(QRegularExpression("^(set|send|set_channel)"));
        QCOMPARE(written, QStringList({"set output active chmon 6dmt2 yes",
                                       "set output active chmon 6dmtr yes"}));
    }

    void theHostEndsTheModuleInsideTheResult() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.start()->click();
        f.controller.host.onOperation = [&f](const std::string& line) {
            if (line.compare(0, 10, "log result") == 0) {
                f.controller.host.onOperation = {};
                f.module.exit_module();
            }
        };
        f.stop()->click();
        QTRY_VERIFY_WITH_TIMEOUT(f.panel.isNull(), patienceMs);
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }

    void itsEndInEachState_data() {
        QTest::addColumn<int>("stage");
        QTest::addColumn<bool>("window");
        for (const bool window : {false, true}) {
            const QString way = window ? "window, " : "exit, ";
            QTest::newRow(qPrintable(way + "idle")) << 0 << window;
            QTest::newRow(qPrintable(way + "measuring")) << 1 << window;
            QTest::newRow(qPrintable(way + "running")) << 2 << window;
            QTest::newRow(qPrintable(way + "with poses")) << 3 << window;
            QTest::newRow(qPrintable(way + "finished")) << 4 << window;
            QTest::newRow(qPrintable(way + "no data")) << 5 << window;
            QTest::newRow(qPrintable(way + "hidden")) << 6 << window;
            QTest::newRow(qPrintable(way + "reference lost")) << 7 << window;
        }
    }
    void itsEndInEachState() {
        QFETCH(int, stage);
        QFETCH(bool, window);
        TipCheckFixture f;
        f.controller.host.answer("measurementtool reference_of_tool b01",
                                 stage == 7 ? "b01" : "none");
        Pivoting tool;
        if (stage >= 1) {
            QVERIFY(f.measure());
        }
        if (stage >= 2) {
            f.start()->click();
        }
        if (stage == 3 || stage == 4) {
            f.deliver(tool, 5.0);
            QVERIFY(f.wordsBecome("Go on."));
        }
        if (stage == 4) {
            f.stop()->click();
        }
        if (stage == 5) {
            QVERIFY(f.wordsBecome("No data come."));
        }
        if (stage == 6 || stage == 7) {
            QVERIFY(QTest::qWaitFor(
                [&] {
                    f.controller.host.deliver(probelines::references({-1.0}));
                    if (stage == 6) {
                        f.deliverHidden();
                    } else {
                        f.deliver(tool, frameStep);
                    }
                    return f.words() == (stage == 6 ? QString("The tool is hidden.")
                                                    : QString("The reference MR1 is lost."));
                },
                patienceMs));
        }
        if (window) {
            delete f.dock;
        } else {
            f.module.exit_module();
        }
        QVERIFY(f.panel.isNull());
        f.deliver(tool, 0.1);
        QCoreApplication::processEvents();
        f.module.exit_module();
        QVERIFY(f.controller.host.measurementRequesters().empty());
        QVERIFY(f.controller.host.requesters("6dmt2").empty());
    }

    void everythingIsReachedByKeysAndHasAName() {
        TipCheckFixture f;
        QVERIFY(f.measure());
        f.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&f.window));
        f.find<QComboBox>("comboBox_tool")->setFocus();
        const QStringList order = {"doubleSpinBox_tolerance", "checkBox_startByButton",
                                   "pushButton_start"};
        for (const QString& name : order) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), name);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(f.isRunning());
        QCOMPARE(QApplication::focusWidget()->objectName(), QString("pushButton_stop"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(!f.isRunning());
        for (const char* name : {"roseView", "label_words", "label_figures", "label_result"}) {
            QVERIFY(!f.find<QWidget>(name)->accessibleName().isEmpty());
        }
    }
};

QTEST_MAIN(TestTipCheckPanel)
#include "test_tipcheckpanel.moc"
