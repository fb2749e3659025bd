#include "probecheck/tipcheck/roseview.h"
#include "tests/probecheck/tipcheck/tipcheckfixture.h"
#include "tests/support/datarows.h"
#include "tests/support/textfit.h"

#include <QDoubleSpinBox>
#include <QImage>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
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
    void theRoseGivesWay();
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

bool reach(TipCheckFixture& f, Stage stage, double tolerance = 0.5) {
    if (stage == Stage::Idle) {
        return true;
    }
    if (!f.measure() || stage == Stage::Measuring) {
        return stage == Stage::Measuring;
    }
    f.find<QDoubleSpinBox>("doubleSpinBox_tolerance")->setValue(tolerance);
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
    QTest::addColumn<double>("tolerance");
    const std::pair<const char*, QSize> sizes[] = {
        {"high", {420, 560}}, {"low", {758, 440}}, {"low and very wide", {1100, 400}}};
    const std::pair<const char*, double> verdicts[] = {
        {"conforms", 1.5}, {"undecided", 0.5}, {"does not conform", 0.1}};
    for (const bool isGerman : {false, true}) {
        for (const auto& [shape, size] : sizes) {
            for (const auto& [verdict, tolerance] : verdicts) {
                QTest::addRow("%s, %s, %s", isGerman ? "German" : "English", shape, verdict)
                    << isGerman << size << tolerance;
            }
        }
    }
}

// Pixels at 96 dpi. The tip is wrong by 0.5 mm.
void TestTipCheckPanelLook::theResultNeedsNoScrolling() {
    QFETCH(bool, isGerman);
    QFETCH(QSize, size);
    QFETCH(double, tolerance);
    if (isGerman) {
        QCoreApplication::installTranslator(&m_german);
    }
    TipCheckFixture f;
    f.window.resize(size * f.window.logicalDpiX() / 96);
    QVERIFY(reach(f, Stage::Result, tolerance));
    QVERIFY(f.table().contains(QStringLiteral("±")));
    const auto* const scrolled = f.panel->findChild<QScrollArea*>();
    QVERIFY(scrolled != nullptr);
    QVERIFY(scrolled->height() <= f.window.height());
    // What it needs, whether or not the page has been laid out for it yet.
    const QWidget* const page = scrolled->widget();
    QTRY_COMPARE_WITH_TIMEOUT(page->size(), scrolled->viewport()->size(),
                              TipCheckFixture::patienceMs);
    QVERIFY2(page->heightForWidth(page->width()) <= scrolled->viewport()->height(),
             qPrintable(QStringLiteral("%1 of %2")
                            .arg(page->heightForWidth(page->width()))
                            .arg(scrolled->viewport()->height())));
    QTRY_VERIFY_WITH_TIMEOUT(isWhole(*f.find<QLabel>("label_words"), f.window),
                             TipCheckFixture::patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(isWhole(*f.find<QLabel>("label_result"), f.window),
                             TipCheckFixture::patienceMs);
    QCOMPARE(scrolled->verticalScrollBar()->maximum(), 0);
    const auto* const rose = f.find<RoseView>("roseView");
    QVERIFY(rose->height() == 0 || isWhole(*rose, f.window));
    // Two columns have room for all of it.
    if (size.width() > size.height()) {
        QVERIFY(rose->height() >= 4 * rose->fontMetrics().height());
    }
}

// A rose that cannot be read is none.
void TestTipCheckPanelLook::theRoseGivesWay() {
    RoseView rose;
    TiltRose::View view;
    view.reached[0].fill(true);
    rose.display(view, false);
    const int side = rose.minimumSizeHint().height();
    QVERIFY(side > 0);
    rose.setGivingWay(true);
    QCOMPARE(rose.minimumSizeHint(), QSize(side, 0));
    QCOMPARE(rose.sizeHint(), QSize(side, 0));
    const auto colours = [&rose](int height) {
        rose.resize(200, height);
        const QImage image = rose.grab().toImage();
        QSet<QRgb> found;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                found.insert(image.pixel(x, y));
            }
        }
        return found.size();
    };
    QCOMPARE(colours(side - 1), 1);
    QVERIFY(colours(side) > 1);
    rose.setGivingWay(false);
    QCOMPARE(rose.minimumSizeHint(), QSize(side, side));
    QVERIFY(colours(side - 1) > 1);
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
