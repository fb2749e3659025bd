#include "workbench/text/logmodel.h"
#include "workbench/window/log/logdock.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using workbench::LogDock;
using workbench::LogModel;

namespace {
constexpr int patience = 5000;
}

class TestLogModel : public QObject {
    Q_OBJECT

    template <typename Widget>
    static Widget* child(const LogDock& dock, const char* name) {
        return dock.findChild<Widget*>(QLatin1String(name));
    }

private Q_SLOTS:
    void linesHaveTimeCategorySourceLevelAndText() {
        LogModel log;
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1, QStringLiteral("Error"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        const QString text = log.rowText(0);
        QVERIFY2(text.endsWith(QStringLiteral("\tstandard\tKESTREL3\t1\tError")), qPrintable(text));
        QVERIFY(QRegularExpression(QStringLiteral(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\t)"))
                    .match(text)
                    .hasMatch());
        QCOMPARE(log.columnCount(), 5);
    }

    void aToolTipTellsTheWholeTextAsItIs() {
        LogModel log;
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1,
                QStringLiteral("a < b & c"));
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1,
                QStringLiteral("<b>bold</b>"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        const auto tip = [&log](int row) { return log.index(row, 4).data(Qt::ToolTipRole); };
        QCOMPARE(tip(0).toString(), QStringLiteral("a < b & c"));
        QCOMPARE(tip(1).toString(), QStringLiteral("&lt;b&gt;bold&lt;/b&gt;"));
    }

    void theOldestLinesGoFirst() {
        LogModel log(5);
        for (int i = 0; i < 12; ++i) {
            log.info(QString::number(i));
            QCoreApplication::processEvents();
        }
        QCOMPARE(log.rowCount(), 5);
        QVERIFY(log.rowText(0).endsWith(QStringLiteral("\t7")));
        QVERIFY(log.rowText(4).endsWith(QStringLiteral("\t11")));
    }

    void aFloodIsBoundedAndSaysSo() {
        LogModel log(10);
        for (int i = 0; i < 1000; ++i) {
            log.info(QString::number(i));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 10, patience);
        QVERIFY(log.rowText(9).contains(QStringLiteral("991 lines came too fast")));
    }

    void controlCharactersAreShownAsEscapes() {
        LogModel log;
        log.problem(QStringLiteral("a\nb\tc") + QChar(0x1b) + QStringLiteral("<b>%1%s"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        QVERIFY(log.rowText(0).endsWith(QStringLiteral("\ta\\nb\\x09c\\x1b<b>%1%s")));
    }

    void linesMayComeFromAnyThread() {
        LogModel log;
        std::thread other([&log] {
            for (int i = 0; i < 100; ++i) {
                log.info(QString::number(i));
            }
        });
        other.join();
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 100, patience);
    }

    void theFilterShowsMatchingLinesAlone() {
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one apple"));
        log.problem(QStringLiteral("two pears [a-z]"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        auto* const view = child<QTableView>(dock, "tableView_log");
        auto* const filter = child<QLineEdit>(dock, "lineEdit_filter");
        filter->setClearButtonEnabled(false); // its fading outlives a dock that is not shown
        filter->setText(QStringLiteral("APPLE"));
        QCOMPARE(view->model()->rowCount(), 1);
        QVERIFY(dock.shownText().contains(QStringLiteral("one apple")));
        QVERIFY(!dock.shownText().contains(QStringLiteral("pears")));
        filter->setText(QStringLiteral("[a-z]")); // plain text, no pattern
        QCOMPARE(view->model()->rowCount(), 1);
        filter->clear();
        QCOMPARE(view->model()->rowCount(), 2);
    }

    void selectedLinesAreCopied() {
        LogModel log;
        LogDock dock(log);
        for (const char* text : {"one", "two", "three"}) {
            log.info(QLatin1String(text));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 3, patience);
        child<QTableView>(dock, "tableView_log")->selectRow(1);
        QVERIFY(dock.shownText().endsWith(QStringLiteral("two\n")));
        QCOMPARE(dock.shownText().count(QLatin1Char('\n')), 1);
    }

    void theWholeLogIsSaved() {
        const QTemporaryDir folder;
        LogModel log;
        const LogDock dock(log);
        log.info(QStringLiteral("grün"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        QString error;
        const QString path = folder.filePath(QStringLiteral("log.txt"));
        QVERIFY2(dock.saveTo(path, &error), qPrintable(error));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), log.toText());
        QVERIFY(!dock.saveTo(QStringLiteral("/no/such/folder/log"), &error));
        QVERIFY(!error.isEmpty());
    }

    void clearingRemovesAllLines() {
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        child<QPushButton>(dock, "pushButton_clear")->click();
        QCOMPARE(log.rowCount(), 0);
    }
};

QTEST_MAIN(TestLogModel)
#include "test_logmodel.moc"
