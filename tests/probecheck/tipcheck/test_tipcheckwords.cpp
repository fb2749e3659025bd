#include "probecheck/tipcheck/roseview.h"
#include "probecheck/tipcheck/tipchecktexts.h"
#include "tests/probecheck/tipcheck/pivoting.h"
#include "tests/support/datarows.h"
#include "tests/support/paintwatch.h"

#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <algorithm>
#include <cmath>

using kestrel_probe::Verdict;
using End = TipCheck::End;
using Missing = TiltRose::Missing;

namespace {

constexpr double rate = 60.0;
constexpr double pi = 3.14159265358979323846;

// Of a tip that could be told.
TipCheck::Result determined(double error, double radius, double tolerance, double tilt) {
    TipCheck::Result result;
    result.pivot.emplace();
    result.pivot->radius95 = radius;
    result.error = error;
    result.tolerance = tolerance;
    result.verdict = kestrel_probe::judge(error, radius, tolerance);
    result.rose.greatest = tilt;
    result.rose.missing = Missing::Nothing;
    return result;
}

TipCheck runFor(double seconds, double frequency) {
    Pivoting tool;
    tool.frequency = frequency;
    TipCheck check;
    check.start(0, 1.0, 0.0);
    for (int frame = 0; frame < static_cast<int>(seconds * rate); ++frame) {
        const ProbeSample sample = tool.at(frame / rate);
        check.take(sample);
        check.tick(sample.arrival);
    }
    return check;
}

// The tool's axes one further: what was z is x.
std::array<double, 9> withXAsShaft(const std::array<double, 9>& rotation) {
    std::array<double, 9> turned{};
    std::rotate_copy(rotation.begin(), rotation.begin() + 6, rotation.end(), turned.begin());
    return turned;
}

} // namespace

Q_DECLARE_METATYPE(TipCheck::End)
Q_DECLARE_METATYPE(kestrel_probe::Verdict)
Q_DECLARE_METATYPE(TiltRose::Missing)

/// What a tip check says, and what its rose shows.
class TestTipCheckWords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWouldDecideIsTold_data() {
        QTest::addColumn<double>("error");
        QTest::addColumn<double>("radius");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<double>("tilt");
        QTest::addColumn<QString>("words");
        row("further", 0.4, 0.25, 0.5, 8.0,
            QString("Undecided: wrong by 0.40 ± 0.25 mm, tolerance 0.50 mm. Tilt by 24 degrees "
                    "instead of 8."));
        row("beyond the tolerance", 0.6, 0.25, 0.5, 8.0,
            QString("Undecided: wrong by 0.60 ± 0.25 mm, tolerance 0.50 mm. Tilt by 24 degrees "
                    "instead of 8."));
        row("further than a tool is seen", 0.4, 0.6, 0.5, 8.0,
            QString("Undecided: wrong by 0.40 ± 0.60 mm, tolerance 0.50 mm. Tilt by 40 degrees "
                    "instead of 8, and for longer."));
        row("a little further", 0.0, 0.105, 0.1, 3.0,
            QString("Undecided: wrong by 0.00 ± 0.10 mm, tolerance 0.10 mm. Tilt by 4 degrees "
                    "instead of 3."));
        row("as far as a tool is seen", 0.4, 0.25, 0.5, 39.5,
            QString("Undecided: wrong by 0.40 ± 0.25 mm, tolerance 0.50 mm. Tilt for longer."));
        row("too close", 0.49, 0.02, 0.5, 30.0,
            QString("Undecided: wrong by 0.49 ± 0.02 mm, tolerance 0.50 mm. The error is too close "
                    "to the tolerance to be told from it."));
        row("no tolerance", 0.4, 0.1, 0.0, 30.0,
            QString("Undecided: wrong by 0.40 ± 0.10 mm, tolerance 0.00 mm. A tolerance would "
                    "decide."));
    }
    void whatWouldDecideIsTold() {
        QFETCH(double, error);
        QFETCH(double, radius);
        QFETCH(double, tolerance);
        QFETCH(double, tilt);
        TipCheck::Result result = determined(error, radius, tolerance, tilt);
        result.verdict = Verdict::Undecided; // without a tolerance, too
        QTEST(tipchecktexts::resultWords(result), "words");
    }

    void withoutANumberTheWayToOneIsTold_data() {
        QTest::addColumn<Missing>("missing");
        QTest::addColumn<bool>("tooFast");
        QTest::addColumn<QString>("advice");
        row("too fast", Missing::Nothing, true, QString("Tilt more slowly."));
        row("too little", Missing::Nothing, false, QString("Tilt further and for longer."));
        row("none", Missing::AllSides, false, QString("Tilt the tool to all sides."));
        row("x", Missing::LeftRight, false, QString("Tilt more to left and right."));
        row("y", Missing::FrontBack, false, QString("Tilt more to front and back."));
        row("up", Missing::FrontRightBackLeft, false,
            QString("Tilt more to front right and back left."));
        row("down", Missing::FrontLeftBackRight, false,
            QString("Tilt more to front left and back right."));
    }
    void withoutANumberTheWayToOneIsTold() {
        QFETCH(Missing, missing);
        QFETCH(bool, tooFast);
        QFETCH(QString, advice);
        TipCheck::Result result;
        result.rose.missing = missing;
        result.tooFast = tooFast;
        QCOMPARE(tipchecktexts::resultWords(result),
                 "No result: this motion does not determine the tip. " + advice);
    }

    void whileItRunsTheNextStepIsTold_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<double>("frequency");
        QTest::addColumn<QString>("words");
        row("too fast", 10.0, 3.0, QString("Tilt more slowly."));
        row("not enough yet", 1.7, 1.0, QString("Go on."));
    }
    void whileItRunsTheNextStepIsTold() {
        QFETCH(double, seconds);
        QFETCH(double, frequency);
        const TipCheck check = runFor(seconds, frequency);
        QVERIFY(check.isRunning());
        QTEST(tipchecktexts::runningWords(check), "words");
    }

    void otherProgramsAreToldWhyItEnded_data() {
        QTest::addColumn<End>("end");
        QTest::addColumn<QString>("word");
        row("decided", End::Decided, QString("decided"));
        row("time", End::TimeIsUp, QString("time_is_up"));
        row("stop", End::Stopped, QString("stopped"));
        row("slip", End::Slipped, QString("slipped"));
        row("measurement", End::MeasurementStopped, QString("measurement_stopped"));
    }
    void otherProgramsAreToldWhyItEnded() {
        QFETCH(End, end);
        TipCheck::Result result;
        result.end = end;
        const QByteArray json = tipchecktexts::toJson(result, QDateTime::currentDateTime());
        QTEST(QJsonDocument::fromJson(json).object().value("ended_by").toString(), "word");
    }

    void otherProgramsAreToldTheVerdict_data() {
        QTest::addColumn<double>("error");
        QTest::addColumn<QString>("word");
        row("within", 0.3, QString("conforms"));
        row("beyond", 0.7, QString("does_not_conform"));
        row("between", 0.5, QString("undecided"));
    }
    void otherProgramsAreToldTheVerdict() {
        QFETCH(double, error);
        const QByteArray json =
            tipchecktexts::toJson(determined(error, 0.1, 0.5, 20.0), QDateTime::currentDateTime());
        QTEST(QJsonDocument::fromJson(json).object().value("verdict").toString(), "word");
    }

    // A data line does not tell which axis is the shaft.
    void theShaftMayBeAnyAxis() {
        Pivoting tool;
        TiltRose usual;
        TiltRose turned;
        TiltRose twice;
        for (int i = 0; i < 200; ++i) {
            const ProbeSample sample = tool.at(0.11 * i);
            usual.add(sample.rotation, sample.seconds);
            turned.add(withXAsShaft(sample.rotation), sample.seconds);
            twice.add(withXAsShaft(withXAsShaft(sample.rotation)), sample.seconds);
        }
        QVERIFY(usual.view().missing == Missing::Nothing);
        QVERIFY(usual.view().greatest > 20.0);
        for (const TiltRose* rose : {&turned, &twice}) {
            QVERIFY(rose->view().missing == Missing::Nothing);
            QCOMPARE(rose->view().greatest, usual.view().greatest);
            QVERIFY(rose->view().reached == usual.view().reached);
        }
    }

    void theLongestCheckIsKeptAndNotMore() {
        Pivoting tool;
        TiltRose rose;
        double seconds = 0.0;
        for (int i = 0; i < 100; ++i, seconds += 0.11) {
            rose.add(tool.at(seconds).rotation, seconds);
        }
        QVERIFY(rose.view().missing == Missing::Nothing);
        tool.motion = Pivoting::Motion::Still;
        for (std::size_t i = 0; i < TiltRose::mostDirections; ++i, seconds += 0.11) {
            rose.add(tool.at(seconds).rotation, seconds);
        }
        QVERIFY(rose.view().missing == Missing::AllSides);
        QVERIFY(rose.view().greatest < 1.0);
    }

    void trianglesPointToWhatIsMissing_data() {
        QTest::addColumn<Missing>("missing");
        QTest::addColumn<bool>("isLive");
        QTest::addColumn<QVector<int>>("angles");
        row("nothing", Missing::Nothing, true, QVector<int>{});
        row("all sides", Missing::AllSides, true, QVector<int>{0, 90, 180, 270});
        row("left and right", Missing::LeftRight, true, QVector<int>{0, 180});
        row("front and back", Missing::FrontBack, true, QVector<int>{90, 270});
        row("rising", Missing::FrontRightBackLeft, true, QVector<int>{45, 225});
        row("falling", Missing::FrontLeftBackRight, true, QVector<int>{135, 315});
        row("over", Missing::AllSides, false, QVector<int>{});
    }
    void trianglesPointToWhatIsMissing() {
        QFETCH(Missing, missing);
        QFETCH(bool, isLive);
        QFETCH(QVector<int>, angles);
        TiltRose::View view;
        view.missing = missing;
        const QImage picture = pictureOf(view, isLive);
        for (int angle = 0; angle < 360; angle += 45) {
            const double at = angle * pi / 180.0;
            constexpr double outside = 0.88 * side / 2.0; // of the rose, where the triangles are
            const bool isDark = isInk(picture, outside * std::cos(at), outside * std::sin(at));
            QVERIFY2(isDark == angles.contains(angle), qPrintable(QString::number(angle)));
        }
    }

    void aRingIsTheToolNow_data() {
        QTest::addColumn<double>("right");
        QTest::addColumn<double>("front");
        row("upright", 0.0, 0.0);
        row("to the right", 10.0, 0.0);
        row("to the back left", -6.0, -6.0);
    }
    void aRingIsTheToolNow() {
        QFETCH(double, right);
        QFETCH(double, front);
        TiltRose::View view;
        view.missing = Missing::Nothing;
        const QImage before = pictureOf(view, false);
        view.current = {right, front};
        const QImage now = pictureOf(view, true);
        double x = 0.0;
        double y = 0.0;
        int changed = 0;
        for (int column = 0; column < side; ++column) {
            for (int line = 0; line < side; ++line) {
                if (now.pixel(column, line) != before.pixel(column, line)) {
                    x += column + 0.5 - side / 2.0;
                    y += side / 2.0 - line - 0.5;
                    ++changed;
                }
            }
        }
        QVERIFY(changed > 20 && changed < side * side / 20);
        // Its middle lies in the direction of the tilt, upright in the middle of the rose.
        const double tilt = std::hypot(right, front);
        const double off = std::hypot(x, y) / changed;
        QVERIFY(tilt > 0.0 ? off > side / 20.0 : off < 1.0);
        const double along = (x * right + y * front) / (changed * std::max(tilt, 1.0));
        QVERIFY2(tilt == 0.0 || along > 0.98 * off, qPrintable(QString::number(along / off)));
    }

    void aRingThatMovesIsPaintedAlone() {
        constexpr int patienceMs = 8000;
        RoseView rose;
        rose.resize(side, side);
        rose.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rose, patienceMs));
        TiltRose::View view;
        view.reached[2].fill(true);
        rose.display(view, true);
        PaintWatch watch(rose);
        // Until the window has settled: what it paints by itself meanwhile is all of it.
        const bool isAlone = QTest::qWaitFor(
            [&] {
                watch.forget();
                view.current.right = view.current.right > 0.0 ? -9.0 : 9.0;
                rose.display(view, true);
                QCoreApplication::sendPostedEvents();
                int pixels = 0;
                for (const QRect& piece : watch.painted) {
                    pixels += piece.width() * piece.height();
                }
                return pixels > 0 && pixels < side * side / 4;
            },
            patienceMs);
        QVERIFY(isAlone);
        QCOMPARE(onScreen(rose), paintedAnew(rose));
        view.reached[7].fill(true);
        rose.display(view, true);
        QTRY_COMPARE_WITH_TIMEOUT(onScreen(rose), paintedAnew(rose), patienceMs);
        QVERIFY(paintedAnew(rose) != pictureOf(TiltRose::View(), true));
        rose.setEnabled(false); // greyed, in a cached picture too
        QTRY_COMPARE_WITH_TIMEOUT(onScreen(rose), paintedAnew(rose), patienceMs);
    }

private:
    static constexpr int side = 240;

    static QImage pictureOf(const TiltRose::View& view, bool isLive) {
        RoseView rose;
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::white);
        palette.setColor(QPalette::Base, Qt::white);
        palette.setColor(QPalette::WindowText, Qt::black);
        rose.setPalette(palette);
        rose.resize(side, side);
        rose.display(view, isLive);
        return rose.grab().toImage();
    }
    static bool isInk(const QImage& picture, double x, double y) {
        const QColor colour =
            picture.pixelColor(static_cast<int>(side / 2.0 + x), static_cast<int>(side / 2.0 - y));
        return colour.lightness() < 128;
    }
};

QTEST_MAIN(TestTipCheckWords)
#include "test_tipcheckwords.moc"
