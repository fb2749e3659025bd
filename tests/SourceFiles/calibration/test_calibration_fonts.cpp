#include "SourceFiles/mthelpdlg.h"
#include "SourceFiles/mtresultdlg.h"
#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QProgressBar>
#include <QTableWidget>
#include <QtTest>

namespace {

constexpr double largeFont = 1.5;

QString nameAndSize(const QWidget& widget) {
    return QStringLiteral("%1 %2x%3 ")
        .arg(widget.objectName())
        .arg(widget.width())
        .arg(widget.height());
}

// The window's own widgets that show less than their text or lie on each other.
QString faultsOf(const QWidget& window) {
    QString faults;
    QList<const QWidget*> shown;
    const auto children = window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* widget : children) {
        if (!widget->isVisible() || widget->inherits("QSizeGrip")) {
            continue;
        }
        for (const QWidget* other : shown) {
            if (other->geometry().intersects(widget->geometry())) {
                faults += other->objectName() + " on " + nameAndSize(*widget);
            }
        }
        shown << widget;
        if (!window.rect().contains(widget->geometry())) {
            faults += "outside: " + nameAndSize(*widget);
        }
        if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            const int height = label->wordWrap() ? label->heightForWidth(label->width())
                                                 : label->sizeHint().height();
            const int width = label->wordWrap() ? 0 : label->sizeHint().width();
            if (label->height() < height || label->width() < width) {
                faults += "clipped: " + nameAndSize(*widget);
            }
        } else if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
            QString text = button->text();
            text.remove(QLatin1Char('&'));
            const QFontMetrics metrics(button->font());
            if (button->width() < metrics.horizontalAdvance(text) + 4 ||
                button->height() < metrics.height()) {
                faults += "clipped: " + nameAndSize(*widget);
            }
        } else if (qobject_cast<const QProgressBar*>(widget) != nullptr &&
                   widget->height() < QFontMetrics(widget->font()).height()) {
            faults += "clipped: " + nameAndSize(*widget);
        }
    }
    return faults;
}

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
            faults = faultsOf(*rig.dialog);
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
            faults = faultsOf(dialog);
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
        QCOMPARE(faultsOf(dialog), QString());
        QCOMPARE(dialog.size(), QSize(186, 180));
    }

    void theHelpFits() {
        MtHelpDlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(faultsOf(dialog), QString());
    }

    void theResultFits() {
        ScriptedHost host;
        scriptCalibration(host);
        MtResultDlg dialog(&host, nullptr);
        QString faults = "not looked at";
        ModalWatchdog dog;
        dog.on("MtResultDlgClass", [&](QWidget* shown) {
            faults = faultsOf(*shown);
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
