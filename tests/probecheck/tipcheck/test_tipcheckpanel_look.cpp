#include "probecheck/tipcheck/roseview.h"
#include "tests/probecheck/tipcheck/tipcheckfixture.h"
#include "tests/support/datarows.h"
#include "tests/support/textfit.h"

#include <QImage>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTranslator>

/// The tip check in each language, with a larger font and in each of its stages. At 96 dpi unless
/// the environment says otherwise.
class TestTipCheckPanelLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void everythingCanBeRead_data();
    void everythingCanBeRead();
    void theResultNeedsNoScrolling_data();
    void theResultNeedsNoScrolling();
    void theRoseIsWholeWhileItTilts_data();
    void theRoseIsWholeWhileItTilts();
    void theRoseGoesWhereThereIsRoom();
    void theRoseIsToldByGreyLevels_data();
    void theRoseIsToldByGreyLevels();

private:
    QTranslator m_german;
    QFont m_font;
    QPalette m_palette;
};

namespace {

constexpr double checkSeconds = 12.0;
constexpr int leastPoses = 600; // of them

enum class Stage { Idle, Measuring, Running, Result };

// Nothing of it is behind an edge.
bool isWhole(const QWidget& widget, const QWidget& window) {
    const QRegion seen = widget.visibleRegion();
    return widget.isVisible() && seen.boundingRect() == widget.rect() &&
           window.rect().contains(QRect(widget.mapTo(&window, QPoint()), widget.size()));
}

bool reach(TipCheckFixture& f, Stage stage) {
    if (stage == Stage::Idle) {
        return true;
    }
    if (!f.measure() || stage == Stage::Measuring) {
        return stage == Stage::Measuring;
    }
    f.start()->click();
    Pivoting tool;
    f.deliver(tool, checkSeconds);
    const auto* const figures = f.find<QLabel>("label_figures");
    const bool isRunning = QTest::qWaitFor(
        [figures] { return figures->text().section(' ', 2, 2).toInt() >= leastPoses; },
        TipCheckFixture::patienceMs);
    if (stage == Stage::Result) {
        f.stop()->click();
    }
    return isRunning;
}

} // namespace

Q_DECLARE_METATYPE(Stage)

void TestTipCheckPanelLook::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QVERIFY(m_german.load("probecheck_de", KESTREL_TRANSLATIONS_DIR));
    m_font = QApplication::font();
    m_palette = QApplication::palette();
}

void TestTipCheckPanelLook::cleanup() {
    QCoreApplication::removeTranslator(&m_german);
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
}

void TestTipCheckPanelLook::everythingCanBeRead_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<bool>("isGerman");
    QTest::addColumn<double>("fontScale");
    const std::pair<const char*, Stage> stages[] = {{"idle", Stage::Idle},
                                                    {"measuring", Stage::Measuring},
                                                    {"running", Stage::Running},
                                                    {"result", Stage::Result}};
    for (const auto& [name, stage] : stages) {
        for (const bool isGerman : {false, true}) {
            for (const double scale : {1.0, 1.5}) {
                QTest::addRow("%s, %s, font %g", name, isGerman ? "German" : "English", scale)
                    << stage << isGerman << scale;
            }
        }
    }
}

void TestTipCheckPanelLook::everythingCanBeRead() {
    QFETCH(Stage, stage);
    QFETCH(bool, isGerman);
    QFETCH(double, fontScale);
    if (isGerman) {
        QCoreApplication::installTranslator(&m_german);
    }
    QFont font = m_font;
    font.setPointSizeF(font.pointSizeF() * fontScale);
    QApplication::setFont(font);
    TipCheckFixture f;
    const int line = f.window.fontMetrics().height();
    f.window.resize(40 * line, 60 * line); // nothing has to be scrolled to
    QVERIFY(reach(f, stage));
    QCoreApplication::processEvents();
    const TextFit fit = textFit(f.window);
    QCOMPARE(fit.faults.join('\n'), QString());
    QVERIFY(fit.texts >= 3);
    QVERIFY(fit.buttons >= 3);
}

void TestTipCheckPanelLook::theResultNeedsNoScrolling_data() {
    QTest::addColumn<bool>("isGerman");
    QTest::addColumn<QSize>("size");
    for (const bool isGerman : {false, true}) {
        const char* const language = isGerman ? "German" : "English";
        QTest::addRow("%s, high", language) << isGerman << QSize(420, 560);
        QTest::addRow("%s, low", language) << isGerman << QSize(758, 440);
        QTest::addRow("%s, low and very wide", language) << isGerman << QSize(1100, 400);
    }
}

// Pixels at 96 dpi.
void TestTipCheckPanelLook::theResultNeedsNoScrolling() {
    QFETCH(bool, isGerman);
    QFETCH(QSize, size);
    if (isGerman) {
        QCoreApplication::installTranslator(&m_german);
    }
    TipCheckFixture f;
    f.window.resize(size * f.window.logicalDpiX() / 96);
    QVERIFY(reach(f, Stage::Result));
    QVERIFY(f.table().contains(QStringLiteral("±")));
    QCoreApplication::processEvents();
    const auto* const scrolled = f.panel->findChild<QScrollArea*>();
    QVERIFY(scrolled != nullptr);
    QVERIFY(scrolled->height() <= f.window.height());
    // The page is laid out anew in several turns of the events, on a busy machine in more of them.
    QTRY_COMPARE_WITH_TIMEOUT(scrolled->verticalScrollBar()->maximum(), 0,
                              TipCheckFixture::patienceMs);
    QVERIFY(isWhole(*f.find<RoseView>("roseView"), f.window));
    QVERIFY(isWhole(*f.find<QLabel>("label_result"), f.window));
}

// The dock as it is in a window of 1100 x 800, beside the live display: narrow and low.
void TestTipCheckPanelLook::theRoseIsWholeWhileItTilts_data() {
    QTest::addColumn<bool>("isGerman");
    row("English", false);
    row("German", true);
}

void TestTipCheckPanelLook::theRoseIsWholeWhileItTilts() {
    QFETCH(bool, isGerman);
    if (isGerman) {
        QCoreApplication::installTranslator(&m_german);
    }
    TipCheckFixture f;
    f.window.resize(QSize(340, 440) * f.window.logicalDpiX() / 96);
    QVERIFY(reach(f, Stage::Running));
    QCoreApplication::processEvents();
    QVERIFY(f.find<RoseView>("roseView")->y() > f.find<QLabel>("label_words")->y());
    QVERIFY(isWhole(*f.find<RoseView>("roseView"), f.window));
    QVERIFY(isWhole(*f.find<QLabel>("label_figures"), f.window));
}

void TestTipCheckPanelLook::theRoseGoesWhereThereIsRoom() {
    TipCheckFixture f;
    const auto* const rose = f.find<RoseView>("roseView");
    const auto* const words = f.find<QLabel>("label_words");
    const auto isBeside = [&](int width) {
        f.window.resize(QSize(width, 500) * f.window.logicalDpiX() / 96);
        QCoreApplication::processEvents();
        return rose->x() >= words->geometry().right();
    };
    QVERIFY(!isBeside(360));
    QVERIFY(isBeside(1100));
    QVERIFY(isBeside(1150));
    QVERIFY(!isBeside(360));
    QVERIFY(!isBeside(340));
    QVERIFY(rose->y() > words->y());
}

void TestTipCheckPanelLook::theRoseIsToldByGreyLevels_data() {
    QTest::addColumn<bool>("isDark");
    row("light", false);
    row("dark", true);
}

void TestTipCheckPanelLook::theRoseIsToldByGreyLevels() {
    QFETCH(bool, isDark);
    if (isDark) {
        QPalette palette(QColor(53, 53, 53), QColor(35, 35, 35));
        palette.setColor(QPalette::Base, QColor(35, 35, 35));
        palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
        QApplication::setPalette(palette);
    }
    constexpr int side = 400;
    RoseView rose;
    rose.resize(side, side);
    TiltRose::View view;
    view.reached[0].fill(true); // to the right
    view.missing = TiltRose::Missing::LeftRight;
    rose.display(view, true);
    const QImage image = rose.grab().toImage().convertToFormat(QImage::Format_Grayscale8);
    const auto isOther = [&image](QPoint a, QPoint b) {
        const int difference = qGray(image.pixel(a)) - qGray(image.pixel(b));
        return std::abs(difference) > 40;
    };
    const QPoint middle(side / 2, side / 2);
    const QPoint halfway(side / 4, 0);
    QVERIFY(isOther(middle + halfway, middle - halfway));
    // The triangles point left and right, and stand outside of the cells.
    const QPoint corner(1, 1);
    const QPoint tip(side / 2 - 8, 0);
    QVERIFY(isOther(middle + tip, corner));
    QVERIFY(isOther(middle - tip, corner));
    QVERIFY(!isOther(middle + QPoint(0, side / 2 - 8), corner));
}

QTEST_MAIN(TestTipCheckPanelLook)
#include "test_tipcheckpanel_look.moc"
