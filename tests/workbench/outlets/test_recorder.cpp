#include "workbench/outlets/recorder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <sstream>
#include <sys/resource.h>
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

// The kernel refuses to let a file grow beyond this size, as a full disk does.
class FullDisk {
public:
    explicit FullDisk(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit tight = m_before;
        tight.rlim_cur = size;
        ::setrlimit(RLIMIT_FSIZE, &tight);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before = {};
};

} // namespace

class TestRecorder : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("r.kestrel")); }

    std::string content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }

private Q_SLOTS:
    void whatWasRecordedIsReadBack() {
        Recorder recorder;
        QString error;
        QVERIFY2(recorder.start(path(), header(), &error), qPrintable(error));
        const std::string odd("6dmt \x01 \\ \xff", 10);
        recorder.frame({"fr 1", "6dmt 0"});
        recorder.frame({"fr 2", odd});
        recorder.stop();
        recorder.frame({"fr 3"});

        std::istringstream stream(content());
        RecordingReader reader(stream);
        RecordingHeader read;
        QCOMPARE(reader.readHeader(read), RecordingReader::Result::Ok);
        QCOMPARE(read.model, header().model);
        QCOMPARE(read.systemCt, header().systemCt);
        QVERIFY(read.parameters == header().parameters);
        std::vector<Record> records;
        Record record;
        while (reader.next(record) == RecordingReader::Result::Ok) {
            records.push_back(record);
        }
        QVERIFY(reader.error().empty());
        QVERIFY(!reader.truncated());
        QCOMPARE(records.size(), std::size_t(4));
        QCOMPARE(records[1].line, std::string("6dmt 0"));
        QCOMPARE(records[3].line, odd);
        QCOMPARE(records[0].microseconds, records[1].microseconds);
        QVERIFY(records[2].microseconds > records[1].microseconds);
    }

    void theFileIsCompleteAfterEachFrameEvenWhenTheProgramIsKilled() {
        const pid_t child = ::fork();
        if (child == 0) {
            Recorder recorder;
            QString error;
            recorder.start(path(), header(), &error);
            for (int i = 0; i < 100; ++i) {
                recorder.frame({"fr " + std::to_string(i), "6dmt 0"});
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

    void framesAreCounted() {
        Recorder recorder;
        QString error;
        QVERIFY(recorder.start(path(), header(), &error));
        QVERIFY(recorder.status().running);
        recorder.frame({"fr 1"});
        recorder.frame({});
        recorder.frame({"fr 2"});
        QCOMPARE(recorder.status().frames, quint64(2));
        recorder.stop();
        QVERIFY(!recorder.status().running);
        QCOMPARE(recorder.status().fileName, path());
    }

    void aFileThatCannotBeWrittenIsRefusedAndAnOldRecordingGoesOn() {
        Recorder recorder;
        QString error;
        QVERIFY(recorder.start(path(), header(), &error));
        QVERIFY(!recorder.start(QStringLiteral("/no/such/folder/x"), header(), &error));
        QVERIFY(!error.isEmpty());
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
        QVERIFY(!recorder.start(name, header(), &error));
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
        QVERIFY2(recorder.start(path(), header(), &error), qPrintable(error));
        recorder.stop();
        QCOMPARE(content(), kestrel_wire::formatRecordingHeader(header()));
    }

    void aDiskThatTakesNoMoreEndsTheRecordingWithAReason() {
        Recorder recorder;
        QString error;
        QVERIFY2(recorder.start(path(), header(), &error), qPrintable(error));
        {
            const FullDisk disk(content().size());
            recorder.frame({"fr 1"});
        }
        QVERIFY(!recorder.status().running);
        QVERIFY(!recorder.status().error.isEmpty());
        QCOMPARE(recorder.status().frames, quint64(0));
    }

    void aDiskWithoutRoomForTheHeaderRefusesAndAnOldRecordingGoesOn() {
        Recorder recorder;
        QString error;
        QVERIFY2(recorder.start(path(), header(), &error), qPrintable(error));
        const QString other = m_folder.filePath(QStringLiteral("other"));
        {
            const FullDisk disk(0);
            QVERIFY(!recorder.start(other, header(), &error));
        }
        QVERIFY(!error.isEmpty());
        QCOMPARE(recorder.status().fileName, path());
        recorder.frame({"fr 1"});
        QVERIFY(recorder.status().running);
        QCOMPARE(recorder.status().frames, quint64(1));
    }
};

QTEST_GUILESS_MAIN(TestRecorder)
#include "test_recorder.moc"
