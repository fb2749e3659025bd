#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "workbench/outlets/sending/resultspool.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using workbench::ResultSpool;
using Opened = ResultSpool::Opened;

class TestResultSpool : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    QString path() const { return m_folder->filePath(QStringLiteral("deeper/down/a.results")); }
    QString takenPath() const { return path() + QStringLiteral(".taken"); }

    std::unique_ptr<ResultSpool> opened() const {
        auto spool = std::make_unique<ResultSpool>(QFile::encodeName(path()).toStdString());
        if (spool->open() != Opened::Yes) {
            qFatal("the spool cannot be opened");
        }
        return spool;
    }

    static QByteArray content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    /// All lines that are still to be handed out, in one text.
    static std::string rest(ResultSpool& spool) {
        std::string text;
        while (const auto line = spool.next()) {
            text += line->text + ';';
        }
        return text;
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void linesComeInTheirOrder() {
        const auto spool = opened();
        QVERIFY(!spool->next());
        QVERIFY(spool->append("a") && spool->append("b") && spool->append("c"));
        QCOMPARE(spool->waiting(), std::uint64_t(3));
        QCOMPARE(rest(*spool), std::string("a;b;c;"));
        QVERIFY(spool->append("d"));
        QCOMPARE(rest(*spool), std::string("d;"));
        spool->rewind();
        QCOMPARE(rest(*spool), std::string("a;b;c;d;"));
    }

    void severalLinesAreThereTogetherOrNotAtAll() {
        {
            const auto spool = opened();
            QVERIFY(spool->append("a"));
            QVERIFY(spool->append(std::deque<std::string>{"b", "c"}));
            QCOMPARE(spool->waiting(), std::uint64_t(3));
        }
        ResultSpool spool(QFile::encodeName(path()).toStdString(), 10);
        QVERIFY(spool.open() == Opened::Yes);
        QVERIFY(!spool.append(std::deque<std::string>{"d", "ee"}));
        QVERIFY(spool.append("d"));
        QCOMPARE(spool.waiting(), std::uint64_t(4));
        QCOMPARE(rest(spool), std::string("a;b;c;d;"));
    }

    void whatIsConfirmedIsNotHandedOutAgain() {
        const auto spool = opened();
        spool->append("a");
        spool->append("b");
        spool->append("c");
        const auto a = spool->next();
        const auto b = spool->next();
        spool->confirm(b->number); // a is still open
        QCOMPARE(spool->waiting(), std::uint64_t(3));
        spool->confirm(a->number);
        spool->confirm(a->number);
        spool->confirm(12345);
        QCOMPARE(spool->waiting(), std::uint64_t(1));
        spool->rewind();
        QCOMPARE(rest(*spool), std::string("c;"));
    }

    void linesSurviveTheProgram() {
        {
            const auto spool = opened();
            spool->append("a");
            spool->append("b");
            spool->confirm(spool->next()->number);
        }
        const auto spool = opened();
        QCOMPARE(spool->waiting(), std::uint64_t(1));
        QCOMPARE(rest(*spool), std::string("b;"));
    }

    // In a process of its own that ends without a farewell.
    void linesSurviveAKilledProgram() {
        const pid_t child = ::fork();
        if (child == 0) {
            ResultSpool spool(QFile::encodeName(path()).toStdString());
            const bool good = spool.open() == Opened::Yes && spool.append("a") && spool.append("b");
            ::_exit(good ? 0 : 1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        QCOMPARE(rest(*opened()), std::string("a;b;"));
    }

    void aSpoolThatIsEmptiedNeedsNoRoom() {
        const auto spool = opened();
        for (int i = 0; i < 3; ++i) {
            spool->append("a line");
            spool->append("another one");
            const auto first = spool->next();
            const auto second = spool->next();
            spool->confirm(first->number);
            QVERIFY(QFileInfo(path()).size() > 0);
            spool->confirm(second->number);
            QCOMPARE(QFileInfo(path()).size(), qint64(0));
            QCOMPARE(content(takenPath()), QByteArray("0\n"));
            QCOMPARE(spool->waiting(), std::uint64_t(0));
        }
        spool->append("x");
        QCOMPARE(rest(*spool), std::string("x;"));
    }

    void aLineThatWasCutGoes_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("left");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("half a line") << QByteArray("hal") << QByteArray();
        QTest::newRow("a line and a half") << QByteArray("a\nhal") << QByteArray("a\n");
        QTest::newRow("whole lines") << QByteArray("a\nb\n") << QByteArray("a\nb\n");
        const QByteArray endless(20000, 'x');
        QTest::newRow("half a long line") << "a\n" + endless << QByteArray("a\n");
        QTest::newRow("a long line and a half") << endless + "\nhal" << QByteArray(endless + "\n");
    }
    void aLineThatWasCutGoes() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, left);
        static_cast<void>(opened());
        write(path(), file);
        const auto spool = opened();
        QCOMPARE(content(path()), left);
        QVERIFY(spool->append("new"));
        QCOMPARE(content(path()), QByteArray(left + "new\n"));
        QCOMPARE(spool->waiting(), static_cast<std::uint64_t>(left.count('\n')) + 1);
    }

    // Nothing that stands in that file makes a line go that nobody has confirmed.
    void howFarItIsTakenIsBelievedOnlyIfItCanBe_data() {
        QTest::addColumn<QByteArray>("taken");
        QTest::addColumn<QByteArray>("rest");
        QTest::newRow("so far") << QByteArray("2\n") << QByteArray("b;c;");
        QTest::newRow("all") << QByteArray("6\n") << QByteArray();
        QTest::newRow("nothing") << QByteArray() << QByteArray("a;b;c;");
        QTest::newRow("beyond the end") << QByteArray("8\n") << QByteArray("a;b;c;");
        QTest::newRow("inside a line") << QByteArray("3\n") << QByteArray("a;b;c;");
        QTest::newRow("negative") << QByteArray("-2\n") << QByteArray("a;b;c;");
        QTest::newRow("no number") << QByteArray("two\n") << QByteArray("a;b;c;");
        QTest::newRow("cut") << QByteArray("2") << QByteArray("a;b;c;");
        row("overflow", QByteArray("99999999999999999999999\n"), QByteArray("a;b;c;"));
        QTest::newRow("zeros") << QByteArray(32, '\0') << QByteArray("a;b;c;");
    }
    void howFarItIsTakenIsBelievedOnlyIfItCanBe() {
        QFETCH(QByteArray, taken);
        static_cast<void>(opened());
        write(path(), "a\nb\nc\n");
        write(takenPath(), taken);
        QTEST(QByteArray::fromStdString(rest(*opened())), "rest");
    }

    void manyAndLongLinesComeWhole() {
        const auto spool = opened();
        const std::string endless(200000, 'y');
        for (int i = 0; i < 50; ++i) {
            QVERIFY(spool->append(std::to_string(i) + (i % 10 == 0 ? endless : std::string())));
        }
        for (int i = 0; i < 50; ++i) {
            const auto line = spool->next();
            QVERIFY(line);
            QCOMPARE(line->text, std::to_string(i) + (i % 10 == 0 ? endless : std::string()));
            spool->confirm(line->number);
        }
        QVERIFY(!spool->next());
        QCOMPARE(QFileInfo(path()).size(), qint64(0));
    }

    void itHasOneUserAtATime() {
        const auto spool = opened();
        ResultSpool other(QFile::encodeName(path()).toStdString());
        QVERIFY(other.open() == Opened::InUse);
        QVERIFY(!other.isOpen());
    }

    void itIsForItsUserAlone() {
        const auto spool = opened();
        struct stat status {};
        QCOMPARE(::stat(QFile::encodeName(path()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, mode_t(0600));
    }

    void whatIsNoFileIsRefused() {
        const QString link = m_folder->filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(m_folder->filePath(QStringLiteral("elsewhere")), link));
        for (const QString& name : {m_folder->path(), link}) {
            ResultSpool spool(QFile::encodeName(name).toStdString());
            QVERIFY2(spool.open() == Opened::No, qPrintable(name));
        }
        QVERIFY(!QFileInfo::exists(m_folder->filePath(QStringLiteral("elsewhere"))));
    }

    void aFullDiskTakesNothingInPart() {
        const auto spool = opened();
        QVERIFY(spool->append("first"));
        {
            const FullDisk full(10);
            QVERIFY(!spool->append("a line that is too long for it"));
        }
        QCOMPARE(content(path()), QByteArray("first\n"));
        QVERIFY(spool->append("second"));
        QCOMPARE(rest(*spool), std::string("first;second;"));
    }

    void itDoesNotGrowForEver() {
        ResultSpool spool(QFile::encodeName(path()).toStdString(), 10);
        QVERIFY(spool.open() == Opened::Yes);
        QVERIFY(spool.append("12345678"));
        QVERIFY(!spool.append("9"));
        QCOMPARE(rest(spool), std::string("12345678;"));
    }

    // Ten lines wait all the time, and twenty times as many pass.
    void aSpoolThatIsNeverEmptyNeedsRoomForWhatWaitsAlone() {
        constexpr int waiting = 10;
        constexpr int lines = 200;
        constexpr qint64 lineSize = 5;
        const std::string name = QFile::encodeName(path()).toStdString();
        auto spool = std::make_unique<ResultSpool>(name, (waiting + 1) * lineSize, 100);
        QVERIFY(spool->open() == Opened::Yes);
        for (int i = 0; i < lines; ++i) {
            QVERIFY2(spool->append(std::to_string(1000 + i)), std::to_string(i).c_str());
            if (i >= waiting) {
                const auto line = spool->next();
                QVERIFY(line);
                QCOMPARE(line->text, std::to_string(1000 + i - waiting));
                spool->confirm(line->number);
            }
            QVERIFY(QFileInfo(path()).size() <= 2 * waiting * lineSize + 100);
        }
        ResultSpool other(name);
        QVERIFY(other.open() == Opened::InUse); // the new file has its one user, too
        spool.reset();
        QCOMPARE(rest(*opened()),
                 std::string("1190;1191;1192;1193;1194;1195;1196;1197;1198;1199;"));
        QCOMPARE(QFileInfo(path()).dir().entryList(QDir::Files).size(), 2);
    }

    // What was handed out and waits for its confirmation when the file is replaced stays known.
    void linesThatAreOpenMoveWithTheFile() {
        ResultSpool spool(QFile::encodeName(path()).toStdString(), 1000, 4);
        QVERIFY(spool.open() == Opened::Yes);
        for (const char* text : {"a", "b", "c", "d", "e", "f"}) {
            QVERIFY(spool.append(text));
        }
        std::vector<ResultSpool::Line> lines;
        for (int i = 0; i < 4; ++i) {
            lines.push_back(*spool.next());
        }
        spool.confirm(lines[0].number);
        spool.confirm(lines[1].number);
        spool.confirm(lines[2].number);
        QCOMPARE(content(path()), QByteArray("d\ne\nf\n"));
        QCOMPARE(content(takenPath()), QByteArray("0\n"));
        spool.confirm(lines[3].number);
        QCOMPARE(content(takenPath()), QByteArray("2\n"));
        QCOMPARE(rest(spool), std::string("e;f;"));
    }

    void whereThereIsNoRoomForANewFileTheOldOneStays() {
        ResultSpool spool(QFile::encodeName(path()).toStdString(), 1000, 4);
        QVERIFY(spool.open() == Opened::Yes);
        QVERIFY(spool.append("aaaa") && spool.append("bbbb") && spool.append("c"));
        // Nobody can write to a folder of that name.
        QVERIFY(QDir().mkdir(path() + QStringLiteral(".new")));
        const auto first = spool.next();
        const auto second = spool.next();
        spool.confirm(first->number);
        spool.confirm(second->number);
        QCOMPARE(content(takenPath()), QByteArray("10\n"));
        QVERIFY(spool.append("d"));
        spool.confirm(spool.next()->number);
        QCOMPARE(content(path()), QByteArray("aaaa\nbbbb\nc\nd\n"));
        QCOMPARE(content(takenPath()), QByteArray("12\n"));
        QCOMPARE(rest(spool), std::string("d;"));
        QVERIFY(QDir().rmdir(path() + QStringLiteral(".new")));
        QVERIFY(spool.append("eeee"));
        spool.rewind();
        spool.confirm(spool.next()->number);
        QCOMPARE(content(path()), QByteArray("eeee\n")); // tried again
    }
};

QTEST_GUILESS_MAIN(TestResultSpool)
#include "test_resultspool.moc"
