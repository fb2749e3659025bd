#include "libs/kestrel_wire/recording.h"
#include "tests/end_to_end/processes.h"
#include "tests/support/childprocesses.h"
#include "tests/support/datarows.h"
#include "workbench/commandlinerun.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/readout/readoutdock.h"
#include "workbench/window/recording/replaybar.h"
#include "workbench/window/sending/outletcontrol.h"
#include "workbench/window/settings/windowsettings.h"
#include "workbench/window/state/banner.h"

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUdpSocket>
#include <QtTest>

#include <csignal>
#include <fstream>
#include <memory>

using namespace processes;
using workbench::BannerTopic;
using workbench::MainWindow;
using workbench::ReplayControl;
using State = ReplayControl::State;

namespace {

constexpr int patienceMs = 15000 * slowness;
constexpr double overdue = workbench::DataWatch::stoppedAfter + 0.3; // the display would be told
constexpr std::uint64_t distance = 50000; // microseconds between two frames
constexpr int frames = 201;               // of ten seconds

std::string frame(std::uint64_t time, int number) {
    const std::string x = std::to_string(number);
    return kestrel_wire::formatRecord(time, "fr " + x) +
           kestrel_wire::formatRecord(time, "6dmt2 1 1 [0 1.0 1 1.5][" + x +
                                                " 0 0][1 0 0 0 1 0 0 0 1][0][0 0 0 0 0 0]");
}

// Frame 100 at the beginning, the tool's x is the frame's number.
std::string manyFrames(int first = 100, std::uint64_t apart = distance) {
    std::string records;
    for (int i = 0; i < frames; ++i) {
        records += frame(1000000 + static_cast<std::uint64_t>(i) * apart, first + i);
    }
    return records;
}

} // namespace

/// Recordings in the workbench's window, with a simulator process of its own and the plug-in.
class TestReplay : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<workbench::CommandLineRun> m_run;
    kestrel_wire::RecordingHeader m_header;

    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }

    QString write(const std::string& records, const char* name = "demo.kestrel") {
        const QString file = path(name);
        std::ofstream(file.toStdString(), std::ios::binary)
            << kestrel_wire::formatRecordingHeader(m_header) << records;
        return file;
    }

    void openWindow(const QString& simulator = QStringLiteral(KESTREL_SIMULATOR)) {
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{path("workbench.ini"), false, true, simulator});
        workbench::Options options;
        options.pluginFolder = QStringLiteral(KESTREL_PLUGINS);
        m_run = std::make_unique<workbench::CommandLineRun>(*m_window, options);
        m_window->show();
        m_run->start();
    }

    QString writeScript(const QByteArray& lines) {
        const QString program = path("simulator.sh");
        QFile file(program);
        if (file.open(QIODevice::WriteOnly)) {
            file.write("#!/bin/sh\n" + lines + '\n');
            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        return program;
    }

    void play(const std::string& records) {
        openWindow();
        m_window->openRecording(write(records));
    }

    ReplayControl& replay() const { return m_window->backend().replay; }
    template <typename T>
    T* find(const char* name) const {
        return m_window->findChild<T*>(QLatin1String(name));
    }
    QToolButton* playButton() const { return find<QToolButton>("toolButton_replayPlay"); }
    QToolButton* stepButton() const { return find<QToolButton>("toolButton_replayStep"); }
    QToolButton* closeButton() const { return find<QToolButton>("toolButton_replayClose"); }
    QSlider* slider() const { return find<QSlider>("slider_replay"); }
    QString barText() const { return find<QLabel>("label_replay")->text(); }
    QString startText() const { return find<QLabel>("label_startState")->text(); }
    QString status() const { return find<QLabel>("statusConnection")->text(); }
    bool isBarVisible() const { return m_window->findChild<workbench::ReplayBar*>()->isVisible(); }

    // The number of the frame that the display shows; -1 when it shows none.
    int shownFrame() const {
        const auto* const tools = m_window->findChild<QTableWidget*>(toolTable);
        const QTableWidgetItem* const cell =
            tools == nullptr || tools->rowCount() == 0 ? nullptr : tools->item(0, toolPoseColumn);
        return cell == nullptr || cell->text().isEmpty() ? -1 : qRound(cell->text().toDouble());
    }
    QString noData() const { return m_window->banner().text(BannerTopic::NoData); }
    workbench::FrameStatistics::Snapshot counts() const {
        return m_window->backend().receiver.statistics().snapshot();
    }

    void playUntilShown() {
        play(manyFrames());
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
    }
    void pause() {
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Playing, patienceMs);
        playButton()->click();
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Paused, patienceMs);
    }
    void seek(double seconds) const {
        slider()->setValue(qRound(slider()->maximum() * seconds / replay().duration()));
    }

    const workbench::ReadoutDock* openReadOut() const {
        auto* const dock = m_window->findChild<workbench::ReadoutDock*>();
        dock->show();
        dock->raise();
        return dock;
    }
    // What the read-out shows, in one sentence.
    QString readOut() const { return find<QWidget>("figurePanel")->accessibleDescription(); }
    int readOutFrame() const {
        static const QRegularExpression x(QStringLiteral(", x (-?[0-9.]+) mm"));
        const QRegularExpressionMatch match = x.match(readOut());
        return match.hasMatch() ? qRound(match.captured(1).toDouble()) : -1;
    }

    QString titleOfDisplay() const {
        const auto docks = m_window->findChildren<QDockWidget*>();
        for (const QDockWidget* const dock : docks) {
            if (dock->findChild<QTableWidget*>(toolTable) != nullptr) {
                return dock->windowTitle();
            }
        }
        return {};
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_header = {"3.1.0", "1.14.0", "3.1.0", "RECORDED", {}, 1795318812000};
    }
    void cleanup() {
        m_run.reset();
        m_window.reset();
        m_folder.reset();
    }

    void comesAsLiveDataDoAndIsCalledAReplayEverywhere() {
        openWindow();
        QVERIFY(!isBarVisible());
        const QString own = m_window->windowTitle();
        m_window->openRecording(write(manyFrames()));
        QCOMPARE(startText(), QString("REPLAY demo.kestrel, being opened"));
        QVERIFY(isBarVisible());
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Playing, patienceMs);
        const QString words = QStringLiteral("REPLAY demo.kestrel, playing");
        QCOMPARE(m_window->windowTitle(), words + " – " + own);
        QCOMPARE(status(), words);
        QVERIFY2(titleOfDisplay().startsWith("REPLAY demo.kestrel – "),
                 qPrintable(titleOfDisplay()));
        QVERIFY2(barText().startsWith(words + " – ") && barText().contains(" of 10.0 s, recorded "),
                 qPrintable(barText()));
        QVERIFY2(barText().contains("2026-11-22 03:40:1"), qPrintable(barText()));
        QCOMPARE(find<QLabel>("statusMeasurement")->text(), QString("replay"));
        QVERIFY2(!find<QAction>("actionRecord")->isEnabled(), "old data as if they were new");
        QVERIFY(workbench::WindowSettings(path("workbench.ini")).recentControllers().isEmpty());
        closeButton()->click();
        QCOMPARE(m_window->windowTitle(), own);
        QVERIFY(!isBarVisible());
        QCOMPARE(startText(), QString("Not connected"));
    }

    void itsBeginAndItsEndAreLinesOfTheLog() {
        const auto hasLine = [this](const char* name, const char* word) {
            return m_window->backend().log.toText().contains(
                QStringLiteral("Replay of %1 %2").arg(path(name), QLatin1String(word)));
        };
        playUntilShown();
        QTRY_VERIFY_WITH_TIMEOUT(hasLine("demo.kestrel", "begun"), patienceMs);
        pause();
        QVERIFY(!hasLine("demo.kestrel", "ended"));
        QVERIFY(QFile::copy(path("demo.kestrel"), path("other.kestrel")));
        m_window->openRecording(path("other.kestrel"));
        QTRY_VERIFY_WITH_TIMEOUT(hasLine("demo.kestrel", "ended"), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(hasLine("other.kestrel", "begun"), patienceMs);
        closeButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(hasLine("other.kestrel", "ended"), patienceMs);
    }

    void oneThatHangsIsNoControllerWithABadCable() {
        playUntilShown();
        const auto simulator =
            static_cast<pid_t>(childProcesses(QCoreApplication::applicationPid()).value(0));
        QVERIFY(simulator > 0);
        QCOMPARE(::kill(simulator, SIGSTOP), 0);
        const auto told = [this] { return m_window->banner().text(BannerTopic::Connection); };
        QTRY_VERIFY_WITH_TIMEOUT(
            told().contains("The program that plays the recording does not answer"), patienceMs);
        QVERIFY2(!told().contains("cable"), qPrintable(told()));
        QVERIFY2(
            m_window->windowTitle().startsWith("REPLAY demo.kestrel, which does not answer – "),
            qPrintable(m_window->windowTitle()));
        QCOMPARE(::kill(simulator, SIGCONT), 0);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->windowTitle().startsWith("REPLAY demo.kestrel, playing"),
                                 patienceMs);
        QCOMPARE(told(), QString());
    }

    void aPauseIsNoFaultAndNothingInItLooksLive() {
        playUntilShown();
        pause();
        QTRY_VERIFY_WITH_TIMEOUT(counts().lastFrameAge > overdue, patienceMs);
        QCOMPARE(noData(), QString());
        QVERIFY2(shownFrame() >= 100, "the frame can still be read");
        const QString words = QStringLiteral("REPLAY demo.kestrel, paused at %1 s")
                                  .arg((shownFrame() - 100) / 20.0, 0, 'f', 1);
        QCOMPARE(status(), words);
        QVERIFY(m_window->windowTitle().startsWith(words));
        QVERIFY2(titleOfDisplay().startsWith(words + " – "), qPrintable(titleOfDisplay()));
        QCOMPARE(playButton()->text(), QString("Play"));
        const int shown = shownFrame();
        playButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() > shown, patienceMs);
        QCOMPARE(playButton()->text(), QString("Pause"));
        QCOMPARE(noData(), QString());
        QVERIFY(counts().lostFrames == 0);
    }

    void oneFrameIsOne() {
        playUntilShown();
        pause();
        const int first = 100 + qRound(replay().position() / 0.05);
        QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), first, patienceMs);
        for (int i = 1; i <= 3; ++i) {
            stepButton()->click();
            QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), first + i, patienceMs);
        }
        QCOMPARE(replay().state(), State::Paused);
    }

    void theSliderLeadsAnywhereAndNothingCountsAsLost() {
        playUntilShown();
        pause();
        for (const double seconds : {2.5, 0.5, 1.0}) {
            seek(seconds);
            QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), 100 + qRound(seconds / 0.05), patienceMs);
            QTRY_VERIFY_WITH_TIMEOUT(
                status().endsWith(QStringLiteral("paused at %1 s").arg(seconds, 0, 'f', 1)),
                patienceMs);
        }
        playButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() > 122, patienceMs);
        seek(2.0); // while it plays
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() > 142, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(counts().lostFrames == 0, patienceMs);
        QCOMPARE(noData(), QString());
    }

    void itStaysAtItsEndAndSaysSoUntilItIsPlayedAnew() {
        playUntilShown();
        find<QComboBox>("comboBox_replaySpeed")->setFocus();
        QTest::keyClick(find<QComboBox>("comboBox_replaySpeed"), Qt::Key_End);
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Ended, patienceMs);
        QCOMPARE(replay().speed(), 10.0);
        QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), 100 + frames - 1, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(counts().lastFrameAge > overdue, patienceMs);
        QCOMPARE(noData(), QString());
        QCOMPARE(shownFrame(), 100 + frames - 1);
        QCOMPARE(status(), QString("REPLAY demo.kestrel, at its end (10.0 s)"));
        QCOMPARE(slider()->value(), slider()->maximum());
        QVERIFY(!stepButton()->isEnabled());
        m_window->backend().session.channel().askLater("kestrel2 sim replay speed 0.15");
        playButton()->click();
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Playing, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() < 110, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(status(), QString("REPLAY demo.kestrel, playing at speed 0.15"),
                                  patienceMs);
        QCOMPARE(find<QComboBox>("comboBox_replaySpeed")->currentText(), QString("0.15 ×"));
        QVERIFY(counts().lostFrames == 0);
    }

    void oneThatGetsShorterMeanwhileIsNoWholeOne() {
        // So large that the simulator has not read it all by then.
        const std::string much(4000, 'x');
        std::string records;
        for (int i = 0; i < frames; ++i) {
            const std::uint64_t time = 1000000 + static_cast<std::uint64_t>(i) * distance;
            records += frame(time, 100 + i) + kestrel_wire::formatRecord(time, "other " + much);
        }
        play(records);
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QFile file(path("demo.kestrel"));
        QVERIFY(file.resize(file.size() / 2));
        QTest::keyClick(find<QComboBox>("comboBox_replaySpeed"), Qt::Key_End);
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Ended, patienceMs);
        QVERIFY(replay().isCutShort());
        const QRegularExpression text(
            QStringLiteral("^REPLAY demo\\.kestrel, cut short at [45]\\.[0-9] of 10\\.0 s$"));
        QVERIFY2(text.match(status()).hasMatch(), qPrintable(status()));
        const QString sentence =
            path("demo.kestrel") +
            QStringLiteral(" has been changed since it was opened: its replay ends early");
        QCOMPARE(m_window->banner().text(BannerTopic::Notice), sentence);
        QCOMPARE(m_window->backend().log.toText().count(sentence), 1);
    }

    void aGapInTheRecordingIsTold() {
        std::string records = frame(0, 1);
        for (int i = 0; i < frames; ++i) {
            records += frame(3500000 + static_cast<std::uint64_t>(i) * distance, 100 + i);
        }
        play(records);
        QTRY_VERIFY_WITH_TIMEOUT(noData().contains("the recording has no frames here"), patienceMs);
        QVERIFY2(titleOfDisplay().contains(" – no data for "), qPrintable(titleOfDisplay()));
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QCOMPARE(noData(), QString());
        QVERIFY(!titleOfDisplay().contains("no data"));
    }

    void theReadOutFollowsAndSaysThatItIsAReplay() {
        playUntilShown();
        const auto* const dock = openReadOut();
        QTRY_VERIFY_WITH_TIMEOUT(readOutFrame() >= 100, patienceMs);
        QVERIFY2(readOut().startsWith("M1, replay, x "), qPrintable(readOut()));
        QTRY_VERIFY_WITH_TIMEOUT(dock->windowTitle().startsWith("REPLAY demo.kestrel – "),
                                 patienceMs);
        pause();
        const int paused = 100 + qRound(replay().position() / 0.05);
        QTRY_COMPARE_WITH_TIMEOUT(readOutFrame(), paused, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(dock->windowTitle().startsWith("REPLAY demo.kestrel, paused at "),
                                 patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(dock->view().age > overdue, patienceMs);
        QCOMPARE(readOutFrame(), paused);
        QVERIFY2(readOut().startsWith("M1, replay, x "), qPrintable(readOut()));
        stepButton()->click();
        QTRY_COMPARE_WITH_TIMEOUT(readOutFrame(), paused + 1, patienceMs);
        playButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(readOutFrame() > paused + 2, patienceMs);
        QVERIFY(dock->view().age < overdue);
        closeButton()->click();
        QTRY_COMPARE_WITH_TIMEOUT(readOut(), QString("M1, not connected"), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!dock->windowTitle().contains("REPLAY"), patienceMs);
    }

    void inAGapTheReadOutSaysThatItsFiguresAreOld() {
        std::string records;
        for (int i = 0; i < frames; ++i) {
            const std::uint64_t gap = i < 60 ? 0 : 5000000;
            records += frame(1000000 + gap + static_cast<std::uint64_t>(i) * distance, 100 + i);
        }
        play(records);
        const auto* const dock = openReadOut();
        QTRY_VERIFY_WITH_TIMEOUT(readOut().startsWith("M1, replay, x "), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(readOut().startsWith("M1, old"), patienceMs);
        QVERIFY2(readOutFrame() < 160, "of before the gap, if any");
        QTRY_VERIFY_WITH_TIMEOUT(dock->windowTitle().contains(" – no data for "), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(readOutFrame() >= 160, patienceMs);
        QVERIFY2(readOut().startsWith("M1, replay, x "), qPrintable(readOut()));
    }

    void theKeyboardDoesIt() {
        playUntilShown();
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Playing, patienceMs);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(m_window.get(), Qt::Key_F7);
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::Paused, patienceMs);
        slider()->setFocus();
        QTest::keyClick(slider(), Qt::Key_Home);
        QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), 100, patienceMs);
        QTest::keyClick(slider(), Qt::Key_Right);
        QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), 120, patienceMs);
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        QTRY_COMPARE_WITH_TIMEOUT(shownFrame(), 121, patienceMs);
        for (const QWidget* const widget : std::initializer_list<QWidget*>{
                 playButton(), stepButton(), find<QComboBox>("comboBox_replaySpeed"), slider(),
                 closeButton()}) {
            QVERIFY2((widget->focusPolicy() & Qt::TabFocus) != 0 &&
                         !widget->accessibleName().isEmpty(),
                     qPrintable(widget->objectName()));
        }
    }

    void whatCannotBePlayedIsSaid_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        row("damaged",
            QByteArray("kestrel-recording 1\nversion system 3.1.0\nversion protocol "
                       "1.14.0\nrecords\n5 fr fr 1\nnonsense\n"),
            "line 6: unreadable time stamp");
        row("no recording", QByteArray("hello\n"), "line 1: not a recording of a known format");
        QTest::newRow("empty") << QByteArray() << "the recording is empty or unreadable";
    }

    void whatCannotBePlayedIsSaid() {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        openWindow();
        const QString own = m_window->windowTitle();
        const QString name = path("bad.kestrel");
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        m_window->openRecording(name);
        QTRY_COMPARE_WITH_TIMEOUT(startText(), name + " cannot be played: " + reason, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().log.toText().contains(reason), patienceMs);
        QCOMPARE(m_window->windowTitle(), own);
        QVERIFY(!isBarVisible());
        file.remove();
        m_window->openRecording(name);
        QTRY_COMPARE_WITH_TIMEOUT(
            startText(), name + " cannot be played: the recording cannot be opened", patienceMs);
    }

    void aRecordingWithoutFramesOrOfVersionOneIsCalledSo() {
        m_header.start.reset();
        play({});
        QTRY_COMPARE_WITH_TIMEOUT(status(), QString("REPLAY demo.kestrel, which has no frames"),
                                  patienceMs);
        QVERIFY(!playButton()->isEnabled() && !slider()->isEnabled());
        QVERIFY(closeButton()->isEnabled());
        m_window->openRecording(write(manyFrames())); // another one in its place
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QVERIFY2(!barText().contains("recorded"), qPrintable(barText()));
    }

    void whileItIsReadTheWindowLivesAndItCanBeGivenUp() {
        openWindow(writeScript("trap '' TERM\nexec sleep 60")); // busy, as with a huge recording
        QElapsedTimer clock;
        clock.start();
        m_window->openRecording(write(manyFrames()));
        QVERIFY(closeButton()->isEnabled() && !playButton()->isEnabled());
        closeButton()->click();
        QVERIFY2(clock.elapsed() < 1000 * slowness, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(startText(), QString("Not connected"));
        QCOMPARE(replay().state(), State::None);
    }

    void slowMotionIsNoFault() {
        play(manyFrames(100, 2 * distance));
        auto* const speed = find<QComboBox>("comboBox_replaySpeed");
        QTRY_VERIFY_WITH_TIMEOUT(speed->isEnabled(), patienceMs);
        QTest::keyClick(speed, Qt::Key_Home);
        QTRY_COMPARE_WITH_TIMEOUT(replay().speed(), 0.1, patienceMs); // a frame a second
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QStringList alarms;
        connect(&m_window->backend().watch, &workbench::DataWatch::changed, &m_window->banner(),
                [&] { alarms += noData(); });
        const int shown = shownFrame();
        QTRY_VERIFY_WITH_TIMEOUT(counts().lastFrameAge > workbench::DataWatch::oldAfter + 0.2,
                                 patienceMs);
        QVERIFY(!counts().lossIsEstimated);
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= shown + 2, patienceMs);
        alarms.removeAll({});
        QCOMPARE(alarms, QStringList());
        QCOMPARE(status(), QString("REPLAY demo.kestrel, playing at speed 0.1"));
    }

    void aSimulatorThatDiesTakesTheReplayAlong() {
        const QString simulator = QStringLiteral(KESTREL_SIMULATOR);
        openWindow(writeScript(QStringLiteral("echo $$ > '%1'\nexec '%2' \"$@\"")
                                   .arg(path("pid"), simulator)
                                   .toLocal8Bit()));
        const QString own = m_window->windowTitle();
        m_window->openRecording(write(manyFrames()));
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        QFile file(path("pid"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto process = static_cast<pid_t>(file.readAll().trimmed().toInt());
        QVERIFY(process > 0);
        QCOMPARE(::kill(process, SIGKILL), 0);
        QTRY_COMPARE_WITH_TIMEOUT(replay().state(), State::None, patienceMs);
        QVERIFY2(startText().contains("was ended"), qPrintable(startText()));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().log.toText().contains("was ended"),
                                 patienceMs);
        QCOMPARE(m_window->windowTitle(), own);
        QVERIFY(!isBarVisible());
        QCOMPARE(shownFrame(), -1);
        QVERIFY2(!titleOfDisplay().contains("REPLAY"), qPrintable(titleOfDisplay()));
        m_window->openRecording(path("demo.kestrel"));
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
    }

    void anotherOneTakesItsPlace() {
        playUntilShown();
        m_window->openRecording(write(manyFrames(5000), "other.kestrel"));
        QCOMPARE(startText(), QString("REPLAY other.kestrel, being opened"));
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 5000, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(status(), QString("REPLAY other.kestrel, playing"), patienceMs);
        QVERIFY(counts().lostFrames == 0);
        const QString damaged = write("nonsense\n", "damaged.kestrel");
        m_window->openRecording(damaged);
        QTRY_VERIFY_WITH_TIMEOUT(startText().startsWith(damaged + " cannot be played: "),
                                 patienceMs);
        QCOMPARE(shownFrame(), -1);
        QVERIFY(!m_window->windowTitle().contains("REPLAY"));
    }

    void nothingOfItIsSentModulesAreToldAndAfterwardsAllIsLive() {
        constexpr int first = 1000000; // a number that live frames do not reach
        const Simulator controller(QStringList{QStringLiteral("--no-occlusion")});
        QVERIFY(controller.isListening());
        QUdpSocket reader;
        QVERIFY(reader.bind(QHostAddress::LocalHost));
        openWindow();
        workbench::OutletUrl url;
        QString error;
        QVERIFY(url.parse(QStringLiteral("udp://127.0.0.1:%1").arg(reader.localPort()), &error));
        QVERIFY(m_window->outlets().add(url, workbench::OutletControl::Memory::ThisRun, &error));
        int live = 0;
        int old = 0;
        const auto readAll = [&] {
            while (reader.hasPendingDatagrams()) {
                const QByteArray text = reader.receiveDatagram().data();
                const int number =
                    QJsonDocument::fromJson(text).object().value(QLatin1String("frame")).toInt();
                ++(number < first ? live : old);
            }
            return live;
        };
        const auto result = [this](const char* text) {
            m_window->backend().io.write_log("result", "TEST", 1, text);
        };
        const auto pointsState = [this] {
            const auto* const dock = find<QDockWidget>("ProbePointsDock");
            const auto* const label =
                dock == nullptr ? nullptr : dock->findChild<QLabel*>(QStringLiteral("label_state"));
            return label == nullptr ? QString() : label->text();
        };
        const QString refusal = QStringLiteral("A recording is played: nothing is captured.");
        workbench::ControllerAddress address;
        QVERIFY(address.parse(controller.address()));

        for (int round = 0; round < 2; ++round) {
            m_window->connectTo(address);
            QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().session.isReady(), patienceMs);
            QVERIFY(!pointsState().isEmpty() && pointsState() != refusal);
            live = 0;
            m_window->startMeasurement();
            QTRY_VERIFY_WITH_TIMEOUT(readAll() > 3, patienceMs);
            QCOMPARE(old, 0);
            if (round == 0) {
                m_window->openRecording(write(manyFrames(first)));
                QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= first + 10, patienceMs);
                QCOMPARE(pointsState(), refusal);
                result("{\"old\":1}");
                QTRY_VERIFY_WITH_TIMEOUT(
                    m_window->backend().log.toText().contains("result (replay)\tTEST"), patienceMs);
            }
        }
        const workbench::OutletHub::Entry entry = m_window->outlets().entries().front();
        QCOMPARE(entry.status.droppedFrames, quint64(0));
    }

    void itEndsARecordingAndCannotBeRecorded() {
        const Simulator controller(QStringList{QStringLiteral("--no-occlusion")});
        QVERIFY(controller.isListening());
        openWindow();
        workbench::ControllerAddress address;
        QVERIFY(address.parse(controller.address()));
        m_window->connectTo(address);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().session.isReady(), patienceMs);
        m_window->startMeasurement();
        m_window->startRecording(path("live.kestrel"));
        const workbench::Recorder& recorder = m_window->backend().recorder;
        QTRY_VERIFY_WITH_TIMEOUT(recorder.status().frames > 3, patienceMs);
        m_window->openRecording(write(manyFrames()));
        QTRY_VERIFY_WITH_TIMEOUT(!recorder.status().running, patienceMs);
        const quint64 recorded = recorder.status().frames;
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().log.toText().contains(
                                     QStringLiteral("Recorded %1 frames to ").arg(recorded)),
                                 patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(shownFrame() >= 100, patienceMs);
        const auto* const record = find<QAction>("actionRecord");
        QVERIFY(!record->isEnabled());
        QVERIFY2(record->toolTip().contains("being played"), qPrintable(record->toolTip()));
        QCOMPARE(recorder.status().frames, recorded);
        m_window->openRecording(path("live.kestrel")); // it is whole
        QTRY_VERIFY_WITH_TIMEOUT(status().startsWith("REPLAY live.kestrel, at its end ("),
                                 patienceMs);
    }

    void withoutASimulatorItSaysSo() {
        openWindow(path("none"));
        m_window->openRecording(write(manyFrames()));
        QTRY_VERIFY_WITH_TIMEOUT(startText().contains("none cannot be started"), patienceMs);
        QVERIFY(!isBarVisible());
    }

    void aConnectionToElsewhereEndsIt() {
        const Simulator other(QStringList{QStringLiteral("--no-occlusion")});
        QVERIFY(other.isListening());
        playUntilShown();
        pause();
        workbench::ControllerAddress address;
        QVERIFY(address.parse(other.address()));
        m_window->connectTo(address);
        QCOMPARE(replay().state(), State::None);
        QVERIFY(!isBarVisible());
        QTRY_COMPARE_WITH_TIMEOUT(status(), "Connected to " + other.address(), patienceMs);
        QVERIFY(!m_window->windowTitle().contains("REPLAY"));
        QVERIFY(!titleOfDisplay().contains("REPLAY"));
        // frames are expected again
        m_window->startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(counts().frames > 0, patienceMs);
        m_window->backend().session.channel().askLater("kestrel2 set data_port 0");
        QTRY_VERIFY_WITH_TIMEOUT(!noData().isEmpty(), patienceMs);
    }
};

QTEST_MAIN(TestReplay)
#include "test_replay.moc"
