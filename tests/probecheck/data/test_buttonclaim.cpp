#include "probecheck/data/buttonclaim.h"
#include "tests/support/datarows.h"
#include "tests/support/statetable.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <memory>

namespace {

constexpr int patienceMs = 5000;
constexpr std::uint32_t twoButtons = 0b11;

enum class Event {
    ShowCheck,
    HideCheck,
    ShowPoints,
    HidePoints,
    MouseInCheck,
    KeyInCheck,
    MnemonicInCheck,
    FocusIntoCheck,
    MouseInPoints,
    KeyInPoints,
    MnemonicInPoints,
    FocusIntoPoints,
    MouseElsewhere,
    WheelOverCheck,
    WheelOverPoints,
    FocusWithinCheck,
    WindowActivated,
    Minimised,
    MinimisedAndRestored,
    CheckLeaves,
    PointsLeave
};

// N: none in sight, C: the check alone, P: the points alone; both in sight, c: the check was used
// last, p: the points were.
const char* const header = "used, then                     | N C P c p";
const StateTableRow<Event> table[] = {
    {"the check is shown             | C C c c p", Event::ShowCheck},
    {"the check is hidden            | N N P P P", Event::HideCheck},
    {"the points are shown           | P p P c p", Event::ShowPoints},
    {"the points are hidden          | N C N C C", Event::HidePoints},
    {"the mouse in the check         | N C P c c", Event::MouseInCheck},
    {"a key in the check             | N C P c c", Event::KeyInCheck},
    {"a mnemonic of the check        | N C P c c", Event::MnemonicInCheck},
    {"the focus goes into the check  | N C P c c", Event::FocusIntoCheck},
    {"the mouse in the points        | N C P p p", Event::MouseInPoints},
    {"a key in the points            | N C P p p", Event::KeyInPoints},
    {"a mnemonic of the points       | N C P p p", Event::MnemonicInPoints},
    {"the focus goes into the points | N C P p p", Event::FocusIntoPoints},
    {"the mouse elsewhere            | N C P c p", Event::MouseElsewhere},
    {"the wheel over the check       | N C P c p", Event::WheelOverCheck},
    {"the wheel over the points      | N C P c p", Event::WheelOverPoints},
    {"the focus within the check     | N C P c p", Event::FocusWithinCheck},
    {"the window becomes active      | N C P c p", Event::WindowActivated},
    {"the window is minimised        | N N N N N", Event::Minimised},
    {"and comes back                 | N C P c p", Event::MinimisedAndRestored},
    {"the check leaves               | N N P P P", Event::CheckLeaves},
    {"the points leave               | N C N C C", Event::PointsLeave},
};

/// Two pages in a window, and a widget that is none of theirs.
class TwoPages {
public:
    explicit TwoPages(QChar state) {
        for (QWidget* const page : {&check, &points}) {
            new QLabel(QStringLiteral("text"), page);
            new QLabel(QStringLiteral("other"), page);
            page->hide();
            claim.join(page);
        }
        claim.want(&check, 0, QStringLiteral("%1 checks"));
        claim.want(&points, ButtonClaim::anyButton, QStringLiteral("%1 captures"));
        window.show();
        if (state == 'c') {
            points.show();
        }
        if (state == 'C' || state == 'c' || state == 'p') {
            check.show();
        }
        if (state == 'P' || state == 'p') {
            points.show();
        }
    }

    void play(Event event) {
        QWidget* const inCheck = check.findChild<QLabel*>();
        QWidget* const inPoints = points.findChild<QLabel*>();
        switch (event) {
        case Event::ShowCheck:
            check.show();
            break;
        case Event::HideCheck:
            check.hide();
            break;
        case Event::ShowPoints:
            points.show();
            break;
        case Event::HidePoints:
            points.hide();
            break;
        case Event::MouseInCheck:
            QTest::mousePress(inCheck, Qt::LeftButton);
            break;
        case Event::MouseInPoints:
            QTest::mousePress(inPoints, Qt::RightButton);
            break;
        case Event::MouseElsewhere:
            QTest::mousePress(&elsewhere, Qt::LeftButton);
            break;
        case Event::KeyInCheck:
            QTest::keyPress(inCheck, Qt::Key_Tab);
            break;
        case Event::KeyInPoints:
            QTest::keyPress(&points, Qt::Key_Space);
            break;
        case Event::MnemonicInCheck:
            useMnemonic(inCheck);
            break;
        case Event::MnemonicInPoints:
            useMnemonic(inPoints);
            break;
        case Event::FocusIntoCheck:
            Q_EMIT qApp->focusChanged(&elsewhere, inCheck);
            break;
        case Event::FocusIntoPoints:
            Q_EMIT qApp->focusChanged(inCheck, inPoints);
            break;
        case Event::FocusWithinCheck:
            Q_EMIT qApp->focusChanged(inCheck, check.findChildren<QLabel*>().constLast());
            break;
        case Event::WindowActivated:
            Q_EMIT qApp->focusChanged(nullptr, inCheck);
            break;
        case Event::WheelOverCheck:
            turnWheel(inCheck);
            break;
        case Event::WheelOverPoints:
            turnWheel(inPoints);
            break;
        case Event::Minimised:
        case Event::MinimisedAndRestored:
            minimise(event == Event::MinimisedAndRestored);
            break;
        case Event::CheckLeaves:
            claim.leave(&check);
            break;
        case Event::PointsLeave:
            claim.leave(&points);
            break;
        }
    }

    QString state() const {
        const std::uint32_t ofCheck = claim.shareOf(&check, twoButtons);
        const std::uint32_t ofPoints = claim.shareOf(&points, twoButtons);
        const bool isContested = claim.words().contains(QStringLiteral("used last"));
        if (ofCheck == 0b01) {
            return ofPoints == 0b10 && isContested    ? QStringLiteral("c")
                   : ofPoints == 0b00 && !isContested ? QStringLiteral("C")
                                                      : QStringLiteral("?");
        }
        if (ofPoints == 0b11) {
            return isContested ? QStringLiteral("p") : QStringLiteral("P");
        }
        return ofCheck == 0U && ofPoints == 0U ? QStringLiteral("N") : QStringLiteral("?");
    }

    QWidget window;
    QWidget elsewhere{&window};
    QWidget check{&window};
    QWidget points{&window};
    ButtonClaim claim;

private:
    static void useMnemonic(QWidget* widget) {
        QShortcutEvent event(QKeySequence(QStringLiteral("Alt+T")), 1);
        QCoreApplication::sendEvent(widget, &event);
    }
    static void turnWheel(QWidget* widget) {
        QWheelEvent event(QPointF(), QPointF(), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &event);
    }
    // As the window system has it told to whatever was in sight.
    void minimise(bool andRestore) {
        QList<QWidget*> shown;
        for (QWidget* const page : {&check, &points}) {
            if (page->isVisible()) {
                shown << page;
            }
        }
        for (QWidget* const page : qAsConst(shown)) {
            QHideEvent hide;
            QSpontaneKeyEvent::setSpontaneous(&hide);
            qApp->notify(page, &hide);
        }
        for (int i = 0; andRestore && i < shown.size(); ++i) {
            QShowEvent show;
            QSpontaneKeyEvent::setSpontaneous(&show);
            qApp->notify(shown.at(i), &show);
        }
    }
};

} // namespace

Q_DECLARE_METATYPE(Event)

class TestButtonClaim : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachEventInEachState_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("after");
        forEachCell(
            header, table,
            [](const QString& name, const QString& before, Event event, const QString& after) {
                QTest::addRow("%s, %s", qPrintable(before), qPrintable(name))
                    << before << event << after;
            });
    }
    void eachEventInEachState() {
        QFETCH(QString, before);
        QFETCH(Event, event);
        TwoPages pages(before.at(0));
        QCOMPARE(pages.state(), before);
        QSignalSpy moved(&pages.claim, &ButtonClaim::moved);
        pages.play(event);
        QTEST(pages.state(), "after");
        QVERIFY(!moved.isEmpty() || pages.state() == before); // nobody has to look for it
    }

    void whatAPressDoesIsSaid_data() {
        QTest::addColumn<int>("check");
        QTest::addColumn<int>("points");
        QTest::addColumn<QString>("checkLast");
        QTest::addColumn<QString>("pointsLast");
        const int any = ButtonClaim::anyButton;
        const int none = ButtonClaim::noButton;
        const QString last(" The dock that was used last has the button.");
        const QString nothing("The buttons on the tool do nothing.");
        const QString any2("On the tool: any button captures.");
        row("none", none, none, nothing, nothing);
        row("any button for points", none, any, any2, any2);
        row("one for a check", 0, none, QString("On the tool: button 1 checks."),
            QString("On the tool: button 1 checks."));
        row("any, and one", 0, any,
            QString("On the tool: button 1 checks; any other button captures.") + last,
            any2 + last);
        row("the same", 0, 0, QString("On the tool: button 1 checks.") + last,
            QString("On the tool: button 1 captures.") + last);
        row("two", 0, 15, QString("On the tool: button 1 checks; button 16 captures."),
            QString("On the tool: button 16 captures; button 1 checks."));
    }
    void whatAPressDoesIsSaid() {
        QFETCH(int, check);
        QFETCH(int, points);
        TwoPages pages('c');
        pages.claim.want(&pages.check, check, QStringLiteral("%1 checks"));
        pages.claim.want(&pages.points, points, QStringLiteral("%1 captures"));
        QTEST(pages.claim.words(), "checkLast");
        pages.play(Event::MouseInPoints);
        QTEST(pages.claim.words(), "pointsLast");
    }

    void otherWordsForTheSameButtonAreTold() {
        TwoPages pages('C');
        QSignalSpy moved(&pages.claim, &ButtonClaim::moved);
        pages.claim.want(&pages.check, 0, QStringLiteral("%1 checks"));
        QCOMPARE(moved.size(), 0);
        pages.claim.want(&pages.check, 0, QStringLiteral("%1 waits"));
        QCOMPARE(moved.size(), 1);
        QCOMPARE(pages.claim.words(), QString("On the tool: button 1 waits."));
    }

    void aStrangerHasNothing() {
        TwoPages pages('c');
        QCOMPARE(pages.claim.shareOf(&pages.elsewhere, twoButtons), 0U);
        pages.claim.want(&pages.elsewhere, 0, QStringLiteral("%1 errs"));
        pages.claim.leave(&pages.elsewhere);
        QCOMPARE(pages.state(), QString("c"));
    }

    void aPageBehindAnothersTabHasNothing() {
        ButtonClaim claim;
        QMainWindow window;
        window.setAnimated(false);
        QDockWidget other(&window);
        window.addDockWidget(Qt::RightDockWidgetArea, &other);
        // The page joins before its dock holds it, as in the module.
        QDockWidget dock(&window);
        auto* const page = new QLabel(QStringLiteral("page"), &dock);
        claim.join(page);
        dock.setWidget(page);
        claim.want(page, ButtonClaim::anyButton, QStringLiteral("%1 captures"));
        window.addDockWidget(Qt::RightDockWidgetArea, &dock);
        window.tabifyDockWidget(&other, &dock);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        dock.raise();
        QTRY_COMPARE_WITH_TIMEOUT(claim.shareOf(page, twoButtons), twoButtons, patienceMs);
        other.raise();
        QTRY_COMPARE_WITH_TIMEOUT(claim.shareOf(page, twoButtons), 0U, patienceMs);
        QVERIFY(page->isVisible()); // Qt's word for it
        dock.raise();
        QTRY_COMPARE_WITH_TIMEOUT(claim.shareOf(page, twoButtons), twoButtons, patienceMs);
        dock.hide();
        QCOMPARE(claim.shareOf(page, twoButtons), 0U);
        claim.leave(page); // its dock may live on
        dock.show();
        dock.raise();
        QCOMPARE(claim.shareOf(page, twoButtons), 0U);
    }

    void aPageThatHasLeftIsNoLongerUsed() {
        TwoPages pages('p');
        pages.claim.leave(&pages.check);
        QSignalSpy moved(&pages.claim, &ButtonClaim::moved);
        pages.play(Event::MouseInCheck);
        pages.play(Event::KeyInCheck);
        pages.play(Event::FocusIntoCheck);
        QCOMPARE(pages.state(), QString("P"));
        QVERIFY(moved.isEmpty());
    }

    void aButtonThatThreePagesWantIsThatOfTheOneUsedLast() {
        TwoPages pages('c');
        QWidget third(&pages.window);
        pages.claim.join(&third);
        pages.claim.want(&third, 0, QStringLiteral("%1 counts"));
        pages.claim.want(&pages.points, 0, QStringLiteral("%1 captures"));
        third.show();
        QCOMPARE(pages.claim.words(), QString("On the tool: button 1 counts. The dock that was "
                                              "used last has the button."));
        QCOMPARE(pages.claim.shareOf(&third, twoButtons), 0b01U);
        QCOMPARE(pages.claim.shareOf(&pages.check, twoButtons), 0U);
        QCOMPARE(pages.claim.shareOf(&pages.points, twoButtons), 0U);
    }
};

QTEST_MAIN(TestButtonClaim)
#include "test_buttonclaim.moc"
