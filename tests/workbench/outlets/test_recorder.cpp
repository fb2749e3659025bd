#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "tests/workbench/outlets/hangingdisk.h"
#include "workbench/outlets/recorder.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using kestrel_wire::Record;
using kestrel_wire::RecordingHeader;
using kestrel_wire::RecordingReader;
using workbench::Recorder;

namespace {

RecordingHeader header() {
    RecordingHeader result;
    result.system = "2.10.1";
    result.protocol = "1.14.0";
    result.systemCt = "1.2.3";
    result.model = "MODEL \"x\" \\";
    result.parameters = {{"measurementtool available", "yes"}, {"odd", "a\tb\n"}};
    return result;
}

constexpr int patience = 15000;
constexpr std::size_t smallQueue = 200 * 1024;
constexpr int unheldMs = 1000; // half of the time for which the disk hangs at least

} // namespace

class TestRecorder : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("r.kestrel")); }

    std::string content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }

    /// Starts, and waits for what becomes of it.
    static bool start(Recorder& recorder, const QString& path, QString* error) {
        if (!recorder.start(path, header())) {
            return false;
        }
        const bool decided = QTest::qWaitFor(
            [&recorder] {
                const Recorder::Status status = recorder.status();
                return status.begun || !status.running;
            },
            patience);
        *error = recorder.status().error;
        return decided && recorder.status().begun;
    }

    /// Of a whole recording; none when it is damaged.
    static std::vector<Record> recordsIn(const std::string& text,
                                         RecordingHeader* readHeader = nullptr) {
        std::istringstream stream(text);
        RecordingReader reader(stream);
        RecordingHeader read;
        std::vector<Record> records;
        Record record;
        RecordingReader::Result result = reader.readHeader(read);
        while (result == RecordingReader::Result::Ok &&
               (result = reader.next(record)) == RecordingReader::Result::Ok) {
            records.push_back(record);
        }
        if (readHeader != nullptr) {
            *readHeader = read;
        }
        const bool whole = reader.error().empty() && !reader.truncated();
        return whole ? records : std::vector<Record>();
    }

    static bool writtenTo(const Recorder& recorder, quint64 frames) {
        return QTest::qWaitFor([&] { return recorder.status().frames >= frames; }, patience);
    }

    static void end(Recorder& recorder) {
        recorder.stop();
        recorder.waitForEnd();
    }

private Q_SLOTS:
    void whatWasRecordedIsReadBack() {
        Recorder recorder;
        QString error;
        QVERIFY2(start(recorder, path(), &error), qPrintable(error));
        const std::string odd("6dmt \x01 \\ \xff", 10);
        recorder.frame({"fr 1", "6dmt 0"});
        recorder.frame({"fr 2", odd});
        end(recorder);
        recorder.frame({"fr 3"});

        RecordingHeader read;
        const std::vector<Record> records = recordsIn(content(), &read);
        QCOMPARE(read.model, header().model);
        QCOMPARE(read.systemCt, header().systemCt);
        QVERIFY(read.parameters == header().parameters);
        QCOMPARE(records.size(), std::size_t(4));
        QCOMPARE(records[1].line, std::string("6dmt 0"));
        QCOMPARE(records[3].line, odd);
        QCOMPARE(records[0].microseconds, records[1].microseconds);
        QVERIFY(records[2].microseconds > records[1].microseconds);
    }

    void whatCountsAsRecordedIsInTheFileEvenWhenTheProgramIsKilled() {
        const pid_t child = ::fork();
        if (child == 0) {
            Recorder recorder;
            QString error;
            start(recorder, path(), &error);
            for (int i = 0; i < 100; ++i) {
                recorder.frame({"fr " + std::to_string(i), "6dmt 0"});
            }
            while (recorder.status().frames < 100) {
            }
            ::raise(SIGKILL);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        const std::string text = content();
        QVERIFY(text.find(" fr fr 99\n") != std::string::npos);
        QVERIFY(text.size() > 7 && text.substr(text.size() - 7) == "6dmt 0\n");
    }

    void theStartIsTheWallClocks() {
        const kestrel_wire::UtcMilliseconds before = QDateTime::currentMSecsSinceEpoch();
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, path(), &error));
        const kestrel_wire::UtcMilliseconds after = QDateTime::currentMSecsSinceEpoch();
        end(recorder);
        RecordingHeader read;
        static_cast<void>(recordsIn(content(), &read));
        QVERIFY(read.start.has_value());
        QVERIFY(*read.start >= before);
        QVERIFY(*read.start <= after);
    }

    void aWallClockThatWasSetIsMarkedBeforeTheNextFrame() {
        std::atomic<kestrel_wire::UtcMilliseconds> ahead = 0;
        Recorder recorder(workbench::openRecordingFile, Recorder::usualQueue,
                          [&ahead] { return workbench::systemWallClock() + ahead; });
        QString error;
        QVERIFY(start(recorder, path(), &error));
        recorder.frame({"fr 1", "6dmt 0"});
        ahead = 3600000;
        recorder.frame({"fr 2", "6dmt 0"});
        recorder.frame({"fr 3"});
        end(recorder);

        const QStringList lines =
            QString::fromStdString(content()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.filter(QRegularExpression(QStringLiteral("^utc "))).size(), 1);
        const int mark = lines.size() - 4;
        QVERIFY(lines.at(mark).startsWith(QStringLiteral("utc ")));
        QVERIFY(lines.at(mark + 1).endsWith(QStringLiteral(" fr fr 2")));
        QCOMPARE(lines.at(mark).section(QLatin1Char(' '), 1, 1),
                 lines.at(mark + 1).section(QLatin1Char(' '), 0, 0));
        kestrel_wire::UtcMilliseconds told = 0;
        QVERIFY(kestrel_wire::parseUtc(lines.at(mark).section(QLatin1Char(' '), 2).toStdString(),
                                       told));
        QVERIFY(told >= QDateTime::currentMSecsSinceEpoch() + 3600000 - patience);
        QVERIFY(told <= QDateTime::currentMSecsSinceEpoch() + 3600000);
    }

    void theRoomOnTheDiskAndTheRateAreTold() {
        Recorder recorder;
        QString error;
        QCOMPARE(recorder.status().freeBytes, qint64(-1));
        QVERIFY(start(recorder, path(), &error));
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().freeBytes >= 0, patience);
        const QStorageInfo disk(m_folder.path());
        QVERIFY(recorder.status().freeBytes <= disk.bytesTotal());
        QVERIFY(recorder.status().freeBytes > 0);
        const std::string line(1000, 'x');
        double rate = 0.0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                recorder.frame({line});
                rate = recorder.status().bytesPerSecond;
                return rate >= 1000.0;
            },
            patience));
        // Nothing more comes: the rate of the last seconds fades away.
        QVERIFY(QTest::qWaitFor([&] { return recorder.status().bytesPerSecond < rate; }, patience));
        end(recorder);
    }

    void framesAreCounted() {
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, path(), &error));
        QVERIFY(recorder.status().running);
        recorder.frame({"fr 1"});
        recorder.frame({});
        recorder.frame({"fr 2"});
        end(recorder);
        QCOMPARE(recorder.status().frames, quint64(2));
        QCOMPARE(recorder.status().unwritten, quint64(0));
        QVERIFY(!recorder.status().running);
        QCOMPARE(recorder.status().fileName, path());
        QCOMPARE(recorder.status().error, QString());
    }

    void aFileThatCannotBeWrittenIsRefusedWithAReason() {
        Recorder recorder;
        QString error;
        QVERIFY(!start(recorder, QStringLiteral("/no/such/folder/x"), &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!recorder.status().running);
        QVERIFY(start(recorder, path(), &error));
    }

    void whileOneRecordingRunsNoOtherBegins() {
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, path(), &error));
        QVERIFY(!recorder.start(m_folder.filePath(QStringLiteral("other")), header()));
        QVERIFY(recorder.status().running);
        QCOMPARE(recorder.status().fileName, path());
    }

    void whatIsNoRegularFileIsRefusedAtOnce_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("device") << QStringLiteral("/dev/null");
        QTest::newRow("pipe without a reader") << m_folder.filePath(QStringLiteral("pipe"));
        QTest::newRow("pipe with a reader") << m_folder.filePath(QStringLiteral("read pipe"));
    }
    void whatIsNoRegularFileIsRefusedAtOnce() {
        QFETCH(QString, name);
        const QByteArray path = QFile::encodeName(name);
        int reader = -1;
        if (name.endsWith(QStringLiteral("pipe"))) {
            QCOMPARE(::mkfifo(path.constData(), S_IRUSR | S_IWUSR), 0);
        }
        if (name.endsWith(QStringLiteral("read pipe"))) {
            reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
            QVERIFY(reader >= 0);
        }
        Recorder recorder;
        QString error;
        QVERIFY(!start(recorder, name, &error));
        QCOMPARE(error, QStringLiteral("this is no regular file"));
        QVERIFY(!recorder.status().running);
        if (reader >= 0) {
            ::close(reader);
        }
    }

    void anExistingFileIsReplaced() {
        QFile old(path());
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(10000, 'x'));
        old.close();
        Recorder recorder;
        QString error;
        QVERIFY2(start(recorder, path(), &error), qPrintable(error));
        end(recorder);
        RecordingHeader read;
        QVERIFY(recordsIn(content(), &read).empty());
        QVERIFY(read.start.has_value());
        RecordingHeader expected = header();
        expected.start = read.start;
        QCOMPARE(content(), kestrel_wire::formatRecordingHeader(expected));
    }

    void aDiskThatTakesNoMoreEndsTheRecordingWithAReason() {
        Recorder recorder;
        QString error;
        QVERIFY2(start(recorder, path(), &error), qPrintable(error));
        recorder.frame({"fr 1"});
        QVERIFY(writtenTo(recorder, 1));
        const std::string before = content();
        {
            const FullDisk disk(before.size() + 5); // takes the beginning of a frame
            recorder.frame({"fr 2", "6dmt 0"});
            QTRY_VERIFY_WITH_TIMEOUT(!recorder.status().running, patience);
        }
        QVERIFY(!recorder.status().error.isEmpty());
        QCOMPARE(recorder.status().frames, quint64(1));
        QCOMPARE(recorder.status().unwritten, quint64(1));
        QCOMPARE(content(), before); // no frame is cut
    }

    void aDiskWithoutRoomForTheHeaderRefuses() {
        Recorder recorder;
        QString error;
        {
            const FullDisk disk(0);
            QVERIFY(!start(recorder, path(), &error));
        }
        QVERIFY(!error.isEmpty());
        QCOMPARE(recorder.status().frames, quint64(0));
        QVERIFY2(start(recorder, path(), &error), qPrintable(error));
    }

    void oneFileHasOneWriter() {
        Recorder first;
        Recorder second;
        QString error;
        QVERIFY(start(first, path(), &error));
        first.frame({"fr 1"});
        QVERIFY(writtenTo(first, 1));
        const std::string before = content();
        QVERIFY(!start(second, path(), &error));
        QCOMPARE(error, QStringLiteral("somebody else is recording to this file"));
        QCOMPARE(content(), before);
        end(first);
        QVERIFY2(start(second, path(), &error), qPrintable(error));
    }

    void aFileThatWasRemovedIsNoticed_data() {
        QTest::addColumn<bool>("withFrames");
        QTest::newRow("while frames come") << true;
        QTest::newRow("while none come") << false;
    }
    void aFileThatWasRemovedIsNoticed() {
        QFETCH(bool, withFrames);
        QTemporaryDir gone;
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, gone.filePath(QStringLiteral("r")), &error));
        recorder.frame({"fr 1"});
        QVERIFY(writtenTo(recorder, 1));
        QVERIFY(gone.remove());
        quint64 sent = 1;
        QTRY_VERIFY_WITH_TIMEOUT(
            (withFrames ? (recorder.frame({"fr 2"}), ++sent) : 0, !recorder.status().running),
            patience);
        QCOMPARE(recorder.status().error, QStringLiteral("the file was removed meanwhile"));
        QCOMPARE(recorder.status().frames, quint64(0)); // nobody can read them
        QVERIFY(recorder.status().unwritten >= 1);
        QVERIFY(recorder.status().unwritten <= sent);
    }

    void aFileThatWasMovedIsNoticedAndKeepsItsFrames_data() {
        QTest::addColumn<QString>("recorded");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("kept");
        const QString file = QStringLiteral("folder/r");
        row("the file", file, file, QString("folder/s"), QString("folder/s"));
        row("its folder", file, QString("folder"), QString("other"), QString("other/r"));
        row("something else is in its place", file, file, QString("folder/s"), QString("folder/s"));
        row("a link to it", QString("link"), QString("link"), QString("other"), file);
    }
    void aFileThatWasMovedIsNoticedAndKeepsItsFrames() {
        QFETCH(QString, recorded);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, kept);
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder")));
        QVERIFY(QFile::link(folder.filePath("folder/r"), folder.filePath("link")));
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, folder.filePath(recorded), &error));
        recorder.frame({"fr 1"});
        QVERIFY(writtenTo(recorder, 1));
        QVERIFY(QDir(folder.path()).rename(from, to));
        if (QTest::currentDataTag() == QByteArray("something else is in its place")) {
            QFile other(folder.filePath(recorded));
            QVERIFY(other.open(QIODevice::WriteOnly));
        }
        QTRY_VERIFY_WITH_TIMEOUT(!recorder.status().running, patience);
        QCOMPARE(recorder.status().error, QStringLiteral("the file was moved meanwhile"));
        QCOMPARE(recorder.status().frames, quint64(1));
        QCOMPARE(recorder.status().unwritten, quint64(0));
        QFile moved(folder.filePath(kept));
        QVERIFY(moved.open(QIODevice::ReadOnly));
        QVERIFY(moved.readAll().endsWith("fr 1\n"));
    }

    // However soon after the last look.
    void oneThatIsMovedBeforeTheEndIsNoticedToo() {
        const QTemporaryDir folder;
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, folder.filePath("r"), &error));
        recorder.frame({"fr 1"});
        QVERIFY(writtenTo(recorder, 1));
        QVERIFY(QDir(folder.path()).rename("r", "s"));
        end(recorder);
        QCOMPARE(recorder.status().error, QStringLiteral("the file was moved meanwhile"));
    }

    void aFileWhoseNameIsALinkIsInItsPlace() {
        const QTemporaryDir folder;
        QVERIFY(QFile::link(folder.filePath("r"), folder.filePath("link")));
        Recorder recorder;
        QString error;
        QVERIFY(start(recorder, folder.filePath("link"), &error));
        // Known only after it has been looked again.
        QTRY_VERIFY_WITH_TIMEOUT((recorder.frame({"fr 1"}), recorder.status().bytesPerSecond > 0.0),
                                 patience);
        QVERIFY(recorder.status().running);
        end(recorder);
        QCOMPARE(recorder.status().error, QString());
    }

    void aDiskThatHangsHoldsNobodyAndIsTold() {
        HangingDisk disk;
        Recorder recorder(disk.opener(), smallQueue);
        QString error;
        QVERIFY(start(recorder, path(), &error));
        const std::string line(10000, 'x');
        constexpr int frames = 100; // more than pipe and queue take together
        QElapsedTimer clock;
        clock.start();
        qint64 longest = 0;
        for (int i = 0; i < frames; ++i) {
            const qint64 before = clock.elapsed();
            recorder.frame({line});
            static_cast<void>(recorder.status());
            longest = std::max(longest, clock.elapsed() - before);
        }
        QVERIFY2(longest < unheldMs, qPrintable(QString::number(longest)));
        const Recorder::Status early = recorder.status();
        QVERIFY(early.running);
        QVERIFY(!early.stalled || clock.elapsed() > workbench::RecordingWriter::patience.count());
        QVERIFY(early.unwritten > 0);
        QVERIFY(early.frames < frames);
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().stalled, patience);
        QVERIFY(clock.elapsed() >= workbench::RecordingWriter::patience.count() - 100);

        // It comes back: nothing that was queued is lost, and what was not is counted.
        disk.read();
        QTRY_VERIFY_WITH_TIMEOUT(!recorder.status().stalled, patience);
        end(recorder);
        const Recorder::Status late = recorder.status();
        QVERIFY(!late.running);
        QCOMPARE(late.error, QString());
        QCOMPARE(late.unwritten, early.unwritten);
        QCOMPARE(late.frames + late.unwritten, quint64(frames));
        const std::vector<Record> records = recordsIn(disk.content());
        QCOMPARE(records.size(), std::size_t(late.frames));
        for (const Record& record : records) {
            QCOMPARE(record.line, line);
        }
    }

    void aRecordingThatEndsOnAHangingDiskIsGivenUp() {
        HangingDisk disk;
        Recorder recorder(disk.opener(), smallQueue);
        QString error;
        QVERIFY(start(recorder, path(), &error));
        for (int i = 0; i < 20; ++i) {
            recorder.frame({std::string(10000, 'x')});
        }
        QElapsedTimer clock;
        clock.start();
        recorder.stop();
        QVERIFY(clock.elapsed() < unheldMs);
        QVERIFY(recorder.status().running);
        recorder.waitForEnd();
        QVERIFY(clock.elapsed() < patience);
        const Recorder::Status status = recorder.status();
        QVERIFY(!status.running);
        QCOMPARE(status.error, QStringLiteral("the disk does not answer"));
        QCOMPARE(status.frames + status.unwritten, quint64(20));
        QVERIFY(status.unwritten > 0);
        QVERIFY(recorder.start(path(), header())); // another disk is not held up by this one
        disk.read();
    }

    void aDiskThatHangsWhileTheFileIsOpenedHoldsNobody() {
        std::promise<void> answer;
        std::shared_future<void> answered = answer.get_future().share();
        Recorder recorder([answered](const QString& name, QString* error) {
            answered.wait();
            return workbench::openRecordingFile(name, error);
        });
        QElapsedTimer clock;
        clock.start();
        QVERIFY(recorder.start(path(), header()));
        recorder.frame({"fr 1"});
        QVERIFY(clock.elapsed() < unheldMs);
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().stalled, patience);
        QVERIFY(!recorder.status().begun);
        answer.set_value();
        QVERIFY(writtenTo(recorder, 1)); // frames since the start are in it
        QTRY_VERIFY_WITH_TIMEOUT(!recorder.status().stalled, patience);
    }
};

QTEST_GUILESS_MAIN(TestRecorder)
#include "test_recorder.moc"
