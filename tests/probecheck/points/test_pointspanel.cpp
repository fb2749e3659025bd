#include "pointsfixture.h"
#include "tests/support/datarows.h"
#include "tests/support/paintwatch.h"

#include <QClipboard>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>

#include <limits>

using points::PointListModel;
using points::Sound;

class TestPointsPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { f = std::make_unique<PointsFixture>(); }
    void cleanup() { f.reset(); }

    void theSpaceBarCapturesAPoint();
    void thePointIsOnTheDiskBeforeItIsHeard();
    void eachPointIsAResultInTheHostsLog();
    void theTableTakesTheSpaceBarForCapturing();
    void theCaptureButtonBeginsAndCancels();
    void escapeCancels();
    void onlyAPlainPressOfTheSpaceBarCaptures();
    void aButtonOnAToolCapturesThatToolsPoint();
    void onlyTheChosenButtonCaptures();
    void aButtonThatIsHeldDownAtFirstIsNoPress();
    void aPressThatIsTooOldIsNone();
    void holdingStillCapturesEachPlaceOnce();
    void byHoldingStillAKeyBeginsAnew();
    void byHoldingStillAButtonStillChoosesItsTool();
    void theKeyIsWaitedForWhenThatIsChosenAgain();
    void theReasonOfAFailureIsTold_data();
    void theReasonOfAFailureIsTold();
    void theButtonOfAnUncalibratedToolChoosesNothing();
    void outOfSightTheCaptureIsGivenUp();
    void leavingTheToleranceIsTold();
    void theMeasurementsEndIsTold();
    void withoutMeasurementThereIsNothingToCapture();
    void thePositionIsShownLarge();
    void anotherPositionMovesNothing();
    void digitsAreLargeInAFontOfPixelsToo();
    void thePointMeasurementsValuesAreTheControllers();
    void theControllerIsAskedOnceForEachTool();
    void valuesThatCannotBeReadAreTheDefaults_data();
    void valuesThatCannotBeReadAreTheDefaults();
    void editedValuesStayForTheSession();
    void aReferenceThatNobodyToldIsUnknown();
    void nothingIsWrittenToTheController();
    void twoSelectedPointsHaveADistance();
    void pointsAreDeletedRenamedAndBroughtBackByKeys();
    void aNameIsEditedByKeys();
    void selectedPointsAreCopied();
    void pointsWithoutExportAreOfferedAndKept();
    void pointsWithoutExportAreOfferedAndDiscarded();
    void silenceCanBeChosen();
    void silenceIsRemembered();
    void theDataMayGoFirst();
    void itsEndInEachState_data();
    void itsEndInEachState();

private:
    std::unique_ptr<PointsFixture> f;
};

void TestPointsPanel::theSpaceBarCapturesAPoint() {
    f->measure();
    f->send(0.1);
    QCOMPARE(f->words(), QString("Ready."));
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    f->send(0.3);
    const auto* const ring = f->child<CaptureRing>("captureRing");
    QVERIFY(ring->share() > 0.0 && ring->share() < 1.0);
    QVERIFY(f->waitForWords("Point captured."));
    QCOMPARE(ring->share(), 0.0);
    QCOMPARE(f->panel->list().rowCount(), 1);
    QCOMPARE(f->cell(0, PointListModel::Name), QString("P1"));
    QCOMPARE(f->cell(0, PointListModel::X), QString("100.000"));
    QCOMPARE(f->cell(0, PointListModel::Tool), QString("M1"));
    QCOMPARE(f->cell(0, PointListModel::Reference), QString("none"));
    QCOMPARE(f->panel->list().point(0).tolerance, 0.5);
    QVERIFY(qAbs(f->panel->list().point(0).duration - 0.5) < 0.02);
    QVERIFY(qAbs(f->panel->list().point(0).utcMs - QDateTime::currentMSecsSinceEpoch()) < 60000);
}

void TestPointsPanel::thePointIsOnTheDiskBeforeItIsHeard() {
    f->measure();
    QVERIFY(f->capture());
    QCOMPARE(f->sounds(), (std::vector<Sound>{Sound::Begun, Sound::Captured}));
    QVERIFY(f->heard[0].session.isEmpty());
    const std::vector<points::PointRecord> kept =
        points::contentOfLines(f->heard[1].session).points;
    QCOMPARE(kept.size(), std::size_t(1));
    QCOMPARE(kept[0].position[2], 300.0);
}

void TestPointsPanel::eachPointIsAResultInTheHostsLog() {
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->capture());
    const QStringList lines = f->resultLines();
    QCOMPARE(lines.size(), 2);
    const QString begin("log result ProbeCheckModule 1 ");
    QVERIFY2(lines[1].startsWith(begin), qPrintable(lines[1]));
    const QJsonObject point = QJsonDocument::fromJson(lines[1].mid(begin.size()).toUtf8()).object();
    QCOMPARE(point.value("type").toString(), QString("point"));
    QCOMPARE(point.value("tool").toString(), QString("M1"));
    QCOMPARE(point.value("number").toInt(), 2);
    QCOMPARE(point.value("x_mm").toDouble(), 100.0);
}

void TestPointsPanel::theTableTakesTheSpaceBarForCapturing() {
    f->measure();
    QVERIFY(f->capture());
    f->send(0.1);
    QTest::keyClick(f->child<QTableView>("tableView_points"), Qt::Key_Space);
    QCOMPARE(f->words(), QString("Hold the tip still."));
}

void TestPointsPanel::theCaptureButtonBeginsAndCancels() {
    f->measure();
    f->send(0.1);
    auto* const button = f->child<QPushButton>("pushButton_capture");
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(f->words(), QString("Cancelled."));
    QCOMPARE(f->panel->list().rowCount(), 0);
}

void TestPointsPanel::escapeCancels() {
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QTest::keyClick(f->panel.get(), Qt::Key_Escape);
    QCOMPARE(f->words(), QString("Cancelled."));
}

void TestPointsPanel::onlyAPlainPressOfTheSpaceBarCaptures() {
    f->measure();
    f->send(0.1);
    auto* const table = f->child<QTableView>("tableView_points");
    QTest::keyClick(f->panel.get(), Qt::Key_C);
    QTest::keyClick(f->panel.get(), Qt::Key_Space, Qt::AltModifier);
    QTest::keyClick(table, Qt::Key_Space, Qt::AltModifier);
    QTest::keyClick(table, Qt::Key_Home);
    QTest::keyClick(f->panel.get(), Qt::Key_Escape); // there is nothing to cancel
    QCOMPARE(f->words(), QString("Ready."));
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    // A key that is held down goes on being pressed: that cancels nothing.
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(f->panel.get(), &again);
    QCOMPARE(f->words(), QString("Hold the tip still."));
}

void TestPointsPanel::aButtonOnAToolCapturesThatToolsPoint() {
    f->controller.host.answer("measurementtool measurement_tip_tolerance b02", "0.8");
    f->measure();
    f->send(0.1);
    f->tools[1].buttons = 1;
    f->send(0.1);
    f->tools[1].buttons = 0;
    QVERIFY(f->waitForWords("Point captured."));
    QCOMPARE(f->cell(0, PointListModel::Tool), QString("M2"));
    QCOMPARE(f->cell(0, PointListModel::Reference), QString("MR1"));
    QCOMPARE(f->cell(0, PointListModel::X), QString("-100.000"));
    QCOMPARE(f->panel->list().point(0).tolerance, 0.8);
    QCOMPARE(f->child<QComboBox>("comboBox_tool")->currentText(), QString("M2"));
}

void TestPointsPanel::onlyTheChosenButtonCaptures() {
    auto* const choice = f->child<QComboBox>("comboBox_button");
    f->measure();
    f->send(0.1);
    const auto press = [this](unsigned buttons) {
        f->tools[0].buttons = buttons;
        f->send(0.1);
        f->tools[0].buttons = 0;
        f->send(0.05);
        return f->words() == "Hold the tip still.";
    };
    choice->setCurrentIndex(choice->findText("2"));
    QVERIFY(!press(0b101));
    QVERIFY(press(0b010));
    QVERIFY(f->waitForWords("Point captured."));
    choice->setCurrentIndex(choice->findText("none"));
    QVERIFY(!press(0b111));
}

void TestPointsPanel::aButtonThatIsHeldDownAtFirstIsNoPress() {
    f->tools[0].buttons = 1;
    f->measure();
    f->send(0.2);
    QCOMPARE(f->words(), QString("Ready."));
}

void TestPointsPanel::holdingStillCapturesEachPlaceOnce() {
    f->child<QComboBox>("comboBox_mode")->setCurrentIndex(1);
    f->measure();
    QVERIFY(f->waitForWords("Point captured. Move the tip"));
    f->send(2.0);
    QCOMPARE(f->panel->list().rowCount(), 1);
    f->tools[0].position[0] = 150.0;
    QVERIFY(f->waitForWords("Hold the tip still."));
    QVERIFY(f->waitForWords("Point captured. Move the tip"));
    QCOMPARE(f->panel->list().rowCount(), 2);
    QVERIFY(f->cell(1, PointListModel::DistanceToPrevious).startsWith("50.000 ± "));
}

// The window had something else to do: what follows now is of another place.
void TestPointsPanel::aPressThatIsTooOldIsNone() {
    f->measure();
    f->send(0.1);
    ProbeSample sample;
    sample.tracked = true;
    sample.arrival = LineTap::now() - 0.6;
    sample.buttons = 1;
    Q_EMIT f->data->samplesArrived({sample});
    QCOMPARE(f->words(), QString("Ready."));
    sample.arrival = LineTap::now();
    sample.buttons = 0;
    ProbeSample pressed = sample;
    pressed.buttons = 1;
    Q_EMIT f->data->samplesArrived({sample, pressed});
    QCOMPARE(f->words(), QString("Hold the tip still."));
}

void TestPointsPanel::byHoldingStillAKeyBeginsAnew() {
    f->child<QComboBox>("comboBox_mode")->setCurrentIndex(1);
    f->type("doubleSpinBox_duration", "5");
    f->measure();
    f->send(0.3);
    const auto* const ring = f->child<CaptureRing>("captureRing");
    const double before = ring->share();
    QVERIFY(before > 0.0);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    QVERIFY(ring->share() < before);
    QCOMPARE(f->sounds(), std::vector<Sound>{Sound::Begun});
}

void TestPointsPanel::byHoldingStillAButtonStillChoosesItsTool() {
    f->child<QComboBox>("comboBox_mode")->setCurrentIndex(1);
    f->controller.host.answer("measurementtool measurement_tip_tolerance b02", "0.8");
    f->controller.host.answer("measurementtool reference_of_tool b01", "b01"); // that of both
    f->measure();
    f->send(0.2);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    f->tools[1].buttons = 1;
    f->send(0.1);
    f->tools[1].buttons = 0;
    QVERIFY(f->waitForWords("Point captured."));
    QCOMPARE(f->child<QComboBox>("comboBox_tool")->currentText(), QString("M2"));
    QCOMPARE(f->cell(0, PointListModel::Tool), QString("M2"));
    QCOMPARE(f->cell(0, PointListModel::X), QString("-100.000"));
    QCOMPARE(f->panel->list().point(0).tolerance, 0.8);
}

void TestPointsPanel::theKeyIsWaitedForWhenThatIsChosenAgain() {
    auto* const mode = f->child<QComboBox>("comboBox_mode");
    mode->setCurrentIndex(1);
    f->measure();
    f->send(0.2);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    mode->setCurrentIndex(0);
    f->send(2.0);
    QCOMPARE(f->words(), QString("Ready."));
    QCOMPARE(f->panel->list().rowCount(), 0);
    QVERIFY(f->capture());
}

void TestPointsPanel::theReasonOfAFailureIsTold_data() {
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("words");
    QTest::addColumn<bool>("isLost");
    row("hidden", QString("hidden"), QString("Given up: the tool is hidden."), true);
    row("reference", QString("reference"), QString("Given up: the reference is lost."), true);
    row("silent", QString("silent"), QString("Given up: no data for a second."), true);
    row("other axes", QString("other axes"), QString("Given up: the tool's reference has changed."),
        false);
    row("busy", QString("busy"), QString("One at a time"), false);
    row("uncalibrated", QString("uncalibrated"), QString("Nothing captured: the tool is not"),
        false);
}

void TestPointsPanel::theReasonOfAFailureIsTold() {
    QFETCH(QString, event);
    QFETCH(QString, words);
    QFETCH(bool, isLost);
    if (event == "uncalibrated") {
        f->controller.host.answer("measurementtool tip_calibrated b02", "no");
    }
    f->measure();
    f->child<QComboBox>("comboBox_tool")->setCurrentIndex(1);
    f->send(0.1);
    if (event != "uncalibrated") {
        QTest::keyClick(f->panel.get(), Qt::Key_Space);
        QCOMPARE(f->words(), QString("Hold the tip still."));
    }
    f->send(0.1);
    const std::size_t before = f->heard.size();
    if (event == "hidden") {
        f->tools[1].quality = -1.0;
        f->send(0.1);
    } else if (event == "reference") {
        ++f->frame;
        f->controller.deliverFrame(f->frame, f->frame / 60.0, f->tools);
        f->controller.host.deliver(probelines::references({-1.0}));
        f->send(0.02);
    } else if (event == "other axes") {
        f->controller.host.answer("measurementtool reference_of_tool b02", "none");
        QSignalSpy read(f->data.get(), &ProbeData::toolsRead);
        f->data->setWanted(this, true); // another page asks anew which tools there are
        QVERIFY(read.wait(PointsFixture::patienceMs));
        f->data->setWanted(this, false);
        f->send(0.1);
    } else if (event == "busy") {
        f->tools[0].buttons = 1;
        f->send(0.02);
    } else if (event == "uncalibrated") {
        f->tools[1].buttons = 1;
        f->send(0.02);
    }
    QTRY_VERIFY2_WITH_TIMEOUT(f->words().startsWith(words), qPrintable(f->words()),
                              PointsFixture::patienceMs);
    QVERIFY(f->heard.size() > before);
    QCOMPARE(f->sounds().back(), isLost ? Sound::Lost : Sound::Failed);
    QCOMPARE(f->panel->list().rowCount(), 0);
}

void TestPointsPanel::theButtonOfAnUncalibratedToolChoosesNothing() {
    f->controller.host.answer("measurementtool tip_calibrated b02", "no");
    f->measure();
    f->send(0.1);
    QCOMPARE(f->child<QComboBox>("comboBox_tool")->currentIndex(), 0);
    f->tools[1].buttons = 1;
    f->send(0.1);
    QTRY_COMPARE_WITH_TIMEOUT(f->words(), QString("Nothing captured: the tool is not calibrated."),
                              PointsFixture::patienceMs);
    QCOMPARE(f->child<QComboBox>("comboBox_tool")->currentIndex(), 0);
    QVERIFY(f->capture());
    QCOMPARE(f->cell(0, PointListModel::X), QString("100.000"));
}

void TestPointsPanel::outOfSightTheCaptureIsGivenUp() {
    QObject other;
    f->data->setWanted(&other, true); // the data go on
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    f->send(0.1);
    QCOMPARE(f->words(), QString("Hold the tip still."));
    f->panel->hide();
    QCOMPARE(f->words(), QString("Given up: the points are out of sight."));
    const std::vector<Sound> given = {Sound::Begun, Sound::Failed};
    QCOMPARE(f->sounds(), given);
    f->send(1.0);
    QVERIFY(f->data->isReceiving());
    QCOMPARE(f->sounds(), given);
    f->panel->show();
    QCOMPARE(f->panel->list().rowCount(), 0);
    QVERIFY(f->capture());
    f->data->setWanted(&other, false);
}

void TestPointsPanel::leavingTheToleranceIsTold() {
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    f->send(0.3);
    f->tools[0].position[0] += 3.0;
    f->send(0.05);
    QCOMPARE(f->words(), QString("The tip has left the tolerance: begun anew."));
    QVERIFY(f->waitForWords("Point captured."));
    QCOMPARE(f->cell(0, PointListModel::X), QString("103.000"));
}

void TestPointsPanel::theMeasurementsEndIsTold() {
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    f->controller.host.stopMeasurement();
    QTRY_COMPARE_WITH_TIMEOUT(f->words(), QString("Given up: the measurement has ended."),
                              PointsFixture::patienceMs);
    f->measure();
    QVERIFY(f->capture());
}

void TestPointsPanel::withoutMeasurementThereIsNothingToCapture() {
    QCOMPARE(f->words(), QString("No measurement is running."));
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QCOMPARE(f->words(), QString("Nothing captured: no measurement is running."));
}

void TestPointsPanel::thePositionIsShownLarge() {
    const auto* const x = f->child<QLabel>("label_x");
    QCOMPARE(x->text(), QString("-"));
    QVERIFY(QFontInfo(x->font()).pixelSize() > 3 * QFontInfo(f->panel->font()).pixelSize() / 2);
    f->measure();
    f->send(0.1);
    QCOMPARE(x->text(), QString("100.00"));
    QCOMPARE(f->child<QLabel>("label_z")->text(), QString("300.00"));
    QTRY_COMPARE_WITH_TIMEOUT(x->text(), QString("-"), PointsFixture::patienceMs); // old
    QCOMPARE(f->words(), QString("Waiting for the tool to be seen."));
}

void TestPointsPanel::anotherPositionMovesNothing() {
    const auto* const x = f->child<QLabel>("label_x");
    f->measure();
    PaintWatch watch(*f->panel);
    double position = 100.0;
    // The words change once, and with them the page.
    const bool isStill = QTest::qWaitFor(
        [&] {
            watch.forget();
            position += 1.0;
            f->tools[0].position[0] = position;
            f->send(0.1);
            const bool hasCome = QTest::qWaitFor(
                [&] { return x->text() == QString::number(position, 'f', 2); }, 500);
            return hasCome && watch.layoutRequests == 0;
        },
        PointsFixture::patienceMs);
    QVERIFY(isStill);
    f->tools[0].position[0] = -12345678.9;
    int wide = 0;
    const bool hasRoom = QTest::qWaitFor(
        [&] {
            f->send(0.1);
            wide = x->width();
            return x->text() == QLatin1String("-12345678.90") &&
                   wide >= x->fontMetrics().horizontalAdvance(x->text());
        },
        PointsFixture::patienceMs);
    QVERIFY(hasRoom);
    QTRY_VERIFY_WITH_TIMEOUT(x->width() < wide, PointsFixture::patienceMs); // it is old then
}

void TestPointsPanel::digitsAreLargeInAFontOfPixelsToo() {
    const QFont before = QApplication::font();
    QFont pixels = before;
    pixels.setPixelSize(20);
    QApplication::setFont(pixels);
    f->makePanel();
    const int digits = QFontInfo(f->child<QLabel>("label_x")->font()).pixelSize();
    QApplication::setFont(before);
    QCOMPARE(digits, 36);
}

void TestPointsPanel::theControllerIsAskedOnceForEachTool() {
    f->measure();
    auto* const tools = f->child<QComboBox>("comboBox_tool");
    for (const int tool : {1, 0, 1}) {
        tools->setCurrentIndex(tool);
    }
    const QStringList asked = probeJournal(f->controller.host)
                                  .filter("get_double measurementtool measurement_duration b02");
    QCOMPARE(asked.size(), 1);
}

void TestPointsPanel::thePointMeasurementsValuesAreTheControllers() {
    f->controller.host.answer("measurementtool measurement_duration b02", "2.5");
    f->measure();
    QCOMPARE(f->child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), 0.5);
    QCOMPARE(f->child<QDoubleSpinBox>("doubleSpinBox_tolerance")->value(), 0.5);
    f->child<QComboBox>("comboBox_tool")->setCurrentIndex(1);
    QCOMPARE(f->child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), 2.5);
}

void TestPointsPanel::valuesThatCannotBeReadAreTheDefaults_data() {
    QTest::addColumn<QString>("reply");
    QTest::addColumn<double>("duration");
    row("refused", QString(), 1.0);
    row("no number", QString("nan"), 1.0);
    row("too long", QString("2000000000"), 10.0);
    row("negative", QString("-1"), 0.2);
}

void TestPointsPanel::valuesThatCannotBeReadAreTheDefaults() {
    QFETCH(QString, reply);
    const std::string name = "measurementtool measurement_duration b01";
    if (reply.isEmpty()) {
        f->controller.host.fail(name);
    } else {
        f->controller.host.answer(name, reply.toStdString());
    }
    f->measure();
    QTEST(f->child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), "duration");
    const std::vector<std::string> texts = f->controller.host.logTexts();
    const bool isTold =
        std::find(texts.begin(), texts.end(), "Error: Unable to get mea duration") != texts.end();
    QCOMPARE(isTold, reply.isEmpty() || reply == "nan");
}

void TestPointsPanel::editedValuesStayForTheSession() {
    f->measure();
    f->type("doubleSpinBox_duration", "0,3");
    f->type("doubleSpinBox_tolerance", "2.2");
    f->controller.host.stopMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(!f->data->isReceiving(), PointsFixture::patienceMs);
    f->measure();
    QCOMPARE(f->child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), 0.3);
    QVERIFY(f->capture());
    QCOMPARE(f->panel->list().point(0).tolerance, 2.2);
    f->child<QComboBox>("comboBox_tool")->setCurrentIndex(1);
    QCOMPARE(f->child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), 0.5); // its own
}

void TestPointsPanel::aReferenceThatNobodyToldIsUnknown() {
    f->controller.host.fail("measurementtool reference_of_tool b01");
    f->measure();
    QVERIFY(f->capture());
    QCOMPARE(f->cell(0, PointListModel::Reference), QString("unknown"));
    QVERIFY(f->capture());
    QCOMPARE(f->cell(1, PointListModel::DistanceToPrevious), QString("-"));
}

void TestPointsPanel::nothingIsWrittenToTheController() {
    f->measure();
    QVERIFY(f->capture());
    f->type("doubleSpinBox_duration", "0.3");
    QVERIFY(f->capture());
    QCOMPARE(probeJournal(f->controller.host).filter(QRegularExpression("^(set|send) ")),
             (QStringList{"set output active chmon 6dmt2 yes",
                          "set output active chmon 6dmtr yes"})); // to be sent the data at all
}

void TestPointsPanel::twoSelectedPointsHaveADistance() {
    f->measure();
    QVERIFY(f->capture());
    f->tools[0].position[1] += 30.0;
    QVERIFY(f->capture());
    f->tools[1].buttons = 1;
    f->send(0.1);
    QVERIFY(f->waitForWords("Point captured."));
    const auto* const text = f->child<QLabel>("label_distance");
    QCOMPARE(text->text(), QString("Select two points for their distance."));
    f->select({0, 1});
    QCOMPARE(text->text(), QString("P1 to P2: 30.000 ± 0.000 mm (95 %)"));
    f->type("doubleSpinBox_nominal", "29,8");
    QCOMPARE(text->text(), QString("P1 to P2: 30.000 ± 0.000 mm (95 %); error 0.200 mm: conforms"));
    f->type("doubleSpinBox_lengthTolerance", "0.1");
    QVERIFY(text->text().endsWith("does not conform"));
    f->select({1, 2});
    QCOMPARE(text->text(),
             QString("P2 to P3: no distance, they are measured from different references"));
    points::PointRecord brief = f->panel->list().point(0);
    brief.number = 4;
    brief.name = "P4";
    brief.duration = 0.1;
    f->panel->list().append({brief});
    f->select({0, 3});
    QVERIFY(text->text().contains("uncertainty unknown"));
    QVERIFY(text->text().endsWith("undecided"));
}

void TestPointsPanel::pointsAreDeletedRenamedAndBroughtBackByKeys() {
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->capture());
    auto* const table = f->child<QTableView>("tableView_points");
    QVERIFY(!f->child<QPushButton>("pushButton_delete")->isEnabled());
    QVERIFY(!f->child<QPushButton>("pushButton_undo")->isEnabled());
    table->setFocus();
    table->model()->setData(table->model()->index(1, PointListModel::Name), "edge");
    f->select({0});
    QTest::keyClick(table, Qt::Key_Delete);
    QCOMPARE(f->panel->list().rowCount(), 1);
    QCOMPARE(f->cell(0, PointListModel::Name), QString("edge"));
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(f->panel->list().rowCount(), 2);
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(f->panel->list().rowCount(), 1);
    QTest::mouseClick(f->child<QPushButton>("pushButton_undo"), Qt::LeftButton);
    QTest::mouseClick(f->child<QPushButton>("pushButton_undo"), Qt::LeftButton);
    QCOMPARE(f->cell(1, PointListModel::Name), QString("P2"));
    QVERIFY(!f->child<QPushButton>("pushButton_undo")->isEnabled());
    QTest::mouseClick(f->child<QPushButton>("pushButton_redo"), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(points::contentOfLines(f->sessionText()).points.back().name ==
                                     QString("edge") &&
                                 points::contentOfLines(f->sessionText()).points.size() == 2,
                             PointsFixture::patienceMs); // all of it is in the file
}

void TestPointsPanel::aNameIsEditedByKeys() {
    f->measure();
    QVERIFY(f->capture());
    auto* const table = f->child<QTableView>("tableView_points");
    table->setFocus();
    table->setCurrentIndex(table->model()->index(0, PointListModel::Name));
    QTest::keyClick(table, Qt::Key_F2);
    auto* const editor = table->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->text(), QString("P1"));
    QTest::keyClicks(editor, "upper edge"); // the space bar writes here
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(f->cell(0, PointListModel::Name), QString("upper edge"),
                              PointsFixture::patienceMs);
    QCOMPARE(f->panel->list().rowCount(), 1);
}

void TestPointsPanel::selectedPointsAreCopied() {
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->capture());
    QApplication::clipboard()->setText("before");
    auto* const table = f->child<QTableView>("tableView_points");
    table->setFocus();
    f->select({});
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString("before"));
    f->select({1});
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[1].startsWith("2\tP2\t100\t200\t300\t"));
}

void TestPointsPanel::pointsWithoutExportAreOfferedAndKept() {
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->capture());
    auto& list = f->panel->list();
    QVERIFY(list.setData(list.index(1, PointListModel::Name), "edge", Qt::EditRole));
    f->makePanel();
    auto* const offer = f->child<QFrame>("frame_left");
    QTRY_VERIFY_WITH_TIMEOUT(offer->isVisible(), PointsFixture::patienceMs);
    QVERIFY(f->child<QLabel>("label_left")->text().startsWith("2 "));
    f->measure();
    QVERIFY(f->capture()); // nobody has to answer first
    QTest::mouseClick(f->child<QPushButton>("pushButton_keep"), Qt::LeftButton);
    QVERIFY(!offer->isVisible());
    QCOMPARE(f->panel->list().rowCount(), 3);
    QCOMPARE(f->cell(1, PointListModel::Name), QString("P2")); // by its new number
    QCOMPARE(f->cell(2, PointListModel::Name), QString("edge"));
    QTRY_COMPARE_WITH_TIMEOUT(QDir(f->folder.path()).entryList({"*.jsonl"}).size(), 1,
                              PointsFixture::patienceMs);
    QCOMPARE(points::contentOfLines(f->sessionText()).points.size(), std::size_t(3));
}

void TestPointsPanel::pointsWithoutExportAreOfferedAndDiscarded() {
    f->measure();
    QVERIFY(f->capture());
    f->makePanel();
    QTRY_VERIFY_WITH_TIMEOUT(f->child<QFrame>("frame_left")->isVisible(),
                             PointsFixture::patienceMs);
    QTest::mouseClick(f->child<QPushButton>("pushButton_discard"), Qt::LeftButton);
    QVERIFY(!f->child<QFrame>("frame_left")->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(f->sessionText().isEmpty(), PointsFixture::patienceMs);
    QCOMPARE(f->panel->list().rowCount(), 0);
}

void TestPointsPanel::silenceCanBeChosen() {
    f->child<QCheckBox>("checkBox_sounds")->setChecked(false);
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->sounds().empty());
}

void TestPointsPanel::silenceIsRemembered() {
    const auto isOn = [this] { return f->child<QCheckBox>("checkBox_sounds")->isChecked(); };
    // The page writes it in a thread of its own, which is waited for at its end.
    QVERIFY(isOn());
    f->child<QCheckBox>("checkBox_sounds")->click();
    f->makePanel();
    QTRY_VERIFY_WITH_TIMEOUT(!isOn(), PointsFixture::patienceMs);
    f->child<QCheckBox>("checkBox_sounds")->click();
    f->makePanel();
    f->measure();
    QVERIFY(f->capture()); // after what was left has been looked for
    QVERIFY(isOn());
}

void TestPointsPanel::theDataMayGoFirst() {
    f->measure();
    QVERIFY(f->capture());
    f->data->leave();
    auto gone = std::move(f->data);
    gone.reset();
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    for (const char* const name : {"comboBox_button", "comboBox_mode", "comboBox_tool"}) {
        auto* const choice = f->child<QComboBox>(name);
        choice->setCurrentIndex(choice->currentIndex() == 0 ? 1 : 0);
    }
    f->type("doubleSpinBox_duration", "0.3");
    f->panel->hide();
    f->panel->show();
    QCOMPARE(f->panel->list().rowCount(), 1);
    f->select({0});
    QTest::mouseClick(f->child<QPushButton>("pushButton_delete"), Qt::LeftButton);
    QCOMPARE(f->panel->list().rowCount(), 0);
    f->panel.reset();
    f->data = std::make_unique<ProbeData>(nullptr, nullptr); // for the fixture's end
}

void TestPointsPanel::itsEndInEachState_data() {
    QTest::addColumn<QString>("words"); // of the state
    QTest::addColumn<bool>("dataFirst");
    for (const bool dataFirst : {false, true}) {
        const QString way = dataFirst ? "module, " : "page, ";
        row(qPrintable(way + "off"), QString("No measurement is running."), dataFirst);
        row(qPrintable(way + "waiting"), QString("Waiting for the tool to be seen."), dataFirst);
        row(qPrintable(way + "ready"), QString("Ready."), dataFirst);
        row(qPrintable(way + "holding"), QString("Hold the tip still."), dataFirst);
        row(qPrintable(way + "captured"), QString("Point captured. Move the tip to the next one."),
            dataFirst);
    }
}

// What is being written to the disk then has tests of its own.
void TestPointsPanel::itsEndInEachState() {
    QFETCH(QString, words);
    QFETCH(bool, dataFirst);
    const bool isCaptured = words.startsWith("Point captured");
    if (words != "No measurement is running.") {
        f->measure();
    }
    if (isCaptured) {
        f->child<QComboBox>("comboBox_mode")->setCurrentIndex(1);
        QVERIFY(f->waitForWords(words));
    } else if (words == "Ready." || words == "Hold the tip still.") {
        f->send(0.1);
    }
    if (words == "Hold the tip still.") {
        QTest::keyClick(f->panel.get(), Qt::Key_Space);
        f->send(0.1);
    }
    QCOMPARE(f->words(), words);
    if (dataFirst) {
        f->data->leave();
    }
    f->panel.reset();
    QVERIFY(f->controller.host.measurementRequesters().empty());
    QVERIFY(f->controller.host.requesters("6dmt2").empty());
    QCOMPARE(f->resultLines().size(), isCaptured ? 1 : 0);
    QCOMPARE(points::contentOfLines(f->sessionText()).points.size(),
             std::size_t(isCaptured ? 1 : 0));
}

QTEST_MAIN(TestPointsPanel)
#include "test_pointspanel.moc"
