#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/paintwatch.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/plot/plotdock.h"
#include "workbench/window/readout/readoutdock.h"

#include <QComboBox>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>
#include <qwt_plot.h>

#include <cmath>

using workbench::ControllerAddress;
using workbench::MainWindow;
using workbench::PlotDock;

namespace {

constexpr int patience = 8000;
constexpr int quietMs = 700; // more than two of the plot's refreshes at their fastest

std::string toolBlock(int index, double x, bool isSeen) {
    return " [" + std::to_string(index) + (isSeen ? " 1.0" : " -1.0") + " 0 1.5][" +
           QByteArray::number(x, 'f', 6).toStdString() +
           " -2.5 310][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]";
}

} // namespace

/// The plot in the window, over real sockets.
class TestPlotDock : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;
    double m_time = 100.0;
    double m_interval = 0.1;

    static void teach(ScriptedController& controller) {
        controller.answer("version protocol", "1.13.0");
        controller.answer("status active", "tracking");
        controller.answer("measurementtool available", "yes");
        controller.answer("measurementtool output_6dmt", "no");
        controller.answer("measurementtool number_of_tools", "3");
        for (const char* tool : {"b01", "b02", "b03"}) {
            controller.answer(std::string("body calibrated measurementtool ") + tool, "yes");
            controller.answer(std::string("measurementtool tip_calibrated ") + tool,
                              std::string(tool) == "b03" ? "no" : "yes");
            controller.answer(std::string("measurementtool reference_of_tool ") + tool, "none");
        }
    }

    void connectTo(ScriptedController& controller) {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = controller.port();
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().monitor.isMeasuring(), patience);
    }

    PlotDock* dock() const { return m_window->findChild<PlotDock*>(); }
    template <typename Widget>
    Widget* child(const char* name) const {
        return dock()->findChild<Widget*>(QLatin1String(name));
    }
    bool hasGroundOf(QPalette::ColorRole role) const {
        return child<QwtPlot>("plot")->canvasBackground().color() == dock()->palette().color(role);
    }
    QString word() const { return child<QLabel>("label_plotState")->text(); }
    std::size_t count() const { return dock()->statistics().count; }

    void sendFrame(double x, bool isSeen = true) {
        m_controller->sendFrame("fr 1\r\nts " +
                                QByteArray::number(m_time += m_interval, 'f', 3).toStdString() +
                                "\r\n6dmt2 3 3" + toolBlock(0, x, isSeen) +
                                toolBlock(1, 2.0 * x, true) + toolBlock(2, x, true));
    }
    template <typename Condition>
    bool sendUntil(Condition condition) {
        const QDeadlineTimer deadline(patience);
        bool isReached = condition();
        for (int i = 0; !isReached && !deadline.hasExpired(); ++i) {
            sendFrame(i % 2 == 0 ? 5.0 : 7.0);
            QTest::qWait(20);
            isReached = condition();
        }
        return isReached;
    }

private Q_SLOTS:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() {
        m_interval = 0.1;
        QFile::remove(m_folder.filePath(QStringLiteral("s.ini")));
        m_controller = std::make_unique<ScriptedController>();
        teach(*m_controller);
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{m_folder.filePath(QStringLiteral("s.ini")), false, false});
        m_window->show();
        QVERIFY(dock()->isHidden());
        dock()->show();
        connectTo(*m_controller);
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
    }

    void positionsArePlottedAgainstTheirMean() {
        QVERIFY(sendUntil([this] { return count() >= 20; }));
        QCOMPARE(word(), QString("M1 live"));
        QVERIFY(std::abs(dock()->statistics().mean[0] - 6.0) < 0.2);
        QVERIFY(std::abs(dock()->statistics().deviation[0] - 1.0) < 0.1);
        QCOMPARE(dock()->statistics().deviation[1], 0.0);
        QCOMPARE(child<QLabel>("label_deviation1")->text(), QString("sy 0.000 mm"));
        const QRectF bounds = dock()->tracks().axes[0].constLast().boundingRect();
        QVERIFY(bounds.top() < -0.7 && bounds.bottom() > 0.7);
        QVERIFY(bounds.right() <= 0.0);
        QCOMPARE(dock()->shownRange().width(), 60.0);
    }

    void anotherDeviationMovesNothing() {
        const auto* const deviation = child<QLabel>("label_deviation0");
        QVERIFY(sendUntil([this] { return count() >= 20; }));
        PaintWatch watch(*child<QWidget>("figure"));
        // A window that has just been shown may settle for a while.
        bool isStill = false;
        const QDeadlineTimer deadline(patience);
        for (double x = 5.0; !isStill && !deadline.hasExpired(); x += 5.0) {
            const QString before = deviation->text();
            watch.forget();
            sendFrame(x);
            isStill =
                sendUntil([&] { return deviation->text() != before; }) && watch.layoutRequests == 0;
        }
        QVERIFY(isStill);
        QVERIFY(deviation->width() >=
                deviation->fontMetrics().horizontalAdvance(deviation->text()));
    }

    void aHiddenToolIsAGapAndSaidInAWord() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        const QDeadlineTimer deadline(patience);
        while (word() != QLatin1String("M1 hidden") && !deadline.hasExpired()) {
            sendFrame(1000.0, false);
            QTest::qWait(20);
        }
        QCOMPARE(word(), QString("M1 hidden"));
        QVERIFY(std::abs(dock()->statistics().mean[0] - 6.0) < 0.5);
        const int pieces = dock()->tracks().axes[0].size();
        QVERIFY(sendUntil([&] { return dock()->tracks().axes[0].size() > pieces; }));
    }

    void oldDataDoNotLookLive() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        QVERIFY(hasGroundOf(QPalette::Base));
        QTRY_COMPARE_WITH_TIMEOUT(word(), QString("M1 old"), patience);
        QTRY_VERIFY_WITH_TIMEOUT(child<QLabel>("label_plotAge")->text().startsWith("no data for"),
                                 patience);
        QVERIFY(dock()->windowTitle().contains("no data for"));
        QVERIFY(hasGroundOf(QPalette::Window));
        QVERIFY(sendUntil([this] { return hasGroundOf(QPalette::Base); }));
        QCOMPARE(word(), QString("M1 live"));
        m_controller->answer("status active", "none");
        QTRY_COMPARE_WITH_TIMEOUT(word(), QString("M1 not measuring"), patience);
        QVERIFY(count() >= 10); // what was measured stays to be looked at
        QVERIFY(hasGroundOf(QPalette::Window));
    }

    void whatCameBeforeALostLinkDoesNotLookLive() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        m_controller.reset();
        QTRY_COMPARE_WITH_TIMEOUT(word(), QString("M1 not connected"), patience);
        QVERIFY(hasGroundOf(QPalette::Window));
        QVERIFY(count() >= 10);
    }

    void meanAndDeviationAreThoseOfTheChosenTime() {
        auto* const span = child<QComboBox>("comboBox_span");
        QVector<int> seconds;
        for (int i = 0; i < span->count(); ++i) {
            seconds << span->itemData(i).toInt();
        }
        QCOMPARE(seconds, (QVector<int>{10, 30, 60, 120, 300, 600}));
        m_interval = 1.0;
        QVERIFY(sendUntil([this] { return count() >= 20; }));
        span->setCurrentIndex(0);
        QVERIFY(count() >= 10 && count() <= 11);
        QCOMPARE(dock()->shownRange().left(), -10.0);
        span->setCurrentIndex(5);
        QVERIFY(count() >= 20);
        QCOMPARE(dock()->shownRange().left(), -600.0);
    }

    void aPauseStandsStillAndKeepsWhatIsMeasured() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        child<QToolButton>("toolButton_pause")->click();
        QCOMPARE(word(), QString("M1 paused"));
        const std::size_t before = count();
        for (int i = 0; i < 20; ++i) {
            sendFrame(5.0);
        }
        QTest::qWait(quietMs);
        QCOMPARE(count(), before);
        child<QToolButton>("toolButton_pause")->click();
        QTRY_VERIFY_WITH_TIMEOUT(count() >= before + 20, patience);
    }

    void onlyAPlotThatIsClosedHasAGap_data() {
        QTest::addColumn<bool>("isClosed");
        row("behind another tab", false);
        row("closed", true);
    }
    void onlyAPlotThatIsClosedHasAGap() {
        constexpr int unseen = 20;
        QFETCH(bool, isClosed);
        auto* const readout = m_window->findChild<workbench::ReadoutDock*>();
        readout->show(); // it tells when all frames have come
        auto* const log = m_window->findChild<QDockWidget*>(QStringLiteral("LogDock"));
        log->show();
        m_window->tabifyDockWidget(log, dock());
        dock()->raise();
        QTRY_VERIFY_WITH_TIMEOUT(!dock()->visibleRegion().isEmpty(), patience);
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        if (isClosed) {
            dock()->hide();
        } else {
            log->raise();
        }
        QTRY_VERIFY_WITH_TIMEOUT(dock()->visibleRegion().isEmpty(), patience);
        const std::size_t before = count();
        for (int i = 0; i < unseen; ++i) {
            sendFrame(1000.0);
        }
        constexpr double last = 2000.0;
        sendFrame(last);
        QTRY_VERIFY_WITH_TIMEOUT(
            readout->view().figures && readout->view().figures->position[0] == last, patience);
        QCOMPARE(count(), before); // nothing is computed that nobody sees
        dock()->show();
        dock()->raise();
        QVERIFY(sendUntil([&] { return count() > before; }));
        QCOMPARE(dock()->statistics().mean[0] > 10.0, !isClosed);
    }

    // With all docks of the window, at 96 dpi.
    void thePlotHasRoomOnASmallScreen() {
        constexpr QSize room(784, 560); // of 800 x 600, without a frame
        constexpr int lines = 4;
        QCOMPARE(dock()->logicalDpiY(), 96);
        const auto docks = m_window->findChildren<QDockWidget*>();
        for (QDockWidget* const other : docks) {
            other->show();
        }
        m_window->setMaximumSize(room);
        dock()->raise();
        const auto* const plot = child<QwtPlot>("plot");
        QTRY_VERIFY_WITH_TIMEOUT(plot->height() >= lines * plot->fontMetrics().height() &&
                                     m_window->height() <= room.height(),
                                 patience);
    }

    void theZoomGoesInAndOut() {
        QVERIFY(sendUntil([this] { return count() >= 20; }));
        QVERIFY(!child<QToolButton>("toolButton_zoomOut")->isEnabled());
        const QRectF whole = dock()->shownRange();
        child<QToolButton>("toolButton_zoomIn")->click();
        QVERIFY(dock()->isPaused());
        const QRectF once = dock()->shownRange();
        QCOMPARE(once.width(), whole.width() / 2.0);
        QVERIFY(whole.contains(once));
        child<QToolButton>("toolButton_zoomIn")->click();
        QCOMPARE(dock()->shownRange().width(), whole.width() / 4.0);
        child<QToolButton>("toolButton_zoomOut")->click();
        QCOMPARE(dock()->shownRange().width(), whole.width() / 2.0);
        child<QToolButton>("toolButton_whole")->click();
        QCOMPARE(dock()->shownRange(), whole);
        child<QToolButton>("toolButton_pause")->click();
        QVERIFY(!dock()->isPaused());
    }

    void anotherToolOrControllerStartsAnew() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        child<QComboBox>("comboBox_plotTool")->setCurrentIndex(1);
        QCOMPARE(count(), std::size_t(0));
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        QVERIFY(std::abs(dock()->statistics().mean[0] - 12.0) < 0.5);
        child<QComboBox>("comboBox_plotTool")->setCurrentIndex(2); // not calibrated
        QVERIFY(sendUntil([this] { return word() == QLatin1String("M3 not calibrated"); }));
        QCOMPARE(count(), std::size_t(0));
        child<QComboBox>("comboBox_plotTool")->setCurrentIndex(0);
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        ScriptedController other;
        teach(other);
        connectTo(other);
        QTRY_COMPARE_WITH_TIMEOUT(count(), std::size_t(0), patience);
        m_window.reset(); // before the controller that it talks to
    }

    void theButtonsAskForAFileAndWriteWhatWasSeen_data() {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("begin");
        row("picture", QByteArray("toolButton_picture"), "png", QByteArray("\x89PNG"));
        row("table", QByteArray("toolButton_table"), "csv",
            QByteArray("seconds_s,tool,tracked,x_mm,y_mm,z_mm\n"));
    }
    void theButtonsAskForAFileAndWriteWhatWasSeen() {
        QFETCH(QByteArray, button);
        QFETCH(QString, suffix);
        QFETCH(QByteArray, begin);
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        const QString plain = m_folder.filePath(QStringLiteral("seen"));
        const QString name = plain + QLatin1Char('.') + suffix;
        QStringList suggested;
        bool wasPaused = false;
        const auto answer = [&](bool isWanted) {
            ModalWatchdog dog(patience);
            dog.on(QStringLiteral("QFileDialog"), [&](QWidget* widget) {
                auto* const dialog = qobject_cast<QFileDialog*>(widget);
                wasPaused = dock()->isPaused();
                auto* const line = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
                suggested << line->text();
                line->setText(plain);
                static_cast<void>(
                    QMetaObject::invokeMethod(dialog, isWanted ? "accept" : "reject"));
            });
            child<QToolButton>(button.constData())->click();
            return dog.strays();
        };
        QCOMPARE(answer(false), QStringList());
        QVERIFY2(!QFile::exists(name), "it was not wanted");
        QCOMPARE(answer(true), QStringList());
        QCOMPARE(suggested.size(), 2);
        const QRegularExpression usual(
            QStringLiteral("^M1_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.%1$").arg(suffix));
        QVERIFY2(usual.match(suggested.constFirst()).hasMatch(),
                 qPrintable(suggested.constFirst()));
        QVERIFY2(wasPaused, "what was to be seen is what is written");
        QVERIFY(!dock()->isPaused());
        QFile file(name);
        QVERIFY2(file.open(QIODevice::ReadOnly), "the suffix is added");
        QVERIFY(file.readAll().startsWith(begin));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_window->backend().log.toText().contains(QStringLiteral("Wrote ") + name), patience);
    }

    void pictureAndTableAreWritten() {
        QVERIFY(sendUntil([this] { return count() >= 10; }));
        child<QToolButton>("toolButton_pause")->click();
        QString error;
        const QString picture = m_folder.filePath(QStringLiteral("p.png"));
        QVERIFY2(dock()->savePicture(picture, &error), qPrintable(error));
        const QImage image(picture);
        QVERIFY(image.width() > 100 && image.height() > 50);
        const QString table = m_folder.filePath(QStringLiteral("t.csv"));
        QVERIFY2(dock()->saveTable(table, &error), qPrintable(error));
        QFile file(table);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
        QCOMPARE(lines.constFirst(), QByteArray("seconds_s,tool,tracked,x_mm,y_mm,z_mm"));
        QCOMPARE(std::size_t(lines.size() - 1), count());
        QVERIFY2(lines.constLast().endsWith(",M1,1,5,-2.5,310") ||
                     lines.constLast().endsWith(",M1,1,7,-2.5,310"),
                 lines.constLast().constData());
        const QString nowhere = m_folder.filePath(QStringLiteral("no/t.csv"));
        QVERIFY(!dock()->saveTable(nowhere, &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!dock()->savePicture(nowhere, &error));
        const QString cut = m_folder.filePath(QStringLiteral("cut.csv"));
        bool isWritten = true;
        {
            const FullDisk disk(16);
            isWritten = dock()->saveTable(cut, &error);
        }
        QVERIFY(!isWritten);
        QVERIFY(!QFile::exists(cut));
    }
};

QTEST_MAIN(TestPlotDock)
#include "test_plotdock.moc"
