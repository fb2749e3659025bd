#include "general/CountdownDlg.h"
#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/textfit.h"

#include <QApplication>
#include <QLCDNumber>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QtTest>

namespace {

constexpr int fastTickMs = 1;

// What one modal run has shown: the display at its beginning and after each tick.
struct Run {
    QList<int> shown;
    int result = -1;
};

Run runFast(int seconds) {
    CountdownDlg dialog(nullptr);
    auto* const display = child<QLCDNumber>(dialog, "lcdNumber");
    dialog.setMessage(QString(), seconds);
    Run run;
    run.shown << display->intValue();
    QObject::connect(&CountdownProbe::timer(dialog), &QTimer::timeout, &dialog,
                     [&] { run.shown << display->intValue(); });
    CountdownProbe::timer(dialog).setInterval(fastTickMs);
    const ModalWatchdog dog;
    run.result = dialog.exec();
    return run;
}

} // namespace

class TestCountdownDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itCountsDownToZeroAndCloses_data() {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QList<int>>("shown");
        QTest::newRow("5 seconds") << 5 << QList<int>{5, 4, 3, 2, 1, 0};
        QTest::newRow("1 second") << 1 << QList<int>{1, 0};
        QTest::newRow("0 seconds close at the first tick") << 0 << QList<int>{0, -1};
        QTest::newRow("so does a negative number") << -3 << QList<int>{-3, -4};
    }
    void itCountsDownToZeroAndCloses() {
        QFETCH(int, seconds);
        QFETCH(QList<int>, shown);
        const Run run = runFast(seconds);
        QCOMPARE(run.shown, shown);
        QCOMPARE(run.result, 1);
    }

    void itTicksOncePerSecondFromSetMessageOn() {
        CountdownDlg dialog(nullptr);
        QVERIFY(!CountdownProbe::timer(dialog).isActive());
        dialog.setMessage("get ready", 3);
        QVERIFY(CountdownProbe::timer(dialog).isActive());
        QVERIFY(!CountdownProbe::timer(dialog).isSingleShot());
        QCOMPARE(CountdownProbe::timer(dialog).interval(), 1000);
        QCOMPARE(child<QLabel>(dialog, "msg")->text(), QString("get ready"));
    }

    void setMessageStartsAnew() {
        CountdownDlg dialog(nullptr);
        dialog.setMessage("first", 3);
        dialog.updateCountdown();
        dialog.setMessage(QString(), 7);
        QCOMPARE(child<QLabel>(dialog, "msg")->text(), QString());
        QCOMPARE(child<QLCDNumber>(dialog, "lcdNumber")->intValue(), 7);
    }

    void theMessageIsNoHtml() {
        CountdownDlg dialog(nullptr);
        QCOMPARE(child<QLabel>(dialog, "msg")->textFormat(), Qt::PlainText);
    }

    void tenSecondsOverflowTheOneDigit() {
        CountdownDlg dialog(nullptr);
        auto* const display = child<QLCDNumber>(dialog, "lcdNumber");
        QSignalSpy overflow(display, SIGNAL(overflow()));
        dialog.setMessage(QString(), 9);
        QCOMPARE(overflow.count(), 0);
        dialog.setMessage(QString(), 10);
        QCOMPARE(overflow.count(), 1);
    }

    void theUserEndsIt_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("result");
        QTest::newRow("Start now") << "pushButton_2" << 1;
        QTest::newRow("Cancel") << "pushButton" << 0;
        QTest::newRow("Escape") << "escape" << 0;
        QTest::newRow("window close") << "close" << 0;
    }
    void theUserEndsIt() {
        QFETCH(QString, button);
        QFETCH(int, result);
        ModalWatchdog dog;
        dog.on("CountdownDialog", [&](QWidget* window) {
            if (button == "escape") {
                QTest::keyClick(window, Qt::Key_Escape);
            } else if (button == "close") {
                window->close();
            } else {
                child<QPushButton>(*window, button.toLatin1())->click();
            }
        });
        CountdownDlg dialog(nullptr);
        dialog.setMessage(QString(), 5);
        QCOMPARE(dialog.exec(), result);
        QCOMPARE(dog.strays(), QStringList());
    }

    void theWindowIsOfFixedSizeWithACloseButtonOnly() {
        const CountdownDlg dialog(nullptr);
        QCOMPARE(dialog.objectName(), QString("CountdownDialog"));
        QCOMPARE(dialog.windowTitle(), QString("Waiting"));
        QCOMPARE(dialog.minimumSize(), QSize(186, 180));
        QCOMPARE(dialog.maximumSize(), QSize(186, 180));
        QCOMPARE(dialog.size(), QSize(186, 180));
        QCOMPARE(dialog.windowType(), Qt::Dialog);
        QCOMPARE(dialog.windowFlags() &
                     (Qt::WindowMinMaxButtonsHint | Qt::WindowContextHelpButtonHint |
                      Qt::WindowCloseButtonHint),
                 Qt::WindowFlags(Qt::WindowCloseButtonHint));
        QVERIFY(!dialog.windowIcon().isNull());
        QCOMPARE(dialog.font().family(), QString("Microsoft Sans Serif"));
        QCOMPARE(dialog.font().pointSize(), 12);
    }

    void aHostsLargeFontMakesItGrow() {
        qApp->setStyleSheet("* { font-size: 20pt; }");
        CountdownDlg dialog(nullptr);
        dialog.setMessage(QString(), 5);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QString cutOff = cutOffTexts(dialog);
        qApp->setStyleSheet(QString());
        QCOMPARE(cutOff, QString());
        QVERIFY(dialog.width() > 186);
    }

    void theWidgetsAreAsLaidOut() {
        const CountdownDlg dialog(nullptr);
        QCOMPARE(dialog.layout()->objectName(), QString("vboxLayout"));
        QCOMPARE(namesIn(*dialog.layout()),
                 QStringList({"lcdNumber", "msg", "-", "line", "hboxLayout"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "hboxLayout")),
                 QStringList({"-", "pushButton_2", "pushButton"}));

        const auto* const display = child<QLCDNumber>(dialog, "lcdNumber");
        QCOMPARE(display->digitCount(), 1);
        QCOMPARE(display->mode(), QLCDNumber::Dec);
        QCOMPARE(display->segmentStyle(), QLCDNumber::Filled);
        QCOMPARE(display->frameShape(), QFrame::NoFrame);
        QCOMPARE(display->frameShadow(), QFrame::Plain);
        QCOMPARE(display->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(display->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(child<QLabel>(dialog, "msg")->text(), QString("TextLabel"));
        QCOMPARE(child<QFrame>(dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(child<QFrame>(dialog, "line")->frameShadow(), QFrame::Sunken);
        QCOMPARE(child<QPushButton>(dialog, "pushButton_2")->text(), QString("Start now"));
        QCOMPARE(child<QPushButton>(dialog, "pushButton")->text(), QString("Cancel"));
        QCOMPARE(child<QPushButton>(dialog, "pushButton_2")->font().pointSize(), 8);
        QCOMPARE(child<QPushButton>(dialog, "pushButton")->font().pointSize(), 8);
    }
};

QTEST_MAIN(TestCountdownDlg)
#include "test_countdowndlg.moc"
