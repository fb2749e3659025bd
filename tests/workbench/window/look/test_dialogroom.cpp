#include "tests/support/children.h"
#include "workbench/window/look/dialogroom.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QtTest>

using workbench::DialogRoom;

namespace {

constexpr int patience = 20000;
constexpr int fields = 12;

// Fields in a form, a widget below it that takes what is left, and buttons.
struct Dialog : QDialog {
    explicit Dialog(bool withRoom) {
        auto* const rows = new QVBoxLayout(this);
        auto* const form = new QFormLayout;
        for (int i = 0; i < fields; ++i) {
            auto* const field = new QLineEdit;
            field->setObjectName(QStringLiteral("field%1").arg(i));
            form->addRow(QStringLiteral("Field %1:").arg(i), field);
        }
        rows->addLayout(form);
        auto* const rest = new QWidget;
        rest->setMinimumSize(300, 40);
        rows->addWidget(rest, 1);
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        rows->addWidget(buttons);
        if (withRoom) {
            new DialogRoom(*this);
        }
    }

    QScrollArea* area() const {
        return findChild<QScrollArea*>(QStringLiteral("scrollArea_dialog"));
    }
};

bool isWhole(const QWidget& widget) {
    return widget.visibleRegion().boundingRect() == widget.rect();
}

} // namespace

class TestDialogRoom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withRoomNothingIsChanged() {
        Dialog plain(false);
        Dialog dialog(true);
        for (Dialog* shown : {&plain, &dialog}) {
            shown->setMaximumSize(shown->sizeHint());
            shown->show();
            QVERIFY(QTest::qWaitForWindowExposed(shown));
        }
        QCoreApplication::processEvents();
        QCOMPARE(dialog.area(), nullptr);
        QCOMPARE(dialog.size(), plain.size());
        child<QLineEdit>(plain, "field0")->clearFocus(); // only one window has it
        child<QLineEdit>(dialog, "field0")->clearFocus();
        QCOMPARE(dialog.grab().toImage(), plain.grab().toImage());
    }

    // No size of the screen that nobody looks at counts.
    void withoutABoundADialogMayBeLarge() {
        Dialog dialog(true);
        dialog.setMinimumSize(3000, 3000);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.area(), nullptr);
        QCOMPARE(dialog.size(), QSize(3000, 3000));
    }

    void whatHasNoRoomIsScrolledAndTheButtonsStay_data() {
        QTest::addColumn<QSize>("room");
        QTest::newRow("too low") << QSize(600, 150);
        QTest::newRow("too narrow") << QSize(220, 1200);
        QTest::newRow("both") << QSize(220, 150);
    }
    void whatHasNoRoomIsScrolledAndTheButtonsStay() {
        QFETCH(QSize, room);
        Dialog dialog(true);
        dialog.setMaximumSize(room);
        dialog.show();
        QVERIFY(dialog.area() != nullptr); // before it is seen
        QCOMPARE(dialog.size().boundedTo(room), dialog.size());
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QApplication::setActiveWindow(&dialog);
        QCoreApplication::processEvents();
        const auto buttons = dialog.findChildren<QPushButton*>();
        QCOMPARE(buttons.size(), 2);
        for (const QPushButton* button : buttons) {
            QVERIFY(isWhole(*button));
            QVERIFY(!dialog.area()->isAncestorOf(button));
        }
        // By the keyboard, both ways round, and from the buttons into the area.
        QSet<const QWidget*> seen;
        for (const auto key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            for (int i = 0; i < 2 * fields; ++i) {
                QTest::keyClick(&dialog, key,
                                key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
                QWidget* const focus = QApplication::focusWidget();
                QVERIFY(focus != nullptr);
                seen << focus;
                QTRY_VERIFY_WITH_TIMEOUT(
                    focus->visibleRegion().boundingRect().height() == focus->height(), patience);
            }
        }
        QCOMPARE(seen.size(), fields + 2);
    }

    void theBarTakesNothingFromTheWidth() {
        Dialog dialog(true);
        const QSize wanted = dialog.sizeHint();
        dialog.setMaximumSize(1000, wanted.height() - 50);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCoreApplication::processEvents();
        QVERIFY(dialog.area() != nullptr);
        QVERIFY(dialog.area()->verticalScrollBar()->isVisible());
        QVERIFY(!dialog.area()->horizontalScrollBar()->isVisible());
    }

    void oneThatGrowsLaterGivesWayThen() {
        Dialog dialog(true);
        dialog.setMaximumSize(dialog.sizeHint() + QSize(200, 20));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.area(), nullptr);
        child<QLineEdit>(dialog, "field3")->setMinimumHeight(300);
        QTRY_VERIFY_WITH_TIMEOUT(dialog.area() != nullptr, patience);
        QTRY_COMPARE_WITH_TIMEOUT(dialog.size().boundedTo(dialog.maximumSize()), dialog.size(),
                                  patience);
    }

    void withoutALayoutOnlyTheSizeIsBounded() {
        QDialog dialog;
        dialog.resize(900, 700);
        new DialogRoom(dialog);
        dialog.setMinimumSize(0, 0);
        dialog.setMaximumSize(400, 300);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.size(), QSize(400, 300));
    }
};

QTEST_MAIN(TestDialogRoom)
#include "test_dialogroom.moc"
