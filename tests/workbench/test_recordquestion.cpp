#include "tests/support/childprocesses.h"
#include "tests/support/datarows.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/commandlinerun.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/types.h>

using workbench::CommandLineRun;
using workbench::MainWindow;

namespace {
constexpr int patience = 15000;
}

/// "--record" with a file that exists, before a window that somebody sees.
class TestRecordQuestion : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<CommandLineRun> m_run;
    const QByteArray m_before = "mine";

    QString path() const { return m_folder->filePath(QStringLiteral("r.kestrel")); }

    QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QMessageBox* question() const {
        return m_window->findChild<QMessageBox*>(QStringLiteral("ReplaceRecording"));
    }

    bool isRecording() { return m_window->backend().recorder.status().begun; }

    void start(bool overwrite = false, bool simulate = false) {
        workbench::Options options;
        options.simulate = simulate;
        options.pluginFolder = m_folder->path(); // none
        options.connectTo.emplace();
        options.connectTo->port = m_controller->port();
        options.recordFile = path();
        options.overwrite = overwrite;
        m_run = std::make_unique<CommandLineRun>(*m_window, options,
                                                 CommandLineRun::Audience::Somebody);
        m_window->show();
        m_run->start();
    }

    QPushButton* button(const char* name) const {
        return question()->findChild<QPushButton*>(QLatin1String(name));
    }

    void answer(const char* name) {
        QVERIFY(question() != nullptr && question()->isVisible());
        button(name)->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().session.isReady(), patience);
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(m_before), qint64(m_before.size()));
        m_controller = std::make_unique<ScriptedController>();
        MainWindow::Setup setup;
        setup.settingsFile = m_folder->filePath(QStringLiteral("s.ini"));
        setup.simulatorProgram = QStringLiteral(SIMULATOR_PROGRAM);
        m_window = std::make_unique<MainWindow>(setup);
    }
    void cleanup() {
        m_run.reset();
        m_window.reset();
        m_controller.reset();
        m_folder.reset();
    }

    void yesReplacesTheFile() {
        start();
        QVERIFY2(question()->text().startsWith(path() + QStringLiteral(" exists already.")),
                 qPrintable(question()->text()));
        QCOMPARE(content(), m_before);
        answer("pushButton_replace");
        QTRY_VERIFY_WITH_TIMEOUT(isRecording(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(content().startsWith("kestrel-recording 2\n"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(m_run->finish(0), 0, patience);
    }

    void noLeavesItAndConnectsWithoutARecording() {
        start();
        QCOMPARE(question()->defaultButton(), button("pushButton_keep"));
        answer("pushButton_keep");
        // Whatever is to happen once connected has happened when this is answered.
        bool isDone = false;
        m_window->backend().session.channel().askLater(
            "kestrel2 get version model",
            [&isDone](const workbench::CommandChannel::Answer&) { isDone = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isDone, patience);
        QVERIFY(!isRecording());
        QCOMPARE(content(), m_before);
        QCOMPARE(m_run->finish(0), int(workbench::ExitNoRecording));
    }

    void nobodyIsAskedWhoHasSaidSoBefore() {
        start(/*overwrite=*/true);
        QVERIFY(question() == nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(isRecording(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(content().startsWith("kestrel-recording 2\n"), patience);
    }

    void aFileThatIsNotThereIsNoQuestion() {
        QVERIFY(QFile::remove(path()));
        start();
        QVERIFY(question() == nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(isRecording(), patience);
    }

    // As where nobody watches, who is told at once of the recording.
    void aRecordingThatEndsWithItsSimulatorEndsWith5() {
        start(/*overwrite=*/true, /*simulate=*/true);
        QTRY_VERIFY_WITH_TIMEOUT(isRecording(), patience);
        QSignalSpy ended(m_window.get(), &MainWindow::simulatorEnded);
        const QList<qint64> children = childProcesses(QCoreApplication::applicationPid());
        QCOMPARE(children.size(), 1);
        QCOMPARE(::kill(static_cast<pid_t>(children.constFirst()), SIGKILL), 0);
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, patience);
        QVERIFY(m_window->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(m_run->finish(0), int(workbench::ExitNoRecording), patience);
    }

    void aRecordingThatEndsByItselfLeavesTheWindowAndItsLog() {
        start(/*overwrite=*/true);
        QTRY_VERIFY_WITH_TIMEOUT(isRecording(), patience);
        QVERIFY(QFile::remove(path()));
        const auto told = [this] {
            return m_window->banner().text(workbench::BannerTopic::Recording);
        };
        QTRY_VERIFY_WITH_TIMEOUT(told().contains(QStringLiteral("the file was removed meanwhile")),
                                 patience);
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->backend().session.isReady());
        QCOMPARE(m_run->finish(0), int(workbench::ExitNoRecording));
        // What is recorded by hand afterwards is another matter.
        m_window->startRecording(m_folder->filePath(QStringLiteral("none/there.kestrel")));
        QTRY_VERIFY_WITH_TIMEOUT(told().contains(QStringLiteral("there.kestrel")), patience);
        QVERIFY(m_window->isVisible());
    }

    void escapeIsANo() {
        start();
        QTest::keyClick(question(), Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().session.isReady(), patience);
        QCOMPARE(content(), m_before);
        QCOMPARE(m_run->finish(0), int(workbench::ExitNoRecording));
    }

    void theWindowCanBeClosedInFrontOfIt() {
        start();
        QVERIFY(question()->isVisible());
        m_window->close();
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->isVisible(), patience);
        QCOMPARE(content(), m_before);
        QCOMPARE(m_controller->connections(), 0);
    }
};

QTEST_MAIN(TestRecordQuestion)
#include "test_recordquestion.moc"
