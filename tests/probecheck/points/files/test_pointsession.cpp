#include "probecheck/points/files/pointsession.h"
#include "tests/probecheck/points/samplepoints.h"
#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

Q_DECLARE_METATYPE(std::vector<points::PointRecord>)

using points::PointRecord;
using points::PointSession;

namespace {

constexpr int patienceMs = 20000;

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files);
}

QByteArray contentOf(const QString& folder) {
    QByteArray all;
    const QStringList names = filesIn(folder);
    for (const QString& name : names) {
        QFile file(QDir(folder).filePath(name));
        all += file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    return all;
}

void putFile(const QString& folder, const QString& name, const QByteArray& content) {
    QFile file(QDir(folder).filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

std::vector<int> numbersOf(const std::vector<PointRecord>& points) {
    std::vector<int> numbers;
    for (const PointRecord& point : points) {
        numbers.push_back(point.number);
    }
    return numbers;
}

bool waitUntilOnDisk(const PointSession& session) {
    return QTest::qWaitFor([&] { return session.stepsOnDisk() == session.steps(); }, patienceMs);
}

/// What a new instance is offered; nothing when it is offered nothing.
std::vector<PointRecord> offeredIn(const QString& folder) {
    PointSession session(folder);
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    session.addRenaming(1, "marks the end of the search");
    const bool isOnDisk = waitUntilOnDisk(session);
    session.removeAtEnd();
    return !isOnDisk || found.isEmpty() ? std::vector<PointRecord>()
                                        : found.at(0).at(0).value<std::vector<PointRecord>>();
}

/// Sessions of a point each, which is where its session's number says.
void putSessions(const QString& folder, int count) {
    for (int session = 1; session <= count; ++session) {
        putFile(folder, QStringLiteral("points-%1.jsonl").arg(session, 4, 10, QLatin1Char('0')),
                points::pointLine(samplePoint(1, 10.0 * session)));
    }
}

int openFiles() {
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::AllEntries).size();
}

/// A folder in which nothing can be made, not by root either.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString& path)
        : m_path(QFile::encodeName(path)) {
        const QStringList names = filesIn(path);
        for (const QString& name : names) {
            ::chmod(m_path + '/' + QFile::encodeName(name), 0666);
        }
        ::chmod(m_path, 0555);
        if (m_user == 0) {
            m_isSomebodyElse = ::seteuid(nobody) == 0;
        }
    }
    ~ReadOnlyFolder() {
        if (m_isSomebodyElse) {
            m_isSomebodyElse = ::seteuid(m_user) != 0;
        }
        ::chmod(m_path, 0700);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    static constexpr uid_t nobody = 65534;

    const QByteArray m_path;
    const uid_t m_user = ::geteuid();
    bool m_isSomebodyElse = false;
};

/// Is killed at the sync of this number.
int playCrash(const char* folder, int number) {
    int syncs = 0;
    PointSession session(QString::fromLocal8Bit(folder), [&](int) {
        if (++syncs == number) {
            ::kill(::getpid(), SIGKILL);
        }
        return 0;
    });
    session.lookForLeft();
    return session.waitForDisk().reason.isEmpty() ? 0 : 1;
}

/// Writes two points, says so, and waits to be killed.
int playVictim(const char* folder) {
    PointSession session(QString::fromLocal8Bit(folder));
    session.addPoints(samplePoints(2));
    if (!waitUntilOnDisk(session)) {
        return 1;
    }
    std::puts("written");
    std::fflush(stdout);
    return QTest::qWaitFor([] { return false; }, patienceMs) ? 1 : 0;
}

} // namespace

class TestPointSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void whatHappenedIsFoundAgain();
    void aKilledProgramLeavesWhatItReported();
    void aLastLineWithoutEndIsCut();
    void linesWithoutSenseArePassedOver();
    void twoInstancesDoNotMeet();
    void severalSessionsAreOfferedOneAfterTheOther();
    void manySessionsTakeOneDescriptor();
    void aSessionMoreJoinsTheOne();
    void aCrashWhileTheyBecomeOneLosesAndDoublesNothing_data();
    void aCrashWhileTheyBecomeOneLosesAndDoublesNothing();
    void whatHasBecomeOneDoesNotCountAgain();
    void aFullDiskLeavesSessionsAsTheyAre();
    void aReadOnlyFolderLeavesSessionsAsTheyAre();
    void sessionsStayUntilTheOneIsSafe();
    void manySessionsOnAFullDiskComeInParts();
    void aSessionThatSomebodyHoldsStaysHis();
    void nobodyLooksWhileAnotherLooks();
    void linesWithoutSenseAreKept();
    void whatWasAddedHereGoesThere();
    void whatIsNotOnTheDiskHereStaysThere();
    void aFullDiskIsToldAndWrittenLater();
    void whatWasNotSyncedIsWrittenAgain();
    void aFolderThatCannotBeMadeIsTold();
    void aFileThatCannotBeMadeIsTold();
    void aSlowDiskHoldsNobodyUp();
    void aHangingDiskHoldsTheEndUpForALittleOnly();
    void whatNobodyWantsGoesWhenTheDiskAnswers();
    void theLastLookTellsWhatIsNotOnTheDisk();
    void fileAndFolderAreSynced();
    void aFolderThatCannotBeSyncedIsToldAndTriedAgain();
    void itsEndInsideAReport();
    void aSessionThatNobodyWantsGoes();
    void withoutPointsThereIsNoFile();
    void theFolderIsTheHosts();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPointSession::init() {
    qRegisterMetaType<std::vector<PointRecord>>("std::vector<points::PointRecord>");
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestPointSession::whatHappenedIsFoundAgain() {
    {
        PointSession session(m_folder->path());
        session.addPoints(samplePoints(5));
        session.addRenaming(2, "edge");
        session.addRenaming(77, "nobody");
        session.addDeletion({1, 3, 4});
        session.addRestoring({3});
    }
    const std::vector<PointRecord> offered = offeredIn(m_folder->path());
    QCOMPARE(numbersOf(offered), (std::vector<int>{2, 3, 5}));
    QCOMPARE(offered[0].name, QString("edge"));
    QCOMPARE(offered[1].position[0], 30.0);
}

void TestPointSession::aKilledProgramLeavesWhatItReported() {
    QProcess victim;
    victim.start(QCoreApplication::applicationFilePath(), {"--victim", m_folder->path()});
    QVERIFY(victim.waitForReadyRead(patienceMs));
    QCOMPARE(victim.readAll().trimmed(), QByteArray("written"));
    QVERIFY(offeredIn(m_folder->path()).empty()); // it lives and holds its file
    victim.kill();
    QVERIFY(victim.waitForFinished(patienceMs));
    QCOMPARE(victim.exitStatus(), QProcess::CrashExit);
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2}));
}

void TestPointSession::aLastLineWithoutEndIsCut() {
    const QByteArray whole = points::pointLine(samplePoint(1));
    putFile(m_folder->path(), "points-a.jsonl",
            whole + points::pointLine(samplePoint(2)).chopped(1));
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1}));
    QCOMPARE(contentOf(m_folder->path()), whole);
}

void TestPointSession::linesWithoutSenseArePassedOver() {
    putFile(m_folder->path(), "points-a.jsonl",
            "\n{\"type\":\"point\"}\nnonsense\n" + points::pointLine(samplePoint(3)) +
                "{\"type\":\"later\"}\n[1]\n");
    putFile(m_folder->path(), "points-b.jsonl", "nonsense\n");
    putFile(m_folder->path(), "notes.txt", points::pointLine(samplePoint(4)));
    QDir(m_folder->path()).mkdir("points-c.jsonl");
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{3}));
    QVERIFY(offeredIn(m_folder->filePath("nowhere")).empty());
}

void TestPointSession::twoInstancesDoNotMeet() {
    PointSession one(m_folder->path());
    PointSession other(m_folder->path());
    one.addPoints({samplePoint(1)});
    other.addPoints({samplePoint(1)});
    QVERIFY(waitUntilOnDisk(one));
    QVERIFY(waitUntilOnDisk(other));
    QCOMPARE(filesIn(m_folder->path()).size(), 2);
    QVERIFY(offeredIn(m_folder->path()).empty());
}

void TestPointSession::severalSessionsAreOfferedOneAfterTheOther() {
    putFile(m_folder->path(), "points-a.jsonl", points::pointLine(samplePoint(2)));
    putFile(m_folder->path(), "points-b.jsonl",
            points::pointLine(samplePoint(1)) + points::pointLine(samplePoint(4)));
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{2, 3, 6}));
}

void TestPointSession::manySessionsTakeOneDescriptor() {
    constexpr int sessions = 3 * int(points::LeftSessions::mostAtOnce) + 5;
    QVERIFY(offeredIn(m_folder->path()).empty()); // what Qt opens for itself is open
    putSessions(m_folder->path(), sessions);
    PointSession session(m_folder->path());
    QCOMPARE(session.waitForDisk().steps, quint64(0)); // the thread runs
    const int before = openFiles();
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    QVERIFY(found.wait(patienceMs));
    const auto offered = found.at(0).at(0).value<std::vector<PointRecord>>();
    QCOMPARE(numbersOf(offered), numbersOf(samplePoints(sessions)));
    for (const PointRecord& point : offered) { // in the order of their sessions
        QCOMPARE(point.position[0], 10.0 * point.number);
    }
    QCOMPARE(openFiles(), before + 1);
    QCOMPARE(filesIn(m_folder->path()).size(), 1);
    session.dropLeft();
    QTRY_COMPARE_WITH_TIMEOUT(filesIn(m_folder->path()), QStringList(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(openFiles(), before, patienceMs);
}

void TestPointSession::aSessionMoreJoinsTheOne() {
    for (int start = 1; start <= 4; ++start) {
        putFile(m_folder->path(), QString("points-%1.jsonl").arg(start),
                points::pointLine(samplePoint(1, start)));
        const std::vector<PointRecord> offered = offeredIn(m_folder->path());
        QCOMPARE(numbersOf(offered), numbersOf(samplePoints(start)));
        QCOMPARE(offered.back().position[0], double(start));
        QCOMPARE(filesIn(m_folder->path()), QStringList("points-1.jsonl"));
    }
}

// At each of the syncs, and so between all the steps: of the new file, of its name, of the end.
void TestPointSession::aCrashWhileTheyBecomeOneLosesAndDoublesNothing_data() {
    QTest::addColumn<int>("sync");
    for (int sync = 1; sync <= 3; ++sync) {
        QTest::addRow("%d", sync) << sync;
    }
}

void TestPointSession::aCrashWhileTheyBecomeOneLosesAndDoublesNothing() {
    QFETCH(int, sync);
    putSessions(m_folder->path(), 5);
    QProcess victim;
    victim.start(QCoreApplication::applicationFilePath(),
                 {"--crash", m_folder->path(), QString::number(sync)});
    QVERIFY(victim.waitForFinished(patienceMs));
    QCOMPARE(victim.exitStatus(), QProcess::CrashExit);
    QCOMPARE(filesIn(m_folder->path()).size(), sync == 1 ? 6 : sync == 2 ? 5 : 1);
    for (int time = 1; time <= 2; ++time) {
        QCOMPARE(numbersOf(offeredIn(m_folder->path())), numbersOf(samplePoints(5)));
        QCOMPARE(filesIn(m_folder->path()), QStringList("points-0001.jsonl"));
    }
}

void TestPointSession::whatHasBecomeOneDoesNotCountAgain() {
    const QByteArray point = points::pointLine(samplePoint(1));
    putFile(m_folder->path(), "points-a.jsonl",
            points::mergedLine({"points-b.jsonl", "points-c.jsonl"}) + point);
    putFile(m_folder->path(), "points-c.jsonl", point); // b is gone already
    putFile(m_folder->path(), "points-d.jsonl", point);
    putFile(m_folder->path(), "points-e.part", point);
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2}));
    QCOMPARE(filesIn(m_folder->path()), QStringList("points-a.jsonl"));
}

void TestPointSession::aFullDiskLeavesSessionsAsTheyAre() {
    putSessions(m_folder->path(), 3);
    const QByteArray before = contentOf(m_folder->path());
    PointSession session(m_folder->path());
    QSignalSpy failed(&session, &PointSession::failed);
    QSignalSpy found(&session, &PointSession::leftFound);
    {
        const FullDisk disk(static_cast<rlim_t>(before.size() / 2));
        session.lookForLeft();
        QVERIFY(found.wait(patienceMs));
    }
    QCOMPARE(numbersOf(found.at(0).at(0).value<std::vector<PointRecord>>()),
             (std::vector<int>{1, 2, 3}));
    QVERIFY(failed.isEmpty()); // nothing of it is missing
    QCOMPARE(filesIn(m_folder->path()).size(), 3);
    QCOMPARE(contentOf(m_folder->path()), before);
    QVERIFY(offeredIn(m_folder->path()).empty()); // all three are held
}

void TestPointSession::aReadOnlyFolderLeavesSessionsAsTheyAre() {
    putSessions(m_folder->path(), 3);
    const QByteArray before = contentOf(m_folder->path());
    const ReadOnlyFolder folder(m_folder->path());
    QVERIFY(!QFile(m_folder->filePath("new")).open(QIODevice::WriteOnly));
    PointSession session(m_folder->path());
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    QVERIFY(found.wait(patienceMs));
    QCOMPARE(numbersOf(found.at(0).at(0).value<std::vector<PointRecord>>()),
             (std::vector<int>{1, 2, 3}));
    QCOMPARE(contentOf(m_folder->path()), before);
}

// Its name may be gone after a crash for as long as the folder is not on the disk.
void TestPointSession::sessionsStayUntilTheOneIsSafe() {
    putSessions(m_folder->path(), 3);
    {
        PointSession session(m_folder->path(), [](int file) {
            struct stat what = {};
            ::fstat(file, &what);
            errno = EIO;
            return S_ISDIR(what.st_mode) ? -1 : ::fsync(file);
        });
        QSignalSpy found(&session, &PointSession::leftFound);
        session.lookForLeft();
        QVERIFY(found.wait(patienceMs));
        QCOMPARE(found.at(0).at(0).value<std::vector<PointRecord>>().size(), std::size_t(3));
        QCOMPARE(filesIn(m_folder->path()).size(), 3);
        QVERIFY(offeredIn(m_folder->path()).empty()); // it holds them all
    }
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2, 3}));
    QCOMPARE(filesIn(m_folder->path()).size(), 1);
}

void TestPointSession::manySessionsOnAFullDiskComeInParts() {
    constexpr int most = int(points::LeftSessions::mostAtOnce);
    putSessions(m_folder->path(), most + 2);
    const QByteArray before = contentOf(m_folder->path());
    const FullDisk disk(1000);
    PointSession session(m_folder->path());
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    QVERIFY(found.wait(patienceMs));
    QCOMPARE(numbersOf(found.at(0).at(0).value<std::vector<PointRecord>>()),
             numbersOf(samplePoints(most)));
    QCOMPARE(contentOf(m_folder->path()), before);
    session.dropLeft();
    QTRY_COMPARE_WITH_TIMEOUT(filesIn(m_folder->path()).size(), 2, patienceMs);
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2}));
}

void TestPointSession::aSessionThatSomebodyHoldsStaysHis() {
    PointSession other(m_folder->path());
    other.addPoints({samplePoint(7)});
    QVERIFY(waitUntilOnDisk(other));
    const QString his = filesIn(m_folder->path()).value(0);
    putSessions(m_folder->path(), 2);
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2}));
    QCOMPARE(filesIn(m_folder->path()).size(), 2);
    other.addPoints({samplePoint(8)});
    QVERIFY(waitUntilOnDisk(other));
    QFile file(m_folder->filePath(his));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), points::pointLine(samplePoint(7)) + points::pointLine(samplePoint(8)));
}

void TestPointSession::nobodyLooksWhileAnotherLooks() {
    putSessions(m_folder->path(), 3);
    HangingSync disk;
    PointSession session(m_folder->path(), disk.sync());
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    const auto isUnderWay = [this] {
        return !QDir(m_folder->path()).entryList({"points-*.part"}).isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isUnderWay(), patienceMs);
    QVERIFY(offeredIn(m_folder->path()).empty());
    QVERIFY(isUnderWay());
    disk.answer();
    QVERIFY(found.wait(patienceMs));
    QCOMPARE(found.at(0).at(0).value<std::vector<PointRecord>>().size(), std::size_t(3));
}

void TestPointSession::linesWithoutSenseAreKept() {
    putFile(m_folder->path(), "points-a.jsonl", "nonsense\n" + points::pointLine(samplePoint(1)));
    putFile(m_folder->path(), "points-b.jsonl",
            points::pointLine(samplePoint(1)) + "{\"type\":\"later\"}\n");
    QCOMPARE(numbersOf(offeredIn(m_folder->path())), (std::vector<int>{1, 2}));
    QCOMPARE(filesIn(m_folder->path()).size(), 1);
    QVERIFY(contentOf(m_folder->path()).contains("nonsense\n"));
    QVERIFY(contentOf(m_folder->path()).contains("{\"type\":\"later\"}\n"));
}

void TestPointSession::whatWasAddedHereGoesThere() {
    putFile(m_folder->path(), "points-a.jsonl", points::pointLine(samplePoint(1)));
    PointSession session(m_folder->path());
    QSignalSpy found(&session, &PointSession::leftFound);
    session.lookForLeft();
    QVERIFY(found.wait(patienceMs));
    QVERIFY(offeredIn(m_folder->path()).empty()); // the first to look holds it
    session.addPoints(found.at(0).at(0).value<std::vector<PointRecord>>());
    session.dropLeft();
    QTRY_VERIFY_WITH_TIMEOUT(!filesIn(m_folder->path()).contains("points-a.jsonl"), patienceMs);
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(contentOf(m_folder->path()), points::pointLine(samplePoint(1)));
}

void TestPointSession::whatIsNotOnTheDiskHereStaysThere() {
    putFile(m_folder->path(), "points-a.jsonl", points::pointLine(samplePoint(1)));
    std::atomic<bool> works{false};
    const QByteArray before = contentOf(m_folder->path());
    {
        PointSession session(m_folder->path(), [&](int) {
            errno = EIO;
            return works ? 0 : -1;
        });
        QSignalSpy found(&session, &PointSession::leftFound);
        QSignalSpy failed(&session, &PointSession::failed);
        session.lookForLeft();
        QVERIFY(found.wait(patienceMs));
        session.addPoints(found.at(0).at(0).value<std::vector<PointRecord>>());
        session.dropLeft();
        QVERIFY(failed.wait(patienceMs));
    }
    QVERIFY(filesIn(m_folder->path()).contains("points-a.jsonl"));
    QCOMPARE(contentOf(m_folder->path()), before); // nothing half-written beside it
}

void TestPointSession::aFullDiskIsToldAndWrittenLater() {
    const QByteArray first = points::pointLine(samplePoint(1));
    PointSession session(m_folder->path());
    QSignalSpy failed(&session, &PointSession::failed);
    session.addPoints({samplePoint(1)});
    QVERIFY(waitUntilOnDisk(session));
    {
        const FullDisk disk(static_cast<rlim_t>(first.size() + 10));
        session.addPoints({samplePoint(2)});
        QVERIFY(failed.wait(patienceMs));
        QVERIFY(!failed.at(0).at(0).toString().isEmpty());
        QCOMPARE(session.stepsOnDisk(), quint64(1));
        QCOMPARE(contentOf(m_folder->path()), first); // no half of a line
        session.addPoints({samplePoint(3)});
        QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 2, patienceMs); // each point is told of
    }
    QVERIFY(waitUntilOnDisk(session)); // by itself
    QCOMPARE(contentOf(m_folder->path()),
             first + points::pointLine(samplePoint(2)) + points::pointLine(samplePoint(3)));
    QCOMPARE(failed.size(), 2);
}

void TestPointSession::whatWasNotSyncedIsWrittenAgain() {
    std::atomic<int> failures{2}; // of the file, then of its folder
    PointSession session(m_folder->path(), [&](int) {
        errno = EIO;
        return failures-- > 0 ? -1 : 0;
    });
    QSignalSpy failed(&session, &PointSession::failed);
    session.addPoints({samplePoint(1)});
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(failed.size(), 1); // the same reason is told once
    QCOMPARE(contentOf(m_folder->path()), points::pointLine(samplePoint(1)));
}

void TestPointSession::aFolderThatCannotBeMadeIsTold() {
    putFile(m_folder->path(), "file", "");
    PointSession session(m_folder->filePath("file/folder"));
    QSignalSpy failed(&session, &PointSession::failed);
    session.addPoints({samplePoint(1)});
    QVERIFY(failed.wait(patienceMs));
    QVERIFY(failed.at(0).at(0).toString().contains("file/folder"));
    QVERIFY(QFile::remove(m_folder->filePath("file")));
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(contentOf(m_folder->filePath("file/folder")), points::pointLine(samplePoint(1)));
}

void TestPointSession::aFileThatCannotBeMadeIsTold() {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit none = before;
    none.rlim_cur = 3; // what is open stays open
    PointSession session(m_folder->path());
    QSignalSpy failed(&session, &PointSession::failed);
    QSignalSpy settled(&session, &PointSession::settled);
    setrlimit(RLIMIT_NOFILE, &none);
    session.addPoints({samplePoint(1)});
    const bool isTold = failed.wait(patienceMs);
    setrlimit(RLIMIT_NOFILE, &before);
    QVERIFY(isTold);
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(contentOf(m_folder->path()), points::pointLine(samplePoint(1)));
}

void TestPointSession::aSlowDiskHoldsNobodyUp() {
    std::mutex disk;
    std::unique_lock<std::mutex> isBusy(disk);
    PointSession session(m_folder->path(), [&](int) {
        const std::lock_guard<std::mutex> lock(disk);
        return 0;
    });
    QSignalSpy settled(&session, &PointSession::settled);
    for (int number = 1; number <= 3; ++number) {
        session.addPoints({samplePoint(number)});
    }
    // All of it was handed over, and nothing is called kept that is not.
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(m_folder->path()).size() > 0, patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(session.stepsOnDisk(), quint64(0));
    QVERIFY(settled.isEmpty());
    isBusy.unlock();
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(numbersOf(points::contentOfLines(contentOf(m_folder->path())).points),
             (std::vector<int>{1, 2, 3}));
}

void TestPointSession::aHangingDiskHoldsTheEndUpForALittleOnly() {
    HangingSync disk;
    QElapsedTimer end;
    {
        PointSession session(m_folder->path(), disk.sync());
        session.addPoints(samplePoints(2));
        session.addRenaming(1, "edge");
        end.start();
        const points::SessionWriter::Unwritten unwritten = session.waitForDisk();
        QCOMPARE(unwritten.steps, quint64(2));
        QCOMPARE(unwritten.reason, QString("the disk does not answer"));
    }
    // The last look and the end share the time.
    QVERIFY(end.elapsed() < 2 * PointSession::longestWaitMs);
    QVERIFY(offeredIn(m_folder->path()).empty()); // the thread still holds the file
    disk.answer();
    std::vector<PointRecord> offered;
    QTRY_VERIFY_WITH_TIMEOUT((offered = offeredIn(m_folder->path()), offered.size() == 2),
                             patienceMs);
    QCOMPARE(offered[0].name, QString("edge"));
}

void TestPointSession::whatNobodyWantsGoesWhenTheDiskAnswers() {
    HangingSync disk;
    {
        PointSession session(m_folder->path(), disk.sync());
        session.addPoints(samplePoints(2));
        session.removeAtEnd();
    }
    disk.answer();
    QTRY_COMPARE_WITH_TIMEOUT(filesIn(m_folder->path()), QStringList(), patienceMs);
}

void TestPointSession::theLastLookTellsWhatIsNotOnTheDisk() {
    std::atomic<bool> isBroken{false};
    PointSession session(m_folder->path(), [&](int file) {
        errno = EIO;
        return isBroken ? -1 : ::fsync(file);
    });
    QCOMPARE(session.waitForDisk().steps, quint64(0)); // nothing at all
    session.addPoints(samplePoints(2));
    points::SessionWriter::Unwritten unwritten = session.waitForDisk();
    QCOMPARE(unwritten.steps, quint64(0));
    QCOMPARE(unwritten.reason, QString());
    isBroken = true;
    session.addDeletion({1});
    unwritten = session.waitForDisk();
    QCOMPARE(unwritten.steps, quint64(1));
    QCOMPARE(unwritten.reason, QString::fromStdString(std::generic_category().message(EIO)));
    QCOMPARE(session.stepsOnDisk(), quint64(0)); // as far as reported
}

void TestPointSession::fileAndFolderAreSynced() {
    std::atomic<int> syncs{0};
    PointSession session(m_folder->path(), [&](int file) {
        ++syncs;
        return ::fsync(file);
    });
    session.addPoints({samplePoint(1)});
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(syncs.load(), 2); // the new file and its folder
    session.addPoints({samplePoint(2)});
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(syncs.load(), 3);
}

// Without the folder on the disk the new file may be gone after a crash.
void TestPointSession::aFolderThatCannotBeSyncedIsToldAndTriedAgain() {
    std::atomic<bool> isBroken{true};
    PointSession session(m_folder->path(), [&](int file) {
        struct stat what = {};
        ::fstat(file, &what);
        errno = EIO;
        return isBroken && S_ISDIR(what.st_mode) ? -1 : ::fsync(file);
    });
    QSignalSpy failed(&session, &PointSession::failed);
    session.addPoints({samplePoint(1)});
    QVERIFY(failed.wait(patienceMs));
    QCOMPARE(failed.at(0).at(0).toString(),
             QString::fromStdString(std::generic_category().message(EIO)));
    QCOMPARE(session.stepsOnDisk(), quint64(0));
    isBroken = false;
    QVERIFY(waitUntilOnDisk(session));
    QCOMPARE(contentOf(m_folder->path()), points::pointLine(samplePoint(1)));
}

// A host may end the module inside what it is told of a point.
void TestPointSession::itsEndInsideAReport() {
    auto* const session = new PointSession(m_folder->path());
    const QPointer<PointSession> alive = session;
    int heard = 0;
    connect(session, &PointSession::settled, this, [&heard, session] {
        ++heard;
        delete session;
    });
    for (int number = 1; number <= 2; ++number) { // two reports that wait together
        session->addPoints({samplePoint(number)});
        QCOMPARE(session->waitForDisk().steps, quint64(0));
    }
    QTRY_VERIFY_WITH_TIMEOUT(alive.isNull(), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(heard, 1);
    QCOMPARE(numbersOf(points::contentOfLines(contentOf(m_folder->path())).points),
             (std::vector<int>{1, 2}));
}

void TestPointSession::aSessionThatNobodyWantsGoes() {
    {
        PointSession session(m_folder->path());
        session.addPoints(samplePoints(1));
        session.removeAtEnd();
        QVERIFY(waitUntilOnDisk(session));
        QCOMPARE(filesIn(m_folder->path()).size(), 1);
    }
    QVERIFY(filesIn(m_folder->path()).isEmpty());
}

void TestPointSession::withoutPointsThereIsNoFile() {
    {
        PointSession session(m_folder->filePath("folder"));
        session.lookForLeft();
        session.dropLeft();
        session.removeAtEnd();
    }
    QVERIFY(!QFileInfo::exists(m_folder->filePath("folder")));
}

void TestPointSession::theFolderIsTheHosts() {
    QVERIFY(PointSession::defaultFolder().endsWith(QCoreApplication::applicationName() +
                                                   "/probecheck"));
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--victim") == 0) {
        return playVictim(argv[2]);
    }
    if (argc == 4 && qstrcmp(argv[1], "--crash") == 0) {
        return playCrash(argv[2], QByteArray(argv[3]).toInt());
    }
    TestPointSession test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_pointsession.moc"
