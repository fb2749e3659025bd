#include "workbench/text/rowprinter.h"

#include <QTableWidget>
#include <QtTest>

class TestRowPrinter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsArePrintedWithTextsAndColours() {
        QWidget widget;
        auto* const table = new QTableWidget(2, 2, &widget);
        table->setObjectName(QStringLiteral("t"));
        table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("a\tb\nc")));
        table->setItem(0, 1, new QTableWidgetItem(QStringLiteral("1.50")));
        table->item(0, 1)->setBackground(QColor(255, 0, 0));
        table->setItem(1, 1, new QTableWidgetItem(QString()));
        table->item(1, 1)->setBackground(Qt::transparent);
        QVERIFY(workbench::visibleRows(widget).isEmpty());
        widget.show();
        QCOMPARE(workbench::visibleRows(widget),
                 QStringList({"t\t0\ta b c\t1.50{#ff0000}", "t\t1\t\t"}));
    }
};

QTEST_MAIN(TestRowPrinter)
#include "test_rowprinter.moc"
