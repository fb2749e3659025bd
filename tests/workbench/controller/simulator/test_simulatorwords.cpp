#include "tests/support/datarows.h"
#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/controller/simulator/simulatorwords.h"

#include <QtTest>

#include <string>

using workbench::SimulatorWords;

namespace {
constexpr int patience = 5000;
}

class TestSimulatorWords : public QObject {
    Q_OBJECT

    ScriptedController m_controller;

    struct Told {
        int times = 0;
        std::optional<SimulatorWords> words;
    };

    static void ask(BackendFixture& backend, Told& told) {
        SimulatorWords::ask(backend.session.channel(),
                            [&told](const std::optional<SimulatorWords>& words) {
                                ++told.times;
                                told.words = words;
                            });
    }

private Q_SLOTS:
    void init() {
        m_controller.answer("sim motions", "cone, still");
        m_controller.answer("sim pivots", "cone, flat-swing");
        m_controller.answer("sim misbehaviours", "late");
        m_controller.answer("sim buttons", "4");
    }

    void theyAreTakenAsTheSimulatorTellsThem() {
        BackendFixture backend;
        backend.connectTo(m_controller.port());
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        Told told;
        ask(backend, told);
        QTRY_COMPARE_WITH_TIMEOUT(told.times, 1, patience);
        QVERIFY(told.words.has_value());
        QCOMPARE(told.words->motions, QStringList({"cone", "still"}));
        QCOMPARE(told.words->pivots, QStringList({"cone", "flat-swing"}));
        QCOMPARE(told.words->misbehaviours, QStringList("late"));
        QCOMPARE(told.words->buttons, 4);
    }

    void whatCannotBeWordsOfACommandIsNone_data() {
        QTest::addColumn<QByteArray>("parameter");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("good");
        QByteArray many("a");
        for (int i = 1; i < SimulatorWords::maxWords; ++i) {
            many += ", a";
        }
        row("as many as there may be", QByteArray("sim motions"), many, true);
        row("one more", QByteArray("sim motions"), many + ", a", false);
        row("a large letter", QByteArray("sim motions"), QByteArray("cone, Still"), false);
        row("a blank inside", QByteArray("sim pivots"), QByteArray("flat swing"), false);
        row("nothing", QByteArray("sim misbehaviours"), QByteArray(""), false);
        row("50 letters", QByteArray("sim pivots"), QByteArray(50, 'x'), true);
        row("51 letters", QByteArray("sim pivots"), QByteArray(51, 'x'), false);
        row("no button", QByteArray("sim buttons"), QByteArray("0"), true);
        row("most buttons", QByteArray("sim buttons"), QByteArray("16"), true);
        row("too many buttons", QByteArray("sim buttons"), QByteArray("17"), false);
        row("fewer than no button", QByteArray("sim buttons"), QByteArray("-1"), false);
        row("buttons in words", QByteArray("sim buttons"), QByteArray("four"), false);
    }
    void whatCannotBeWordsOfACommandIsNone() {
        QFETCH(QByteArray, parameter);
        QFETCH(QByteArray, value);
        m_controller.answer(parameter.toStdString(), value.toStdString());
        BackendFixture backend;
        backend.connectTo(m_controller.port());
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        Told told;
        ask(backend, told);
        QTRY_COMPARE_WITH_TIMEOUT(told.times, 1, patience);
        QTEST(told.words.has_value(), "good");
    }

    void nobodyIsToldWhenTheConnectionIsLostMeanwhile() {
        BackendFixture backend;
        backend.connectTo(m_controller.port());
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        m_controller.clearCommands();
        m_controller.answerRaw("kestrel2 get sim buttons", "");
        Told told;
        ask(backend, told);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller.count("kestrel2 get sim buttons"), 1, patience);
        m_controller.dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(!backend.session.isReady(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(backend.session.isReady(), patience);
        QCOMPARE(told.times, 0);
    }
};

QTEST_MAIN(TestSimulatorWords)
#include "test_simulatorwords.moc"
