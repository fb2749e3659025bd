#include "general/widgets/openbeside.h"
#include "tests/general/progressrig.h"

#include <QScreen>
#include <QtTest>

namespace {

const QRect wide(0, 0, 1600, 900);
const QSize size(400, 210);

} // namespace

class TestOpenBeside : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWindowStandsWhereThereIsRoom_data() {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QRect>("other");
        QTest::addColumn<QPoint>("place");
        const auto row = [](const char* name, const QRect& room, const QRect& other,
                            const QPoint& place) { QTest::newRow(name) << room << other << place; };
        row("right", wide, QRect(100, 50, 650, 304), QPoint(750, 50));
        row("just room on the right", wide, QRect(550, 50, 650, 304), QPoint(1200, 50));
        row("left", wide, QRect(551, 50, 650, 304), QPoint(151, 50));
        row("below", wide, QRect(300, 50, 1200, 304), QPoint(300, 354));
        row("above", wide, QRect(300, 500, 1200, 304), QPoint(300, 290));
        row("no higher than the screen", wide, QRect(100, -50, 650, 304), QPoint(750, 0));
        row("no lower than the screen", wide, QRect(100, 800, 650, 304), QPoint(750, 690));
        row("a second screen", QRect(1600, 100, 800, 800), QRect(1675, 348, 650, 304),
            QPoint(1675, 652));
        row("a small screen", QRect(0, 0, 800, 480), QRect(75, 88, 650, 304), QPoint(400, 270));
        row("a screen smaller than the window", QRect(0, 0, 300, 200), QRect(0, 0, 300, 200),
            QPoint(0, 0));
    }
    void aWindowStandsWhereThereIsRoom() {
        QFETCH(QRect, screen);
        QFETCH(QRect, other);
        QFETCH(QPoint, place);
        QCOMPARE(placeBeside(size, other, screen), place);
    }

    void theProgressOpensBesideItsCaller_data() {
        QTest::addColumn<QPoint>("corner");
        QTest::newRow("centre") << QPoint(75, 248);
        QTest::newRow("top") << QPoint(75, 0);
        QTest::newRow("bottom") << QPoint(75, 490);
    }
    void theProgressOpensBesideItsCaller() {
        QFETCH(QPoint, corner);
        ProgressRig rig;
        rig.parent.setGeometry(QRect(corner, QSize(650, 304)));
        rig.parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.parent));
        scriptProcedure(rig.host, 1, {"other"});
        QRect shown;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            shown = dialog.frameGeometry();
            dialog.reject();
        });
        rig.run();
        QVERIFY(shown.isValid());
        QVERIFY2(!shown.intersects(rig.parent.frameGeometry()),
                 qPrintable(QStringLiteral("%1, %2").arg(shown.x()).arg(shown.y())));
        QVERIFY(rig.parent.screen()->availableGeometry().contains(shown));
    }

    void aHiddenCallerIsNoReason() {
        QWidget parent;
        QWidget dialog(&parent, Qt::Dialog);
        dialog.setGeometry(11, 22, 100, 100);
        openBeside(dialog);
        QCOMPARE(dialog.pos(), QPoint(11, 22));
        QWidget alone;
        alone.setGeometry(11, 22, 100, 100);
        openBeside(alone);
        QCOMPARE(alone.pos(), QPoint(11, 22));
    }
};

QTEST_MAIN(TestOpenBeside)
#include "test_openbeside.moc"
