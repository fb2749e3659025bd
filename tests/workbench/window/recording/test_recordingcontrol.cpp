#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "tests/workbench/backendfixture.h"
#include "tests/workbench/outlets/hangingdisk.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/recording/recordingcontrol.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <cerrno>
#include <future>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using workbench::Recorder;
using workbench::RecordingControl;

namespace {

constexpr int patience = 15000;
using Commands = std::vector<std::string>;
constexpr std::size_t smallQueue = 200 * 1024;

/// The language of the program, while it lives.
class Language {
public:
    explicit Language(const QLocale& locale) {
        QLocale::setDefault(locale);
        if (locale.language() == QLocale::German) {
            if (!m_german.load("kestrel-workbench_de", KESTREL_TRANSLATIONS_DIR)) {
                qFatal("no German");
            }
            QCoreApplication::installTranslator(&m_german);
        }
    }
    ~Language() { QLocale::setDefault(m_before); } // a translator takes itself away
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    const QLocale m_before;
    QTranslator m_german;
};

} // namespace

/// What the user is told of a recording.
class TestRecordingControl : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<BackendFixture> m_backend;

    QString path() const { return m_folder.filePath(QStringLiteral("r.kestrel")); }
    QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString log() const {
        QCoreApplication::processEvents();
        return m_backend->log.toText();
    }
    // Of what the controller has sent until now.
    void waitForAnswers() {
        for (int turn = 0; turn < 10; ++turn) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
    }
    static void overflow(Recorder& recorder) {
        for (int i = 0; i < 100; ++i) {
            recorder.frame({std::string(10000, 'x')});
        }
    }

private Q_SLOTS:
    void init() {
        QFile::remove(path());
        m_controller = std::make_unique<ScriptedController>();
        m_backend = std::make_unique<BackendFixture>();
        m_backend->connectTo(m_controller->port());
        QTRY_VERIFY_WITH_TIMEOUT(m_backend->session.isReady(), patience);
    }
    void cleanup() {
        m_backend.reset();
        m_controller.reset();
    }

    void aDiskThatHangsIsToldAndWhatIsMissingIsCounted() {
        HangingDisk disk;
        Recorder recorder(disk.opener(), smallQueue);
        RecordingControl control(m_backend->session, recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        QCOMPARE(control.stateText(), QStringLiteral("recording"));
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().freeBytes >= 0, patience);
        const QRegularExpression room(QStringLiteral("^[0-9].* free$"));
        QVERIFY2(room.match(control.diskText()).hasMatch(), qPrintable(control.diskText()));
        overflow(recorder);
        QTRY_COMPARE_WITH_TIMEOUT(control.stateText(), QStringLiteral("the disk does not answer"),
                                  patience);
        QTRY_VERIFY_WITH_TIMEOUT(
            log().contains(QStringLiteral("The disk does not answer; %1 is").arg(path())),
            patience);
        QVERIFY(log().contains(QStringLiteral("frames are missing in ") + path()));
        const quint64 missing = recorder.status().unwritten;
        QVERIFY(missing > 0);
        QVERIFY(control.numbersText().endsWith(
            QStringLiteral(", %1 not written, to %2").arg(QString::number(missing), path())));
        QVERIFY(control.diskText().endsWith(
            QStringLiteral(" free, %1 not written").arg(QString::number(missing))));
        QVERIFY(control.isRunning());

        disk.read();
        QTRY_VERIFY_WITH_TIMEOUT(
            log().contains(QStringLiteral("The disk answers again; %1 is").arg(path())), patience);
        changed.clear();
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, patience);
        QVERIFY(!control.isRunning());
        QCOMPARE(control.diskText(), QString());
        const QString sentence = QStringLiteral("%1 frames could not be written to %2")
                                     .arg(QString::number(missing), path());
        QCOMPARE(changed.first().at(1).toString(), sentence);
        QVERIFY(log().contains(sentence));
        QVERIFY(log().contains(QStringLiteral("Recorded %1 frames to %2")
                                   .arg(QString::number(100 - missing), path())));
    }

    void theEndOfTheProgramDoesNotWaitForADiskThatHangs() {
        HangingDisk disk;
        Recorder recorder(disk.opener(), smallQueue);
        RecordingControl control(m_backend->session, recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        changed.clear();
        overflow(recorder);
        control.finish();
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().at(1).toString(), QStringLiteral("the disk does not answer"));
        QVERIFY(!control.isRunning());
        QCOMPARE(control.stateText(), QStringLiteral("not recording"));
        QVERIFY(log().contains(
            QStringLiteral("The recording to %1 ended: the disk does not answer").arg(path())));
    }

    void aFileThatSomebodyElseRecordsToIsRefusedWithASentence() {
        Recorder other;
        QVERIFY(other.start(path(), {}));
        QTRY_VERIFY_WITH_TIMEOUT(other.status().begun, patience);
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.first().first().toBool(), false);
        QVERIFY(log().contains(
            QStringLiteral("%1 cannot be written: somebody else is recording to this file")
                .arg(path())));
    }

    void aFolderThatIsGoneEndsTheRecordingWithASentence() {
        QTemporaryDir gone;
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(gone.filePath(QStringLiteral("r")));
        QVERIFY(changed.wait(patience));
        QVERIFY(gone.remove());
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.at(1).first().toBool(), false);
        QVERIFY(log().contains(QStringLiteral("ended: the file was removed meanwhile")));
    }

    void aRecordingThatEndsByItselfIsToldWithItsReasonAndIsWhole_data() {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("reason");
        row("controller gone", QStringLiteral("gone"), QStringLiteral("the controller is gone"));
        row("connection closed", QStringLiteral("closed"),
            QStringLiteral("the connection was closed"));
        QTest::newRow("disk full") << QStringLiteral("full") << qt_error_string(EFBIG);
    }
    void aRecordingThatEndsByItselfIsToldWithItsReasonAndIsWhole() {
        QFETCH(QString, cause);
        QFETCH(QString, reason);
        constexpr int goneMs = 200;
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log, nullptr,
                                 goneMs);
        QSignalSpy changed(&control, &RecordingControl::changed);
        QSignalSpy failed(&control, &RecordingControl::failed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        Recorder& recorder = m_backend->recorder;
        recorder.frame({"fr 1", "6dmt 0"});
        QTRY_COMPARE_WITH_TIMEOUT(recorder.status().frames, quint64(1), patience);
        const QByteArray before = content();
        if (cause == QStringLiteral("full")) {
            const FullDisk disk(static_cast<rlim_t>(before.size()) + 5);
            recorder.frame({"fr 2", "6dmt 0"});
            QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, patience);
        } else if (cause == QStringLiteral("gone")) {
            m_controller->stopListening();
            m_controller->dropConnections();
        } else {
            m_backend->session.disconnectFromController();
        }
        QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, patience);
        QCOMPARE(failed.first().first().toString(),
                 QStringLiteral("The recording to %1 ended: %2. It is whole until then: 1 frames.")
                     .arg(path(), reason));
        QCOMPARE(changed.size(), 2);
        QCOMPARE(changed.at(1).at(0).toBool(), false);
        QCOMPARE(changed.at(1).at(1).toString(), reason);
        QVERIFY(!control.isRunning());
        QCOMPARE(content(), before); // to the last whole line
        QVERIFY(before.endsWith(" 6dmt 6dmt 0\n"));
        QVERIFY(log().contains(reason));
    }

    void aConnectionThatComesBackSoonDoesNotEndTheRecording() {
        constexpr int goneMs = 60000;
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log, nullptr,
                                 goneMs);
        QSignalSpy changed(&control, &RecordingControl::changed);
        QSignalSpy failed(&control, &RecordingControl::failed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        m_controller->dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(!m_backend->session.isReady(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_backend->session.isReady(), patience);
        QVERIFY(control.isRunning());
        m_backend->recorder.frame({"fr 2"});
        QTRY_COMPARE_WITH_TIMEOUT(m_backend->recorder.status().frames, quint64(1), patience);
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 2, patience);
        QCOMPARE(changed.at(1).at(1).toString(), QString());
        QCOMPARE(failed.size(), 0);
    }

    void anEndByHandIsNoFailure() {
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        QSignalSpy failed(&control, &RecordingControl::failed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        control.stop();
        m_backend->session.disconnectFromController();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 2, patience);
        QCOMPARE(changed.at(1).at(1).toString(), QString());
        QCOMPARE(failed.size(), 0);
    }

    // What is to stand in the file is asked in one go: a controller that takes its time for each
    // reply takes it once.
    void aSlowControllerIsAskedInOneGoAndThatIsSaid() {
        m_controller->answer("measurementtool number_of_tools", "2");
        m_controller->answer("measurementtool number_of_references", "1");
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy starting(&control, &RecordingControl::starting);
        QSignalSpy changed(&control, &RecordingControl::changed);
        m_controller->setSilent(true);
        control.start(path());
        QCOMPARE(starting.size(), 1);
        QVERIFY(control.isStarting());
        QVERIFY(!control.isRunning());
        QCOMPARE(control.stateText(), QStringLiteral("starting to record"));
        QCOMPARE(control.numbersText(), QStringLiteral("to ") + path());
        const Commands first = {"kestrel2 get measurementtool available",
                                "kestrel2 get measurementtool max_number_of_tools",
                                "kestrel2 get measurementtool max_number_of_references",
                                "kestrel2 get measurementtool output_6dmt",
                                "kestrel2 get measurementtool number_of_tools",
                                "kestrel2 get measurementtool number_of_references"};
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered(), first, patience);
        m_controller->answerLate(first.size());
        const Commands second = {"kestrel2 get body calibrated measurementtool b01",
                                 "kestrel2 get measurementtool tip_calibrated b01",
                                 "kestrel2 get measurementtool reference_of_tool b01",
                                 "kestrel2 get body calibrated measurementtool b02",
                                 "kestrel2 get measurementtool tip_calibrated b02",
                                 "kestrel2 get measurementtool reference_of_tool b02",
                                 "kestrel2 get body calibrated measurementtool_reference b01"};
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered(), second, patience);
        QVERIFY(!QFileInfo::exists(path()));
        QCOMPARE(changed.size(), 0);
        m_controller->answerLate(second.size());
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.first().at(0).toBool(), true);
        QVERIFY(!control.isStarting());
        QCOMPARE(control.stateText(), QStringLiteral("recording"));
        m_controller->setSilent(false);
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 2, patience);
        QVERIFY(content().contains("parameter \"measurementtool number_of_tools\" 2\n"));
    }

    void ofManyQuestionsSomeAreUnderWayAtOnce() {
        const auto most = std::size_t(workbench::RecordingHeaderQuery::mostAtOnce);
        m_controller->answer("measurementtool number_of_tools", "20");
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        m_controller->setSilent(true);
        control.start(path());
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), std::size_t(6), patience);
        m_controller->answerLate(6);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), most, patience);
        m_controller->answerLate(4);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->unanswered().back() ==
                                     "kestrel2 get measurementtool tip_calibrated b07",
                                 patience);
        QCOMPARE(m_controller->unanswered().size(), most);
        m_controller->setSilent(false);
        m_controller->answerLate(most);
        QVERIFY(changed.wait(patience));
        QCOMPARE(m_controller->count("kestrel2 get measurementtool reference_of_tool b20"), 1);
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 2, patience);
    }

    void whatIsStoppedBeforeItBeginsDoesNotBegin() {
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        QSignalSpy failed(&control, &RecordingControl::failed);
        m_controller->setSilent(true);
        control.start(path());
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), std::size_t(6), patience);
        control.stop();
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().at(0).toBool(), false);
        QCOMPARE(changed.first().at(1).toString(), QString());
        QVERIFY(!control.isStarting());
        QCOMPARE(control.stateText(), QStringLiteral("not recording"));
        QVERIFY(log().contains(
            QStringLiteral("The recording to %1 was stopped before it began").arg(path())));
        // One that begins afterwards has nothing to do with the answers to the first.
        const QString other = m_folder.filePath(QStringLiteral("other.kestrel"));
        control.start(other);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), std::size_t(12), patience);
        m_controller->answerLate(6);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), std::size_t(6), patience);
        waitForAnswers();
        QVERIFY(control.isStarting());
        m_controller->setSilent(false);
        m_controller->answerLate(6);
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 2, patience);
        QCOMPARE(changed.at(1).at(0).toBool(), true);
        QVERIFY(QFileInfo::exists(other));
        QVERIFY(!QFileInfo::exists(path()));
        QCOMPARE(failed.size(), 0);
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 3, patience);
    }

    void aConnectionThatIsLostBeforeItBeginsIsTheReason() {
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        QSignalSpy failed(&control, &RecordingControl::failed);
        m_controller->setSilent(true);
        control.start(path());
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->unanswered().size(), std::size_t(6), patience);
        m_controller->dropConnections();
        QVERIFY(failed.wait(patience));
        const QString sentence =
            QStringLiteral("The recording to %1 has not begun: the connection was lost")
                .arg(path());
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed.first().at(0).toString(), sentence);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().at(0).toBool(), false);
        QCOMPARE(changed.first().at(1).toString(), QStringLiteral("the connection was lost"));
        QVERIFY(log().contains(sentence));
        QVERIFY(!QFileInfo::exists(path()));
        QVERIFY(!control.isStarting());
    }

    void theRoomOnTheDiskIsInTheStatus() {
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        QTRY_VERIFY_WITH_TIMEOUT(control.numbersText().contains(QStringLiteral(" free")), patience);
        const std::string line(1000, 'x');
        QTRY_VERIFY_WITH_TIMEOUT((m_backend->recorder.frame({line}),
                                  control.numbersText().contains(QStringLiteral(", room for "))),
                                 patience);
        control.stop();
    }

    void ofTheDiskIsToldWhatIsKnown_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("notWritten");
        QTest::addColumn<QString>("bothTexts");
        row("English", QLocale::c(), QStringLiteral("%1 not written"),
            QStringLiteral("%1 free, %2 not written"));
        row("German", QLocale(QLocale::German), QStringLiteral("%1 nicht geschrieben"),
            QStringLiteral("%1 frei, %2 nicht geschrieben"));
    }
    void ofTheDiskIsToldWhatIsKnown() {
        QFETCH(QLocale, locale);
        QFETCH(QString, notWritten);
        QFETCH(QString, bothTexts);
        const Language language(locale);
        HangingDisk disk;
        std::promise<void> open;
        Recorder recorder(
            [opener = disk.opener(), mayOpen = open.get_future().share()](const QString& name,
                                                                          QString* error) {
                mayOpen.wait();
                return opener(name, error);
            },
            smallQueue);
        const auto atEnd = qScopeGuard([&] { disk.read(); });
        RecordingControl control(m_backend->session, recorder, m_backend->log);
        QCOMPARE(control.diskText(), QString());

        // The disk has not been asked yet.
        control.start(path());
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().running, patience);
        QCOMPARE(control.diskText(), QString());
        overflow(recorder);
        const quint64 early = recorder.status().unwritten;
        QVERIFY(early > 0);
        QCOMPARE(control.diskText(), notWritten.arg(early));

        open.set_value(); // a pipe, which has room for nothing
        QTRY_COMPARE_WITH_TIMEOUT(recorder.status().freeBytes, qint64(0), patience);
        const QString none = locale.formattedDataSize(0, 1, QLocale::DataSizeSIFormat);
        QCOMPARE(control.diskText(), bothTexts.arg(none, QString::number(early)));
        disk.read();
        control.finish();
        QCOMPARE(control.diskText(), QString());
    }

    void theRoomIsToldAsATime() {
        QCOMPARE(workbench::secondsLeft(-1, 5.0), qint64(-1));
        QCOMPARE(workbench::secondsLeft(1000, 0.0), qint64(-1));
        QCOMPARE(workbench::secondsLeft(1000, 10.0), qint64(100));
        QCOMPARE(workbench::secondsLeft(0, 10.0), qint64(0));
        QVERIFY(workbench::secondsLeft(std::numeric_limits<qint64>::max(), 1e-300) > 0);
        QCOMPARE(workbench::timeText(0), QStringLiteral("less than a minute"));
        QCOMPARE(workbench::timeText(60), QStringLiteral("1 min"));
        QCOMPARE(workbench::timeText(7199), QStringLiteral("119 min"));
        QCOMPARE(workbench::timeText(7200), QStringLiteral("2 h"));
        QCOMPARE(workbench::timeText(172799), QStringLiteral("47 h"));
        QCOMPARE(workbench::timeText(172800), QStringLiteral("2 days"));
        QCOMPARE(workbench::timeText(1000000000), QStringLiteral("999 days"));
    }

    void theSuggestedNameHasDateTimeAndSuffix() {
        RecordingControl control(m_backend->session, m_backend->recorder, m_backend->log);
        const QDateTime before = QDateTime::currentDateTime();
        const QFileInfo first(control.suggestedFile());
        const QDateTime after = QDateTime::currentDateTime();
        const QRegularExpression form(
            QStringLiteral("^recording_(\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d)\\.kestrel$"));
        const QRegularExpressionMatch match = form.match(first.fileName());
        QVERIFY2(match.hasMatch(), qPrintable(first.fileName()));
        const QDateTime named =
            QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd_HH-mm-ss"));
        QVERIFY(named >= before.addSecs(-1));
        QVERIFY(named <= after);
        QVERIFY(first.isAbsolute());
        QVERIFY(first.dir().exists());

        QSignalSpy changed(&control, &RecordingControl::changed);
        control.start(path());
        QVERIFY(changed.wait(patience));
        control.finish();
        QCOMPARE(QFileInfo(control.suggestedFile()).path(),
                 m_folder.path()); // where the last one is
    }
};

QTEST_MAIN(TestRecordingControl)
#include "test_recordingcontrol.moc"
