#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/textfit.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextDocument>
#include <QtTest>

namespace {

const char* const tools = "tableWidget_meaBodies";
const char* const references = "tableWidget_refBodies";
const char* const devices = "tableWidget_availableMt";

constexpr const char* duration =
    "Measurement duration\nValid rage: [0.2 ... 10.0 s]\nDefault value: 1.0 s";
constexpr const char* angle =
    "Minimal angular variation to start the measurement effected by seesawing of the Measurement "
    "Tool\nValid range: [10 ... 120 degrees]\nDefault value: 40 degrees";

QStringList headers(const QTableWidget& table) {
    QStringList texts;
    for (int column = 0; column < table.columnCount(); ++column) {
        texts << table.horizontalHeaderItem(column)->text();
    }
    return texts;
}

} // namespace

class TestMtSettingsDlgForm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textsAreThoseOfTheForm_data() {
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* text) {
            QTest::newRow(name) << QString(text);
        };
        row("label_noOfMeaBodies", "&number of Measurement Tools");
        row("label_noOfRefBodies", "number of &references");
        row("pushButton_select", "<< &Select    ");
        row("pushButton_deselect", ">> &Deselect");
        row("checkBox_useOldOutputFormat", "use &old output format");
        row("label_pointMeasurement", "point measurement");
        row("label_duration", "m&easurement duration [s]");
        row("label_tipTolerance", "&tool tip tolerance [mm]");
        row("checkBox_startSimulation", "&activate measurement start simulation");
        row("label_minAngularSpeed", "minimal angular &variation [deg]");
        row("label_meaStartDelay", "maximum &lead time for this angular variation [s]");
        row("pushButton_ok", "OK");
        row("pushButton_cancel", "Cancel");
        row("label_max_error", "");
        row("label_error", "");
    }
    void textsAreThoseOfTheForm() {
        const SettingsRig rig;
        QTEST(rig.child<QWidget>(QTest::currentDataTag())->property("text").toString(), "text");
    }

    void helpIsThatOfTheForm_data() {
        QTest::addColumn<QString>("help"); // paragraphs as lines
        const auto row = [](const char* name, const QString& help) { QTest::newRow(name) << help; };
        row("spinBox_noOfMeaBodies", "Adjust the number of Measurement Tools");
        row("label_noOfMeaBodies", "Adjust the number of Measurement Tools");
        row("spinBox_noOfRefBodies", "Adjust the number of references");
        row("label_noOfRefBodies", "Adjust the number of references");
        row(tools, "Assignments between Measurement Tools and references");
        row("pushButton_select", "Set assignment between Measurement Tool and reference");
        row("pushButton_deselect", "Dissolve assignment between Measurement Tool and reference");
        row("tabWidget", "Available references");
        row(references, "Available references");
        row("label_duration", duration);
        row("doubleSpinBox_duration", duration);
        row("label_tipTolerance", "Tolerance of the tool tip to be still considered as static\n"
                                  "Valid range: [0.1 ... 5.0 mm]\nDefault value: 1.5 mm");
        row("doubleSpinBox_tipTolerance",
            "Tolerance that the tool tip is still considered as static\n"
            "Valid range: [0.1 ... 5.0 mm]\nDefault value: 1.5 mm");
        row("checkBox_startSimulation", "Activate start simulation");
        row("label_minAngularSpeed", angle);
        row("spinBox_startAngle", angle);
        row("label_meaStartDelay", "Lead time before the measurement is started [s]\n"
                                   "Valid range: [0.2 ... 1.0s]\nDefault value: 0.2s");
        row("doubleSpinBox_startLeadTime", "Lead time before the measurement is started [s]\n"
                                           "Valid range: [0.1 ... 1.0s]\nDefault value: 0.2s");
        row("pushButton_ok", "Accept changes");
        row("pushButton_cancel", "Discard changes and close dialog");
    }
    void helpIsThatOfTheForm() {
        const SettingsRig rig;
        QTextDocument document;
        const QString text = rig.child<QWidget>(QTest::currentDataTag())->whatsThis();
        if (Qt::mightBeRichText(text)) {
            document.setHtml(text);
        } else {
            document.setPlainText(text);
        }
        QTEST(document.toPlainText(), "help");
    }

    void theHelpOfTheOutputFormatIsPlainLines() {
        const SettingsRig rig;
        QCOMPARE(rig.child<QCheckBox>("checkBox_useOldOutputFormat")->whatsThis(),
                 QString("Control is checked:\nOld output format 6dmt is activated.\n\n"
                         "Control is unchecked:\nNew output format 6dmt2 is activated.\n\n"
                         "See output settings.\n\n"));
    }

    void theDialogHasItsTitleHelpAndSize() {
        const SettingsRig rig;
        QCOMPARE(rig.dialog->windowTitle(), QString("Measurement Tool Settings"));
        QCOMPARE(rig.dialog->whatsThis(), QString("Measurement Tool settings"));
        QCOMPARE(rig.dialog->minimumSize(), QSize(1000, 600));
    }

    void theTabsHaveTheirTextsAndTips() {
        const SettingsRig rig;
        const auto* const tabs = rig.child<QTabWidget>("tabWidget");
        QCOMPARE(tabs->tabText(0), QString("reference bodies"));
        QCOMPARE(tabs->tabText(1), QString("radio devices"));
        QCOMPARE(tabs->widget(0)->objectName(), QString("tab_refBodies"));
        QCOMPARE(tabs->widget(1)->objectName(), QString("tab_availableMt"));
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(tabs->toolTip(), QString("available Buttons"));
        QCOMPARE(tabs->widget(1)->toolTip(), QString("available Buttons"));
        QCOMPARE(tabs->minimumWidth(), 280);
        const auto* const toolTabs = rig.child<QTabWidget>("tabWidget_mt");
        QCOMPARE(toolTabs->tabText(0), QString("Measurement Tools"));
        QCOMPARE(toolTabs->widget(0)->objectName(), QString("tab_mt"));
    }

    void rangesAreThoseOfTheForm_data() {
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::addColumn<double>("step");
        QTest::addColumn<double>("value");
        QTest::newRow("doubleSpinBox_duration") << 0.2 << 10.0 << 0.1 << 1.0;
        QTest::newRow("doubleSpinBox_tipTolerance") << 0.1 << 5.0 << 0.1 << 1.5;
        QTest::newRow("doubleSpinBox_startLeadTime") << 0.1 << 1.0 << 0.1 << 0.2;
    }
    void rangesAreThoseOfTheForm() {
        const SettingsRig rig;
        const auto* const box = rig.child<QDoubleSpinBox>(QTest::currentDataTag());
        QTEST(box->minimum(), "minimum");
        QTEST(box->maximum(), "maximum");
        QTEST(box->singleStep(), "step");
        QTEST(box->value(), "value");
        QCOMPARE(box->decimals(), 1);
    }

    void theWholeNumbersHaveTheirRanges() {
        const SettingsRig rig;
        QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 4);
        QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->minimum(), 0);
        const auto* const box = rig.child<QSpinBox>("spinBox_startAngle");
        QCOMPARE(box->minimum(), 10);
        QCOMPARE(box->maximum(), 120);
        QCOMPARE(box->value(), 40);
        for (const char* name : {"doubleSpinBox_duration", "spinBox_startAngle"}) {
            QCOMPARE(rig.child<QWidget>(name)->minimumWidth(), 50);
        }
    }

    void theTablesAreSetUp() {
        const SettingsRig rig;
        QCOMPARE(headers(*rig.child<QTableWidget>(tools)),
                 QStringList({"ID", "Tip diameter [mm]", "Reference ID", "Model", "Serial"}));
        QCOMPARE(headers(*rig.child<QTableWidget>(references)), QStringList({"Reference ID"}));
        QCOMPARE(headers(*rig.child<QTableWidget>(devices)),
                 QStringList({"SortColumn_Key", "Vendor", "Model_intern", "Model", "Serial"}));
        for (const char* name : {tools, references, devices}) {
            const auto* const table = rig.child<QTableWidget>(name);
            QVERIFY(table->verticalHeader()->isHidden());
            QVERIFY(!table->horizontalHeader()->sectionsClickable());
            QVERIFY(table->horizontalHeader()->stretchLastSection());
            QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
            QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
            QCOMPARE(table->frameShape(), QFrame::NoFrame);
            QCOMPARE(table->editTriggers() == QAbstractItemView::NoEditTriggers,
                     QString(name) != tools);
            QCOMPARE(table->parentWidget()->layout()->contentsMargins(), QMargins());
            QCOMPARE(table->parentWidget()->contentsMargins(), QMargins());
            for (int column = 0; column < table->columnCount(); ++column) {
                QCOMPARE(table->isColumnHidden(column), QString(name) == devices && column < 3);
            }
        }
        QCOMPARE(rig.child<QTableWidget>(tools)->minimumSize(), QSize(400, 105));
        QVERIFY(rig.child<QTableWidget>(tools)->itemDelegateForColumn(1) != nullptr);
    }

    void theModelColumnIsWidenedBy85Pixels() {
        const SettingsRig rig;
        for (const char* name : {tools, devices}) {
            const auto* const table = rig.child<QTableWidget>(name);
            QCOMPARE(table->columnWidth(3), table->horizontalHeader()->sectionSizeHint(3) + 85);
        }
    }

    void rowsAre28PixelsHighAndCellsHaveTheirFlags() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.run([&] {
            const Qt::ItemFlags fixed = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
            const auto* const table = rig.child<QTableWidget>(tools);
            for (int column = 0; column < 5; ++column) {
                const QTableWidgetItem* const item = table->item(1, column);
                QCOMPARE(item->flags(), column == 1 ? QTableWidgetItem().flags() : fixed);
                QCOMPARE(item->textAlignment() == Qt::AlignCenter, column == 1 || column == 4);
            }
            QCOMPARE(rig.child<QTableWidget>(devices)->item(0, 4)->textAlignment(),
                     int(Qt::AlignCenter));
            for (const char* name : {tools, references}) {
                QCOMPARE(rig.child<QTableWidget>(name)->rowHeight(0), 28);
            }
        });
    }

    void controllerTextsAreNeverRichText() {
        SettingsRig rig;
        rig.setDevices({"<b>V</b> <i>M</i> 1"});
        rig.run([&] {
            QCOMPARE(rig.cell(devices, 0, 1), QString("<b>V</b>"));
            QCOMPARE(rig.cell(devices, 0, 3), QString("desc <i>M</i>"));
        });
    }

    void nothingIsCutOff_data() {
        QTest::addColumn<double>("scale");
        QTest::newRow("normal font") << 1.0;
        QTest::newRow("150 % font") << 1.5;
    }
    void nothingIsCutOff() {
        QFETCH(double, scale);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSizeF(before.pointSizeF() * scale);
        QApplication::setFont(font);
        {
            SettingsRig rig;
            rig.run([&] {
                QApplication::processEvents();
                const TextFit fit = textFit(*rig.dialog);
                QCOMPARE(fit.faults, QStringList());
                QVERIFY(fit.texts + fit.buttons > 15);
                const auto* const table = rig.child<QTableWidget>(tools);
                QVERIFY(table->horizontalHeader()->length() <= table->viewport()->width());
                QVERIFY(table->viewport()->height() >= 4 * 28);
            });
        }
        QApplication::setFont(before);
    }
};

QTEST_MAIN(TestMtSettingsDlgForm)
#include "test_mtsettingsdlg_form.moc"
