#include "probecheck/points/capture.h"
#include "tests/support/datarows.h"
#include "tests/support/statetable.h"

#include <QtTest>

#include <limits>

using points::Capture;
using points::Notice;

namespace {

constexpr double frame = 0.1; // s

QString textOf(Notice notice) {
    static const char* const texts[] = {"begun",        "anew",         "captured", "kept",
                                        "notKept",      "cancelled",    "hidden",   "reference",
                                        "other",        "silent",       "ended",    "unseen",
                                        "notMeasuring", "uncalibrated", "busy"};
    return texts[static_cast<int>(notice)];
}

/// A capture of 1 s within 1 mm with two calibrated tools and one that is not, and a clock.
struct Rig {
    Rig()
        : capture([this](Notice notice) { notices << textOf(notice); }) {
        capture.setHold(1.0, 1.0);
        capture.setCalibrated({true, true, false});
    }

    ProbeSample sample(double x = 0.0) const {
        ProbeSample sample;
        sample.tracked = true;
        sample.position = {x, 20.0, 30.0};
        sample.arrival = now;
        sample.seconds = now - 5000.0; // another clock
        return sample;
    }
    void feed(ProbeSample sample) {
        now += frame;
        sample.arrival += frame;
        sample.seconds += frame;
        capture.feed(sample, now);
        capture.wait(now);
    }
    void hold(double seconds, double x = 0.0) {
        for (double end = now + seconds; now < end - frame / 2.0;) {
            feed(sample(x));
        }
    }
    void silence(double seconds) {
        for (double end = now + seconds; now < end - frame / 2.0;) {
            now += frame;
            capture.wait(now);
        }
    }
    void press(int tool = 0) { capture.trigger(tool, now); }

    /// "off", "ready", "holding", "keeping" and "leaving"; by holding still with a capital letter.
    void enter(const QString& state) {
        const bool byItself = state.at(0).isUpper();
        const QString name = state.toLower();
        capture.setMode(byItself ? Capture::Mode::HoldingStill : Capture::Mode::Trigger);
        if (name == "off") {
            return;
        }
        capture.start();
        if (name == "ready") {
            return;
        }
        if (!byItself) {
            press();
        }
        hold(name == "holding" ? 0.5 : 1.1);
        if (name == "leaving") {
            capture.kept(true);
        }
    }
    QString state() const {
        static const char* const names[] = {"off", "ready", "holding", "keeping", "leaving"};
        const QString name = names[static_cast<int>(capture.state())];
        return capture.mode() == Capture::Mode::HoldingStill ? name.at(0).toUpper() + name.mid(1)
                                                             : name;
    }

    QStringList notices;
    Capture capture;
    double now = 7000.0;
};

using Event = void (*)(Rig&);

void startEvent(Rig& rig) {
    rig.capture.start();
}
void stopEvent(Rig& rig) {
    rig.capture.stop();
}
void outOfSightEvent(Rig& rig) {
    rig.capture.stop(Notice::OutOfSight);
}
void keyEvent(Rig& rig) {
    rig.capture.trigger(rig.now);
}
void otherButtonEvent(Rig& rig) {
    rig.press(1);
}
void uncalibratedButtonEvent(Rig& rig) {
    rig.press(2);
}
void cancelEvent(Rig& rig) {
    rig.capture.cancel();
}
void sampleEvent(Rig& rig) {
    rig.feed(rig.sample());
}
void farSampleEvent(Rig& rig) {
    rig.feed(rig.sample(5.0));
}
void otherToolEvent(Rig& rig) {
    ProbeSample sample = rig.sample(5.0);
    sample.tool = 1;
    rig.feed(sample);
}
void holdEvent(Rig& rig) {
    rig.hold(1.1);
}
void hiddenEvent(Rig& rig) {
    ProbeSample sample = rig.sample();
    sample.tracked = false;
    rig.feed(sample);
}
void referenceLostEvent(Rig& rig) {
    ProbeSample sample = rig.sample();
    sample.referenceTracked = false;
    rig.feed(sample);
}
void otherReferenceEvent(Rig& rig) {
    ProbeSample sample = rig.sample();
    sample.reference = 3;
    rig.feed(sample);
}
void oldSampleEvent(Rig& rig) {
    ProbeSample sample = rig.sample(5.0);
    sample.arrival -= 0.6;
    rig.feed(sample);
}
void silenceEvent(Rig& rig) {
    rig.silence(1.1);
}
void keptEvent(Rig& rig) {
    rig.capture.kept(true);
}
void notKeptEvent(Rig& rig) {
    rig.capture.kept(false);
}
void chooseOtherEvent(Rig& rig) {
    rig.capture.setTool(1);
}
void otherHoldEvent(Rig& rig) {
    rig.capture.setHold(2.0, 1.0);
}
void byTriggerEvent(Rig& rig) {
    rig.capture.setMode(Capture::Mode::Trigger);
}
void byItselfEvent(Rig& rig) {
    rig.capture.setMode(Capture::Mode::HoldingStill);
}

// After the slash: what is told. A capital letter: by holding still.
const char* const header =
    "               | off   ready   holding  keeping  Off  Ready  Holding  Keeping  Leaving";
constexpr StateTableRow<Event> table[] = {
    {"start          | ready ready   holding  keeping  Ready Ready  Holding  Keeping  Leaving",
     startEvent},
    {"stop           | off   off     off/ended off     Off  Off    Off/ended Off      Off",
     stopEvent},
    {"out of sight   | off   off     off/unseen off    Off  Off    Off/unseen Off     Off",
     outOfSightEvent},
    {"key            | off/notMeasuring holding/begun holding/busy keeping/busy "
     "Off/notMeasuring Holding/begun Holding/begun Keeping/busy Holding/begun",
     keyEvent},
    {"other's button | off/notMeasuring holding/begun holding/busy keeping/busy "
     "Off/notMeasuring Holding/begun Holding/begun Keeping/busy Holding/begun",
     otherButtonEvent},
    {"uncalibrated   | off/notMeasuring ready/uncalibrated holding/busy keeping/busy "
     "Off/notMeasuring Ready/uncalibrated Holding/uncalibrated Keeping/busy Leaving/uncalibrated",
     uncalibratedButtonEvent},
    {"cancel         | off   ready ready/cancelled keeping Off Ready Leaving/cancelled Keeping "
     "Leaving",
     cancelEvent},
    {"sample         | off   ready   holding  keeping  Off  Holding Holding Keeping  Leaving",
     sampleEvent},
    {"far sample     | off   ready holding/anew keeping Off Holding Holding/anew Keeping Holding",
     farSampleEvent},
    {"other's sample | off   ready   holding  keeping  Off  Ready  Holding  Keeping  Leaving",
     otherToolEvent},
    {"held           | off   ready keeping/captured keeping Off Keeping/captured "
     "Keeping/captured Keeping Leaving",
     holdEvent},
    {"hidden         | off   ready   ready/hidden keeping Off Ready Ready/hidden Keeping Leaving",
     hiddenEvent},
    {"reference lost | off   ready ready/reference keeping Off Ready Ready/reference Keeping "
     "Leaving",
     referenceLostEvent},
    {"other reference| off   ready   ready/other keeping Off Holding Ready/other Keeping Leaving",
     otherReferenceEvent},
    {"old sample     | off   ready   holding  keeping  Off  Ready  Holding  Keeping  Leaving",
     oldSampleEvent},
    {"silence        | off   ready   ready/silent keeping Off Ready Ready/silent Keeping Leaving",
     silenceEvent},
    {"kept           | off   ready   holding  ready/kept Off Ready Holding  Leaving/kept Leaving",
     keptEvent},
    {"not kept       | off ready holding ready/notKept Off Ready Holding Leaving/notKept Leaving",
     notKeptEvent},
    {"choose other   | off   ready   ready    keeping  Off  Ready  Ready    Keeping  Ready",
     chooseOtherEvent},
    {"other duration | off   ready   ready    keeping  Off  Ready  Ready    Keeping  Ready",
     otherHoldEvent},
    {"by trigger     | off   ready   holding  keeping  off  ready  ready    keeping  ready",
     byTriggerEvent},
    {"by itself      | Off   Ready   Ready    Keeping  Off  Ready  Holding  Keeping  Leaving",
     byItselfEvent},
};

} // namespace

Q_DECLARE_METATYPE(Event)

class TestCapture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachEventInEachState_data();
    void eachEventInEachState();
    void aPointIsTheMeanOfWhatWasHeld();
    void theRingFillsAndBeginsAnew();
    void aPointBelongsToTheToolWhoseButtonWasPressed();
    void anOldSampleIsNeverPartOfAPoint();
    void whatIsHeldInSilenceIsNotGivenUpAtOnce();
    void aTriggerWithoutAnySampleEndsInSilence();
    void aGapOfTheSamplesOwnClockIsSilence();
    void thePositionIsForgottenWhenItIsOld();
    void whatIsCancelledWithoutAPositionBeginsWithTheNextSample();
    void anUncalibratedToolHasNoPosition();
    void byHoldingStillEachPlaceIsCapturedOnce();
    void theAnswerMayComeAfterTheMeasurement();
    void aMeasurementMayBeginBeforeTheAnswer();
    void aNewMeasurementBeginsAnew();
};

void TestCapture::eachEventInEachState_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<Event>("what");
    QTest::addColumn<QString>("after");
    forEachCell(header, table,
                [](const QString& name, const QString& before, Event what, const QString& after) {
                    row(qPrintable(name + ", " + before), before, what, after);
                });
}

void TestCapture::eachEventInEachState() {
    QFETCH(QString, before);
    QFETCH(Event, what);
    QFETCH(QString, after);
    Rig rig;
    rig.enter(before);
    QCOMPARE(rig.state(), before);
    rig.notices.clear();
    what(rig);
    QCOMPARE(rig.state(), after.section('/', 0, 0));
    QCOMPARE(rig.notices.join('/'), after.section('/', 1));
}

void TestCapture::aPointIsTheMeanOfWhatWasHeld() {
    Rig rig;
    rig.enter("ready");
    rig.press();
    for (int i = 0; i < 6; ++i) {
        rig.feed(rig.sample(0.4));
        rig.feed(rig.sample(0.6));
    }
    QCOMPARE(rig.notices, (QStringList{"begun", "captured"}));
    const points::PointRecord& point = rig.capture.record();
    QCOMPARE(point.samples, 11LL);
    QVERIFY(std::abs(point.position[0] - 5.4 / 11.0) < 1e-9);
    QCOMPARE(point.position[1], 20.0);
    QVERIFY(std::abs(point.duration - 1.0) < 1e-6);
    QCOMPARE(point.tolerance, 1.0);
    QCOMPARE(point.tool, 0);
    QCOMPARE(point.reference, points::noReference);
}

void TestCapture::theRingFillsAndBeginsAnew() {
    Rig rig;
    rig.enter("ready");
    QCOMPARE(rig.capture.progress(), 0.0);
    rig.press();
    rig.hold(0.6);
    QVERIFY(std::abs(rig.capture.progress() - 0.5) < 1e-6);
    rig.feed(rig.sample(1.1));
    QCOMPARE(rig.capture.progress(), 0.0);
    rig.hold(1.0, 1.1);
    QCOMPARE(rig.capture.progress(), 1.0);
    QVERIFY(std::abs(rig.capture.record().position[0] - 1.1) < 1e-9);
    rig.capture.kept(true);
    QCOMPARE(rig.capture.progress(), 0.0);
}

void TestCapture::aPointBelongsToTheToolWhoseButtonWasPressed() {
    Rig rig;
    rig.enter("ready");
    rig.press(1);
    for (int i = 0; i < 12; ++i) {
        ProbeSample other = rig.sample(0.0);
        other.reference = 4;
        rig.capture.feed(other, rig.now);
        ProbeSample pressed = rig.sample(50.0);
        pressed.tool = 1;
        pressed.reference = 4; // both tools have the same one
        rig.feed(pressed);
    }
    QCOMPARE(rig.notices, (QStringList{"begun", "captured"}));
    QCOMPARE(rig.capture.tool(), 1);
    QCOMPARE(rig.capture.record().tool, 1);
    QCOMPARE(rig.capture.record().reference, 4);
    QCOMPARE(rig.capture.record().position[0], 50.0);
}

void TestCapture::anOldSampleIsNeverPartOfAPoint() {
    Rig rig;
    rig.enter("ready");
    rig.press();
    for (int i = 0; i < 12; ++i) {
        ProbeSample old = rig.sample(0.5);
        old.arrival -= 0.51;
        rig.capture.feed(old, rig.now);
        ProbeSample timeless = rig.sample(0.5);
        timeless.arrival = std::numeric_limits<double>::quiet_NaN();
        rig.capture.feed(timeless, rig.now);
        rig.feed(rig.sample(0.0));
    }
    QCOMPARE(rig.notices, (QStringList{"begun", "captured"}));
    QCOMPARE(rig.capture.record().position[0], 0.0);
    QCOMPARE(rig.capture.record().samples, 11LL);
}

void TestCapture::whatIsHeldInSilenceIsNotGivenUpAtOnce() {
    Rig rig;
    rig.capture.setHold(5.0, 1.0);
    rig.enter("holding");
    rig.silence(0.8);
    QCOMPARE(rig.capture.state(), Capture::State::Holding);
    rig.feed(rig.sample());
    rig.silence(0.8);
    QCOMPARE(rig.capture.state(), Capture::State::Holding);
}

void TestCapture::aTriggerWithoutAnySampleEndsInSilence() {
    Rig rig;
    rig.enter("ready");
    rig.silence(60.0);
    rig.press();
    rig.silence(0.9);
    QCOMPARE(rig.notices, QStringList{"begun"});
    rig.silence(0.2);
    QCOMPARE(rig.notices, (QStringList{"begun", "silent"}));
}

void TestCapture::aGapOfTheSamplesOwnClockIsSilence() {
    Rig rig;
    rig.enter("holding");
    rig.notices.clear();
    ProbeSample later = rig.sample();
    later.seconds += 1.5; // held up on the way, and then there all at once
    rig.feed(later);
    QCOMPARE(rig.notices, QStringList{"silent"});
}

void TestCapture::thePositionIsForgottenWhenItIsOld() {
    Rig rig;
    rig.enter("ready");
    QVERIFY(!rig.capture.position());
    rig.feed(rig.sample(7.0));
    QCOMPARE(rig.capture.position().value(), (std::array<double, 3>{7.0, 20.0, 30.0}));
    rig.silence(0.4);
    QVERIFY(rig.capture.position());
    rig.silence(0.2);
    QVERIFY(!rig.capture.position());
    rig.feed(rig.sample());
    hiddenEvent(rig);
    QVERIFY(!rig.capture.position());
    rig.feed(rig.sample());
    rig.capture.stop();
    QVERIFY(!rig.capture.position());
}

// Nobody knows from where the tip would have to go away.
void TestCapture::whatIsCancelledWithoutAPositionBeginsWithTheNextSample() {
    Rig rig;
    rig.enter("Holding");
    rig.silence(0.7);
    QVERIFY(!rig.capture.position());
    rig.notices.clear();
    rig.capture.cancel();
    QCOMPARE(rig.state(), QString("Ready"));
    QCOMPARE(rig.notices, QStringList{"cancelled"});
    rig.hold(1.1);
    QCOMPARE(rig.notices, (QStringList{"cancelled", "captured"}));
}

void TestCapture::anUncalibratedToolHasNoPosition() {
    Rig rig;
    rig.enter("Ready");
    rig.capture.setTool(2);
    ProbeSample sample = rig.sample();
    sample.tool = 2;
    rig.feed(sample);
    QVERIFY(!rig.capture.position());
    QCOMPARE(rig.state(), QString("Ready"));
}

void TestCapture::byHoldingStillEachPlaceIsCapturedOnce() {
    Rig rig;
    rig.enter("Ready");
    rig.hold(1.1);
    rig.capture.kept(true);
    rig.hold(5.0);
    QCOMPARE(rig.notices, (QStringList{"captured", "kept"}));
    rig.hold(5.0, 1.9); // within twice the tolerance: noise at its edge
    QCOMPARE(rig.notices.size(), 2);
    rig.hold(1.1, 2.1);
    QCOMPARE(rig.notices, (QStringList{"captured", "kept", "captured"}));
    QVERIFY(std::abs(rig.capture.record().position[0] - 2.1) < 1e-9);
}

void TestCapture::theAnswerMayComeAfterTheMeasurement() {
    Rig rig;
    rig.enter("keeping");
    rig.capture.stop();
    rig.notices.clear();
    rig.capture.kept(true);
    QCOMPARE(rig.notices, QStringList{"kept"});
    QCOMPARE(rig.state(), QString("off"));
    rig.capture.kept(true);
    QCOMPARE(rig.notices.size(), 1);
}

void TestCapture::aMeasurementMayBeginBeforeTheAnswer() {
    Rig rig;
    rig.enter("keeping");
    rig.capture.stop();
    rig.capture.start();
    QCOMPARE(rig.state(), QString("keeping"));
    rig.capture.kept(false);
    QCOMPARE(rig.state(), QString("ready"));
}

void TestCapture::aNewMeasurementBeginsAnew() {
    Rig rig;
    rig.enter("holding");
    rig.capture.stop();
    rig.capture.start();
    rig.notices.clear();
    rig.hold(2.0);
    QVERIFY(rig.notices.isEmpty());
}

QTEST_GUILESS_MAIN(TestCapture)
#include "test_capture.moc"
