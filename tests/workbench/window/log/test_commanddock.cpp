#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/log/commanddock.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

using workbench::CommandDock;
using workbench::CommandHistory;

namespace {
constexpr int patience = 5000;
}

class TestCommandDock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHistoryIsWalkedWithTheTypedTextAtItsEnd() {
        CommandHistory history;
        QCOMPARE(history.previous(QStringLiteral("x")), QStringLiteral("x"));
        history.add(QStringLiteral("one"));
        history.add(QStringLiteral("two"));
        history.add(QStringLiteral("two"));
        QCOMPARE(history.commands(), QStringList({"one", "two"}));
        QCOMPARE(history.previous(QStringLiteral("typed")), QStringLiteral("two"));
        QCOMPARE(history.previous(QStringLiteral("two")), QStringLiteral("one"));
        QCOMPARE(history.previous(QStringLiteral("one")), QStringLiteral("one"));
        QCOMPARE(history.next(QStringLiteral("one")), QStringLiteral("two"));
        QCOMPARE(history.next(QStringLiteral("two")), QStringLiteral("typed"));
        QCOMPARE(history.next(QStringLiteral("typed")), QStringLiteral("typed"));
        for (int i = 0; i < 300; ++i) {
            history.add(QString::number(i));
        }
        QCOMPARE(history.commands().size(), int(CommandHistory::maxCommands));
    }

    void aTypedCommandIsSentAndItsReplyShownAsPlainText() {
        ScriptedController controller;
        controller.answer("x", "<b>bold</b> %s &amp;");
        BackendFixture backend;
        CommandDock dock(backend.session);
        auto* const line = dock.findChild<QLineEdit*>(QStringLiteral("lineEdit_command"));
        const auto* const replies =
            dock.findChild<QPlainTextEdit*>(QStringLiteral("plainTextEdit_replies"));
        line->setText(QStringLiteral("kestrel2 get x"));
        QTest::keyClick(line, Qt::Key_Return);
        QVERIFY(replies->toPlainText().contains(QStringLiteral("! not connected")));
        backend.connectTo(controller.port());
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        QTest::keyClick(line, Qt::Key_Up);
        QCOMPARE(line->text(), QStringLiteral("kestrel2 get x"));
        QTest::keyClick(line, Qt::Key_Return);
        QVERIFY(line->text().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(replies->toPlainText().endsWith(QStringLiteral(
                                     "> kestrel2 get x\n< kestrel2 set x <b>bold</b> %s &amp;")),
                                 patience);
        QTest::keyClicks(line, QStringLiteral("rubbish"));
        dock.findChild<QPushButton*>(QStringLiteral("pushButton_send"))->click();
        QTRY_VERIFY_WITH_TIMEOUT(
            replies->toPlainText().endsWith(QStringLiteral("> rubbish\n< kestrel2 ok")), patience);
    }

    void aTypedCommandWithoutAReplyIsToldAndMayOutliveItsWindow() {
        ScriptedController controller;
        BackendFixture backend;
        backend.connectTo(controller.port());
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        controller.answerRaw("kestrel2 unanswered", "");
        auto dock = std::make_unique<CommandDock>(backend.session);
        auto* line = dock->findChild<QLineEdit*>(QStringLiteral("lineEdit_command"));
        const auto* const replies =
            dock->findChild<QPlainTextEdit*>(QStringLiteral("plainTextEdit_replies"));
        QTest::keyClicks(line, QStringLiteral("  "));
        QTest::keyClick(line, Qt::Key_Return);
        QCOMPARE(replies->toPlainText(), QString());
        QTest::keyClicks(line, QStringLiteral("kestrel2 unanswered"));
        QTest::keyClick(line, Qt::Key_Return);
        controller.dropConnections();
        QTRY_COMPARE_WITH_TIMEOUT(replies->toPlainText(),
                                  QStringLiteral("> kestrel2 unanswered\n! not connected"),
                                  patience);

        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        controller.clearCommands();
        QTest::keyClicks(line, QStringLiteral("kestrel2 unanswered"));
        QTest::keyClick(line, Qt::Key_Return);
        dock.reset();
        QTRY_COMPARE_WITH_TIMEOUT(controller.count("kestrel2 unanswered"), 1, patience);
        controller.dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(!backend.session.isReady(), patience);
    }
};

QTEST_MAIN(TestCommandDock)
#include "test_commanddock.moc"
