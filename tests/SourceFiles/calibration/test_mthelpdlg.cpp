#include "SourceFiles/mthelpdlg.h"
#include "tests/support/children.h"
#include "tests/support/modalwatchdog.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTextDocument>
#include <QtTest>

class TestMtHelpDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theExitButtonClosesWithZero() {
        ModalWatchdog dog;
        dog.on("MtHelpDlgClass",
               [](QWidget* window) { child<QPushButton>(*window, "pushButton_exit")->click(); });
        MtHelpDlg dialog(nullptr);
        QCOMPARE(dialog.exec(), 0);
        QCOMPARE(dog.strays(), QStringList());
    }

    void theWindowCannotBeResized() {
        MtHelpDlg dialog(nullptr);
        QCOMPARE(dialog.windowTitle(), QString("Measurement Tool Tip Calibration Help"));
        QCOMPARE(dialog.layout()->sizeConstraint(), QLayout::SetFixedSize);
        QCOMPARE(dialog.windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
        const QSize before = dialog.size();
        dialog.resize(before + QSize(100, 100));
        QCOMPARE(dialog.size(), before);
    }

    void theHelpHoldsItsParagraphsInOrder() {
        const MtHelpDlg dialog(nullptr);
        QTextDocument document;
        document.setHtml(child<QLabel>(dialog, "label")->text());
        QCOMPARE(document.toPlainText().split('\n'),
                 QStringList({"Result of the Measurement Tool Tip calibration:", "",
                              "The Measurement Tool Tip calibration changes the body",
                              "coordinate system according to the following rules:", "",
                              "1. The origin of the body coordinate system is moved",
                              "into the tip of the Measurement Tool.", "",
                              "2. The connection line between tip and the marker",
                              "with the biggest distance to it defines the z-axis.",
                              "The positive z-axis directs towards the tip.", "",
                              "3. The y-axis is defined by the perpendicular from the",
                              "marker with the smallest distance between",
                              "marker and tip to the z-axis.", "",
                              "4. The orientation of the x-axis results from the",
                              "definition of the right-hand rule.", ""}));
        QVERIFY(child<QLabel>(dialog, "label")->text().contains("white-space: pre-wrap"));
    }

    void theWidgetsAreAsLaidOut() {
        const MtHelpDlg dialog(nullptr);
        QCOMPARE(dialog.objectName(), QString("MtHelpDlgClass"));
        QCOMPARE(dialog.layout()->objectName(), QString("verticalLayout_2"));
        QCOMPARE(namesIn(*dialog.layout()),
                 QStringList({"horizontalLayout", "-", "line", "horizontalLayout_2"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "horizontalLayout")),
                 QStringList({"label_pic", "-", "verticalLayout", "-"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "verticalLayout")), QStringList({"label", "-"}));
        QCOMPARE(namesIn(*child<QLayout>(dialog, "horizontalLayout_2")),
                 QStringList({"-", "pushButton_exit"}));
        const auto* const picture = child<QLabel>(dialog, "label_pic");
        QCOMPARE(picture->minimumSize(), QSize(100, 140));
        const QPixmap pixmap("://mt_klein.PNG");
        QVERIFY(!pixmap.isNull());
        QCOMPARE(picture->pixmap(Qt::ReturnByValue).toImage(), pixmap.toImage());
        QCOMPARE(child<QFrame>(dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(child<QPushButton>(dialog, "pushButton_exit")->text(), QString("E&xit"));
    }
};

QTEST_MAIN(TestMtHelpDlg)
#include "test_mthelpdlg.moc"
