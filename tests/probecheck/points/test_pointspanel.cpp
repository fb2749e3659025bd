#include "pointsfixture.h"
#include "tests/support/datarows.h"

#include <QClipboard>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <limits>
#include <sys/resource.h>

using points::PointListModel;

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
    void aButtonOnAToolCapturesThatToolsPoint();
    void onlyTheChosenButtonCaptures();
    void aButtonThatIsHeldDownAtFirstIsNoPress();
    void holdingStillCapturesEachPlaceOnce();
    void theReasonOfAFailureIsTold_data();
    void theReasonOfAFailureIsTold();
    void leavingTheToleranceIsTold();
    void theMeasurementsEndIsTold();
    void withoutMeasurementThereIsNothingToCapture();
    void thePositionIsShownLarge();
    void thePointMeasurementsValuesAreTheControllers();
    void valuesThatCannotBeReadAreTheDefaults_data();
    void valuesThatCannotBeReadAreTheDefaults();
    void editedValuesStayForTheSession();
    void aReferenceThatNobodyToldIsUnknown();
    void nothingIsWrittenToTheController();
    void twoSelectedPointsHaveADistance();
    void pointsAreDeletedRenamedAndBroughtBackByKeys();
    void selectedPointsAreCopied();
    void allPointsAreExported();
    void aFailedExportIsTold();
    void pointsWithoutExportAreOfferedAndKept();
    void pointsWithoutExportAreOfferedAndDiscarded();
    void aFullDiskIsTold();
    void silenceCanBeChosen();
    void theDataMayGoFirst();

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
    QCOMPARE(f->bells, 2); // begun and captured
    const std::vector<points::PointRecord> kept = points::pointsOfLines(f->sessionAtBell);
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

void TestPointsPanel::theReasonOfAFailureIsTold_data() {
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("words");
    row("hidden", QString("hidden"), QString("Given up: the tool is hidden."));
    row("reference", QString("reference"), QString("Given up: the reference is lost."));
    row("silent", QString("silent"), QString("Given up: no data for a second."));
    row("busy", QString("busy"), QString("One at a time"));
    row("uncalibrated", QString("uncalibrated"), QString("Nothing captured: the tool is not"));
}

void TestPointsPanel::theReasonOfAFailureIsTold() {
    QFETCH(QString, event);
    QFETCH(QString, words);
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
    const int bells = f->bells;
    if (event == "hidden") {
        f->tools[1].quality = -1.0;
        f->send(0.1);
    } else if (event == "reference") {
        ++f->frame;
        f->controller.deliverFrame(f->frame, f->frame / 60.0, f->tools);
        f->controller.host.deliver(probelines::references({-1.0}));
        f->send(0.02);
    } else if (event == "busy") {
        f->tools[0].buttons = 1;
        f->send(0.02);
    } else if (event == "uncalibrated") {
        f->tools[1].buttons = 1;
        f->send(0.02);
    }
    QTRY_VERIFY2_WITH_TIMEOUT(f->words().startsWith(words), qPrintable(f->words()),
                              PointsFixture::patienceMs);
    QVERIFY(f->bells > bells);
    QCOMPARE(f->panel->list().rowCount(), 0);
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
    QTRY_VERIFY_WITH_TIMEOUT(points::pointsOfLines(f->sessionText()).back().name ==
                                     QString("edge") &&
                                 points::pointsOfLines(f->sessionText()).size() == 2,
                             PointsFixture::patienceMs); // all of it is in the file
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

void TestPointsPanel::allPointsAreExported() {
    QVERIFY(!f->child<QPushButton>("pushButton_export")->isEnabled());
    f->measure();
    QVERIFY(f->capture());
    QTest::mouseClick(f->child<QPushButton>("pushButton_export"), Qt::LeftButton);
    auto* const dialog = f->panel->findChild<QFileDialog*>();
    QVERIFY(dialog != nullptr);
    const QString path = f->folder.filePath("wanted.csv");
    Q_EMIT dialog->fileSelected(path);
    dialog->close();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("\r\n1,P1,100,200,300,"));
    QVERIFY(f->child<QLabel>("label_disk")->text().contains(path));
    f->makePanel(); // what was exported is not offered again
    QVERIFY(f->sessionText().isEmpty());
}

void TestPointsPanel::aFailedExportIsTold() {
    f->measure();
    QVERIFY(f->capture());
    QTest::mouseClick(f->child<QPushButton>("pushButton_export"), Qt::LeftButton);
    auto* const dialog = f->panel->findChild<QFileDialog*>();
    QVERIFY(dialog != nullptr);
    Q_EMIT dialog->fileSelected(f->folder.filePath("nowhere/wanted.csv"));
    dialog->close();
    QVERIFY(f->child<QLabel>("label_disk")->isVisible());
    QVERIFY(f->child<QLabel>("label_disk")->text().startsWith("Nothing exported: "));
    f->makePanel();
    QVERIFY(!f->sessionText().isEmpty());
}

void TestPointsPanel::pointsWithoutExportAreOfferedAndKept() {
    f->measure();
    QVERIFY(f->capture());
    QVERIFY(f->capture());
    f->makePanel();
    auto* const offer = f->child<QFrame>("frame_left");
    QTRY_VERIFY_WITH_TIMEOUT(offer->isVisible(), PointsFixture::patienceMs);
    QVERIFY(f->child<QLabel>("label_left")->text().startsWith("2 "));
    f->measure();
    QVERIFY(f->capture()); // nobody has to answer first
    QTest::mouseClick(f->child<QPushButton>("pushButton_keep"), Qt::LeftButton);
    QVERIFY(!offer->isVisible());
    QCOMPARE(f->panel->list().rowCount(), 3);
    QCOMPARE(f->cell(2, PointListModel::Name), QString("P3"));
    QTRY_COMPARE_WITH_TIMEOUT(QDir(f->folder.path()).entryList({"*.jsonl"}).size(), 1,
                              PointsFixture::patienceMs);
    QCOMPARE(points::pointsOfLines(f->sessionText()).size(), std::size_t(3));
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

void TestPointsPanel::aFullDiskIsTold() {
    f->measure();
    f->send(0.1);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit full = before;
    full.rlim_cur = 16;
    setrlimit(RLIMIT_FSIZE, &full);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    const bool isTold = f->waitForWords("Point captured, but it is not on the disk yet.");
    const auto* const disk = f->child<QLabel>("label_disk");
    const bool isSaid = disk->isVisible();
    const int rows = f->panel->list().rowCount();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QVERIFY(isTold);
    QVERIFY(isSaid);
    QVERIFY(disk->text().startsWith("The points cannot be written to the disk: "));
    QCOMPARE(rows, 1);
    QCOMPARE(f->resultLines().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(!disk->isVisible(), PointsFixture::patienceMs); // written by itself
    QCOMPARE(points::pointsOfLines(f->sessionText()).size(), std::size_t(1));
    QCOMPARE(f->resultLines().size(), 1);
}

void TestPointsPanel::silenceCanBeChosen() {
    f->child<QCheckBox>("checkBox_sounds")->setChecked(false);
    f->measure();
    QVERIFY(f->capture());
    QCOMPARE(f->bells, 0);
}

void TestPointsPanel::theDataMayGoFirst() {
    f->measure();
    QVERIFY(f->capture());
    f->data->leave();
    auto gone = std::move(f->data);
    gone.reset();
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    f->panel->hide();
    f->panel->show();
    QCOMPARE(f->panel->list().rowCount(), 1);
    f->panel.reset();
    f->data = std::make_unique<ProbeData>(nullptr, nullptr); // for the fixture's end
}

QTEST_MAIN(TestPointsPanel)
#include "test_pointspanel.moc"
