#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <cerrno>
#include <memory>

using workbench::BannerTopic;
using workbench::MainWindow;

namespace {

constexpr int patience = 15000;
constexpr int goneMs = 200;

} // namespace

/// What stands over the docks and in the log when a recording begins and ends, by itself or not.
class TestRecordingBanner : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;

    QString path() const { return m_folder->filePath(QStringLiteral("here/r.kestrel")); }

    // Of the log's rows with this text, their levels in words.
    QStringList levelsOf(const QString& text) const {
        const workbench::LogModel& log = m_window->backend().log;
        QStringList levels;
        for (int row = 0; row < log.rowCount(); ++row) {
            const auto cell = [&](int column) {
                return log.data(log.index(row, column), Qt::DisplayRole).toString();
            };
            if (cell(workbench::LogModel::TextColumn) == text) {
                levels += cell(workbench::LogModel::LevelColumn);
            }
        }
        return levels;
    }

    void connectWindow() const {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        workbench::ControllerAddress address;
        address.port = m_controller->port();
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
    }

    // A recording with one frame, all of it on the disk.
    void record() const {
        QSignalSpy changed(m_window.get(), &MainWindow::recordingChanged);
        m_window->startRecording(path());
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.first().first().toBool(), true);
        m_controller->sendFrame("fr 1\r\n6dmt 0");
        QTRY_COMPARE_WITH_TIMEOUT(m_window->backend().recorder.status().frames, quint64(1),
                                  patience);
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("here")));
        m_controller = std::make_unique<ScriptedController>();
        MainWindow::Setup setup;
        setup.settingsFile = m_folder->filePath(QStringLiteral("s.ini"));
        setup.recordingGoneMs = goneMs;
        m_window = std::make_unique<MainWindow>(setup);
        m_window->modulesLoaded();
        m_window->show();
        connectWindow();
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
        m_folder.reset();
    }

    void anEndByItselfStandsThereWithItsReason_data() {
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QString>("content");
        const QString one = QStringLiteral("It is whole until then: 1 frames.");
        QTest::newRow("disk full") << qt_error_string(EFBIG) << one;
        row("folder gone", QStringLiteral("the file was removed meanwhile"),
            QStringLiteral("There are no frames in it."));
        row("file moved", QStringLiteral("the file was moved meanwhile"), one);
        QTest::newRow("controller gone") << QStringLiteral("the controller is gone") << one;
    }
    void anEndByItselfStandsThereWithItsReason() {
        QFETCH(QString, reason);
        QFETCH(QString, content);
        const QByteArray cause = QTest::currentDataTag();
        const workbench::Banner& banner = m_window->banner();
        record();
        QVERIFY(banner.text(BannerTopic::Recording).isEmpty());
        const auto isTold = [&] { return !banner.text(BannerTopic::Recording).isEmpty(); };
        if (cause == "disk full") {
            const FullDisk disk(static_cast<rlim_t>(QFile(path()).size()) + 5);
            m_controller->sendFrame("fr 2\r\n6dmt 0");
            QTRY_VERIFY_WITH_TIMEOUT(isTold(), patience);
        } else if (cause == "folder gone") {
            QVERIFY(QDir(m_folder->filePath(QStringLiteral("here"))).removeRecursively());
        } else if (cause == "file moved") {
            QVERIFY(QFile::rename(path(), m_folder->filePath(QStringLiteral("moved"))));
        } else {
            m_controller->stopListening();
            m_controller->dropConnections();
        }
        QTRY_VERIFY_WITH_TIMEOUT(isTold(), patience);
        const QString ended = QStringLiteral("The recording to %1 ended: %2").arg(path(), reason);
        const QString sentence = ended + QStringLiteral(". ") + content;
        QCOMPARE(banner.text(BannerTopic::Recording), sentence);
        QVERIFY(banner.isVisible());
        QCOMPARE(banner.lines().filter(sentence).size(), 1);
        QVERIFY2(banner.lines().filter(sentence).constFirst().startsWith(QStringLiteral("Error")),
                 qPrintable(banner.lines().join(QLatin1Char('\n'))));
        QCOMPARE(m_window->findChild<QLabel*>(QStringLiteral("statusRecording"))->text(),
                 QStringLiteral("not recording"));
        QTRY_COMPARE_WITH_TIMEOUT(levelsOf(ended), QStringList({"Error"}), patience);
        QCOMPARE(levelsOf(QStringLiteral("Recording to ") + path()), QStringList({"Information"}));
    }

    void whatStandsThereGoesWithTheNextRecording() {
        record();
        QVERIFY(QDir(m_folder->filePath(QStringLiteral("here"))).removeRecursively());
        const workbench::Banner& banner = m_window->banner();
        QTRY_VERIFY_WITH_TIMEOUT(!banner.text(BannerTopic::Recording).isEmpty(), patience);
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("here")));
        record();
        QVERIFY(banner.text(BannerTopic::Recording).isEmpty());
    }

    void anEndByHandIsALineInTheLogAndNoneOverTheDocks() {
        record();
        QTRY_COMPARE_WITH_TIMEOUT(levelsOf(QStringLiteral("Recording to ") + path()),
                                  QStringList({"Information"}), patience);
        QSignalSpy changed(m_window.get(), &MainWindow::recordingChanged);
        m_window->stopRecording();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, patience);
        QTRY_COMPARE_WITH_TIMEOUT(levelsOf(QStringLiteral("Recorded 1 frames to ") + path()),
                                  QStringList({"Information"}), patience);
        QVERIFY(m_window->banner().text(BannerTopic::Recording).isEmpty());
    }

    void aRecordingThatCannotBeginStandsThereToo() {
        m_window->startRecording(QStringLiteral("/no/such/folder/r.kestrel"));
        const workbench::Banner& banner = m_window->banner();
        QTRY_VERIFY_WITH_TIMEOUT(!banner.text(BannerTopic::Recording).isEmpty(), patience);
        const QString sentence = banner.text(BannerTopic::Recording);
        QVERIFY2(
            sentence.startsWith(QStringLiteral("/no/such/folder/r.kestrel cannot be written: ")),
            qPrintable(sentence));
        QTRY_COMPARE_WITH_TIMEOUT(levelsOf(sentence), QStringList({"Error"}), patience);
    }
};

QTEST_MAIN(TestRecordingBanner)
#include "test_recordingbanner.moc"
