#include "general/widgets/spinboxes.h"
#include "tests/SourceFiles/settings/settingsrig.h"

#include <QApplication>
#include <QClipboard>
#include <QtTest>

namespace {

const char* const tools = "tableWidget_meaBodies";
const char* const diameter = "tip diameter";

// What a session in another language begins with.
class Session {
public:
    explicit Session(const QLocale& locale) { QLocale::setDefault(locale); }
    ~Session() { QLocale::setDefault(m_before); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    QLocale m_before;
};

// The number field by its name; that of a diameter is the opened editor of the first tool.
QAbstractSpinBox* field(const SettingsRig& rig, const QString& name) {
    QApplication::setActiveWindow(rig.dialog);
    if (name != diameter) {
        auto* const box = rig.child<QAbstractSpinBox>(qPrintable(name));
        box->setFocus(Qt::TabFocusReason);
        return box;
    }
    auto* const table = rig.child<QTableWidget>(tools);
    table->setFocus();
    table->setCurrentCell(0, 1);
    QTest::keyClick(table, Qt::Key_F2);
    return table->viewport()->findChild<QAbstractSpinBox*>();
}

void enter(QAbstractSpinBox* box, const QString& text, bool pasted) {
    box->selectAll();
    if (pasted) {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    } else {
        QTest::keyClicks(box, text);
    }
}

} // namespace

class TestMtSettingsDlgDecimalMarks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eitherMarkGivesTheSameNumberInEveryField_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("pasted");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        const std::pair<const char*, const char*> fields[] = {
            {"doubleSpinBox_duration", "set measurementtool measurement_duration b01 0.400"},
            {"doubleSpinBox_tipTolerance",
             "set measurementtool measurement_tip_tolerance b01 0.400"},
            {"doubleSpinBox_startLeadTime",
             "set measurementtool measurement_start_lead_time b01 0.400"},
            {diameter, "set measurementtool tip_radius b01 0.200"},
        };
        for (const QLocale& locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany)}) {
            for (const bool pasted : {false, true}) {
                for (const auto& field : fields) {
                    for (const char* const text : {"0.4", "0,4"}) {
                        QTest::addRow("%s, %s, %s %s", qPrintable(locale.name()), field.first, text,
                                      pasted ? "pasted" : "typed")
                            << locale << pasted << field.first << text << field.second;
                    }
                }
            }
        }
    }
    void eitherMarkGivesTheSameNumberInEveryField() {
        QFETCH(QLocale, locale);
        QFETCH(bool, pasted);
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(QString, written);
        const Session session(locale);
        SettingsRig rig;
        rig.run([&] {
            QAbstractSpinBox* const box = field(rig, name);
            QVERIFY(box != nullptr);
            enter(box, text, pasted);
            QCOMPARE(box->text(), QString("0.4")); // as the cells show it
            rig.click("pushButton_ok");
            const Lines lines = rig.operations();
            QVERIFY2(std::count(lines.begin(), lines.end(), written.toStdString()) == 1,
                     qPrintable(asText(lines)));
        });
    }

    void whatIsNoNumberIsRefused_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        for (const QLocale& locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                                      QLocale(QLocale::German, QLocale::Germany)}) {
            for (const char* const name :
                 {"doubleSpinBox_duration", "doubleSpinBox_tipTolerance",
                  "doubleSpinBox_startLeadTime", diameter, "spinBox_startAngle",
                  "spinBox_noOfMeaBodies", "spinBox_noOfRefBodies"}) {
                for (const char* const text : {"1,000.5", "1.000,5", "0,4 s", "nan", "0.4.1"}) {
                    QTest::addRow("%s, %s, %s", qPrintable(locale.name()), name, text)
                        << locale << name << text;
                }
            }
        }
    }
    void whatIsNoNumberIsRefused() {
        QFETCH(QLocale, locale);
        QFETCH(QString, name);
        QFETCH(QString, text);
        const Session session(locale);
        SettingsRig rig;
        rig.run([&] {
            QAbstractSpinBox* const box = field(rig, name);
            QVERIFY(box != nullptr);
            const QString before = box->text();
            enter(box, text, true);
            QCOMPARE(box->text(), before);
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void whatStandsBehindAMarkDoesNotMultiplyAWholeNumber_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("point") << "10.5";
        QTest::newRow("comma") << "10,5";
    }
    void whatStandsBehindAMarkDoesNotMultiplyAWholeNumber() {
        QFETCH(QString, text);
        SettingsRig rig;
        rig.run([&] {
            auto* const angle = rig.child<QSpinBox>("spinBox_startAngle");
            enter(field(rig, "spinBox_startAngle"), text, false);
            QCOMPARE(angle->value(), 10);
            QTest::keyClick(angle, Qt::Key_Tab);
            QCOMPARE(angle->text(), QString("10"));
        });
    }

    void cellsAndFieldsShowTheSameMark() {
        const Session session(QLocale(QLocale::German, QLocale::Germany));
        SettingsRig rig;
        rig.run([&] {
            for (const char* const name : {"doubleSpinBox_duration", "doubleSpinBox_tipTolerance",
                                           "doubleSpinBox_startLeadTime"}) {
                QVERIFY2(rig.child<QDoubleSpinBox>(name)->text().contains('.'), name);
            }
            QCOMPARE(rig.cell(tools, 0, 1), QString("1.5"));
            QCOMPARE(field(rig, diameter)->text(), QString("1.5"));
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgDecimalMarks)
#include "test_mtsettingsdlg_decimalmarks.moc"
