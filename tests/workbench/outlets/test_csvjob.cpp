#include "tests/support/fulldisk.h"
#include "workbench/outlets/csvjob.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using kestrel_recording::Outcome;
using workbench::CsvJob;

namespace {

constexpr int patience = 30000;
constexpr const char* tool =
    "6dmt2 1 1 [0 1.000 4 0.750][1 2 3][1 0 0 0 1 0 0 0 1][0][0 0 0 0 0 0]";

} // namespace

class TestCsvJob : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString recording() const { return m_folder.filePath(QStringLiteral("r.kestrel")); }
    QString table() const { return m_folder.filePath(QStringLiteral("t.csv")); }
    QByteArray content() const {
        QFile file(table());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(int frames, const std::string& rest = {}) const {
        kestrel_wire::RecordingHeader header = {"1", "2", "3", "m", {}};
        header.start = 0;
        std::string text = kestrel_wire::formatRecordingHeader(header);
        for (int i = 1; i <= frames; ++i) {
            text += kestrel_wire::formatRecord(static_cast<std::uint64_t>(i), tool);
        }
        text += rest;
        QFile file(recording());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text.data(), static_cast<qint64>(text.size())), qint64(text.size()));
    }

    // Files besides the recording, temporary ones too.
    QStringList others() const {
        QStringList names = QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden);
        names.removeAll(QStringLiteral("r.kestrel"));
        return names;
    }

    static bool begins(const CsvJob& job) {
        return QTest::qWaitFor([&] { return job.progress() > 0.0; }, patience);
    }

    bool isCancelledInTime(bool withTableBefore) const {
        QFile::remove(table());
        QFile old(table());
        if (withTableBefore && (!old.open(QIODevice::WriteOnly) || old.write("old") != 3)) {
            return false;
        }
        old.close();
        CsvJob job(recording(), table());
        const bool isBegun = begins(job) && job.progress() <= 1.0;
        job.cancel();
        return isBegun && QTest::qWaitFor([&] { return job.isOver(); }, patience) &&
               job.isCancelled() && job.result().report.outcome.ending == Outcome::Ending::Stopped;
    }

private Q_SLOTS:
    void cleanup() { QFile::remove(table()); }

    void theTableIsThatOfTheRecording() {
        write(3);
        CsvJob job(recording(), table());
        QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patience);
        QCOMPARE(job.result().error, QString());
        QVERIFY(job.result().report.outcome.ending == Outcome::Ending::Whole);
        QCOMPARE(job.result().report.rows, std::uint64_t(3));
        QCOMPARE(content().count('\n'), 4);
        QVERIFY(content().startsWith("seconds_s,utc,frame,tool,"));
        QVERIFY(content().contains("\n0.000003,1970-01-01T00:00:00.000Z,,M1,1,1,2,3,"));
    }

    void aCancelledJobLeavesNothing_data() {
        QTest::addColumn<bool>("before");
        QTest::newRow("no table before") << false;
        QTest::newRow("another table before") << true;
    }
    // A job may be over before anybody can stop it: then another one is.
    void aCancelledJobLeavesNothing() {
        QFETCH(bool, before);
        write(400000);
        QVERIFY(QTest::qWaitFor([&] { return isCancelledInTime(before); }, patience));
        QCOMPARE(content(), before ? QByteArray("old") : QByteArray());
        QCOMPARE(others(), before ? QStringList{QStringLiteral("t.csv")} : QStringList());
    }

    void aJobThatIsDeletedLeavesNothing() {
        write(400000);
        QVERIFY(QTest::qWaitFor(
            [&] {
                QFile::remove(table());
                {
                    const CsvJob job(recording(), table());
                    begins(job);
                }
                return QTest::qWaitFor([&] { return others().isEmpty(); }, 1000);
            },
            patience));
    }

    void aDamagedRecordingHasATableOfWhatIsBeforeTheFault() {
        write(3, "hello\n");
        CsvJob job(recording(), table());
        QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patience);
        QVERIFY(job.result().report.outcome.ending == Outcome::Ending::Malformed);
        QCOMPARE(job.result().report.outcome.line, std::size_t(11));
        QCOMPARE(content().count('\n'), 4);
    }

    void whatIsNoRecordingHasNoTable_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("garbage") << m_folder.filePath(QStringLiteral("garbage"));
        QTest::newRow("empty") << m_folder.filePath(QStringLiteral("empty"));
        QTest::newRow("missing") << m_folder.filePath(QStringLiteral("missing"));
        QTest::newRow("folder") << m_folder.path();
        QTest::newRow("pipe") << m_folder.filePath(QStringLiteral("pipe"));
        QTest::newRow("device") << QStringLiteral("/dev/zero"); // never to be written or removed
    }
    void whatIsNoRecordingHasNoTable() {
        QFETCH(QString, name);
        QTemporaryDir output;
        if (name.endsWith(QStringLiteral("pipe"))) {
            QCOMPARE(::mkfifo(QFile::encodeName(name).constData(), S_IRUSR | S_IWUSR), 0);
        } else if (!name.endsWith(QStringLiteral("missing")) && !QFileInfo::exists(name)) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(name.endsWith(QStringLiteral("garbage")) ? "\xff\0\n\x80\n" : "");
        }
        CsvJob job(name, output.filePath(QStringLiteral("t.csv")));
        QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patience);
        QVERIFY(!job.result().error.isEmpty() ||
                job.result().report.outcome.ending == Outcome::Ending::Malformed);
        QCOMPARE(QDir(output.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        if (QFileInfo(name).path() == m_folder.path()) {
            QFile::remove(name);
        }
    }

    void aTableThatCannotBeWrittenIsToldWithAReason() {
        write(3);
        CsvJob job(recording(), QStringLiteral("/no/such/folder/t.csv"));
        QTRY_VERIFY_WITH_TIMEOUT(job.isOver(), patience);
        QVERIFY(job.result().report.outcome.ending == Outcome::Ending::NotWritten);
        QVERIFY(!job.result().error.isEmpty());
    }

    void aDiskThatIsFullLeavesNothing_data() {
        QTest::addColumn<int>("frames");
        QTest::addColumn<int>("room");
        QTest::newRow("many frames") << 20000 << 100000;
        QTest::newRow("few, written with the last step only") << 3 << 16;
    }
    void aDiskThatIsFullLeavesNothing() {
        QFETCH(int, frames);
        QFETCH(int, room);
        write(frames);
        const FullDisk disk(static_cast<rlim_t>(room));
        CsvJob job(recording(), table());
        const bool over = QTest::qWaitFor([&] { return job.isOver(); }, patience);
        QVERIFY(over);
        QVERIFY(job.result().report.outcome.ending == Outcome::Ending::NotWritten);
        QVERIFY(!job.result().error.isEmpty());
        QCOMPARE(others(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestCsvJob)
#include "test_csvjob.moc"
