#include "tests/SourceFiles/settings/settingsrig.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QLabel>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

namespace {

const char* const tools = "tableWidget_meaBodies";
const char* const references = "tableWidget_refBodies";
const char* const devices = "tableWidget_availableMt";

// Brings the keyboard to a widget; offscreen windows must be activated by hand.
void focus(const SettingsRig& rig, QWidget* widget) {
    QApplication::setActiveWindow(rig.dialog);
    widget->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(widget->hasFocus());
}

QDoubleSpinBox* openEditor(const SettingsRig& rig, int row) {
    auto* const table = rig.child<QTableWidget>(tools);
    focus(rig, table);
    table->setCurrentCell(row, 1);
    QTest::keyClick(table, Qt::Key_F2);
    return table->viewport()->findChild<QDoubleSpinBox*>();
}

} // namespace

class TestMtSettingsDlgKeyboard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tabVisitsEveryControlInReadingOrder() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.run([&] {
            const QStringList expected = {"spinBox_noOfMeaBodies",
                                          "spinBox_noOfRefBodies",
                                          "tabWidget_mt",
                                          tools,
                                          "pushButton_select",
                                          "pushButton_deselect",
                                          "tabWidget",
                                          references,
                                          "checkBox_useOldOutputFormat",
                                          "doubleSpinBox_duration",
                                          "doubleSpinBox_tipTolerance",
                                          "checkBox_startSimulation",
                                          "spinBox_startAngle",
                                          "doubleSpinBox_startLeadTime",
                                          "pushButton_ok",
                                          "pushButton_cancel"};
            focus(rig, rig.child<QWidget>("spinBox_noOfMeaBodies"));
            QStringList visited;
            for (int i = 0; i < expected.size(); ++i) {
                const QWidget* focused = QApplication::focusWidget();
                if (qobject_cast<const QTabBar*>(focused) != nullptr) {
                    focused = focused->parentWidget();
                }
                visited << focused->objectName();
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            }

            QCOMPARE(visited, expected);
            QVERIFY(rig.child<QWidget>("spinBox_noOfMeaBodies")->hasFocus());
        });
    }

    void mnemonicsLeadToTheirControls_data() {
        QTest::addColumn<QString>("buddy");
        QTest::newRow("label_noOfMeaBodies") << "spinBox_noOfMeaBodies";
        QTest::newRow("label_noOfRefBodies") << "spinBox_noOfRefBodies";
        QTest::newRow("label_duration") << "doubleSpinBox_duration";
        QTest::newRow("label_tipTolerance") << "doubleSpinBox_tipTolerance";
        QTest::newRow("label_minAngularSpeed") << "spinBox_startAngle";
        QTest::newRow("label_meaStartDelay") << "doubleSpinBox_startLeadTime";
    }
    void mnemonicsLeadToTheirControls() {
        const SettingsRig rig;
        const QWidget* const buddy = rig.child<QLabel>(QTest::currentDataTag())->buddy();
        QVERIFY(buddy != nullptr);
        QTEST(buddy->objectName(), "buddy");
    }

    void noMnemonicIsUsedTwice() {
        const SettingsRig rig;
        QStringList keys;
        const auto widgets = rig.dialog->findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            const QString key =
                QKeySequence::mnemonic(widget->property("text").toString()).toString();
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(key));
            keys << key;
        }
    }

    void arrowKeysChooseATool() {
        SettingsRig rig;
        rig.run([&] {
            auto* const table = rig.child<QTableWidget>(tools);
            focus(rig, table);
            QVERIFY(rig.isEnabled("pushButton_deselect"));
            QTest::keyClick(table, Qt::Key_Down);
            QCOMPARE(table->currentRow(), 1);
            QVERIFY(!rig.isEnabled("pushButton_deselect"));
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(table->currentRow(), 1);
        });
    }

    void arrowKeysChooseAReference() {
        SettingsRig rig;
        rig.run([&] {
            auto* const table = rig.child<QTableWidget>(references);
            focus(rig, table);
            QVERIFY(rig.isEnabled("pushButton_select"));
            QTest::keyClick(table, Qt::Key_Down); // the reference that M1 has already
            QVERIFY(!rig.isEnabled("pushButton_select"));
            QTest::keyClick(table, Qt::Key_Down);
            QVERIFY(rig.isEnabled("pushButton_select"));
        });
    }

    void arrowKeysChooseADeviceAlsoAfterARefresh() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V M 2", "V M 3"});
        rig.run([&] {
            rig.openTab(1);
            auto* const table = rig.child<QTableWidget>(devices);
            focus(rig, table);
            for (const int row : {0, 1, 2}) {
                QTest::keyClick(table, Qt::Key_Down);
                QCOMPARE(table->currentRow(), row);
                QVERIFY(rig.isEnabled("pushButton_select"));
                rig.tick();
                QCOMPARE(table->currentRow(), row);
            }
            QTest::keyClick(table, Qt::Key_Up);
            QCOMPARE(table->currentRow(), 1);
            rig.click("pushButton_select");
            QCOMPARE(rig.cell(tools, 0, 4), QString("00002"));
        });
    }

    void aVisibleColumnStaysCurrentWhenAKeyIsPressed() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V M 2"});
        rig.run([&] {
            rig.openTab(1);
            auto* const table = rig.child<QTableWidget>(devices);
            focus(rig, table);
            table->setCurrentCell(0, 4);
            QTest::keyClick(table, Qt::Key_Down);
            QCOMPARE(table->currentRow(), 1);
            QCOMPARE(table->currentColumn(), 4);
        });
    }

    void theTabBarIsMovedByArrowKeys() {
        SettingsRig rig;
        rig.run([&] {
            auto* const tabs = rig.child<QTabWidget>("tabWidget");
            focus(rig, tabs->tabBar());
            QTest::keyClick(tabs->tabBar(), Qt::Key_Right);
            QCOMPARE(tabs->currentIndex(), 1);
            QVERIFY(!rig.isEnabled("pushButton_select"));
        });
    }

    void aDiameterIsEditedWithTheKeyboardAlone_data() {
        QTest::addColumn<QString>("typed");
        QTest::newRow("point") << "7.5";
        QTest::newRow("comma") << "7,5";
    }
    void aDiameterIsEditedWithTheKeyboardAlone() {
        QFETCH(QString, typed);
        SettingsRig rig;
        rig.run([&] {
            QDoubleSpinBox* const editor = openEditor(rig, 0);
            QVERIFY(editor != nullptr);
            QTest::keyClicks(editor, typed);
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_COMPARE(rig.cell(tools, 0, 1), QString("7.5"));
            QVERIFY(rig.dialog->isVisible()); // Enter ends the edit, not the dialog
        });
    }

    void escapeLeavesTheEditorFirst() {
        SettingsRig rig;
        rig.run([&] {
            QDoubleSpinBox* const editor = openEditor(rig, 0);
            QTest::keyClicks(editor, "7.5");
            QTest::keyClick(editor, Qt::Key_Escape);
            QVERIFY(rig.dialog->isVisible());
            QCOMPARE(rig.cell(tools, 0, 1), QString("1.5"));
        });
    }

    void aRefreshLeavesTheEditorOfADiameterOpen() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.run([&] {
            const QPointer<QDoubleSpinBox> editor(openEditor(rig, 0));
            QTest::keyClicks(editor, "7");
            rig.setDevices({"V M 2", "V M 3"});
            rig.tick();
            QVERIFY(!editor.isNull() && editor->isVisible() && editor->hasFocus());
            QTest::keyClicks(editor, ".5");
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_COMPARE(rig.cell(tools, 0, 1), QString("7.5"));
        });
    }

    void aRowThatIsTakenAwayUnderTheKeyboardIsNoChoice() {
        SettingsRig rig;
        auto* const table = rig.child<QTableWidget>(tools);
        rig.run([&] {
            focus(rig, table);
            table->setCurrentCell(1, 0);
            table->setCurrentCell(-1, -1);
        });
        rig.run([&] { QCOMPARE(table->currentRow(), 1); });
    }

    void aMnemonicPressedWhileADiameterIsEditedDoesNotLoseIt() {
        SettingsRig rig;
        rig.run([&] {
            QDoubleSpinBox* const editor = openEditor(rig, 0);
            QTest::keyClicks(editor, "7.5");
            rig.click("pushButton_deselect");
            QCOMPARE(rig.cell(tools, 0, 1), QString("7.5"));
            QCOMPARE(rig.cell(tools, 0, 2), QString("none"));
        });
    }

    void okTakesADiameterThatIsStillBeingEdited() {
        SettingsRig rig;
        rig.run([&] {
            QDoubleSpinBox* const editor = openEditor(rig, 1);
            QTest::keyClicks(editor, "7.5");
            rig.click("pushButton_ok");
            QCOMPARE(rig.operations().back(),
                     std::string("set measurementtool tip_radius b02 3.750"));
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgKeyboard)
#include "test_mtsettingsdlg_keyboard.moc"
