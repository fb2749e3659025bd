#include "tests/SourceFiles/settings/settingsrig.h"

#include <QApplication>
#include <QSpinBox>
#include <QTimer>
#include <QtTest>

namespace {

using Close = std::function<void(SettingsRig&)>;

void cancel(SettingsRig& rig) {
    rig.click("pushButton_cancel");
}

void escape(SettingsRig& rig) {
    QTest::keyClick(rig.dialog, Qt::Key_Escape);
}

void closeButton(SettingsRig& rig) {
    rig.dialog->close();
}

void quit(SettingsRig& /*rig*/) {
    QCoreApplication::quit();
}

void hide(SettingsRig& rig) {
    rig.dialog->hide();
}

// Runs the dialog inside the application's own loop, so that the application can quit and go on.
int runInApplication(SettingsRig& rig, const std::function<void()>& whileOpen) {
    int result = -1;
    QTimer::singleShot(0, rig.dialog, [&] {
        QTimer::singleShot(0, rig.dialog, whileOpen);
        result = rig.dialog->update_and_exec();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return result;
}

struct Counts {
    int tools;
    int references;
};

// Shows the dialog on a controller with the counts `before`, edits them to `after` and returns what
// closing it asks of the controller.
Lines cancelled(SettingsRig& rig, Counts before, Counts after, const Close& close) {
    rig.host.answer("measurementtool number_of_tools", std::to_string(before.tools));
    rig.host.answer("measurementtool number_of_references", std::to_string(before.references));
    Lines lines;
    rig.run([&] {
        rig.setSpin("spinBox_noOfMeaBodies", after.tools);
        rig.setSpin("spinBox_noOfRefBodies", after.references);
        rig.operations();
        close(rig);
        lines = rig.operations();
    });
    return lines;
}

} // namespace

Q_DECLARE_METATYPE(Counts)
Q_DECLARE_METATYPE(Close)

class TestMtSettingsDlgCancel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A dialog that is closed would otherwise end the loop of the run that follows.
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void theCountsAreRestoredInThisOrder_data() {
        QTest::addColumn<VersionInfo>("protocol");
        QTest::addColumn<Close>("close");
        QTest::addColumn<Counts>("before");
        QTest::addColumn<Counts>("after");
        QTest::addColumn<QString>("expected");
        const QString tools = "set measurementtool number_of_tools %1";
        const QString references = "set measurementtool number_of_references %1";
        struct Row {
            const char* name;
            Counts before;
            Counts after;
            QStringList lines;
        };
        const Row rows[] = {
            {"nothing edited", {2, 3}, {2, 3}, {}},
            {"tools raised", {2, 3}, {4, 3}, {tools.arg(2)}},
            {"tools lowered", {4, 3}, {2, 3}, {tools.arg(4)}},
            {"references raised", {2, 1}, {2, 3}, {references.arg(1)}},
            {"references lowered", {2, 3}, {2, 1}, {references.arg(3)}},
            {"tools raised, references lowered", {2, 3}, {4, 1}, {tools.arg(2), references.arg(3)}},
            {"both raised", {2, 1}, {3, 4}, {tools.arg(2), references.arg(1)}},
            {"tools lowered, references raised", {4, 1}, {2, 3}, {references.arg(1), tools.arg(4)}},
            {"both lowered", {4, 4}, {1, 1}, {references.arg(4), tools.arg(4)}},
            {"all tools gone", {1, 2}, {0, 0}, {references.arg(2), tools.arg(1)}},
        };
        const std::pair<const char*, Close> paths[] = {
            {"Cancel", cancel}, {"Escape", escape}, {"close button", closeButton}};
        for (const int minor : {12, 13, 14, 20}) {
            const VersionInfo known = minor == 20 ? VersionInfo(2, 0, 0) : VersionInfo(1, minor, 0);
            for (const int patch : {0, -1}) {
                const VersionInfo protocol(known.ma, known.mi, patch);
                for (const auto& path : paths) {
                    for (const Row& row : rows) {
                        QTest::addRow("%s, %s, %s", row.name, path.first,
                                      qPrintable(protocol.toString()))
                            << protocol << path.second << row.before << row.after
                            << row.lines.join(QLatin1Char('\n'));
                    }
                }
            }
        }
    }
    void theCountsAreRestoredInThisOrder() {
        QFETCH(VersionInfo, protocol);
        QFETCH(Close, close);
        QFETCH(Counts, before);
        QFETCH(Counts, after);
        SettingsRig rig(protocol);
        QTEST(asText(cancelled(rig, before, after, close)), "expected");
        QVERIFY(!rig.dialog->isVisible());
        COMPARE_LINES(rig.logs(), Lines());
    }

    void theCountsAreRestoredOnceWhenTheLoopEndsByItself_data() {
        QTest::addColumn<Close>("end");
        QTest::newRow("the application quits") << Close(quit);
        QTest::newRow("the host hides the dialog") << Close(hide);
    }
    void theCountsAreRestoredOnceWhenTheLoopEndsByItself() {
        QFETCH(Close, end);
        SettingsRig rig;
        const auto endingWith = [&](int tools, int references) {
            return runInApplication(rig, [&] {
                rig.setSpin("spinBox_noOfMeaBodies", tools);
                rig.setSpin("spinBox_noOfRefBodies", references);
                rig.operations();
                end(rig);
            });
        };
        QCOMPARE(endingWith(4, 1), 0);
        COMPARE_LINES(rig.operations(), Lines{"set measurementtool number_of_tools 2",
                                              "set measurementtool number_of_references 3"});
        QVERIFY(!rig.dialog->isVisible());
        QVERIFY(QGuiApplication::modalWindow() == nullptr);
        QVERIFY(!rig.dialog->findChild<QTimer*>()->isActive());

        QCOMPARE(endingWith(1, 3), 0); // the dialog can be opened again
        COMPARE_LINES(rig.operations(), Lines{"set measurementtool number_of_tools 2"});
        QCOMPARE(endingWith(2, 3), 0);
        COMPARE_LINES(rig.operations(), Lines());
    }

    void whatOkHasWrittenIsNotTakenBackWhenTheApplicationQuits() {
        SettingsRig rig;
        const int result = runInApplication(rig, [&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            rig.click("pushButton_ok");
            rig.operations();
            QCoreApplication::quit();
        });
        QCOMPARE(result, 0);
        COMPARE_LINES(rig.operations(), Lines());
    }

    void belowProtocol13NothingIsEverWritten_data() {
        QTest::addColumn<int>("patch");
        QTest::newRow("1.2.0") << 0;
        QTest::newRow("1.2.-1") << -1;
    }
    void belowProtocol13NothingIsEverWritten() {
        QFETCH(int, patch);
        for (const Close& close : {Close(cancel), Close(escape), Close(closeButton)}) {
            SettingsRig rig(VersionInfo(1, 2, patch));
            COMPARE_LINES(cancelled(rig, {2, 3}, {4, 1}, close), Lines());
            QVERIFY(!rig.dialog->isVisible());
        }
    }

    void otherEditsNeedNoUndo() {
        SettingsRig rig;
        rig.run([&] {
            rig.click("pushButton_select");
            rig.setCell("tableWidget_meaBodies", 0, 1, "9.0");
            rig.setDoubleSpin("doubleSpinBox_duration", 5.0);
            rig.click("checkBox_startSimulation");
            rig.click("checkBox_useOldOutputFormat");
            COMPARE_LINES(rig.operations(), Lines());
            rig.click("pushButton_cancel");
            COMPARE_LINES(rig.operations(), Lines());
        });
        rig.run([&] {
            QCOMPARE(rig.cell("tableWidget_meaBodies", 0, 1), QString("1.5"));
            QCOMPARE(rig.cell("tableWidget_meaBodies", 0, 2), QString("MR2"));
        });
    }

    void aRefusedRestoreIsLoggedAndTheOtherOneStillTried() {
        SettingsRig rig;
        rig.host.fail("measurementtool number_of_tools 2");
        rig.host.fail("measurementtool number_of_references 3");
        COMPARE_LINES(cancelled(rig, {2, 3}, {3, 1}, cancel),
                      Lines{"set measurementtool number_of_tools 2",
                            "set measurementtool number_of_references 3"});
        QVERIFY(!rig.dialog->isVisible());
    }

    void theLogNamesTheValueThatWasToBeRestored() {
        SettingsRig rig;
        rig.host.fail("measurementtool number_of_tools 2");
        rig.host.fail("measurementtool number_of_references 3");
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            rig.setSpin("spinBox_noOfRefBodies", 1);
            rig.logs();
            rig.click("pushButton_cancel");
            COMPARE_LINES(rig.logs(), Lines{"Error: Unable to set number of mea tools = 2",
                                            "Error: Unable to set number of references = 3"});
        });
        QVERIFY(!rig.dialog->isVisible());
    }

    void afterACancelTheDialogHoldsTheRestoredCounts() {
        SettingsRig rig;
        cancelled(rig, {2, 3}, {4, 1}, cancel);
        rig.host.fail("measurementtool number_of_tools");
        rig.run([&] {
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->value(), 2);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->rowCount(), 2);
        });
    }

    void otherKeysAreTheDialogs() {
        SettingsRig rig;
        rig.run([&] {
            QTest::keyClick(rig.dialog, Qt::Key_A);
            QTest::keyClick(rig.dialog, Qt::Key_F5);
            QVERIFY(rig.dialog->isVisible());
            COMPARE_LINES(rig.operations(), Lines());
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgCancel)
#include "test_mtsettingsdlg_cancel.moc"
