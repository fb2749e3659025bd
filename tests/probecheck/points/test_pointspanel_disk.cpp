#include "pointsfixture.h"
#include "samplepoints.h"
#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"

#include <QElapsedTimer>
#include <QFileDialog>
#include <QProgressBar>

#include <sys/resource.h>

using points::Sound;

namespace {

#ifdef KESTREL_SLOW_BUILD
constexpr int many = 20000;
#else
constexpr int many = 100000;
#endif
constexpr int exportPatienceMs = 60000; // of so many
/// What a loaded machine may add to a time that is waited for.
constexpr int slackMs = 10000;

} // namespace

/// What becomes of the points: exported, on a full disk, on one that hangs, at the page's end.
class TestPointsPanelDisk : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { f = std::make_unique<PointsFixture>(); }
    void cleanup() { f.reset(); }

    void allPointsAreExported();
    void aFailedExportIsTold_data();
    void aFailedExportIsTold();
    void manyPointsAreExportedWhileTheWindowLives();
    void anExportIsCancelled_data();
    void anExportIsCancelled();
    void oneExportAtATime();
    void whatChangesDuringAnExportIsNotExported();
    void aPageThatEndsCancelsItsExport();
    void aFullDiskIsTold();
    void aHangingDiskHoldsTheEndUpForALittleOnly_data();
    void aHangingDiskHoldsTheEndUpForALittleOnly();
    void aPointOnItsWayIsSaidWhenThePageIsShownAgain();
    void anEarlierChangeOnTheDiskIsNotThePoint();
    void aPointOnItsWayAtTheEndIsAResult();
    void anEndWithNothingOnItsWaySaysNothing();

private:
    void exportTo(const QString& path) const;
    bool exportAndWait(const QString& path, const QString& words) const;
    QString diskWords() const { return f->child<QLabel>("label_disk")->text(); }
    QStringList tables() const {
        return QDir(f->folder.path()).entryList({"*.csv*"}, QDir::Files | QDir::Hidden);
    }
    QStringList errors() const;

    std::unique_ptr<PointsFixture> f;
};

void TestPointsPanelDisk::exportTo(const QString& path) const {
    QTest::mouseClick(f->child<QPushButton>("pushButton_export"), Qt::LeftButton);
    auto* const dialog = f->panel->findChild<QFileDialog*>();
    QVERIFY(dialog != nullptr);
    dialog->hide();
    Q_EMIT dialog->fileSelected(path);
    dialog->close();
}

bool TestPointsPanelDisk::exportAndWait(const QString& path, const QString& words) const {
    exportTo(path);
    return QTest::qWaitFor([&] { return diskWords().startsWith(words); }, exportPatienceMs);
}

QStringList TestPointsPanelDisk::errors() const {
    QStringList found;
    for (const std::string& text : f->controller.host.logTexts()) {
        if (text.rfind("Error: ", 0) == 0) {
            found << QString::fromStdString(text);
        }
    }
    return found;
}

void TestPointsPanelDisk::allPointsAreExported() {
    QVERIFY(!f->child<QPushButton>("pushButton_export")->isEnabled());
    f->measure();
    QVERIFY(f->capture());
    const QString path = f->folder.filePath("wanted.csv");
    QVERIFY(exportAndWait(path, "1 point(s) exported to " + path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("\r\n1,P1,100,200,300,"));
    QVERIFY(!f->child<QWidget>("exportBar")->isVisible());
    f->makePanel(); // what was exported is not offered again
    QVERIFY(f->sessionText().isEmpty());
}

void TestPointsPanelDisk::aFailedExportIsTold_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFull");
    row("no such folder", QString("nowhere/wanted.csv"), false);
    row("full", QString("wanted.csv"), true);
}

void TestPointsPanelDisk::aFailedExportIsTold() {
    QFETCH(QString, name);
    QFETCH(bool, isFull);
    f->measure();
    QVERIFY(f->capture());
    f->panel->list().append(samplePoints(5000, 2));
    const QString path = f->folder.filePath(name);
    {
        const FullDisk disk(isFull ? 100000 : RLIM_INFINITY);
        exportTo(path);
        QTRY_VERIFY_WITH_TIMEOUT(diskWords().startsWith("Nothing exported: " + path + ": "),
                                 exportPatienceMs);
    }
    QVERIFY(f->child<QLabel>("label_disk")->isVisible());
    QVERIFY(diskWords().size() > path.size() + 20); // with a reason
    QCOMPARE(tables(), QStringList());
    f->makePanel();
    QVERIFY(!f->sessionText().isEmpty());
}

void TestPointsPanelDisk::manyPointsAreExportedWhileTheWindowLives() {
    f->panel->list().append(samplePoints(many));
    int turns = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&turns] { ++turns; });
    timer.start(0);
    const QString path = f->folder.filePath("many.csv");
    exportTo(path);
    const auto* const bar = f->child<QWidget>("exportBar");
    QVERIFY(bar->isVisible());
    QVERIFY(!QFileInfo::exists(path)); // not written inside the call
    QVERIFY(!f->child<QPushButton>("pushButton_export")->isEnabled());
    QVERIFY(f->child<QPushButton>("pushButton_cancelExport")->isEnabled());
    QCOMPARE(f->child<QLabel>("label_export")->text(), QString("Exporting to many.csv"));
    turns = 0;
    QTRY_VERIFY_WITH_TIMEOUT(!bar->isVisible(), exportPatienceMs);
    QVERIFY2(turns > 10, qPrintable(QString::number(turns)));
    QCOMPARE(diskWords(), QString::number(many) + " point(s) exported to " + path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), many + 1);
    QVERIFY(f->child<QPushButton>("pushButton_export")->isEnabled());
}

void TestPointsPanelDisk::anExportIsCancelled_data() {
    QTest::addColumn<bool>("byKey");
    row("mouse", false);
    row("key", true);
}

void TestPointsPanelDisk::anExportIsCancelled() {
    QFETCH(bool, byKey);
    f->panel->list().append(samplePoints(2 * many));
    exportTo(f->folder.filePath("wanted.csv"));
    auto* const cancel = f->child<QPushButton>("pushButton_cancelExport");
    if (byKey) {
        cancel->setFocus();
        QTest::keyClick(cancel, Qt::Key_Space);
    } else {
        QTest::mouseClick(cancel, Qt::LeftButton);
    }
    QVERIFY(!cancel->isEnabled());
    QCOMPARE(f->child<QLabel>("label_export")->text(), QString("Cancelling the export..."));
    QTRY_COMPARE_WITH_TIMEOUT(diskWords(), QString("Nothing exported: cancelled"),
                              exportPatienceMs);
    QVERIFY(!f->child<QWidget>("exportBar")->isVisible());
    QCOMPARE(tables(), QStringList());
    QVERIFY(exportAndWait(f->folder.filePath("again.csv"),
                          QString::number(2 * many) + " point(s) exported to "));
    QCOMPARE(tables(), QStringList{"again.csv"});
}

void TestPointsPanelDisk::oneExportAtATime() {
    f->panel->list().append(samplePoints(many));
    QTest::mouseClick(f->child<QPushButton>("pushButton_export"), Qt::LeftButton);
    auto* const dialog = f->panel->findChild<QFileDialog*>();
    QVERIFY(dialog != nullptr);
    Q_EMIT dialog->fileSelected(f->folder.filePath("first.csv"));
    Q_EMIT dialog->fileSelected(f->folder.filePath("second.csv"));
    dialog->close();
    QTRY_VERIFY_WITH_TIMEOUT(diskWords().endsWith("first.csv"), exportPatienceMs);
    QCOMPARE(tables(), QStringList{"first.csv"});
}

void TestPointsPanelDisk::whatChangesDuringAnExportIsNotExported() {
    f->measure();
    QVERIFY(f->capture());
    f->panel->list().append(samplePoints(many, 2));
    exportTo(f->folder.filePath("wanted.csv"));
    auto& list = f->panel->list();
    QVERIFY(list.setData(list.index(0, points::PointListModel::Name), "edge", Qt::EditRole));
    QTRY_VERIFY_WITH_TIMEOUT(diskWords().contains("exported to"), exportPatienceMs);
    f->makePanel();
    QVERIFY(f->sessionText().contains("edge")); // is offered: its file does not have the name
}

void TestPointsPanelDisk::aPageThatEndsCancelsItsExport() {
    f->measure();
    QVERIFY(f->capture());
    f->panel->list().append(samplePoints(2 * many, 2));
    const QString path = f->folder.filePath("wanted.csv");
    exportTo(path);
    QElapsedTimer end;
    end.start();
    f->panel.reset();
    QVERIFY(end.elapsed() < PointsPanel::longestEndMs + slackMs);
    QTRY_COMPARE_WITH_TIMEOUT(tables(), QStringList(), exportPatienceMs);
    QCOMPARE(errors(), QStringList("Error: The export to " + path +
                                   " was not finished, nothing of it is kept."));
    QVERIFY(!f->sessionText().isEmpty());
}

void TestPointsPanelDisk::aFullDiskIsTold() {
    f->measure();
    f->send(0.1);
    bool isTold = false;
    bool isSaid = false;
    int rows = 0;
    const auto* const disk = f->child<QLabel>("label_disk");
    {
        const FullDisk full(16);
        QTest::keyClick(f->panel.get(), Qt::Key_Space);
        isTold = f->waitForWords("Point captured, but it is not on the disk yet.");
        isSaid = disk->isVisible();
        rows = f->panel->list().rowCount();
    }
    QVERIFY(isTold);
    QVERIFY(isSaid);
    QCOMPARE(f->sounds(), (std::vector<Sound>{Sound::Begun, Sound::Failed}));
    QVERIFY(disk->text().startsWith("The points cannot be written to the disk: "));
    QCOMPARE(rows, 1);
    QCOMPARE(f->resultLines().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(!disk->isVisible(), exportPatienceMs); // written by itself
    QCOMPARE(f->child<QLabel>("label_state")->text(), QStringLiteral("Point captured."));
    QCOMPARE(points::contentOfLines(f->sessionText()).points.size(), std::size_t(1));
    QCOMPARE(f->resultLines().size(), 1);
    QCOMPARE(f->heard.size(), std::size_t(2)); // not told once more
}

void TestPointsPanelDisk::aHangingDiskHoldsTheEndUpForALittleOnly_data() {
    QTest::addColumn<bool>("dataFirst");
    row("the page ends", false);
    row("the module leaves first", true);
}

void TestPointsPanelDisk::aHangingDiskHoldsTheEndUpForALittleOnly() {
    QFETCH(bool, dataFirst);
    HangingSync disk;
    f->sync = disk.sync();
    f->makePanel();
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QVERIFY(f->waitForWords("Captured, being written to the disk."));
    QCOMPARE(f->resultLines().size(), 0);
    QElapsedTimer end;
    end.start();
    if (dataFirst) {
        f->data->leave();
    }
    f->panel.reset();
    QVERIFY2(end.elapsed() < PointsPanel::longestEndMs + slackMs,
             qPrintable(QString::number(end.elapsed())));
    // Nothing is lost silently: the point is a result, and where it is missing is said.
    QCOMPARE(f->resultLines().size(), 1);
    QVERIFY(f->resultLines().constFirst().contains("\"x_mm\":100"));
    QCOMPARE(errors(), QStringList("Error: 1 change(s) of the points are not on the disk: the disk "
                                   "does not answer. Each captured point is in this log."));
    disk.answer();
    f->sync = points::SessionFile::systemSync();
    f->data = std::make_unique<ProbeData>(&f->controller.host, &f->controller.versions);
    QTRY_COMPARE_WITH_TIMEOUT(points::contentOfLines(f->sessionText()).points.size(),
                              std::size_t(1), exportPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        [this] {
            f->makePanel(); // the next start offers it, as soon as the disk has let go of it
            return QTest::qWaitFor([this] { return f->child<QFrame>("frame_left")->isVisible(); },
                                   exportPatienceMs / 20);
        }(),
        exportPatienceMs);
}

void TestPointsPanelDisk::aPointOnItsWayIsSaidWhenThePageIsShownAgain() {
    HangingSync disk;
    f->sync = disk.sync();
    f->makePanel();
    QObject other;
    f->data->setWanted(&other, true); // the data go on
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QVERIFY(f->waitForWords("Captured, being written to the disk."));
    f->panel->hide();
    f->panel->show();
    QCOMPARE(f->words(), QString("Captured, being written to the disk."));
    disk.answer();
    QVERIFY(f->waitForWords("Point captured."));
    f->data->setWanted(&other, false);
}

void TestPointsPanelDisk::anEarlierChangeOnTheDiskIsNotThePoint() {
    HangingSync disk;
    f->sync = disk.sync();
    f->makePanel();
    auto& list = f->panel->list();
    list.append(samplePoints(1));
    f->measure();
    f->send(0.1);
    QVERIFY(list.setData(list.index(0, points::PointListModel::Name), "edge", Qt::EditRole));
    QTRY_VERIFY_WITH_TIMEOUT(!f->sessionText().isEmpty(), PointsFixture::patienceMs); // on its way
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QVERIFY(f->waitForWords("Captured, being written to the disk."));
    disk.answer();
    QVERIFY(f->waitForWords("Point captured."));
    QCOMPARE(f->sounds(), (std::vector<Sound>{Sound::Begun, Sound::Captured}));
    QVERIFY(f->heard.back().session.contains("\"number\":2")); // the point itself is there
}

void TestPointsPanelDisk::aPointOnItsWayAtTheEndIsAResult() {
    HangingSync disk;
    f->sync = disk.sync();
    f->makePanel();
    f->measure();
    f->send(0.1);
    QTest::keyClick(f->panel.get(), Qt::Key_Space);
    QVERIFY(f->waitForWords("Captured, being written to the disk."));
    disk.answer(); // no turn of the event loop hears of it
    f->panel.reset();
    QCOMPARE(f->resultLines().size(), 1);
    QCOMPARE(errors(), QStringList());
    QCOMPARE(points::contentOfLines(f->sessionText()).points.size(), std::size_t(1));
}

void TestPointsPanelDisk::anEndWithNothingOnItsWaySaysNothing() {
    f->measure();
    QVERIFY(f->capture());
    const std::size_t lines = f->controller.host.logTexts().size();
    f->panel.reset();
    QCOMPARE(f->controller.host.logTexts().size(), lines);
    QVERIFY(!f->sessionText().isEmpty());
}

QTEST_MAIN(TestPointsPanelDisk)
#include "test_pointspanel_disk.moc"
