#include "tests/support/textfit.h"
#include "tests/windows/texts.h"
#include "tests/windows/windowtour.h"

#include <QProgressBar>
#include <QRegularExpression>
#include <QWidget>
#include <QtTest>

namespace {

// What reads the same in German as in English.
const char* const sameWords =
    "OK|Kestrel Workbench|Controller:?|Simulator|Text|Tracking|Version|(s )?[xyz] \\[mm\\]|"
    "kestrel2 get version system|Name|Start|Position [xyz] in mm|(\\d+[.,]\\d+ )?mm|"
    "Pause|1 min|M1 live|s[xyz] \\S+ mm|"
    "Module|"    // one of them in English, all of them in German
    "TextLabel"; // before it is replaced, never seen

// What comes from the controller, the computer or the user.
const char* const foreignTexts =
    "MR?\\d+|SCRIPTED|SIMULATOR|Probe with .* buttons|VM0000\\d|Tip calibration|Swing the tool|"
    "kestrel2 (set )?sim .*|cone|silent|(udp|mqtt|igtl)://.*|"
    "too little movement|OtherPlugin|/.*\\.so|no host|"
    "workbench|WORKBENCH|ProbeCheckModule|standard|result"; // who has written a line of the log

bool mayBeTheSame(const QString& text) {
    static const QRegularExpression expression(
        QStringLiteral("^(%1|%2)$").arg(QLatin1String(sameWords), QLatin1String(foreignTexts)));
    return expression.match(text).hasMatch();
}

} // namespace

class TestWindowsTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // The same program runs with several of each.
        QCOMPARE(QWidget().logicalDpiX(), qEnvironmentVariableIntValue("QT_FONT_DPI"));
        const double factor = qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble();
        QCOMPARE(QWidget().devicePixelRatioF(), factor);
    }

    void noTextIsCutOff_data() {
        QTest::addColumn<int>("stop");
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<int>("font");
        for (const char* language : {"en", "de"}) {
            for (const int font : {100, 150}) {
                for (std::size_t i = 0; i < tourStops().size(); ++i) {
                    QTest::addRow("%s, %s, %d %%", tourStops()[i].name, language, font)
                        << static_cast<int>(i) << QByteArray(language) << font;
                }
            }
        }
    }
    void noTextIsCutOff() {
        QFETCH(int, stop);
        QFETCH(QByteArray, language);
        QFETCH(int, font);
        const Surroundings surroundings(language.constData(), font);
        TextFit fit;
        visit(stop, [&](QWidget& window) { fit = textFit(window); });
        QVERIFY2(fit.faults.isEmpty(), qPrintable('\n' + fit.faults.join(QLatin1Char('\n'))));
        QVERIFY(fit.texts + fit.buttons > 0);
    }

    void everyCellHeaderAndButtonIsLookedAt_data() {
        QTest::addColumn<int>("headers");
        QTest::addColumn<int>("cells");
        QTest::addColumn<int>("buttons");
        // Two tools, of which one is lost: a name, a reference and seven values each; a reference.
        QTest::newRow("main window, measuring") << 11 + 7 << 2 * 9 + 8 << 1;
        QTest::newRow("settings") << 5 + 1 << 1 << 4; // at the least one row
        QTest::newRow("settings, devices") << 5 + 2 << 2 * 2 << 4;
        QTest::newRow("result") << 3 << 3 << 2;
        QTest::newRow("module list") << 2 << 2 << 1;
        QTest::newRow("countdown") << 0 << 0 << 2;
        QTest::newRow("progress, two steps") << 0 << 0 << 1;
        QTest::newRow("calibration") << 0 << 0 << 3;
        QTest::newRow("help") << 0 << 0 << 1;
    }
    void everyCellHeaderAndButtonIsLookedAt() {
        TextFit fit;
        visit(stopNamed(QTest::currentDataTag()), [&](QWidget& window) { fit = textFit(window); });
        QFETCH(int, headers);
        QFETCH(int, cells);
        QFETCH(int, buttons);
        QVERIFY2(fit.headers >= headers, qPrintable(QString::number(fit.headers)));
        QVERIFY2(fit.cells >= cells, qPrintable(QString::number(fit.cells)));
        QVERIFY2(fit.buttons >= buttons, qPrintable(QString::number(fit.buttons)));
    }

    void theProgressBarsBeginAtTheSamePlace_data() {
        QTest::addColumn<int>("font");
        for (const char* language : {"en", "de"}) {
            for (const int font : {100, 150}) {
                QTest::addRow("%s, %d %%", language, font) << font;
            }
        }
    }
    void theProgressBarsBeginAtTheSamePlace() {
        QFETCH(int, font);
        const QByteArray language = QByteArray(QTest::currentDataTag()).left(2);
        const Surroundings surroundings(language.constData(), font);
        QSet<int> places;
        visit(stopNamed("progress, two steps"), [&](QWidget& window) {
            const auto bars = window.findChildren<QProgressBar*>();
            for (const QProgressBar* bar : bars) {
                places << bar->x();
            }
        });
        QCOMPARE(places.size(), 1);
    }

    void everyTextIsGerman_data() { addTourRows(); }
    void everyTextIsGerman() {
        QFETCH(int, stop);
        QSet<QString> english;
        QSet<QString> german;
        {
            const Surroundings surroundings("en", 100);
            visit(stop, [&](QWidget& window) { english = textsOf(window); });
        }
        {
            const Surroundings surroundings("de", 100);
            visit(stop, [&](QWidget& window) { german = textsOf(window); });
        }
        QVERIFY(!english.isEmpty());
        QStringList same;
        const auto common = german & english;
        for (const QString& text : common) {
            if (!mayBeTheSame(text)) {
                same << text;
            }
        }
        QVERIFY2(same.isEmpty(), qPrintable('\n' + same.join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(TestWindowsTexts)
#include "test_windows_texts.moc"
