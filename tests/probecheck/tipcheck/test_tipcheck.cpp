#include "probecheck/tipcheck/tipcheck.h"
#include "tests/probecheck/tipcheck/pivoting.h"
#include "tests/support/datarows.h"
#include "tests/support/statetable.h"

#include <QtTest>

#include <cmath>
#include <functional>

using kestrel_probe::Verdict;
using State = TipCheck::State;
using End = TipCheck::End;

namespace {

constexpr double begin = 1000.0; // s
constexpr double rate = 60.0;

// A check at a certain time.
struct Stage {
    TipCheck check;
    double now = begin;

    void sample(bool tracked, bool referenceTracked, int tool = 0) {
        ProbeSample sample = Pivoting().at(0.0, now);
        sample.tracked = tracked;
        sample.referenceTracked = referenceTracked;
        sample.tool = tool;
        check.take(sample);
        check.tick(now);
    }
    void wait(double seconds) {
        now += seconds;
        check.tick(now);
    }
};
using Event = std::function<void(Stage&)>;

const std::map<QString, State> states = {
    {"Idle", State::Idle},     {"Measuring", State::Measuring},
    {"Hidden", State::Hidden}, {"RefLost", State::ReferenceLost},
    {"Silent", State::Silent}, {"Finished", State::Finished},
};

void start(Stage& stage) {
    stage.check.start(0, 1.0, stage.now);
}
void beHidden(Stage& stage) {
    stage.wait(1.1);
    stage.sample(false, true);
}
void loseReference(Stage& stage) {
    stage.sample(true, false);
}
void beSilent(Stage& stage) {
    stage.wait(0.6);
}
void stop(Stage& stage) {
    stage.check.stop(stage.now);
}

void pivot(Stage& stage, Pivoting tool) {
    constexpr double seconds = 15.0; // a verdict may end a check from 10 s on
    const double first = stage.now;
    for (int frame = 1; frame <= static_cast<int>(seconds * rate); ++frame) {
        const ProbeSample sample = tool.at(frame / rate, first);
        stage.now = sample.arrival;
        stage.check.take(sample);
        stage.check.tick(stage.now);
    }
}
void bePlain(Stage& stage) {
    pivot(stage, Pivoting());
}
void slip(Stage& stage) {
    Pivoting tool;
    tool.slip = 4.0;
    pivot(stage, tool);
}

Stage stageIn(State state) {
    Stage stage;
    if (state == State::Idle) {
        return stage;
    }
    start(stage);
    const std::map<State, Event> ways = {{State::Measuring, [](Stage& s) { s.sample(true, true); }},
                                         {State::Hidden, beHidden},
                                         {State::ReferenceLost, loseReference},
                                         {State::Silent, beSilent},
                                         {State::Finished, stop}};
    ways.at(state)(stage);
    return stage;
}

// Runs a whole check until it ends by itself or so many seconds are over.
TipCheck run(Pivoting tool, double tolerance, double seconds,
             const std::function<void(ProbeSample&, int frame)>& spoil = {}) {
    TipCheck check;
    check.start(0, tolerance, begin);
    const int frames = static_cast<int>(seconds * rate);
    for (int frame = 0; frame < frames && check.isRunning(); ++frame) {
        ProbeSample sample = tool.at(frame / rate, begin);
        if (spoil) {
            spoil(sample, frame);
        }
        check.take(sample);
        check.tick(sample.arrival);
    }
    return check;
}

double wrongBy(const TipCheck::Result& result) {
    const auto& tip = result.pivot->tip;
    return std::hypot(tip[0] - 0.3, tip[1] + 0.4, tip[2]);
}

} // namespace

Q_DECLARE_METATYPE(Event)
Q_DECLARE_METATYPE(Pivoting::Motion)

class TestTipCheck : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachEventInEachState_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("after");
        const StateTableRow<Event> table[] = {
            // clang-format off
            {"start               | Measuring Measuring Measuring Measuring Measuring Measuring", start},
            {"stop                | Idle      Finished  Finished  Finished  Finished  Finished", stop},
            {"measurement stopped | Idle      Finished  Finished  Finished  Finished  Finished",
             [](Stage& s) { s.check.loseMeasurement(s.now); }},
            {"pose                | Idle      Measuring Measuring Measuring Measuring Finished",
             [](Stage& s) { s.sample(true, true); }},
            {"not seen            | Idle      Measuring Hidden    Measuring Measuring Finished",
             [](Stage& s) { s.sample(false, true); }},
            {"reference not seen  | Idle      RefLost   RefLost   RefLost   RefLost   Finished", loseReference},
            {"neither seen        | Idle      RefLost   RefLost   RefLost   RefLost   Finished",
             [](Stage& s) { s.sample(false, false); }},
            {"hidden for long     | Idle      Hidden    Hidden    Hidden    Hidden    Finished", beHidden},
            {"silence             | Idle      Silent    Silent    Silent    Silent    Finished", beSilent},
            {"another tool        | Idle      Measuring Hidden    RefLost   Silent    Finished",
             [](Stage& s) { s.sample(true, true, 1); }},
            {"time goes on        | Idle      Measuring Hidden    RefLost   Silent    Finished",
             [](Stage& s) { s.wait(0.1); }},
            {"time is up          | Idle      Finished  Finished  Finished  Finished  Finished",
             [](Stage& s) { s.wait(120.0); }},
            {"a verdict stands    | Idle      Finished  Finished  Finished  Finished  Finished", bePlain},
            {"a slip stands       | Idle      Finished  Finished  Finished  Finished  Finished", slip},
            // clang-format on
        };
        forEachCell(
            "                    | Idle      Measuring Hidden    RefLost   Silent    Finished",
            table,
            [](const QString& name, const QString& before, const Event& event,
               const QString& after) {
                QTest::newRow(qPrintable(name + " in " + before)) << before << event << after;
            });
    }
    void eachEventInEachState() {
        QFETCH(QString, before);
        QFETCH(Event, event);
        QFETCH(QString, after);
        Stage stage = stageIn(states.at(before));
        QVERIFY(stage.check.state() == states.at(before));
        event(stage);
        const State state = stage.check.state();
        const auto found = std::find_if(states.begin(), states.end(),
                                        [state](const auto& each) { return each.second == state; });
        QCOMPARE(found->first, after);
        QCOMPARE(stage.check.isRunning(), after != "Idle" && after != "Finished");
    }

    void whyItHasEndedIsTold() {
        Stage stage = stageIn(State::Measuring);
        stage.check.stop(stage.now);
        QVERIFY(stage.check.result().end == End::Stopped);
        stage = stageIn(State::Measuring);
        stage.check.loseMeasurement(stage.now);
        QVERIFY(stage.check.result().end == End::MeasurementStopped);
        stage = stageIn(State::Measuring);
        stage.wait(120.0);
        QVERIFY(stage.check.result().end == End::TimeIsUp);
        QVERIFY(!stage.check.result().pivot);
    }

    void aPlainVerdictEndsIt_data() {
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<int>("verdict");
        QTest::newRow("within") << 1.0 << int(Verdict::Conforms);
        QTest::newRow("beyond") << 0.2 << int(Verdict::DoesNotConform);
    }
    void aPlainVerdictEndsIt() {
        QFETCH(double, tolerance);
        const TipCheck check = run(Pivoting(), tolerance, 30.0);
        QVERIFY(check.state() == State::Finished);
        const TipCheck::Result& result = check.result();
        QVERIFY(result.end == End::Decided);
        QTEST(int(result.verdict), "verdict");
        QVERIFY(result.pivot.has_value());
        QVERIFY2(wrongBy(result) <= result.pivot->radius95,
                 qPrintable(QString("%1 +- %2").arg(wrongBy(result)).arg(result.pivot->radius95)));
        QVERIFY(std::abs(result.error - 0.5) <= result.pivot->radius95);
        QVERIFY(result.duration >= TipCheck::shortestVerdict);
        QVERIFY(result.duration < 15.0);
        QVERIFY(result.coverage > 0.02);
        QVERIFY(result.poses > 500);
        QVERIFY(!result.slipped);
    }

    void nearTheToleranceItGoesOnUntilTheTimeIsUp() {
        const TipCheck check = run(Pivoting(), 0.5, 125.0);
        const TipCheck::Result& result = check.result();
        QVERIFY(result.end == End::TimeIsUp);
        QVERIFY(result.verdict == Verdict::Undecided);
        QVERIFY(result.pivot.has_value());
    }

    void withoutToleranceThereIsNoVerdict() {
        QVERIFY(run(Pivoting(), 0.0, 20.0).result().verdict == Verdict::Undecided);
        QVERIFY(run(Pivoting(), std::nan(""), 20.0).result().verdict == Verdict::Undecided);
    }

    void motionsThatDetermineNoTipGiveNoNumber_data() {
        QTest::addColumn<Pivoting::Motion>("motion");
        QTest::addColumn<int>("missing");
        using Missing = TiltRose::Missing;
        QTest::newRow("planar") << Pivoting::Motion::AcrossX << int(Missing::FrontBack);
        QTest::newRow("the other plane") << Pivoting::Motion::AcrossY << int(Missing::LeftRight);
        row("diagonal", Pivoting::Motion::AcrossDiagonal, int(Missing::FrontLeftBackRight));
        QTest::newRow("twist") << Pivoting::Motion::Twist << int(Missing::AllSides);
        QTest::newRow("still") << Pivoting::Motion::Still << int(Missing::AllSides);
    }
    void motionsThatDetermineNoTipGiveNoNumber() {
        QFETCH(Pivoting::Motion, motion);
        Pivoting tool;
        tool.motion = motion;
        TipCheck check = run(tool, 1.0, 20.0);
        QVERIFY(check.isRunning());
        check.stop(begin + 20.0);
        const TipCheck::Result& result = check.result();
        QVERIFY(!result.pivot);
        QCOMPARE(result.error, 0.0);
        QVERIFY(result.verdict == Verdict::Undecided);
        QTEST(int(result.rose.missing), "missing");
    }

    void tooFastAMotionIsTold() {
        Pivoting tool;
        tool.frequency = 3.0;
        TipCheck check = run(tool, 1.0, 10.0);
        QVERIFY(check.result().tooFast);
        QVERIFY(!check.result().pivot);
    }

    void aSlipEndsIt() {
        Pivoting tool;
        tool.slip = 4.0;
        const TipCheck check = run(tool, 1.0, 30.0);
        const TipCheck::Result& result = check.result();
        QVERIFY(result.end == End::Slipped);
        QVERIFY(result.slipped);
        QVERIFY(result.verdict == Verdict::Undecided);
        QVERIFY(result.pivot->slip > 1.0);
        QVERIFY(result.duration < 12.0);
    }

    void aToolWithoutNoiseDoesNotSlip() {
        Pivoting tool;
        tool.noise = 0.0;
        const TipCheck check = run(tool, 1.0, 30.0);
        QVERIFY(check.result().end == End::Decided);
        QVERIFY(check.result().error > 0.499 && check.result().error < 0.501);
    }

    void hiddenHalfTheTimeItFindsTheTip() {
        const auto hide = [](ProbeSample& sample, int frame) {
            sample.tracked = frame / 30 % 2 == 0;
        };
        const TipCheck check = run(Pivoting(), 1.0, 40.0, hide);
        const TipCheck::Result& result = check.result();
        QVERIFY(result.end == End::Decided);
        QVERIFY(wrongBy(result) <= result.pivot->radius95);
        QVERIFY(result.hiddenShare > 0.45 && result.hiddenShare < 0.55);
    }

    void framesOfALostReferenceTakeNoPart() {
        const auto lose = [](ProbeSample& sample, int frame) {
            if (frame % 3 == 0) {
                sample.reference = 0;
                sample.referenceTracked = false;
                sample.position = {9999.0, 0.0, 0.0};
            }
        };
        const TipCheck::Result result = run(Pivoting(), 1.0, 40.0, lose).result();
        QVERIFY(result.end == End::Decided);
        QVERIFY(wrongBy(result) <= result.pivot->radius95);
    }

    void moreFramesThanNeededAreLeftOut() {
        TipCheck check;
        check.start(0, 1.0, begin);
        Pivoting tool;
        for (int frame = 0; frame < 2000; ++frame) {
            check.take(tool.at(frame / 1000.0, begin));
        }
        check.stop(begin + 2.0);
        QVERIFY(check.result().poses >= 480 && check.result().poses <= 501);
    }

    void startingAnewForgetsEverything() {
        TipCheck check = run(Pivoting(), 1.0, 5.0);
        check.start(1, 0.5, begin + 10.0);
        QCOMPARE(check.tool(), 1);
        check.stop(begin + 10.5);
        QCOMPARE(check.result().poses, std::size_t(0));
        QVERIFY(!check.result().pivot);
    }
};

QTEST_GUILESS_MAIN(TestTipCheck)
#include "test_tipcheck.moc"
