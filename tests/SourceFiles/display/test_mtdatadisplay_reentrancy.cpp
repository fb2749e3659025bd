#include "tests/SourceFiles/display/displayfixture.h"

#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <thread>

namespace {

constexpr int patienceMs = 5000;

const std::string available = "get_string measurementtool available";
const std::string format = "get_bool measurementtool output_6dmt";
const std::string activation = "set output active chmon 6dmt yes";
const std::string referenceOfTool2 = "get_string measurementtool reference_of_tool b02";
const std::string tipOfTool2 = "get_string measurementtool tip_calibrated b02";
const std::string bodyOfReference2 = "get_string body calibrated measurementtool_reference b02";

const std::string twoTools = toolLine({Tool(), Tool()});
const std::string twoReferences = referenceLine({Pose(), Pose()});

// Counts how often timers with the interval of the display's refresh go off.
class RefreshTicks : public QObject {
public:
    RefreshTicks() { qApp->installEventFilter(this); }
    int count() const { return m_count; }
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* const timer = qobject_cast<QTimer*>(watched);
        if (event->type() == QEvent::Timer && timer != nullptr && timer->interval() == 200) {
            ++m_count;
        }
        return false;
    }

private:
    int m_count = 0;
};

} // namespace

Q_DECLARE_METATYPE(std::string)

// What a host does from inside a query, and the display that asked it.
class TestMtDataDisplayReentrancy : public QObject {
    Q_OBJECT

    static void feed(MtDataDisplay& display) {
        display.set_ascii_data("6dmt2", twoTools.c_str());
        display.set_ascii_data("6dmtr", twoReferences.c_str());
    }

    // Runs `action` once, inside the query with this journal line.
    static void inside(DisplayFixture& f, const std::string& query,
                       const std::function<void()>& action) {
        f.host.onOperation = [&f, query, action](const std::string& line) {
            if (line == query) {
                f.host.onOperation = nullptr;
                action();
            }
        };
    }

    static bool takesLines(MtDataDisplay& display) {
        return display.set_ascii_data("6dmt2", twoTools.c_str()) == 0;
    }

    static void queriesOfARefresh() {
        QTest::addColumn<std::string>("query");
        QTest::newRow("reference of a tool") << referenceOfTool2;
        QTest::newRow("calibration of a tool") << tipOfTool2;
        QTest::newRow("calibration of a reference") << bodyOfReference2;
    }

private Q_SLOTS:
    void stopInsideAQueryOfTheStartCancelsIt_data() {
        QTest::addColumn<std::string>("query");
        QTest::newRow("availability") << available;
        QTest::newRow("format") << format;
        QTest::newRow("activation") << activation;
    }
    void stopInsideAQueryOfTheStartCancelsIt() {
        QFETCH(std::string, query);
        DisplayFixture f;
        f.host.answerInTurn("measurementtool available", {"no", "yes"});
        f.host.answerInTurn("measurementtool output_6dmt", {"yes"});
        f.build();
        bool stopped = false;
        inside(f, query, [&] {
            f.display->set_mea_stopped();
            stopped = true;
        });
        f.start();
        QVERIFY(stopped);
        QVERIFY(!takesLines(*f.display));
        f.start();
        QVERIFY(takesLines(*f.display));
    }

    void stopFromAnotherThreadInsideAQueryCancelsTheStart() {
        DisplayFixture f;
        f.build();
        inside(f, format, [&] { std::thread([&f] { f.display->set_mea_stopped(); }).join(); });
        f.start();
        QVERIFY(!takesLines(*f.display));
        QCoreApplication::processEvents();
        QVERIFY(!takesLines(*f.display));
    }

    void stopAndStartInsideAQueryOfTheStartEndInOneMeasurement() {
        DisplayFixture f;
        f.build();
        inside(f, format, [&] {
            f.display->set_mea_stopped();
            f.display->set_mea_started();
        });
        f.start();
        QVERIFY(!takesLines(*f.display)); // the first start is void
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(*f.display), patienceMs);
    }

    void linesInsideAQueryAreTaken() {
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        int result = 1;
        inside(f, referenceOfTool2,
               [&] { result = f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()); });
        f.display->onUpdateDataDisplay();
        QCOMPARE(result, 0);
        QCOMPARE(f.toolTable()->rowCount(), 2); // painted from the copy
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 1);
    }

    void linesOfAnotherThreadInsideAQueryAreTaken() {
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        int result = 1;
        inside(f, tipOfTool2, [&] {
            std::thread([&] {
                result = f.display->set_ascii_data("6dmt2", twoTools.c_str());
            }).join();
        });
        f.display->onUpdateDataDisplay();
        QCOMPARE(result, 0);
    }

    void stopInsideARefreshLeavesEmptyTables_data() { queriesOfARefresh(); }
    void stopInsideARefreshLeavesEmptyTables() {
        QFETCH(std::string, query);
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        bool stopped = false;
        inside(f, query, [&] {
            f.display->set_mea_stopped();
            stopped = true;
        });
        f.display->onUpdateDataDisplay();
        QVERIFY(stopped);
        QCOMPARE(f.toolTable()->rowCount(), 0);
        QCOMPARE(f.referenceTable()->rowCount(), 0);
    }

    void stopFromAnotherThreadInsideARefreshLeavesEmptyTables_data() { queriesOfARefresh(); }
    void stopFromAnotherThreadInsideARefreshLeavesEmptyTables() {
        QFETCH(std::string, query);
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        inside(f, query, [&] { std::thread([&f] { f.display->set_mea_stopped(); }).join(); });
        f.display->onUpdateDataDisplay();
        QVERIFY(!takesLines(*f.display));
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 0, patienceMs);
        QCOMPARE(f.referenceTable()->rowCount(), 0);
    }

    void stopAndStartInsideARefreshRebuildAllRows_data() { queriesOfARefresh(); }
    void stopAndStartInsideARefreshRebuildAllRows() {
        QFETCH(std::string, query);
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        inside(f, query, [&] {
            f.display->set_mea_stopped();
            f.display->set_mea_started_deferred();
            feed(*f.display);
        });
        f.display->onUpdateDataDisplay();
        f.display->onUpdateDataDisplay();
        for (const QTableWidget* table : {f.toolTable(), f.referenceTable()}) {
            QCOMPARE(table->rowCount(), 2);
            for (int row = 0; row < 2; ++row) {
                QVERIFY(f.row(table, row).contains("0.00"));
            }
        }
    }

    void refreshInsideARefreshReturns() {
        DisplayFixture f;
        f.build();
        f.start();
        feed(*f.display);
        f.host.clearJournal();
        inside(f, referenceOfTool2, [&] {
            f.display->onUpdateDataDisplay();
            QCOMPARE(f.host.journal().size(), std::size_t(3)); // nothing was asked
        });
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 2);
        QVERIFY(f.row(f.toolTable(), 1).contains("0.00"));
    }

    void hostThatRunsEventsInsideAQueryIsSurvived_data() { queriesOfARefresh(); }
    void hostThatRunsEventsInsideAQueryIsSurvived() {
        QFETCH(std::string, query);
        DisplayFixture f;
        f.build();
        f.display->resize(1000, 300);
        f.display->show();
        f.start();
        feed(*f.display);
        bool waited = false;
        inside(f, query, [&] {
            std::thread([&f] {
                f.display->set_mea_stopped();
                f.display->set_mea_started();
            }).join();
            const RefreshTicks ticks; // one may still be the last measurement's
            QTRY_VERIFY_WITH_TIMEOUT(ticks.count() >= 2, patienceMs);
            waited = true;
        });
        f.display->onUpdateDataDisplay();
        QVERIFY(waited);
        QVERIFY(takesLines(*f.display));
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 2, patienceMs);
        QVERIFY(f.row(f.toolTable(), 1).contains("0.00"));
    }

    void startFromInsideTheRegistrationIsTaken() {
        class EagerHost : public ScriptedHost {
        public:
            int register_measurement_requester(Requester* requester) override {
                requester->set_mea_started();
                return ScriptedHost::register_measurement_requester(requester);
            }
        } host;
        MtDataDisplay display(&host, nullptr, nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(display), patienceMs);
    }
};

QTEST_MAIN(TestMtDataDisplayReentrancy)
#include "test_mtdatadisplay_reentrancy.moc"
