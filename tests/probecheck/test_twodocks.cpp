#include "host_api/metatypes.h"
#include "probecheck/probecheckmodule.h"
#include "tests/probecheck/probefixture.h"
#include "tests/support/datarows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

constexpr int patienceMs = 60000;

enum class Use { None, ClickCheck, TypeInCheck, ClickPoints, RaiseCheck, RaisePoints, HidePoints };

/// Both docks of the module in one window, the points shown last; tools move as the test says.
class TwoDocks {
public:
    TwoDocks() {
        module.set_param("CommandManager",
                         QVariant::fromValue(static_cast<IOManager*>(&controller.host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(&window)));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
        window.setAnimated(false);
        window.resize(1200, 900);
        window.show();
        build();
    }
    ~TwoDocks() { module.exit_module(); }

    void build() {
        const QList<_GuiElement*> elements = module.get_gui_elements();
        for (int i = 0; i < 2; ++i) {
            docks[i] = qobject_cast<QDockWidget*>(elements.at(i)->content);
            window.addDockWidget(Qt::RightDockWidgetArea, docks[i]);
            docks[i]->show();
        }
    }
    // As a host does between two connections.
    void rebuild(const char* replay) {
        module.about_to_exit_module();
        module.exit_module();
        controller.host.stopMeasurement();
        module.set_param("Replay", QString::fromUtf8(replay));
        build();
    }

    template <typename Widget>
    Widget* inCheck(const char* name) const {
        return docks[0]->findChild<Widget*>(QLatin1String(name));
    }
    template <typename Widget>
    Widget* inPoints(const char* name) const {
        return docks[1]->findChild<Widget*>(QLatin1String(name));
    }
    bool isChecking() const { return inCheck<QPushButton>("pushButton_stop")->isEnabled(); }
    bool isCapturing() const {
        return inPoints<QLabel>("label_state")->text() == QLatin1String("Hold the tip still.");
    }
    int poses() const {
        return inCheck<QLabel>("label_figures")->text().section(' ', 2, 2).toInt();
    }
    int points() const { return inPoints<QTableView>("tableView_points")->model()->rowCount(); }
    QString words() const { return inPoints<QLabel>("label_buttons")->text(); }
    QString checksWords() const { return inCheck<QLabel>("label_buttons")->text(); }

    bool measure() {
        controller.host.startMeasurement();
        return QTest::qWaitFor(
            [this] { return inCheck<QPushButton>("pushButton_start")->isEnabled(); }, patienceMs);
    }

    void use(Use what) {
        switch (what) {
        case Use::None:
            break;
        case Use::ClickCheck:
            QTest::mousePress(inCheck<QLabel>("label_words"), Qt::LeftButton);
            break;
        case Use::TypeInCheck:
            QTest::keyClick(inCheck<QComboBox>("comboBox_tool"), Qt::Key_Up);
            break;
        case Use::ClickPoints:
            QTest::mousePress(inPoints<QLabel>("label_state"), Qt::LeftButton);
            break;
        case Use::RaiseCheck:
        case Use::RaisePoints:
            window.tabifyDockWidget(docks[0], docks[1]);
            QCoreApplication::processEvents();
            docks[what == Use::RaiseCheck ? 1 : 0]->raise();
            QCoreApplication::processEvents();
            docks[what == Use::RaiseCheck ? 0 : 1]->raise();
            QCoreApplication::processEvents();
            break;
        case Use::HidePoints:
            docks[1]->hide();
            break;
        }
    }

    // Both docks get the same samples in the same turn of the event loop.
    bool press(unsigned buttons) {
        deliver(0);
        deliver(buttons);
        return QTest::qWaitFor(
            [this] {
                deliver(0);
                return isChecking() || isCapturing();
            },
            patienceMs);
    }
    void deliver(unsigned buttons) {
        for (int i = 0; i < 3; ++i) {
            ++frame;
            controller.deliverFrame(frame, frame / 60.0,
                                    {{{}, probelines::unturned, 1.0, buttons}, {}});
        }
    }

    ProbeController controller;
    QMainWindow window;
    ProbeCheckModule module;
    QPointer<QDockWidget> docks[2];
    unsigned frame = 0;
};

} // namespace

Q_DECLARE_METATYPE(Use)

/// What the two docks share: a button on the tool, and a window.
class TestTwoDocks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aPressIsOneOrTheOther_data();
    void aPressIsOneOrTheOther();
    void anotherButtonCapturesThoughTheCheckHasTheFirst();
    void whoWantsNoButtonLeavesItToTheOther();
    void whileACheckRunsItsButtonDoesNothing();
    void aDockThatGoesLeavesTheButton();
    void outOfSightNothingIsCaptured_data();
    void outOfSightNothingIsCaptured();
    void ofAReplayNothingIsCapturedOrChecked();
    void aLetterOfBothIsThatOfTheDockUsedLast();
    void aLetterThatTheHostHasTooGoesRound();

private:
    std::unique_ptr<QTemporaryDir> m_data; // what one test leaves is not the next one's
    std::unique_ptr<TwoDocks> f;
};

void TestTwoDocks::init() {
    m_data = std::make_unique<QTemporaryDir>();
    QVERIFY(m_data->isValid());
    qputenv("XDG_DATA_HOME", m_data->path().toLocal8Bit());
    f = std::make_unique<TwoDocks>();
}

void TestTwoDocks::cleanup() {
    f.reset();
    m_data.reset();
}

void TestTwoDocks::aPressIsOneOrTheOther_data() {
    QTest::addColumn<Use>("first");
    QTest::addColumn<Use>("last");
    QTest::addColumn<bool>("checks");
    row("the points were shown last", Use::None, Use::None, false);
    row("a click in the check", Use::None, Use::ClickCheck, true);
    row("a key in the check", Use::None, Use::TypeInCheck, true);
    row("a click in the points", Use::ClickCheck, Use::ClickPoints, false);
    row("the check in front", Use::ClickPoints, Use::RaiseCheck, true);
    row("the points in front", Use::ClickCheck, Use::RaisePoints, false);
    row("the points are hidden", Use::ClickPoints, Use::HidePoints, true);
}

void TestTwoDocks::aPressIsOneOrTheOther() {
    QFETCH(Use, first);
    QFETCH(Use, last);
    QFETCH(bool, checks);
    QVERIFY(f->measure());
    f->use(first);
    f->use(last);
    const QString words = f->words();
    QCOMPARE(f->checksWords(), words);
    QCOMPARE(words.startsWith("On the tool: button 1 starts a tip check"), checks);
    QCOMPARE(words.startsWith("On the tool: any button captures a point"), !checks);
    QCOMPARE(f->inCheck<QLabel>("label_words")->text().contains("the tool's first button"), checks);
    QVERIFY(f->press(1));
    QCOMPARE(f->isChecking(), checks);
    QCOMPARE(f->isCapturing(), !checks);
}

void TestTwoDocks::anotherButtonCapturesThoughTheCheckHasTheFirst() {
    QVERIFY(f->measure());
    f->use(Use::ClickCheck);
    QCOMPARE(f->words(), QString("On the tool: button 1 starts a tip check; any other button "
                                 "captures a point. The dock that was used last has the button."));
    QVERIFY(f->press(2));
    QVERIFY(f->isCapturing());
    QVERIFY(!f->isChecking());
}

void TestTwoDocks::whoWantsNoButtonLeavesItToTheOther() {
    QVERIFY(f->measure());
    f->use(Use::ClickCheck);
    f->inCheck<QCheckBox>("checkBox_startByButton")->setChecked(false);
    QCOMPARE(f->words(), QString("On the tool: any button captures a point."));
    auto* const choice = f->inPoints<QComboBox>("comboBox_button");
    choice->setCurrentIndex(choice->findText("none"));
    QCOMPARE(f->checksWords(), QString("The buttons on the tool do nothing."));
    f->inCheck<QCheckBox>("checkBox_startByButton")->setChecked(true);
    QCOMPARE(f->words(), QString("On the tool: button 1 starts a tip check."));
    QVERIFY(f->press(1));
    QVERIFY(f->isChecking());
}

void TestTwoDocks::whileACheckRunsItsButtonDoesNothing() {
    QVERIFY(f->measure());
    f->use(Use::ClickCheck);
    QVERIFY(f->press(1));
    QVERIFY(f->isChecking());
    QVERIFY(f->words().startsWith(
        "On the tool: button 1 does nothing while the tip check runs; any other button captures"));
    auto* const choice = f->inPoints<QComboBox>("comboBox_button");
    choice->setCurrentIndex(choice->findText("1"));
    const int before = f->poses();
    f->deliver(1);
    f->deliver(0);
    QTRY_VERIFY_WITH_TIMEOUT(f->poses() >= before + 5, patienceMs); // the press has been seen
    QVERIFY(f->isChecking());
    QVERIFY(!f->isCapturing());
    QTest::mouseClick(f->inCheck<QPushButton>("pushButton_stop"), Qt::LeftButton);
    QVERIFY2(f->words().startsWith("On the tool: button 1 starts a tip check"),
             qPrintable(f->words()));
}

void TestTwoDocks::aDockThatGoesLeavesTheButton() {
    f->use(Use::ClickCheck);
    delete f->docks[0];
    QCOMPARE(f->words(), QString("On the tool: any button captures a point."));
}

void TestTwoDocks::outOfSightNothingIsCaptured_data() {
    QTest::addColumn<Use>("last");
    row("hidden", Use::HidePoints);
    row("behind the check", Use::RaiseCheck);
}

void TestTwoDocks::outOfSightNothingIsCaptured() {
    QFETCH(Use, last);
    QVERIFY(f->measure());
    f->inPoints<QComboBox>("comboBox_mode")->setCurrentIndex(1); // by holding still
    f->use(last);
    QTest::mouseClick(f->inCheck<QPushButton>("pushButton_start"), Qt::LeftButton);
    QVERIFY(f->isChecking());
    const auto* const list = f->inPoints<QTableView>("tableView_points")->model();
    constexpr int frames = 90; // longer than a capture takes
    QVERIFY(QTest::qWaitFor(
        [this] {
            f->deliver(0);
            return f->poses() >= frames;
        },
        patienceMs));
    QCOMPARE(list->rowCount(), 0);
    QVERIFY(!f->isCapturing());
    f->docks[1]->show();
    f->docks[1]->raise();
    QVERIFY(QTest::qWaitFor(
        [this, list] {
            f->deliver(0);
            return list->rowCount() == 1;
        },
        patienceMs));
}

void TestTwoDocks::ofAReplayNothingIsCapturedOrChecked() {
    QVERIFY(f->measure());
    QVERIFY(f->press(1));
    QVERIFY(QTest::qWaitFor(
        [this] {
            f->deliver(0);
            return f->points() == 1;
        },
        patienceMs));
    f->rebuild("demo.kestrel");
    f->controller.host.clearJournal();
    f->controller.host.startMeasurement();
    const auto* const offer = f->inPoints<QFrame>("frame_left");
    const bool isOffered = QTest::qWaitFor(
        [&] {
            f->deliver(7);
            QTest::keyClick(f->docks[1]->widget(), Qt::Key_Space);
            f->deliver(0);
            return offer->isVisible();
        },
        patienceMs);
    QVERIFY2(isOffered, "what was captured live before");
    QCOMPARE(f->points(), 0);
    QVERIFY(!f->isChecking());
    QVERIFY(f->controller.host.logTexts().empty());
    QVERIFY2(f->controller.host.operations().empty(), "no lines are asked for");
    QCOMPARE(f->words(), QString("The buttons on the tool do nothing."));
    const QString points = "A recording is played: nothing is captured.";
    const QString check = "A recording is played: nothing is checked.";
    QCOMPARE(f->inPoints<QLabel>("label_state")->text(), points);
    QCOMPARE(f->inCheck<QLabel>("label_words")->text(), check);
    for (const char* const name : {"pushButton_capture", "comboBox_tool", "comboBox_mode",
                                   "comboBox_button", "doubleSpinBox_duration"}) {
        QVERIFY2(!f->inPoints<QWidget>(name)->isEnabled(), name);
        QCOMPARE(f->inPoints<QWidget>(name)->toolTip(), points);
    }
    for (const char* const name : {"pushButton_start", "checkBox_startByButton", "comboBox_tool"}) {
        QVERIFY2(!f->inCheck<QWidget>(name)->isEnabled(), name);
        QCOMPARE(f->inCheck<QWidget>(name)->toolTip(), check);
    }
    f->inPoints<QPushButton>("pushButton_keep")->click();
    QCOMPARE(f->points(), 1);
    QVERIFY2(f->inPoints<QPushButton>("pushButton_export")->isEnabled(), "it is of before");
    f->rebuild("");
    QVERIFY(f->measure());
    QVERIFY(f->press(1));
    QVERIFY(f->isCapturing());
}

void TestTwoDocks::aLetterOfBothIsThatOfTheDockUsedLast() {
    QVERIFY(f->measure());
    f->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f->window));
    const auto* const sounds = f->inPoints<QCheckBox>("checkBox_sounds");
    const auto* const start = f->inCheck<QPushButton>("pushButton_start");
    QCOMPARE(QKeySequence::mnemonic(sounds->text()), QKeySequence::mnemonic(start->text()));
    f->use(Use::ClickCheck);
    QTest::keyClick(&f->window, Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(f->isChecking(), patienceMs);
    QVERIFY(sounds->isChecked());
    QTest::mouseClick(f->inCheck<QPushButton>("pushButton_stop"), Qt::LeftButton);
    QVERIFY(start->isEnabled());
    f->use(Use::ClickPoints);
    QTest::keyClick(&f->window, Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!sounds->isChecked(), patienceMs);
    QVERIFY(!f->isChecking());
    // A field's letter leads into the field; one that only the other dock has stays there.
    QTest::keyClick(&f->window, Qt::Key_O, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), f->inPoints<QComboBox>("comboBox_tool"));
    f->use(Use::ClickCheck);
    QTest::keyClick(&f->window, Qt::Key_O, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), f->inCheck<QComboBox>("comboBox_tool"));
    QTest::keyClick(&f->window, Qt::Key_N, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), f->inPoints<QDoubleSpinBox>("doubleSpinBox_nominal"));
}

// The dock used last has no such letter: then it is Qt's affair, as anywhere else.
void TestTwoDocks::aLetterThatTheHostHasTooGoesRound() {
    auto* const hosts = new QWidget(&f->window);
    auto* const label = new QLabel(QStringLiteral("&Notes"), hosts);
    auto* const notes = new QLineEdit(hosts);
    label->setBuddy(notes);
    f->window.setCentralWidget(hosts);
    f->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f->window));
    f->use(Use::ClickCheck);
    QSet<QWidget*> reached;
    for (int press = 0; press < 2; ++press) {
        QTest::keyClick(&f->window, Qt::Key_N, Qt::AltModifier);
        reached.insert(QApplication::focusWidget());
    }
    QCOMPARE(reached, (QSet<QWidget*>{notes, f->inPoints<QWidget>("doubleSpinBox_nominal")}));
}

QTEST_MAIN(TestTwoDocks)
#include "test_twodocks.moc"
