#include "SourceFiles/mthelpdlg.h"
#include "SourceFiles/mtresultdlg.h"
#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"
#include "tests/support/textfit.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableWidget>
#include <QtTest>

namespace {

constexpr double largeFont = 1.5;

} // namespace

class TestCalibrationFonts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_before = QApplication::font();
        QFont font = m_before;
        font.setPointSizeF(font.pointSizeF() * largeFont);
        QApplication::setFont(font);
    }
    void cleanup() { QApplication::setFont(m_before); }

    void theCalibrationDialogFits() {
        CalibrationRig rig;
        rig.host.answer("body calibrated measurementtool b02", "no"); // with its longest message
        QString faults = "not looked at";
        rig.open({[&] {
            faults = cutOffTexts(*rig.dialog);
            rig.click("pushButton_exit");
        }});
        QCOMPARE(faults, QString());
    }

    void theProgressDialogFits() {
        ProgressRig rig;
        scriptProcedure(rig.host, 2, {"cal"});
        QString faults = "not looked at";
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            dialog.update_cal_status();
            dialog.show_custom_message("Hold the tip of the tool in the hole of the block.");
            QCoreApplication::sendPostedEvents(); // the layout follows the texts
            faults = cutOffTexts(dialog);
            dialog.reject();
        });
        rig.run();
        QCOMPARE(faults, QString());
    }

    void theCountdownFits() {
        CountdownDlg dialog(nullptr);
        dialog.setMessage(QString(), 5);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(cutOffTexts(dialog), QString());
        QCOMPARE(dialog.size(), QSize(186, 180));
    }

    void theHelpFits() {
        MtHelpDlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(cutOffTexts(dialog), QString());
    }

    void theResultFits() {
        ScriptedHost host;
        scriptCalibration(host);
        MtResultDlg dialog(&host, nullptr);
        QString faults = "not looked at";
        ModalWatchdog dog;
        dog.on("MtResultDlgClass", [&](QWidget* shown) {
            faults = cutOffTexts(*shown);
            const auto* const table = child<QTableWidget>(*shown, "tableWidget");
            const QHeaderView* const header = table->horizontalHeader();
            for (int column = 0; column < table->columnCount(); ++column) {
                if (header->sectionSize(column) < header->sectionSizeHint(column)) {
                    faults += QStringLiteral("clipped: column %1").arg(column);
                }
            }
            if (header->length() > table->viewport()->width()) {
                faults += "scrolls";
            }
            shown->close();
        });
        dialog.update_and_exec();
        QCOMPARE(faults, QString());
    }

private:
    QFont m_before;
};

QTEST_MAIN(TestCalibrationFonts)
#include "test_calibration_fonts.moc"
