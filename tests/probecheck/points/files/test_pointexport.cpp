#include "probecheck/points/files/pointexport.h"
#include "tests/probecheck/points/samplepoints.h"
#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using points::PointExport;

namespace {

constexpr int patienceMs = 30000;
constexpr int many = 200000;

} // namespace

class TestPointExport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void theFileIsThatOfThePoints();
    void withoutPointsItIsTheHeaderAlone();
    void aFullDiskIsToldOfAShortFileToo();
    void aCancelledOneLeavesWhatWasThere_data() { whatWasThere(); }
    void aCancelledOneLeavesWhatWasThere();
    void aDeletedOneLeavesWhatWasThere_data() { whatWasThere(); }
    void aDeletedOneLeavesWhatWasThere();
    void aFullDiskIsAReason_data() { whatWasThere(); }
    void aFullDiskIsAReason();
    void whatCannotBeWrittenHasAReason_data();
    void whatCannotBeWrittenHasAReason();

private:
    QString table() const { return m_folder->filePath(QStringLiteral("t.csv")); }
    QByteArray content() const {
        QFile file(table());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    // Temporary ones, too.
    QStringList files() const {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    }
    static void whatWasThere() {
        QTest::addColumn<bool>("before");
        row("nothing", false);
        row("another file", true);
    }
    void putWhatWasThere() const;
    void verifyWhatWasThere() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPointExport::putWhatWasThere() const {
    QFETCH(bool, before);
    QFile file(table());
    QVERIFY(!before || (file.open(QIODevice::WriteOnly) && file.write("old") == 3));
}

void TestPointExport::verifyWhatWasThere() const {
    QFETCH(bool, before);
    QTRY_COMPARE_WITH_TIMEOUT(files(), before ? QStringList{"t.csv"} : QStringList(), patienceMs);
    QCOMPARE(content(), before ? QByteArray("old") : QByteArray("none"));
}

void TestPointExport::theFileIsThatOfThePoints() {
    PointExport job(samplePoints(5000), table());
    QCOMPARE(job.count(), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patienceMs);
    QVERIFY(job.ending() == PointExport::Ending::Written);
    QCOMPARE(job.progress(), 1.0);
    QCOMPARE(job.reason(), QString());
    QCOMPARE(content(), csvOf(samplePoints(5000)));
    QCOMPARE(files(), QStringList{"t.csv"});
}

void TestPointExport::withoutPointsItIsTheHeaderAlone() {
    PointExport job({}, table());
    QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patienceMs);
    QVERIFY(job.ending() == PointExport::Ending::Written);
    QCOMPARE(job.progress(), 0.0); // of nothing
    QVERIFY(content().startsWith("number,name,x_mm,"));
    QCOMPARE(content().count('\n'), 1);
}

// So short that it is written with the last step only.
void TestPointExport::aFullDiskIsToldOfAShortFileToo() {
    bool isOver = false;
    std::unique_ptr<PointExport> job;
    {
        const FullDisk disk(16);
        job = std::make_unique<PointExport>(samplePoints(3), table());
        isOver = QTest::qWaitFor([&] { return job->isOver(); }, patienceMs);
    }
    QVERIFY(isOver);
    QVERIFY(job->ending() == PointExport::Ending::Failed);
    QVERIFY(!job->reason().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(files(), QStringList(), patienceMs);
}

void TestPointExport::aCancelledOneLeavesWhatWasThere() {
    putWhatWasThere();
    PointExport job(samplePoints(many), table());
    job.cancel();
    QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patienceMs);
    QVERIFY(job.ending() == PointExport::Ending::Cancelled);
    QVERIFY(job.progress() < 1.0);
    verifyWhatWasThere();
}

void TestPointExport::aDeletedOneLeavesWhatWasThere() {
    putWhatWasThere();
    { const PointExport job(samplePoints(many), table()); }
    verifyWhatWasThere();
}

void TestPointExport::aFullDiskIsAReason() {
    putWhatWasThere();
    bool isOver = false;
    std::unique_ptr<PointExport> job;
    {
        const FullDisk disk(100000);
        job = std::make_unique<PointExport>(samplePoints(20000), table());
        isOver = QTest::qWaitFor([&] { return job->isOver(); }, patienceMs);
    }
    QVERIFY(isOver);
    QVERIFY(job->ending() == PointExport::Ending::Failed);
    QVERIFY(!job->reason().isEmpty());
    verifyWhatWasThere();
}

void TestPointExport::whatCannotBeWrittenHasAReason_data() {
    QTest::addColumn<QString>("name");
    row("no such folder", QString("nowhere/t.csv"));
    row("a folder", QString("."));
}

void TestPointExport::whatCannotBeWrittenHasAReason() {
    QFETCH(QString, name);
    PointExport job(samplePoints(3), m_folder->filePath(name));
    QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patienceMs);
    QVERIFY(job.ending() == PointExport::Ending::Failed);
    QVERIFY(!job.reason().isEmpty());
    QCOMPARE(job.progress(), 0.0);
    QCOMPARE(files(), QStringList());
}

QTEST_GUILESS_MAIN(TestPointExport)
#include "test_pointexport.moc"
