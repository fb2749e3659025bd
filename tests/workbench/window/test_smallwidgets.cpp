#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/modules/modulehost.h"
#include "workbench/text/rowprinter.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/dialogs/modulelistdialog.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/look/symbols.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <vector>

using workbench::CommandDock;
using workbench::CommandHistory;
using workbench::ConnectDialog;

namespace {

constexpr int patience = 5000;

QPalette paletteOf(const QColor& ground, const QColor& letters) {
    QPalette palette(ground, ground);
    palette.setColor(QPalette::WindowText, letters);
    palette.setColor(QPalette::Disabled, QPalette::WindowText,
                     QColor((ground.red() + letters.red()) / 2,
                            (ground.green() + letters.green()) / 2,
                            (ground.blue() + letters.blue()) / 2));
    return palette;
}

// The greatest difference in grey between the symbol and what it stands on.
int contrast(const QIcon& icon, QIcon::Mode mode, const QColor& ground) {
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(ground);
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    painter.end();
    int greatest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            greatest = std::max(greatest, std::abs(qGray(image.pixel(x, y)) - qGray(ground.rgb())));
        }
    }
    return greatest;
}

} // namespace

class TestSmallWidgets : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theConnectDialogShowsAndGivesAnAddress() {
        ConnectDialog dialog({QStringLiteral("10.0.0.1"), 1234, 0}, {QStringLiteral("10.0.0.1")});
        QCOMPARE(dialog.address().toString(), QStringLiteral("10.0.0.1:1234"));
        QCOMPARE(dialog.address().dataPort, quint16(0));
        dialog.findChild<QSpinBox*>(QStringLiteral("spinBox_port"))->setValue(99);
        dialog.findChild<QSpinBox*>(QStringLiteral("spinBox_dataPort"))->setValue(77);
        auto* const host = dialog.findChild<QComboBox*>(QStringLiteral("comboBox_host"));
        host->setEditText(QStringLiteral(" ctl.example "));
        QCOMPARE(dialog.address().toString(), QStringLiteral("ctl.example:99"));
        QCOMPARE(dialog.address().dataPort, quint16(77));
        host->setEditText(QStringLiteral("fe80::1"));
        QCOMPARE(dialog.address().toString(), QStringLiteral("[fe80::1]:99"));
        host->setEditText(QStringLiteral("ctl.example:4711"));
        QCOMPARE(dialog.address().toString(), QStringLiteral("ctl.example:4711"));
    }

    void everySymbolFollowsThePalette_data() {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("letters");
        QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(40, 40, 40) << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black) << QColor(230, 230, 230);
    }
    void everySymbolFollowsThePalette() {
        QFETCH(QColor, ground);
        QFETCH(QColor, letters);
        using workbench::Symbol;
        const Symbol symbols[] = {Symbol::Connect, Symbol::Open, Symbol::Record,   Symbol::Play,
                                  Symbol::Pause,   Symbol::Stop, Symbol::Step,     Symbol::Close,
                                  Symbol::Yes,     Symbol::No,   Symbol::Attention};
        const QPalette before = QApplication::palette();
        std::vector<QIcon> icons; // made before the palette changes
        for (const Symbol symbol : symbols) {
            icons.push_back(workbench::symbolIcon(symbol));
        }
        QApplication::setPalette(paletteOf(ground, letters));
        QStringList faint;
        for (std::size_t i = 0; i < icons.size(); ++i) {
            const int usable = contrast(icons[i], QIcon::Normal, ground);
            const int unusable = contrast(icons[i], QIcon::Disabled, ground);
            if (usable < 150 || unusable < 60 || unusable > usable - 40) {
                faint << QStringLiteral("%1: %2, %3").arg(i).arg(usable).arg(unusable);
            }
        }
        QApplication::setPalette(before);
        QCOMPARE(faint, QStringList());
    }

    void theConnectDialogRefusesWhatIsNoHost() {
        ConnectDialog dialog({}, {});
        auto* const host = dialog.findChild<QComboBox*>(QStringLiteral("comboBox_host"));
        const auto* const box = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
        const QPushButton* const ok = box->button(QDialogButtonBox::Ok);
        QVERIFY(ok->isEnabled());
        for (const char* text : {"", "  ", "a b", "http://x", "a:0"}) {
            host->setEditText(QLatin1String(text));
            QVERIFY2(!ok->isEnabled(), text);
        }
        host->setEditText(QStringLiteral("a"));
        QVERIFY(ok->isEnabled());
    }

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

    void theModuleListNamesTheReason() {
        const QVector<workbench::ModuleInfo> infos{
            {"/p/a.so", "A", "x.A", "Module A", "v1.2.3", ""},
            {"/p/b.so", "", "", "", "", "it is not a Qt plug-in"}};
        const workbench::ModuleListDialog dialog(
            infos, {{"MQTT", "/o/mqtt.so", "v1.2.3", ""}, {"OpenIGTLink", "", "", "needs things"}});
        const auto* const table =
            dialog.findChild<QTableWidget*>(QStringLiteral("tableWidget_modules"));
        QCOMPARE(table->rowCount(), 4);
        QCOMPARE(table->item(0, 0)->text(), QStringLiteral("Module A"));
        QCOMPARE(table->item(0, 1)->text(), QStringLiteral("v1.2.3"));
        QCOMPARE(table->item(0, 2)->text(), QStringLiteral("loaded"));
        QCOMPARE(table->item(0, 3)->text(), QStringLiteral("/p/a.so"));
        QCOMPARE(table->item(1, 0)->text(), QStringLiteral("unknown"));
        QCOMPARE(table->item(1, 2)->text(), QStringLiteral("not loaded: it is not a Qt plug-in"));
        QCOMPARE(table->item(2, 0)->text(), QStringLiteral("Sending by MQTT"));
        QCOMPARE(table->item(2, 1)->text(), QStringLiteral("v1.2.3"));
        QCOMPARE(table->item(2, 2)->text(), QStringLiteral("loaded"));
        QCOMPARE(table->item(2, 3)->text(), QStringLiteral("/o/mqtt.so"));
        QCOMPARE(table->item(3, 2)->text(), QStringLiteral("not loaded: needs things"));
    }

    void rowsArePrintedWithTextsAndColours() {
        QWidget widget;
        auto* const table = new QTableWidget(2, 2, &widget);
        table->setObjectName(QStringLiteral("t"));
        table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("a\tb\nc")));
        table->setItem(0, 1, new QTableWidgetItem(QStringLiteral("1.50")));
        table->item(0, 1)->setBackground(QColor(255, 0, 0));
        table->setItem(1, 1, new QTableWidgetItem(QString()));
        table->item(1, 1)->setBackground(Qt::transparent);
        QVERIFY(workbench::visibleRows(widget).isEmpty());
        widget.show();
        QCOMPARE(workbench::visibleRows(widget),
                 QStringList({"t\t0\ta b c\t1.50{#ff0000}", "t\t1\t\t"}));
    }
};

QTEST_MAIN(TestSmallWidgets)
#include "test_smallwidgets.moc"
