#include "tests/support/datarows.h"
#include "tests/support/statetable.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/window/readout/readout.h"
#include "workbench/window/readout/readouttexts.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <limits>

using workbench::FrameDecoder;
using workbench::Readout;
using workbench::ReadoutNews;
using workbench::ReadoutState;
using workbench::ReadoutView;
using workbench::TrackedFrame;

namespace readouttexts = workbench::readouttexts;

namespace {

enum class Event {
    Disconnected,
    Stopped,        ///< the measurement
    Started,        ///< no frame yet
    FrameWithTool,  ///< tracked
    FrameWithoutIt, ///< tracked no more
    FewerTools,     ///< the frame has no such tool
    Uncalibrated,   ///< as the controller says
    NotKnown,       ///< whether it is calibrated
    Silence,        ///< data have stopped to come
    LongSilence,    ///< they count as stopped
    Frozen,
    Released,
    OtherTool,       ///< is chosen, and is tracked too
    OtherController, ///< measures, no frame yet
};

// Not connected; not Measuring; No data; no such Tool; not Calibrated; Live; Hidden and Hidden with
// the last figures (h); Old and old with figures (o); frozen while live (F).
const char* const header = "before             |  N  M  D  T  C  L  H  h  O  o  F";
const StateTableRow<Event> table[] = {
    {"disconnected       |  N  N  N  N  N  N  N  N  N  N  F", Event::Disconnected},
    {"stopped            |  M  M  M  M  M  M  M  M  M  M  F", Event::Stopped},
    {"started            |  D  D  D  D  D  D  D  D  D  D  F", Event::Started},
    {"frame, tool seen   |  L  L  L  L  L  L  L  L  L  L  F", Event::FrameWithTool},
    {"frame, tool hidden |  H  H  H  H  H  h  H  h  H  h  F", Event::FrameWithoutIt},
    {"frame, fewer tools |  T  T  T  T  T  T  T  T  T  T  F", Event::FewerTools},
    {"not calibrated     |  C  C  C  C  C  C  C  C  C  C  F", Event::Uncalibrated},
    {"not known          |  D  D  D  D  D  D  D  D  D  D  F", Event::NotKnown},
    {"silence            |  O  O  O  O  O  o  O  o  O  o  F", Event::Silence},
    {"long silence       |  O  O  O  O  O  O  O  O  O  O  F", Event::LongSilence},
    {"frozen             |  N  M  D  T  C  F  H  F  O  F  F", Event::Frozen},
    {"released           |  N  M  D  T  C  L  H  h  O  o  L", Event::Released},
    {"other tool         |  L  L  L  L  L  L  L  L  L  L  L", Event::OtherTool},
    {"other controller   |  D  D  D  D  D  D  D  D  D  D  D", Event::OtherController},
};

TrackedFrame frameOf(const char* tools, const char* references = "6dmtr 1 1 [0 1.0][0 0 0][1 0 0 0 "
                                                                 "1 0 0 0 1]") {
    FrameDecoder decoder;
    decoder.begin(0);
    decoder.add(tools);
    decoder.add(references);
    return decoder.end();
}

const TrackedFrame seen =
    frameOf("6dmt2 2 2 [0 1.0 3 1.5][1.125 -2.5 3e2][1 0 0 0 1 0 0 0 1][5][0 "
            "0 0 0 0 0] [1 0.9 0 1][7 8 9][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]");
const TrackedFrame hidden =
    frameOf("6dmt2 2 2 [0 -1.0 3 1.5][9 9 9][1 0 0 0 1 0 0 0 1][2][0 0 0 0 0 "
            "0] [1 0.9 0 1][7 8 9][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]");
const TrackedFrame none = frameOf("6dmt2 0 0");

/// A read-out of the first tool, which has the first reference.
class Rig {
public:
    void happen(Event event) {
        news.now += 1.0;
        switch (event) {
        case Event::Disconnected:
            measure(nullptr);
            news.isConnected = news.isMeasuring = false;
            break;
        case Event::Stopped:
            measure(nullptr);
            news.isMeasuring = false;
            break;
        case Event::Started:
            measure(nullptr);
            break;
        case Event::FrameWithTool:
            measure(&seen);
            break;
        case Event::FrameWithoutIt:
            measure(&hidden);
            break;
        case Event::FewerTools:
            measure(&none);
            break;
        case Event::Uncalibrated:
            measure(&seen);
            news.isCalibrated = false;
            break;
        case Event::NotKnown:
            measure(&seen);
            news.isCalibrated.reset();
            break;
        case Event::Silence:
            news.isConnected = news.isMeasuring = news.isOld = true;
            news.frame = &seen;
            break;
        case Event::LongSilence:
            news.isConnected = news.isMeasuring = news.isOld = true;
            news.frame = nullptr;
            break;
        case Event::Frozen:
            readout.setFrozen(true);
            break;
        case Event::Released:
            readout.setFrozen(false);
            break;
        case Event::OtherTool:
            readout.choose(2);
            measure(&seen);
            break;
        case Event::OtherController:
            readout.forget();
            measure(nullptr);
            break;
        }
        readout.update(news);
    }

    bool bring(const QString& state) {
        const std::map<QString, std::vector<Event>> ways{
            {"N", {Event::Disconnected}},
            {"M", {Event::Stopped}},
            {"D", {Event::Started}},
            {"T", {Event::FewerTools}},
            {"C", {Event::Uncalibrated}},
            {"L", {Event::FrameWithTool}},
            {"H", {Event::FrameWithoutIt}},
            {"h", {Event::FrameWithTool, Event::FrameWithoutIt}},
            {"O", {Event::LongSilence}},
            {"o", {Event::FrameWithTool, Event::Silence}},
            {"F", {Event::FrameWithTool, Event::Frozen}}};
        for (const Event event : ways.at(state)) {
            happen(event);
        }
        return this->state() == state;
    }

    QString state() const {
        const ReadoutView& view = readout.view();
        const bool hasFigures = view.figures.has_value();
        if (view.isFrozen) {
            return hasFigures ? "F" : "?";
        }
        switch (view.state) {
        case ReadoutState::NotConnected:
            return hasFigures ? "?" : "N";
        case ReadoutState::NotMeasuring:
            return hasFigures ? "?" : "M";
        case ReadoutState::NoData:
            return hasFigures ? "?" : "D";
        case ReadoutState::NoTool:
            return hasFigures ? "?" : "T";
        case ReadoutState::NotCalibrated:
            return hasFigures ? "?" : "C";
        case ReadoutState::Live:
            return hasFigures && view.isLive() ? "L" : "?";
        case ReadoutState::Hidden:
            return hasFigures ? "h" : "H";
        case ReadoutState::Old:
            break;
        }
        return hasFigures ? "o" : "O";
    }

    ReadoutNews news;
    Readout readout;

private:
    void measure(const TrackedFrame* frame) {
        news.isConnected = news.isMeasuring = true;
        news.isOld = false;
        news.frame = frame;
        news.frameCame = news.now;
        news.isCalibrated = true;
        news.reference = 1;
    }
};

} // namespace

/// What the read-out says in each state after each event, and in which words.
class TestReadoutTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyEventInEveryState_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("event");
        QTest::addColumn<QString>("after");
        forEachCell(
            header, table,
            [](const QString& name, const QString& before, Event event, const QString& after) {
                row(qPrintable(before + ' ' + name), before, int(event), after);
            });
    }
    void everyEventInEveryState() {
        QFETCH(QString, before);
        QFETCH(int, event);
        Rig rig;
        QVERIFY(rig.bring(before));
        rig.happen(static_cast<Event>(event));
        QTEST(rig.state(), "after");
    }

    void figuresAreThoseOfTheLineAndTheirAgeGrows() {
        Rig rig;
        QVERIFY(rig.bring("L"));
        const ReadoutView& view = rig.readout.view();
        QCOMPARE(view.figures->position[0], 1.125);
        QCOMPARE(view.figures->position[1], -2.5);
        QCOMPARE(view.figures->position[2], 300.0);
        QCOMPARE(view.age, 0.0);
        QCOMPARE(view.buttonCount, 3);
        QCOMPARE(view.pressedButtons, 5U);
        rig.happen(Event::FrameWithoutIt);
        rig.happen(Event::FrameWithoutIt);
        QCOMPARE(view.age, 2.0);
        QCOMPARE(view.figures->position[0], 1.125); // not what a hidden tool's line says
        QCOMPARE(view.pressedButtons, 2U);
        rig.happen(Event::Silence);
        QCOMPARE(view.age, 3.0);
        QCOMPARE(view.buttonCount, 0);
    }

    void nothingOfOneMeasurementShowsInTheNext_data() {
        QTest::addColumn<bool>("isFrozen");
        row("live", false);
        row("frozen meanwhile", true);
    }
    void nothingOfOneMeasurementShowsInTheNext() {
        QFETCH(bool, isFrozen);
        Rig rig;
        QVERIFY(rig.bring("L"));
        rig.readout.setFrozen(isFrozen);
        rig.happen(Event::Stopped);
        rig.happen(Event::Started);
        rig.happen(Event::FrameWithoutIt);
        rig.happen(Event::Released);
        QCOMPARE(rig.state(), QString("H"));
    }

    void withoutFiguresNothingIsFrozen() {
        Readout readout;
        QVERIFY(!readout.setFrozen(true));
        QVERIFY(!readout.view().isFrozen);
        QVERIFY(readout.setFrozen(false));
    }

    void aReplayIsNeverCalledLive() {
        Rig rig;
        rig.news.isReplay = true;
        QVERIFY(rig.bring("L"));
        QCOMPARE(readouttexts::word(rig.readout.view()), QString("replay"));
        const QColor replayed = readouttexts::colour(rig.readout.view());
        rig.news.isReplay = false;
        rig.happen(Event::FrameWithTool);
        QCOMPARE(readouttexts::word(rig.readout.view()), QString("live"));
        QVERIFY(readouttexts::colour(rig.readout.view()) != replayed);
    }

    void everyStateHasAWordAndColourThatAreNotThoseOfLive() {
        ReadoutView live;
        live.state = ReadoutState::Live;
        QSet<QString> words;
        for (int state = 0; state < workbench::readoutStates; ++state) {
            ReadoutView view;
            view.state = static_cast<ReadoutState>(state);
            words += readouttexts::word(view);
            QVERIFY(readouttexts::allWords().contains(readouttexts::word(view)));
            QCOMPARE(readouttexts::colour(view) == readouttexts::colour(live),
                     view.state == ReadoutState::Live);
            view.isFrozen = true;
            QCOMPARE(readouttexts::word(view), QString("frozen"));
            QVERIFY(readouttexts::colour(view) != readouttexts::colour(live));
            QVERIFY(!view.isLive());
        }
        QCOMPARE(words.size(), workbench::readoutStates);
    }

    void theReferenceIsToldWithItsSight() {
        Rig rig;
        QVERIFY(rig.bring("L"));
        QCOMPARE(readouttexts::reference(rig.readout.view()), QString("MR1 seen"));
        rig.news.reference = 0;
        rig.readout.update(rig.news);
        QCOMPARE(readouttexts::reference(rig.readout.view()), QString("no reference"));
        rig.news.reference.reset();
        rig.readout.update(rig.news);
        QCOMPARE(readouttexts::reference(rig.readout.view()), QString());
        const TrackedFrame lost =
            frameOf("6dmt 1 [0 1.0 0][1 2 3][1 0 0 0 1 0 0 0 1]", "6dmtr 1 0");
        rig.news.reference = 1;
        rig.news.frame = &lost;
        rig.readout.update(rig.news);
        QCOMPARE(readouttexts::reference(rig.readout.view()), QString("MR1 hidden"));
        rig.news.reference = 2; // not in the line
        rig.readout.update(rig.news);
        QCOMPARE(readouttexts::reference(rig.readout.view()), QString("MR2"));
    }

    void figuresAreWrittenAsInTheLiveDisplay_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        row("plain", 12.345, QString("12.35"));
        row("tie to even", 0.125, QString("0.12"));
        row("negative zero", -0.0, QString("-0.00"));
        row("large", -1234567.891, QString("-1234567.89"));
        row("larger than anybody's", 1e300, QString("1.00e+300"));
        row("no number", std::numeric_limits<double>::quiet_NaN(), QString("nan"));
        row("infinite", -std::numeric_limits<double>::infinity(), QString("-inf"));
    }
    void figuresAreWrittenAsInTheLiveDisplay() {
        QFETCH(double, value);
        QTEST(readouttexts::figure(value), "text");
    }

    void theTextForATableHasTabsAndPoints() {
        Rig rig;
        QVERIFY(readouttexts::forClipboard(rig.readout.view(), true).isEmpty());
        QVERIFY(rig.bring("L"));
        QCOMPARE(readouttexts::forClipboard(rig.readout.view(), false),
                 QString("M1\tlive\t1.12\t-2.50\t300.00"));
        QCOMPARE(readouttexts::forClipboard(rig.readout.view(), true),
                 QString("M1\tlive\t1.12\t-2.50\t300.00\t-0.00\t0.00\t-0.00"));
        rig.readout.setFrozen(true);
        QCOMPARE(readouttexts::forClipboard(rig.readout.view(), false).section('\t', 1, 1),
                 QString("frozen"));
    }

    void agesAreRoundedDown_data() {
        QTest::addColumn<double>("age");
        QTest::addColumn<QString>("text");
        row("now", 0.04, QString("0.0 s"));
        row("tenths", 0.99, QString("0.9 s"));
        row("seconds", 59.99, QString("59 s"));
    }
    void agesAreRoundedDown() {
        QFETCH(double, age);
        ReadoutView view;
        QCOMPARE(readouttexts::age(view), QString());
        view.figures = ReadoutView::Figures();
        view.age = age;
        QTEST(readouttexts::age(view), "text");
    }

    // Less than a second is no news, and would be told five times in it.
    void theSentenceTellsAnAgeFromASecondOn_data() {
        QTest::addColumn<double>("age");
        QTest::addColumn<QString>("text");
        row("none", 0.0, "M1, old, x 0.00 mm, y 0.00 mm, z 0.00 mm");
        row("just less", 0.99, "M1, old, x 0.00 mm, y 0.00 mm, z 0.00 mm");
        row("a second", 1.0, "M1, old, x 0.00 mm, y 0.00 mm, z 0.00 mm, 1 s ago");
        row("more", 61.9, "M1, old, x 0.00 mm, y 0.00 mm, z 0.00 mm, 61 s ago");
    }
    void theSentenceTellsAnAgeFromASecondOn() {
        QFETCH(double, age);
        ReadoutView view;
        view.state = ReadoutState::Old;
        view.figures = ReadoutView::Figures();
        view.age = age;
        QTEST(readouttexts::sentence(view, false), "text");
    }

    void allIsSaidInASentence() {
        Rig rig;
        QVERIFY(rig.bring("L"));
        QCOMPARE(readouttexts::sentence(rig.readout.view(), false),
                 QString("M1, live, x 1.12 mm, y -2.50 mm, z 300.00 mm, MR1 seen, b0 pressed, b2 "
                         "pressed"));
        QCOMPARE(readouttexts::buttons(rig.readout.view()),
                 QString("b0 %1 b1 %2 b2 %1").arg(QChar(0x25cf)).arg(QChar(0x25cb)));
    }
};

QTEST_GUILESS_MAIN(TestReadoutTable)
#include "test_readout_table.moc"
