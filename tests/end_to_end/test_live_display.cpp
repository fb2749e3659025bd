#include "tests/end_to_end/processes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace processes;

namespace {

const QString green = QStringLiteral("#00ff00");
const QString red = QStringLiteral("#ff0000");
const QString blue = QStringLiteral("#0000ff");

bool isPose(const Row& row, int column, const QVector<double>& pose) {
    bool same = pose.size() == 6 && row.texts.size() > column + 6;
    for (int i = 0; same && i < 6; ++i) {
        bool number = false;
        const double shown = row.texts.at(column + i).toDouble(&number);
        same = number && std::abs(shown - pose.at(i)) < 0.00501; // two decimals are shown
    }
    return same;
}

bool hasRow(const Rows& rows, const QString& table, int row) {
    return rows.value(table).size() > row;
}

QString poseText(const Rows& rows, const QString& table, int row, int column) {
    return hasRow(rows, table, row) ? rows[table][row].texts.mid(column, 6).join(QLatin1Char(' '))
                                    : QString();
}

bool showsPose(const Rows& rows, const QString& table, int row, int column,
               const QVector<double>& pose) {
    return hasRow(rows, table, row) && isPose(rows[table][row], column, pose);
}

QString colourOf(const Rows& rows, const QString& table, int row, int column) {
    return hasRow(rows, table, row) ? rows[table][row].colours.value(column) : QString();
}

} // namespace

/// Simulator, workbench and plug-in as processes, over TCP and UDP.
class TestLiveDisplay : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    QString newFile(const QString& ending) {
        return m_folder.filePath(QString::number(++m_files) + ending);
    }
    QStringList measuring(const Simulator& simulator) {
        return {QStringLiteral("--connect"), simulator.address(), QStringLiteral("--measure")};
    }

    static bool hasToolLines(const QString& recording) {
        QFile file(recording);
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const int records = content.indexOf("\nrecords\n");
        return records >= 0 && content.indexOf("6dmt", records) >= 0;
    }

private Q_SLOTS:
    void bothTablesMoveWithinThreeSecondsOfTheStart() {
        QElapsedTimer clock;
        clock.start();
        Workbench workbench({"--simulate", "--measure"}, newFile(".ini"));
        const auto first = workbench.waitForRows([](const Rows& rows) {
            return hasRow(rows, toolTable, 0) && hasRow(rows, referenceTable, 1);
        });
        const QString tool = poseText(first, toolTable, 0, toolPoseColumn);
        const QString reference = poseText(first, referenceTable, 1, referencePoseColumn);
        const auto moved = workbench.waitForRows([&](const Rows& rows) {
            return poseText(rows, toolTable, 0, toolPoseColumn) != tool &&
                   poseText(rows, referenceTable, 1, referencePoseColumn) != reference;
        });
        const qint64 elapsed = clock.elapsed();
        QVERIFY2(poseText(moved, toolTable, 0, toolPoseColumn) != tool,
                 qPrintable(workbench.output()));
        QVERIFY2(elapsed <= 3000 * slowness, qPrintable(QString::number(elapsed) + " ms"));
    }

    void cellsHoldTheTruePositionsInEveryLocale_data() {
        QTest::addColumn<QString>("locale");
        QTest::newRow("C") << "C";
        QTest::newRow("decimal comma") << "de_DE.UTF-8";
    }
    void cellsHoldTheTruePositionsInEveryLocale() {
        QFETCH(QString, locale);
        Simulator simulator({"--no-occlusion", "--noise", "0"});
        QVERIFY(simulator.isListening());
        QCOMPARE(simulator.ask("sim place reference b01 -12.5 1000.25 0.125 -10 20 30.5"),
                 QString("kestrel2 ok"));
        QCOMPARE(simulator.ask("sim place reference b02 4.005 -0.001 7 1 2 3"),
                 QString("kestrel2 ok"));
        QCOMPARE(simulator.ask("sim place tool b01 123.456 -78.9 1234.5678 12.34 -23.45 34.56"),
                 QString("kestrel2 ok"));
        QCOMPARE(simulator.ask("sim place tool b03 0.1 0.2 -0.3 170.5 0.5 -179.25"),
                 QString("kestrel2 ok"));
        QCOMPARE(simulator.numbers("sim pose tool b01"),
                 QVector<double>({123.456, -78.9, 1234.5678, 12.34, -23.45, 34.56}));

        Workbench workbench(measuring(simulator), newFile(".ini"), locale);
        const auto rows = workbench.waitForRows([&](const Rows& now) {
            return showsPose(now, toolTable, 0, toolPoseColumn,
                             simulator.numbers("sim pose tool b01")) &&
                   showsPose(now, toolTable, 2, toolPoseColumn,
                             simulator.numbers("sim pose tool b03")) &&
                   showsPose(now, referenceTable, 0, referencePoseColumn,
                             simulator.numbers("sim pose reference b01")) &&
                   showsPose(now, referenceTable, 1, referencePoseColumn,
                             simulator.numbers("sim pose reference b02"));
        });
        QVERIFY2(hasRow(rows, toolTable, 3), qPrintable(workbench.output()));
        QCOMPARE(poseText(rows, toolTable, 0, toolPoseColumn),
                 QString("123.46 -78.90 1234.57 12.34 -23.45 34.56"));
        QCOMPARE(poseText(rows, toolTable, 2, toolPoseColumn),
                 QString("0.10 0.20 -0.30 170.50 0.50 -179.25"));
        QCOMPARE(poseText(rows, referenceTable, 0, referencePoseColumn),
                 QString("-12.50 1000.25 0.12 -10.00 20.00 30.50"));
        QCOMPARE(colourOf(rows, toolTable, 0, 0), green);
        QCOMPARE(colourOf(rows, referenceTable, 1, 1), green);
    }

    void stateOfTheToolsIsShownAsTheControllerHasIt() {
        Simulator simulator({"--no-occlusion", "--noise", "0"});
        QVERIFY(simulator.isListening());
        const QVector<double> held{10, 20, 30, 1, 2, 3};
        simulator.ask("sim place tool b02 10 20 30 1 2 3");
        simulator.ask("sim press tool b02 5");
        Workbench workbench(measuring(simulator), newFile(".ini"));
        workbench.waitForRows([&](const Rows& now) {
            return showsPose(now, toolTable, 1, toolPoseColumn, held) &&
                   colourOf(now, toolTable, 1, 4) == blue;
        });
        QCOMPARE(colourOf(workbench.rows(), toolTable, 1, 0), green);
        QCOMPARE(colourOf(workbench.rows(), toolTable, 1, 4), blue);
        QCOMPARE(colourOf(workbench.rows(), toolTable, 1, 6), QString());
        QCOMPARE(colourOf(workbench.rows(), toolTable, 1, 8), blue);

        QCOMPARE(simulator.ask("sim occlude tool b02 yes"), QString("kestrel2 ok"));
        const auto lost = workbench.waitForRows(
            [](const Rows& now) { return colourOf(now, toolTable, 1, 0) == red; });
        QCOMPARE(colourOf(lost, toolTable, 1, 0), red);
        QVERIFY(showsPose(lost, toolTable, 1, toolPoseColumn, held));

        // One of the four is not calibrated: a name and nothing else.
        QCOMPARE(simulator.value("measurementtool tip_calibrated b04"), QString("no"));
        QCOMPARE(lost[toolTable][3].texts.value(0), QString("M4"));
        QCOMPARE(colourOf(lost, toolTable, 3, 0), QString());
        QCOMPARE(poseText(lost, toolTable, 3, toolPoseColumn).trimmed(), QString());
    }

    void displayWorksWithEachLineOfTheController_data() {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("newest protocol") << QStringList{"--protocol", "2.0.0"};
        QTest::newRow("unknown patch") << QStringList{"--protocol", "1.13"};
        QTest::newRow("before the new line") << QStringList{"--protocol", "1.12.3"};
        QTest::newRow("twenty tools") << QStringList{"--tools", "20", "--references", "4"};
        QTest::newRow("a thousand frames per second") << QStringList{"--rate", "1000"};
        QTest::newRow("garbled now and then") << QStringList{"--misbehave", "garbled-data=30"};
        QTest::newRow("lost now and then") << QStringList{"--misbehave", "lost-data=50"};
    }
    void displayWorksWithEachLineOfTheController() {
        QFETCH(QStringList, options);
        Simulator simulator(QStringList{"--no-occlusion", "--noise", "0"} + options);
        QVERIFY(simulator.isListening());
        simulator.ask("sim place tool b01 1.5 2.5 3.5 4.5 5.5 6.5");
        Workbench workbench(measuring(simulator), newFile(".ini"));
        const QVector<double> held{1.5, 2.5, 3.5, 4.5, 5.5, 6.5};
        const auto rows = workbench.waitForRows(
            [&](const Rows& now) { return showsPose(now, toolTable, 0, toolPoseColumn, held); });
        QVERIFY2(showsPose(rows, toolTable, 0, toolPoseColumn, held),
                 qPrintable(workbench.output()));
    }

    void displayComesBackAfterTheControllerDiedAndReturned() {
        auto simulator = std::make_unique<Simulator>(QStringList{"--no-occlusion", "--noise", "0"});
        QVERIFY(simulator->isListening());
        const quint16 port = simulator->port();
        simulator->ask("sim place tool b01 1 1 1 1 1 1");
        Workbench workbench(measuring(*simulator), newFile(".ini"));
        const QVector<double> before{1, 1, 1, 1, 1, 1};
        workbench.waitForRows(
            [&](const Rows& now) { return showsPose(now, toolTable, 0, toolPoseColumn, before); });
        QVERIFY2(showsPose(workbench.rows(), toolTable, 0, toolPoseColumn, before),
                 qPrintable(workbench.output()));

        simulator->kill();
        simulator = std::make_unique<Simulator>(
            QStringList{"--no-occlusion", "--noise", "0", "--port", QString::number(port)});
        QCOMPARE(simulator->port(), port);
        simulator->ask("sim place tool b01 2 2 2 2 2 2");
        simulator->ask("tracking start");
        const QVector<double> after{2, 2, 2, 2, 2, 2};
        workbench.waitForRows(
            [&](const Rows& now) { return showsPose(now, toolTable, 0, toolPoseColumn, after); });
        QVERIFY2(showsPose(workbench.rows(), toolTable, 0, toolPoseColumn, after),
                 qPrintable(workbench.output()));
        QVERIFY(workbench.isRunning());
    }

    void aRecordedSessionIsShownAgain() {
        const QString recording = newFile(".rec");
        const QVector<double> held{11, 22, 33, 4, 5, 6};
        {
            Simulator simulator({"--no-occlusion", "--noise", "0"});
            QVERIFY(simulator.isListening());
            simulator.ask("sim place tool b01 11 22 33 4 5 6");
            Workbench workbench(measuring(simulator) + QStringList{"--record", recording},
                                newFile(".ini"));
            workbench.waitForRows([&](const Rows& now) {
                return showsPose(now, toolTable, 0, toolPoseColumn, held);
            });
            QVERIFY2(showsPose(workbench.rows(), toolTable, 0, toolPoseColumn, held),
                     qPrintable(workbench.output()));
            // It begins when the controller has answered what stands at its head.
            QTRY_VERIFY_WITH_TIMEOUT(hasToolLines(recording), rowsTimeoutMs);
        }
        Simulator replay({"--replay", recording});
        QVERIFY(replay.isListening());
        Workbench workbench(measuring(replay), newFile(".ini"));
        workbench.waitForRows([&](const Rows& now) {
            return showsPose(now, toolTable, 0, toolPoseColumn, held) && hasRow(now, toolTable, 3);
        });
        QVERIFY2(showsPose(workbench.rows(), toolTable, 0, toolPoseColumn, held),
                 qPrintable(workbench.output()));
        QCOMPARE(workbench.rows()[toolTable].size(), 4);
        QCOMPARE(workbench.rows()[referenceTable].size(), 2);
    }

    void workbenchEndsByItselfWithoutComplaint() {
        Workbench workbench({"--simulate", "--measure", "--quit-after", "1"}, newFile(".ini"));
        QVERIFY(workbench.waitForEnd());
        QCOMPARE(workbench.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLiveDisplay)
#include "test_live_display.moc"
