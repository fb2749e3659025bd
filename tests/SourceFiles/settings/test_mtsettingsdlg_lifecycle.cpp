#include "tests/SourceFiles/settings/settingsrig.h"

#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <limits>

namespace {

enum Path { Ok, Cancel, Escape, CloseButton };

void closeBy(SettingsRig& rig, int path) {
    switch (path) {
    case Ok:
        rig.click("pushButton_ok");
        break;
    case Cancel:
        rig.click("pushButton_cancel");
        break;
    case Escape:
        QTest::keyClick(rig.dialog, Qt::Key_Escape);
        break;
    default:
        rig.dialog->close();
    }
}

void addPathRows() {
    QTest::addColumn<int>("path");
    QTest::newRow("OK") << int(Ok);
    QTest::newRow("Cancel") << int(Cancel);
    QTest::newRow("Escape") << int(Escape);
    QTest::newRow("close button") << int(CloseButton);
}

} // namespace

class TestMtSettingsDlgLifecycle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyWayOutGivesZeroAndNeverAccepts_data() { addPathRows(); }
    void everyWayOutGivesZeroAndNeverAccepts() {
        QFETCH(int, path);
        SettingsRig rig;
        const QSignalSpy accepted(rig.dialog, &QDialog::accepted);
        const QSignalSpy finished(rig.dialog, &QDialog::finished);
        QCOMPARE(rig.run([&] { closeBy(rig, path); }), 0);
        QCOMPARE(accepted.count(), 0);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(rig.dialog->result(), 0);
    }

    void theRefreshTimerRunsOnceASecondWhileTheDialogIsShown_data() { addPathRows(); }
    void theRefreshTimerRunsOnceASecondWhileTheDialogIsShown() {
        QFETCH(int, path);
        SettingsRig rig;
        const auto* const timer = rig.dialog->findChild<QTimer*>();
        QCOMPARE(timer->interval(), 1000);
        QVERIFY(!timer->isSingleShot());
        QVERIFY(!timer->isActive());
        rig.run([&] {
            QVERIFY(timer->isActive());
            closeBy(rig, path);
            QVERIFY(!timer->isActive());
        });
        QVERIFY(!timer->isActive());
    }

    void aTickOfTheTimerRefreshesTheDevices() {
        SettingsRig rig;
        rig.run([&] {
            rig.setDevices({"V M 1"});
            const auto* const table = rig.child<QTableWidget>("tableWidget_availableMt");
            QCOMPARE(table->rowCount(), 0);
            QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), 1, 10000);
        });
    }

    void theCountsAreRestoredOnceHoweverOftenTheDialogIsClosed_data() { addPathRows(); }
    void theCountsAreRestoredOnceHoweverOftenTheDialogIsClosed() {
        QFETCH(int, path);
        SettingsRig rig;
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            closeBy(rig, path);
            rig.operations();
            rig.dialog->reject();
            rig.dialog->close();
        });
        COMPARE_LINES(rig.operations(), Lines());
        rig.host.answer("measurementtool available", "no");
        rig.run();
        COMPARE_LINES(rig.operations(), Lines());
    }

    void aSecondCallWhileOpenDoesNothing() {
        SettingsRig rig;
        rig.run([&] {
            QCOMPARE(rig.dialog->update_and_exec(), 0);
            QVERIFY(rig.dialog->isVisible());
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void aHostThatPressesButtonsInsideAQueryOfTheNextShowingChangesNothing_data() {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QByteArray>("question");
        QTest::addColumn<int>("tab");
        for (const char* const slot :
             {"on_pushButton_select_clicked", "on_pushButton_deselect_clicked"}) {
            QTest::addRow("reference, %s", slot)
                << QByteArray(slot) << QByteArray("reference_of_tool") << 0;
            QTest::addRow("device, %s", slot) << QByteArray(slot) << QByteArray("device") << 1;
        }
    }
    void aHostThatPressesButtonsInsideAQueryOfTheNextShowingChangesNothing() {
        QFETCH(QByteArray, slot);
        QFETCH(QByteArray, question);
        QFETCH(int, tab);
        SettingsRig rig;
        rig.setDevices({"V M 00001"});
        QStringList serials;
        rig.run([&] {
            rig.openTab(tab);
            rig.clickCell("tableWidget_availableMt", 0, 2);
            rig.clickCell("tableWidget_meaBodies", 0);
            serials = rig.column("tableWidget_meaBodies", 4);
        });
        bool pressed = false;
        rig.host.onOperation = [&](const std::string& line) {
            if (line == "get_string measurementtool " + question.toStdString() + " b01") {
                pressed = QMetaObject::invokeMethod(rig.dialog, slot);
            }
        };
        rig.run([&] {
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "none"}));
            QCOMPARE(rig.column("tableWidget_meaBodies", 4), serials);
        });
        QVERIFY(pressed);
    }

    void theDialogMayBeDeletedWhileItIsOpen() {
        SettingsRig rig;
        const QPointer<MtSettingsDlg> dialog(rig.dialog);
        QCOMPARE(rig.run([&] { delete rig.dialog; }), 0);
        QVERIFY(dialog.isNull());
    }

    void theParentMayBeDeletedWhileTheDialogIsOpen() {
        SettingsRig rig;
        const QPointer<MtSettingsDlg> dialog(rig.dialog);
        QCOMPARE(rig.run([&] { rig.parent.reset(); }), 0);
        QVERIFY(dialog.isNull());
    }

    void aHostThatHidesTheDialogEndsItsTimer() {
        SettingsRig rig;
        QCOMPARE(rig.run([&] { rig.dialog->hide(); }), 0);
        QVERIFY(!rig.dialog->findChild<QTimer*>()->isActive());
        QCOMPARE(rig.run([&] { QVERIFY(rig.dialog->isVisible()); }), 0);
    }

    void withoutHostVersionsAndParentTheDialogSaysUnavailable() {
        MtSettingsDlg dialog(nullptr, nullptr, nullptr);
        QTimer::singleShot(0, &dialog, [&] {
            QVERIFY(dialog.findChild<QWidget*>("label_error")->isVisible());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QCOMPARE(dialog.update_and_exec(), 0);
        QCOMPARE(dialog.set_ascii_data("6dmt", "6dmt 0 0 0"), 0);
    }

    void aMissingParentIsNoTroubleOnAnAvailableController() {
        SettingsRig rig;
        MtSettingsDlg dialog(&rig.host, nullptr, &rig.versions);
        QTimer::singleShot(0, &dialog, [&] {
            QVERIFY(dialog.findChild<QTimer*>()->isActive());
            dialog.reject();
        });
        QCOMPARE(dialog.update_and_exec(), 0);
    }

    void theHostsNotificationsAreIgnored() {
        SettingsRig rig;
        rig.run([&] {
            QCOMPARE(rig.dialog->set_ascii_data("6dmt", "6dmt 1 1 0 [0 1.0 0]"), 0);
            rig.dialog->set_mea_started();
            rig.dialog->set_mea_stopped();
            COMPARE_LINES(rig.operations(), Lines());
        });
        QVERIFY(rig.host.requesters("6dmt").empty());
    }

    void theSlotsStandInTheOrderOfTheContract() {
        const QStringList expected = {
            "update_and_exec()",
            "on_tableWidget_refBodies_cellClicked(int,int)",
            "on_tableWidget_availableMt_cellClicked(int,int)",
            "on_tableWidget_meaBodies_cellClicked(int,int)",
            "on_tabWidget_currentChanged(int)",
            "on_pushButton_deselect_clicked()",
            "on_pushButton_select_clicked()",
            "on_doubleSpinBox_startLeadTime_valueChanged(double)",
            "on_spinBox_startAngle_valueChanged(int)",
            "on_doubleSpinBox_tipTolerance_valueChanged(double)",
            "on_doubleSpinBox_duration_valueChanged(double)",
            "on_spinBox_noOfRefBodies_valueChanged(int)",
            "on_spinBox_noOfMeaBodies_valueChanged(int)",
            "on_checkBox_startSimulation_stateChanged(int)",
            "on_pushButton_ok_clicked()",
            "on_pushButton_cancel_clicked()",
            "updateTableDevices()",
        };
        const QMetaObject& meta = MtSettingsDlg::staticMetaObject;
        QStringList slots_;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            slots_ << QString::fromLatin1(meta.method(i).methodSignature());
            QCOMPARE(meta.method(i).access(),
                     slots_.size() == 1 ? QMetaMethod::Public : QMetaMethod::Private);
        }
        QCOMPARE(slots_, expected);
    }

    void aNonsenseCountNeitherHangsNorIsShownInFull_data() {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("count");
        for (const char* count : {"2000000000", "-1", "-2147483648"}) {
            for (const char* parameter :
                 {"measurementtool number_of_tools", "measurementtool max_number_of_tools",
                  "measurementtool number_of_references",
                  "measurementtool max_number_of_references",
                  "measurementtool number_of_zelwpan_devices"}) {
                QTest::addRow("%s %s", parameter, count) << parameter << count;
            }
        }
    }
    void aNonsenseCountNeitherHangsNorIsShownInFull() {
        QFETCH(QString, parameter);
        QFETCH(QString, count);
        SettingsRig rig;
        rig.host.answer(parameter.toStdString(), count.toStdString());
        QElapsedTimer clock;
        clock.start();
        rig.run([&] {
            rig.tick();
            for (const char* table :
                 {"tableWidget_meaBodies", "tableWidget_refBodies", "tableWidget_availableMt"}) {
                QVERIFY(rig.child<QTableWidget>(table)->rowCount() <= MtSettingsDlg::MaxEntries);
            }
            for (const char* spin : {"spinBox_noOfMeaBodies", "spinBox_noOfRefBodies"}) {
                QVERIFY(rig.child<QSpinBox>(spin)->minimum() == 0);
                QVERIFY(rig.child<QSpinBox>(spin)->value() >= 0);
                rig.child<QSpinBox>(spin)->stepDown();
                rig.child<QSpinBox>(spin)->setValue(std::numeric_limits<int>::max());
            }
            rig.click("pushButton_ok");
        });
        QVERIFY2(clock.elapsed() < 30000, "far more work than a bounded count needs");
    }
};

QTEST_MAIN(TestMtSettingsDlgLifecycle)
#include "test_mtsettingsdlg_lifecycle.moc"
