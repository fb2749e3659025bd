#include "SourceFiles/bodycount.h"
#include "tests/support/datarows.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

namespace {

using Lines = std::vector<std::string>;

const std::string tools = "measurementtool number_of_tools";
const std::string references = "measurementtool number_of_references";

} // namespace

class TestBodyCount : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_host = std::make_unique<ScriptedHost>();
        m_host->answer(tools, "2");
        m_host->answer(references, "3");
    }

    void aCountIsReadWithWhatItIsRestoredTo() {
        BodyCount count(m_host.get(), BodyCount::Tools);
        QVERIFY(count.read());
        QCOMPARE(count.current(), 2);
        QCOMPARE(count.primary(), 2);
        QVERIFY(!count.restore());
        QCOMPARE(m_host->operations(), Lines({"get_int " + tools}));
    }

    void afterAFailedReadToolsKeepTheirNumberAndReferencesAreNone() {
        BodyCount toolCount(m_host.get(), BodyCount::Tools);
        BodyCount referenceCount(m_host.get(), BodyCount::References);
        QVERIFY(toolCount.read());
        QVERIFY(referenceCount.read());
        m_host->fail(tools);
        m_host->fail(references);
        QVERIFY(!toolCount.read());
        QVERIFY(!referenceCount.read());
        QCOMPARE(toolCount.current(), 2);
        QCOMPARE(referenceCount.current(), 0);
        QCOMPARE(m_host->logTexts(), Lines());
    }

    void theMaximumIsNeverNegative() {
        const BodyCount count(m_host.get(), BodyCount::References);
        m_host->answer("measurementtool max_number_of_references", "5");
        QCOMPARE(count.readMaximum().value_or(-1), 5);
        m_host->answer("measurementtool max_number_of_references", "-5");
        QCOMPARE(count.readMaximum().value_or(-1), 0);
        m_host->fail("measurementtool max_number_of_references");
        QVERIFY(!count.readMaximum());
        const BodyCount other(m_host.get(), BodyCount::Tools);
        m_host->answer("measurementtool max_number_of_tools", "4");
        QCOMPARE(other.readMaximum().value_or(-1), 4);
    }

    void aNonsenseCountIsBounded() {
        BodyCount count(m_host.get(), BodyCount::Tools);
        count.accept(2000000000);
        QCOMPARE(count.bounded(), hostlink::mostBodies);
        count.accept(-1);
        QCOMPARE(count.bounded(), 0);
        QCOMPARE(count.current(), -1);
    }

    void anEditReachesTheControllerAndIsTakenBackOnce_data() {
        QTest::addColumn<bool>("isTools");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("log");
        row("tools", true, QString::fromStdString(tools),
            "Error: Unable to set number of mea tools = %1");
        row("references", false, QString::fromStdString(references),
            "Error: Unable to set number of references = %1");
    }
    void anEditReachesTheControllerAndIsTakenBackOnce() {
        QFETCH(bool, isTools);
        QFETCH(QString, name);
        QFETCH(QString, log);
        BodyCount count(m_host.get(), isTools ? BodyCount::Tools : BodyCount::References);
        QVERIFY(count.read());
        const std::string setting = "set " + name.toStdString() + ' ';
        const std::string primary = std::to_string(count.primary());
        m_host->clearJournal();
        QVERIFY(count.set(4));
        QVERIFY(count.current() != 4);
        count.accept(4);
        QVERIFY(count.restore());
        QVERIFY(!count.restore());
        QCOMPARE(m_host->operations(), Lines({setting + '4', setting + primary}));

        // A refused edit is told in the words of tools, whichever it is.
        m_host->clearJournal();
        m_host->fail(name.toStdString() + " 1");
        m_host->fail(name.toStdString() + ' ' + primary);
        QVERIFY(!count.set(1));
        count.accept(1);
        QVERIFY(count.restore());
        QVERIFY(!count.restore());
        QCOMPARE(m_host->logTexts(),
                 Lines({"Error: Unable to set number of mea tools = 1",
                        log.arg(QString::fromStdString(primary)).toStdString()}));
    }

    void aCountIsWrittenUnlessTheControllerHasIt() {
        BodyCount count(m_host.get(), BodyCount::References);
        QVERIFY(count.read());
        m_host->clearJournal();
        count.write();
        QCOMPARE(m_host->operations(), Lines({"get_int " + references}));
        count.accept(5);
        count.write();
        m_host->fail(references);
        m_host->fail(references + " 5");
        count.write();
        QCOMPARE(m_host->operations(), Lines({"get_int " + references, "get_int " + references,
                                              "set " + references + " 5", "get_int " + references,
                                              "set " + references + " 5"}));
        QCOMPARE(m_host->logTexts(), Lines({"Error: Unable to set number of mea references = 5"}));
    }

    void whatIsSettledIsNotTakenBack() {
        BodyCount count(m_host.get(), BodyCount::Tools);
        QVERIFY(count.read());
        count.accept(4);
        count.settle();
        QCOMPARE(count.primary(), 4);
        QVERIFY(!count.restore());
    }

private:
    std::unique_ptr<ScriptedHost> m_host;
};

QTEST_GUILESS_MAIN(TestBodyCount)
#include "test_bodycount.moc"
