#include "workbench/modules/modulehost.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/dialogs/modulelistdialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

using workbench::ConnectDialog;

class TestWorkbenchDialogs : public QObject {
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
};

QTEST_MAIN(TestWorkbenchDialogs)
#include "test_workbenchdialogs.moc"
