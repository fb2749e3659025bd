#include "tests/support/datarows.h"
#include "workbench/text/logmodel.h"

#include <QSignalSpy>
#include <QtTest>

#include <thread>

using workbench::LogModel;

namespace {
constexpr int patience = 5000;
}

class TestLogModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesHaveTimeCategorySourceLevelAndText() {
        LogModel log;
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1, QStringLiteral("Error"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        const QString text = log.rowText(0);
        QVERIFY2(text.endsWith(QStringLiteral("\tstandard\tKESTREL3\tError\tError")),
                 qPrintable(text));
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

    void longLinesAreBoundedByTheirCharacters() {
        constexpr int names = 18; // of the category and of the source of our own lines
        LogModel log(100, 1000);
        for (int i = 0; i < 20; ++i) {
            log.info(QString::number(i).rightJustified(100 - names, QLatin1Char('.')));
            QCoreApplication::processEvents();
        }
        QCOMPARE(log.rowCount(), 10);
        QVERIFY2(log.rowText(0).endsWith(QStringLiteral(".10")), qPrintable(log.rowText(0)));
        QVERIFY2(log.rowText(9).endsWith(QStringLiteral(".19")), qPrintable(log.rowText(9)));

        log.info(QString(1000 - names, QLatin1Char('x'))); // as many as there may be
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        log.info(QString(2000, QLatin1Char('y'))); // more: the latest line is always there
        QTRY_VERIFY_WITH_TIMEOUT(log.rowText(0).endsWith(QLatin1Char('y')), patience);
        QCOMPARE(log.rowCount(), 1);
        log.info(QStringLiteral("short"));
        QTRY_VERIFY_WITH_TIMEOUT(log.rowText(0).endsWith(QStringLiteral("short")), patience);
        QCOMPARE(log.rowCount(), 1);
    }

    void whatWasClearedCountsNoMore() {
        const QString line(400, QLatin1Char('x'));
        LogModel log(100, 1000);
        log.info(line + QLatin1Char('1'));
        log.info(line + QLatin1Char('2'));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        log.clear();
        log.info(line + QLatin1Char('3'));
        log.info(line + QLatin1Char('4'));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        QVERIFY2(log.rowText(0).endsWith(QLatin1Char('3')), qPrintable(log.rowText(0)));
    }

    void aFloodOfLongLinesIsBoundedAndSaysSo() {
        LogModel log(1000, 10000);
        for (int i = 0; i < 100; ++i) {
            log.info(QString::number(i).rightJustified(982, QLatin1Char('.')));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 10, patience);
        QVERIFY2(log.rowText(9).contains(QStringLiteral("91 lines came too fast")),
                 qPrintable(log.rowText(9)));
    }

    void aLineThatRepeatsIsOneLineWithACount() {
        LogModel log;
        log.problem(QStringLiteral("no answer"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        QCOMPARE(log.index(0, LogModel::TextColumn).data().toString(), QStringLiteral("no answer"));
        QSignalSpy changed(&log, &LogModel::dataChanged);
        log.problem(QStringLiteral("no answer")); // it stands in the table already
        QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, patience);
        for (int i = 0; i < 10; ++i) {
            log.problem(QStringLiteral("no answer")); // these come together
        }
        log.problem(QStringLiteral("another"));
        log.problem(QStringLiteral("no answer"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 3, patience);
        static const QRegularExpression counted(
            QStringLiteral(R"(^no answer \(12 times, the last one at \d\d:\d\d:\d\d\.\d{3}\)$)"));
        const QString text = log.index(0, LogModel::TextColumn).data().toString();
        QVERIFY2(counted.match(text).hasMatch(), qPrintable(text));
        QVERIFY(log.rowText(0).endsWith(text));
        QCOMPARE(log.index(2, LogModel::TextColumn).data().toString(), QStringLiteral("no answer"));
    }

    void whatDiffersInAnythingIsNoRepetition_data() {
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("rows");
        row("all the same", QString("a"), QString("b"), 1, QString("c"), 1);
        row("category", QString("x"), QString("b"), 1, QString("c"), 2);
        row("source", QString("a"), QString("x"), 1, QString("c"), 2);
        row("level", QString("a"), QString("b"), 0, QString("c"), 2);
        row("text", QString("a"), QString("b"), 1, QString("C"), 2);
    }
    void whatDiffersInAnythingIsNoRepetition() {
        QFETCH(QString, category);
        QFETCH(QString, source);
        QFETCH(int, level);
        QFETCH(QString, text);
        LogModel log;
        log.add(QStringLiteral("a"), QStringLiteral("b"), 1, QStringLiteral("c"));
        log.add(category, source, level, text);
        QTRY_VERIFY_WITH_TIMEOUT(log.rowCount() > 0, patience);
        QTEST(log.rowCount(), "rows");
    }

    void aFloodOfOneLineIsCountedWhole() {
        LogModel log(10);
        for (int i = 0; i < 5000; ++i) {
            log.info(QStringLiteral("again"));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        QVERIFY2(log.rowText(0).contains(QStringLiteral("again (5000 times")),
                 qPrintable(log.rowText(0)));
    }

    void aLineOfAModuleIsCutAsOurOwn() {
        const QString endless(1000000, QLatin1Char('x'));
        LogModel log;
        log.info(endless);
        log.add(endless, endless, 1, endless);
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        const int longest = log.index(0, LogModel::TextColumn).data().toString().size();
        QVERIFY2(longest < 5000, qPrintable(QString::number(longest)));
        QCOMPARE(log.index(1, LogModel::TextColumn).data().toString().size(), longest);
        for (const int column : {LogModel::CategoryColumn, LogModel::SourceColumn}) {
            const QString name = log.index(1, column).data().toString();
            QVERIFY2(name.size() > 50 && name.size() < 200,
                     qPrintable(QString::number(name.size())));
        }
    }

    // A dialog that asks for several things once a second, and gets none of them.
    void whatAModuleRepeatsInTurnsIsCountedToo() {
        LogModel log;
        const auto complain = [&log] {
            for (const char* const text : {"Error: one", "Error: two", "Error: three"}) {
                log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1,
                        QLatin1String(text));
            }
        };
        complain();
        complain(); // before the first ones stand in the table
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 3, patience);
        QSignalSpy changed(&log, &LogModel::dataChanged);
        complain();
        log.info(QStringLiteral("something else"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 4, patience);
        QCOMPARE(changed.count(), 1);
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(log.repetitions(row), 3);
        }
    }

    void eventsThatTakeTurnsAreALineEach() {
        LogModel log;
        for (const char* const text : {"began", "ended", "began", "ended"}) {
            log.info(QLatin1String(text));
            log.problem(QLatin1String(text));
            log.add(QStringLiteral("traffic"), QStringLiteral("CONTROLLER"), 0,
                    QLatin1String(text));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 12, patience);
    }

    // They write all of their lines with the level of an error.
    void ofAModuleOnlyWhatComplainsIsAnError_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        row("a failure", QString("Error: Unable to accept calibration"), QString("Error"));
        row("another one", QString("Error reading device b01"), QString("Error"));
        row("a refusal", QString("cannot start calibration, waiting for sync signal"),
            QString("Error"));
        row("a result", QString("{\"rms_mm\":0.1}"), QString("Information"));
        row("somewhere inside", QString("no Error"), QString("Information"));
    }
    void ofAModuleOnlyWhatComplainsIsAnError() {
        QFETCH(QString, text);
        LogModel log;
        log.add(QStringLiteral("any"), QStringLiteral("MODULE"), 1, text);
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        const QModelIndex level = log.index(0, LogModel::LevelColumn);
        QTEST(level.data().toString(), "word");
        const bool isError = level.data(LogModel::LevelRole).toInt() == LogModel::Problem;
        QCOMPARE(isError, level.data().toString() == QLatin1String("Error"));
        QCOMPARE(log.problemRowsSince(0), isError ? QVector<int>{0} : QVector<int>{});
        QCOMPARE(
            log.rowText(0).section(QLatin1Char('\t'), LogModel::LevelColumn, LogModel::LevelColumn),
            level.data().toString());
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
};

QTEST_MAIN(TestLogModel)
#include "test_logmodel.moc"
