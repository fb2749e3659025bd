#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/settings/windowsettings.h"
#include "workbench/window/startpage.h"

#include <QAction>
#include <QDockWidget>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using workbench::ControllerAddress;
using workbench::MainWindow;

namespace {
constexpr int patience = 8000;
}

class TestStartPage : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;

    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }

    void openWindow() {
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{path("s.ini"), false, false, path("simulator.sh")});
        m_window->modules().loadFile(QStringLiteral(FAKE_MODULE));
        m_window->modulesLoaded();
        m_window->show();
    }

    // The program that is started as the simulator; what listens is the scripted controller.
    void writeSimulator(const QString& content) const {
        QFile file(path("simulator.sh"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + content.toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString listening() const {
        return QStringLiteral("echo listening on 127.0.0.1:%1\n").arg(m_controller->port());
    }

    ControllerAddress address() const {
        ControllerAddress address;
        address.port = m_controller->port();
        return address;
    }

    const workbench::StartPage& page() const {
        return *m_window->findChild<workbench::StartPage*>();
    }

    QPushButton* button(const char* name) const {
        return page().findChild<QPushButton*>(QLatin1String(name));
    }

    QString state() const {
        return page().findChild<QLabel*>(QStringLiteral("label_startState"))->text();
    }

    QStringList controllers() const {
        QStringList names;
        const auto buttons =
            page().findChildren<QPushButton*>(QStringLiteral("pushButton_controller"));
        for (const QPushButton* button : buttons) {
            if (!button->isHidden()) {
                names += button->text();
            }
        }
        return names;
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_controller = std::make_unique<ScriptedController>();
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
        m_folder.reset();
    }

    void notConnectedItSaysWhatCanBeDone() {
        openWindow();
        QVERIFY(page().isVisible());
        QCOMPARE(state(), QStringLiteral("Not connected"));
        for (const char* name : {"pushButton_connect", "pushButton_simulate",
                                 "pushButton_openRecording", "pushButton_guide"}) {
            QVERIFY2(button(name)->isVisible() && button(name)->isEnabled(), name);
            QVERIFY2(!button(name)->accessibleDescription().isEmpty(), name);
        }
        QVERIFY(controllers().isEmpty());
        QVERIFY(m_window->centralWidget()->height() > m_window->height() / 3);
        QCOMPARE(m_window->focusWidget(), button("pushButton_connect"));
    }

    void aConnectionTakesItsPlaceAndDisconnectingBringsItBack() {
        openWindow();
        const int height = m_window->centralWidget()->height();
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        m_window->connectTo(address());
        QVERIFY(built.wait(patience));
        QVERIFY(page().isHidden());
        QVERIFY(m_window->findChild<QDockWidget*>(QStringLiteral("FakeDock"))->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(m_window->centralWidget()->height() < height / 2, patience);
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        QVERIFY(page().isVisible());
        QVERIFY(m_window->findChild<QDockWidget*>(QStringLiteral("FakeDock")) == nullptr);
        QVERIFY(!m_window->backend().session.isReady());
    }

    void theLastControllersAreAButtonEach() {
        {
            workbench::WindowSettings settings(path("s.ini"));
            ControllerAddress other;
            QVERIFY(other.parse(QStringLiteral("tracker&co:4711")));
            settings.setAddress(other);
            settings.setAddress(address());
        }
        openWindow();
        QCOMPARE(controllers(), QStringList({address().toString(), "tracker&&co:4711"}));
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        QTest::mouseClick(button("pushButton_controller"), Qt::LeftButton);
        QVERIFY(built.wait(patience));
        QVERIFY(page().isHidden());
    }

    void aControllerThatDoesNotAnswerIsToldThere() {
        openWindow();
        m_controller->stopListening();
        m_window->connectTo(address());
        QTRY_VERIFY_WITH_TIMEOUT(state().startsWith(QStringLiteral("No connection to 127.0.0.1:")),
                                 patience);
        QVERIFY(page().isVisible());
        QVERIFY(button("pushButton_connect")->isEnabled());
    }

    void theSimulatorIsStartedAndMeasures() {
        openWindow();
        writeSimulator(listening() + QStringLiteral("exec sleep 60\n"));
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        QTest::keyClick(button("pushButton_simulate"), Qt::Key_Space);
        QCOMPARE(state(), QStringLiteral("Starting the simulated controller"));
        QVERIFY(!button("pushButton_simulate")->isEnabled());
        QCOMPARE(button("pushButton_simulate")->toolTip(),
                 QStringLiteral("The simulated controller is being started"));
        QVERIFY(built.wait(patience));
        QVERIFY(page().isHidden());
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->count("kestrel2 tracking start"), 1, patience);
        // it is no controller to come back to
        QVERIFY(workbench::WindowSettings(path("s.ini")).recentControllers().isEmpty());
    }

    void aSimulatorThatEndsLeavesTheWindowAndSaysWhy() {
        openWindow();
        writeSimulator(listening() + QStringLiteral("while [ ! -e %1 ]; do sleep 0.05; done\n"
                                                    "echo tripped >&2\nexit 7\n")
                                         .arg(path("end")));
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        QSignalSpy ended(m_window.get(), &MainWindow::simulatorEnded);
        m_window->simulate({});
        QVERIFY(built.wait(patience));
        QVERIFY(QFile(path("end")).open(QIODevice::WriteOnly));
        QVERIFY(ended.wait(patience));
        QVERIFY(m_window->isVisible());
        QVERIFY2(state().endsWith(QStringLiteral("has ended (exit code 7): tripped")),
                 qPrintable(state()));
        QVERIFY(!m_window->backend().session.isReady());
        QCoreApplication::processEvents();
        QCOMPARE(m_window->backend().log.toText().count(QStringLiteral("(exit code 7): tripped")),
                 1);
        m_window->connectTo(address());
        QVERIFY(state().startsWith(QStringLiteral("Connecting to ")));
    }

    void aSimulatorThatCannotBeStartedIsToldAndMayBeTriedAgain() {
        openWindow();
        QSignalSpy failed(m_window.get(), &MainWindow::simulatorFailed);
        QTest::mouseClick(button("pushButton_simulate"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, patience);
        QVERIFY2(state().contains(QStringLiteral("simulator.sh cannot be started")),
                 qPrintable(state()));
        QVERIFY(button("pushButton_simulate")->isEnabled());
    }

    void aSmallWindowScrollsToTheButtonWithTheFocus() {
        openWindow();
        m_window->resize(640, 480);
        QCoreApplication::processEvents();
        QVERIFY2(
            m_window->height() <= 600 && m_window->width() <= 800,
            qPrintable(QStringLiteral("%1 x %2").arg(m_window->width()).arg(m_window->height())));
        QVERIFY(page().verticalScrollBar()->maximum() > 0);
        QPushButton* const last = button("pushButton_guide");
        button("pushButton_simulate")->setFocus();
        QTest::keyClick(button("pushButton_simulate"), Qt::Key_Tab);
        QCOMPARE(m_window->focusWidget(), button("pushButton_openRecording"));
        QTest::keyClick(button("pushButton_openRecording"), Qt::Key_Tab);
        QCOMPARE(m_window->focusWidget(), last);
        QTRY_VERIFY_WITH_TIMEOUT(
            last->visibleRegion().boundingRect().height() >= last->height() / 2, patience);
    }
};

QTEST_MAIN(TestStartPage)
#include "test_startpage.moc"
