#include "tests/workbench/backendfixture.h"
#include "tests/workbench/outlets/hangingdisk.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/recordingcontrol.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using workbench::Recorder;
using workbench::RecordingControl;

namespace {

constexpr int patience = 15000;
constexpr std::size_t smallQueue = 200 * 1024;

} // namespace

/// What the user is told of a recording.
class TestRecordingControl : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<BackendFixture> m_backend;

    QString path() const { return m_folder.filePath(QStringLiteral("r.kestrel")); }
    QString log() const {
        QCoreApplication::processEvents();
        return m_backend->log.toText();
    }
    static void overflow(Recorder& recorder) {
        for (int i = 0; i < 100; ++i) {
            recorder.frame({std::string(10000, 'x')});
        }
    }

private Q_SLOTS:
    void init() {
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
        overflow(recorder);
        QTRY_COMPARE_WITH_TIMEOUT(control.stateText(), QStringLiteral("the disk does not answer"),
                                  patience);
        QTRY_VERIFY_WITH_TIMEOUT(
            log().contains(QStringLiteral("The disk does not answer; %1 is").arg(path())),
            patience);
        QVERIFY(log().contains(QStringLiteral("frames are missing in ") + path()));
        const quint64 missing = recorder.status().unwritten;
        QVERIFY(missing > 0);
        QVERIFY(control.numbersText().endsWith(QStringLiteral(", %1 not written").arg(missing)));
        QVERIFY(control.isRunning());

        disk.read();
        QTRY_VERIFY_WITH_TIMEOUT(
            log().contains(QStringLiteral("The disk answers again; %1 is").arg(path())), patience);
        changed.clear();
        control.stop();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, patience);
        QVERIFY(!control.isRunning());
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
};

QTEST_MAIN(TestRecordingControl)
#include "test_recordingcontrol.moc"
