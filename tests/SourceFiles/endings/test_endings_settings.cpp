#include "tests/support/children.h"
#include "tests/support/endings/endingsweep.h"
#include "tests/support/faultsweep.h"

#include <QCheckBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

namespace {

enum class Flow { Ok, Cancel, Failing };

void script(ScriptedHost& io, Flow flow) {
    io.answer("config is_changeable", "yes");
    io.answer("measurementtool available", "yes");
    io.answer("measurementtool max_number_of_tools", "4");
    io.answer("measurementtool max_number_of_references", "5");
    if (flow == Flow::Failing) {
        return; // nearly everything fails, and each failure is logged
    }
    io.answer("measurementtool number_of_tools", "2");
    io.answer("measurementtool number_of_references", "3");
    io.answer("measurementtool number_of_zelwpan_devices", "2");
    io.answer("measurementtool zelwpan_device d01", "V M 1");
    io.answer("measurementtool zelwpan_device d02", "V N 2");
    io.answer("zelwpan device_model_desc V M", "\"desc M\"");
    io.answer("zelwpan device_model_desc V N", "\"desc N\"");
    io.answer("measurementtool output_6dmt", "no");
    for (const char* body : {"b01", "b02", "b03", "b04"}) {
        const std::string b = body;
        io.answer("measurementtool reference_of_tool " + b, b == "b01" ? "b02" : "none");
        io.answer("measurementtool device " + b, b == "b01" ? "zelwpan V M 00001" : "none");
        io.answer("measurementtool tip_radius " + b, "0.75");
        io.answer("measurementtool measurement_duration " + b, "2.0");
        io.answer("measurementtool measurement_tip_tolerance " + b, "2.5");
        io.answer("measurementtool measurement_start_simulation " + b, "yes");
        io.answer("measurementtool measurement_start_angle " + b, "45.0");
        io.answer("measurementtool measurement_start_lead_time " + b, "0.5");
    }
}

void assign(QWidget& dialog, int tab, int row) {
    child<QTabWidget>(dialog, "tabWidget")->setCurrentIndex(tab);
    child<QTableWidget>(dialog, "tableWidget_meaBodies")->setCurrentCell(0, 0);
    auto* const table =
        child<QTableWidget>(dialog, tab == 0 ? "tableWidget_refBodies" : "tableWidget_availableMt");
    table->setCurrentCell(row, 3 * tab);
    Q_EMIT table->cellClicked(row, 3 * tab);
    child<QPushButton>(dialog, "pushButton_select")->click();
}

void use(EndingHost& host, QWidget& dialog, Flow flow) {
    host.act([&] { child<QSpinBox>(dialog, "spinBox_noOfMeaBodies")->setValue(4); });
    host.act([&] { child<QSpinBox>(dialog, "spinBox_noOfRefBodies")->setValue(1); });
    host.act([&] { child<QSpinBox>(dialog, "spinBox_noOfRefBodies")->setValue(4); });
    if (flow == Flow::Cancel) {
        host.act([&] { QTest::keyClick(&dialog, Qt::Key_Escape); });
        return;
    }
    host.act([&] {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "updateTableDevices", Qt::DirectConnection));
    });
    host.act([&] { assign(dialog, 0, 2); });
    host.act([&] { assign(dialog, 1, 1); });
    host.act([&] {
        child<QDoubleSpinBox>(dialog, "doubleSpinBox_duration")->setValue(9.0);
        child<QDoubleSpinBox>(dialog, "doubleSpinBox_tipTolerance")->setValue(0.3);
        child<QSpinBox>(dialog, "spinBox_startAngle")->setValue(99);
        child<QCheckBox>(dialog, "checkBox_useOldOutputFormat")->toggle();
    });
    host.act([&] {
        // The button is disabled when nearly all has failed: a slot can be reached in other ways.
        QVERIFY(
            QMetaObject::invokeMethod(&dialog, "on_pushButton_ok_clicked", Qt::DirectConnection));
    });
}

} // namespace

class TestEndingsSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void theHostMayEndTheDialogInsideAnyCall_data() {
        addEndingRows({QStringLiteral("settings, OK"), QStringLiteral("settings, Cancel"),
                       QStringLiteral("settings, failing")});
    }
    void theHostMayEndTheDialogInsideAnyCall() {
        QFETCH(EndBy, endBy);
        QFETCH(int, flow);
        QFETCH(QString, name);
        const auto kind = static_cast<Flow>(flow);
        const auto prepare = [=](ScriptedHost& io) { script(io, kind); };
        const auto play = [=](EndingHost& host) {
            host.dog.on("MtSettingsDlgClass",
                        [&host, kind](QWidget* dialog) { use(host, *dialog, kind); });
            host.trigger(0);
        };
        const EndingSweep sweep{QStringLiteral(KESTREL_PLUGIN_FILE), name, prepare, play};
        QCOMPARE(sweep.run(endBy), QString());
    }

private:
    faultsweep::NoPainting m_noPainting;
};

QTEST_MAIN(TestEndingsSettings)
#include "test_endings_settings.moc"
