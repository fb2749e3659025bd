#include "pointsfixture.h"
#include "samplepoints.h"
#include "tests/support/datarows.h"
#include "tests/support/textfit.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QKeySequence>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTranslator>
#include <QWheelEvent>

/// The page in each language, with a larger font and in a dark palette. At 96 dpi unless the
/// environment says otherwise.
class TestPointsPanelLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void everythingCanBeRead_data() { surroundings(); }
    void everythingCanBeRead();
    void aLowPageCanBeRead_data() { surroundings(); }
    void aLowPageCanBeRead();
    void aSmallScreenIsWideEnough_data();
    void aSmallScreenIsWideEnough();
    void whatHasRoomIsNotScrolled_data() { surroundings(); }
    void whatHasRoomIsNotScrolled();
    void theTabulatorScrollsToWhatItReaches();
    void theWheelScrollsAndChangesNoValue();
    void eachMnemonicIsThereOnce_data() { surroundings(); }
    void eachMnemonicIsThereOnce();
    void eachControlHasAName_data() { surroundings(); }
    void eachControlHasAName();
    void theTabulatorReachesEveryControl();
    void theRingIsSeenInADarkPalette_data();
    void theRingIsSeenInADarkPalette();

private:
    static void surroundings();
    void begin();

    QTranslator m_german;
    QFont m_font;
    QPalette m_palette;
    std::unique_ptr<PointsFixture> f;
};

namespace {

QList<QWidget*> controlsOf(const QWidget& panel) {
    QList<QWidget*> controls;
    const auto all = panel.findChildren<QWidget*>();
    for (QWidget* widget : all) {
        const bool isControl = widget->inherits("QAbstractButton") ||
                               widget->inherits("QAbstractSpinBox") ||
                               widget->inherits("QComboBox") || widget->inherits("QTableView");
        if (isControl && !widget->objectName().isEmpty() &&
            !widget->objectName().startsWith(QLatin1String("qt_"))) {
            controls << widget;
        }
    }
    return controls;
}

QString nameOf(QWidget* widget) {
    const QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
    return accessible == nullptr ? QString() : accessible->text(QAccessible::Name);
}

} // namespace

void TestPointsPanelLook::initTestCase() {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QVERIFY(m_german.load("probecheck_de", KESTREL_TRANSLATIONS_DIR));
    m_font = QApplication::font();
    m_palette = QApplication::palette();
}

void TestPointsPanelLook::init() {
    QApplication::setFont(m_font);
}

void TestPointsPanelLook::cleanup() {
    f.reset();
    QCoreApplication::removeTranslator(&m_german);
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
}

void TestPointsPanelLook::surroundings() {
    QTest::addColumn<bool>("isGerman");
    QTest::addColumn<double>("fontScale");
    row("English", false, 1.0);
    row("English, large font", false, 1.5);
    row("German", true, 1.0);
    row("German, large font", true, 1.5);
}

void TestPointsPanelLook::begin() {
    QFETCH(bool, isGerman);
    QFETCH(double, fontScale);
    if (isGerman) {
        QCoreApplication::installTranslator(&m_german);
    }
    QFont font = m_font;
    font.setPointSizeF(font.pointSizeF() * fontScale);
    QApplication::setFont(font);
    f = std::make_unique<PointsFixture>();
}

void TestPointsPanelLook::everythingCanBeRead() {
    begin();
    const int line = f->panel->fontMetrics().height();
    f->panel->resize(60 * line, 70 * line); // nothing has to be scrolled to
    QTRY_COMPARE_WITH_TIMEOUT(cutOffTexts(*f->panel), QString(), PointsFixture::patienceMs);
    std::vector<points::PointRecord> all = samplePoints(3);
    all[1].position = {-12345.678, 0.0, 0.0};
    f->panel->list().append(all);
    f->select({0, 1});
    f->type("doubleSpinBox_nominal", "100");
    f->child<QFrame>("frame_left")->show();
    f->child<QLabel>("label_left")->setText(f->child<QLabel>("label_distance")->text());
    f->child<QWidget>("exportBar")->show();
    f->child<QLabel>("label_export")->setText(ExportBar::tr("Cancelling the export..."));
    // The page is laid out anew in several turns of the events.
    QTRY_COMPARE_WITH_TIMEOUT(cutOffTexts(*f->panel), QString(), PointsFixture::patienceMs);
    QCOMPARE(f->scrollBar()->maximum(), 0);
    const TextFit fit = textFit(*f->panel);
    QCOMPARE(fit.faults.join('\n'), QString());
    QVERIFY(fit.texts > 10);
    QVERIFY(fit.buttons >= 9);
}

void TestPointsPanelLook::aLowPageCanBeRead() {
    begin();
    f->child<QFrame>("frame_left")->show();
    f->child<QLabel>("label_left")->setText(f->child<QLabel>("label_buttons")->text());
    f->child<QWidget>("exportBar")->show();
    f->child<QLabel>("label_disk")->setText(f->child<QLabel>("label_buttons")->text());
    f->child<QLabel>("label_disk")->show();
    QCoreApplication::processEvents();
    const int narrowest = f->panel->minimumSizeHint().width();
    for (const int width : {narrowest, std::max(narrowest, 760), 2 * narrowest, narrowest}) {
        f->panel->resize(width, 1);
        QTRY_COMPARE_WITH_TIMEOUT(cutOffTexts(*f->panel), QString(), PointsFixture::patienceMs);
        QCOMPARE(f->panel->width(), width);
        QVERIFY(f->panel->height() < f->child<QWidget>("page")->height() / 2);
        QVERIFY(f->scrollBar()->maximum() > 0);
        const TextFit fit = textFit(*f->panel);
        QVERIFY2(fit.faults.isEmpty(),
                 qPrintable(QStringLiteral("width %1:\n%2").arg(width).arg(fit.faults.join('\n'))));
        QVERIFY(fit.texts > 10);
        QVERIFY(fit.buttons >= 9);
    }
}

void TestPointsPanelLook::aSmallScreenIsWideEnough_data() {
    QTest::addColumn<bool>("isGerman");
    QTest::addColumn<double>("fontScale");
    row("English", false, 1.0);
    row("German", true, 1.0);
}

// Of 800 pixels at up to 120 dpi, as of 1280 at 192.
void TestPointsPanelLook::aSmallScreenIsWideEnough() {
    constexpr int dpi = 120;
    constexpr int room = 780; // the window has a frame besides
    begin();
    const int width = f->panel->minimumSizeHint().width();
    const int most = room * std::max(dpi, f->panel->logicalDpiX()) / dpi;
    QVERIFY2(width <= most, qPrintable(QStringLiteral("%1 of %2").arg(width).arg(most)));
}

void TestPointsPanelLook::whatHasRoomIsNotScrolled() {
    begin();
    f->panel->resize(f->panel->sizeHint());
    QTRY_COMPARE_WITH_TIMEOUT(f->scrollBar()->maximum(), 0, PointsFixture::patienceMs);
    // The list gives way first.
    auto* const list = f->child<QTableView>("tableView_points");
    f->panel->resize(f->panel->width(),
                     f->panel->height() - (list->height() - list->minimumSizeHint().height()));
    QTRY_COMPARE_WITH_TIMEOUT(list->height(), list->minimumSizeHint().height(),
                              PointsFixture::patienceMs);
    QCOMPARE(f->scrollBar()->maximum(), 0);
    f->panel->resize(f->panel->width(), f->panel->height() - 1);
    QTRY_VERIFY_WITH_TIMEOUT(f->scrollBar()->maximum() > 0, PointsFixture::patienceMs);
}

void TestPointsPanelLook::theTabulatorScrollsToWhatItReaches() {
    f = std::make_unique<PointsFixture>();
    f->panel->list().append(samplePoints(2));
    f->select({0});
    f->panel->resize(f->panel->minimumSizeHint().width(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(f->scrollBar()->maximum() > 0, PointsFixture::patienceMs);
    f->panel->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(f->panel.get()));
    f->child<QPushButton>("pushButton_capture")->setFocus();
    const auto* const last = f->child<QPushButton>("pushButton_export");
    QVERIFY(last->visibleRegion().isEmpty());
    for (int i = 0; i < 30 && !last->hasFocus(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(last->hasFocus());
    QCOMPARE(last->visibleRegion().boundingRect(), last->rect());
}

void TestPointsPanelLook::theWheelScrollsAndChangesNoValue() {
    f = std::make_unique<PointsFixture>();
    f->panel->resize(f->panel->minimumSizeHint().width(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(f->scrollBar()->maximum() > 0, PointsFixture::patienceMs);
    auto* const duration = f->child<QDoubleSpinBox>("doubleSpinBox_duration");
    auto* const mode = f->child<QComboBox>("comboBox_mode");
    const double before = duration->value();
    const auto turn = [](QWidget& over) {
        const QPointF place = over.rect().center();
        QWheelEvent event(place, over.mapToGlobal(place.toPoint()), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // others are not handed on to what is around
        QCoreApplication::instance()->notify(&over, &event);
    };
    turn(*duration);
    QVERIFY(f->scrollBar()->value() > 0);
    QCOMPARE(duration->value(), before);
    f->scrollBar()->setValue(0);
    turn(*mode);
    QVERIFY(f->scrollBar()->value() > 0);
    QCOMPARE(mode->currentIndex(), 0);
    f->panel->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(f->panel.get()));
    duration->setFocus();
    turn(*duration);
    QVERIFY(duration->value() < before);
}

void TestPointsPanelLook::eachMnemonicIsThereOnce() {
    begin();
    f->child<QFrame>("frame_left")->show();
    QStringList keys;
    const auto widgets = f->panel->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        const auto* const button = qobject_cast<const QAbstractButton*>(widget);
        const auto* const label = qobject_cast<const QLabel*>(widget);
        if (button != nullptr && !button->text().isEmpty()) {
            keys << QKeySequence::mnemonic(button->text()).toString();
        } else if (label != nullptr && label->buddy() != nullptr) {
            keys << QKeySequence::mnemonic(label->text()).toString();
        }
    }
    QCOMPARE(keys.size(), 17);
    QVERIFY2(!keys.contains(QString()), qPrintable(keys.join(' ')));
    QVERIFY2(keys.removeDuplicates() == 0, qPrintable(keys.join(' ')));
}

void TestPointsPanelLook::eachControlHasAName() {
    begin();
    const QList<QWidget*> controls = controlsOf(*f->panel);
    QCOMPARE(controls.size(), 18);
    for (QWidget* const control : controls) {
        QVERIFY2(!nameOf(control).isEmpty(), qPrintable(control->objectName()));
    }
}

void TestPointsPanelLook::theTabulatorReachesEveryControl() {
    f = std::make_unique<PointsFixture>();
    f->panel->list().append(samplePoints(2));
    f->panel->list().remove({0});
    f->panel->list().append({samplePoint(3)});
    f->panel->list().remove({0});
    f->panel->list().undoStack().undo();
    f->child<QFrame>("frame_left")->show();
    f->child<QWidget>("exportBar")->show();
    f->select({0});
    f->panel->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(f->panel.get()));
    f->child<QPushButton>("pushButton_keep")->setFocus();
    QSet<QWidget*> reached;
    for (int i = 0; i < 30; ++i) {
        reached << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    const QList<QWidget*> controls = controlsOf(*f->panel);
    for (QWidget* const control : controls) {
        QVERIFY2(!control->isEnabled() || reached.contains(control),
                 qPrintable(control->objectName()));
    }
}

void TestPointsPanelLook::theRingIsSeenInADarkPalette_data() {
    QTest::addColumn<bool>("isDark");
    row("light", false);
    row("dark", true);
}

void TestPointsPanelLook::theRingIsSeenInADarkPalette() {
    QFETCH(bool, isDark);
    QPalette palette = m_palette;
    if (isDark) {
        palette = QPalette(QColor(53, 53, 53), QColor(35, 35, 35));
        palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    }
    QApplication::setPalette(palette);
    CaptureRing ring;
    ring.resize(ring.sizeHint());
    ring.setShare(0.5);
    const QImage image = ring.grab().toImage();
    const int middle = image.height() / 2;
    const int fromEdge = image.height() / 10;
    const auto lightness = [&](int x) { return image.pixelColor(x, middle).lightness(); };
    const int background = image.pixelColor(1, 1).lightness();
    // Filled on the right, and wider there than the empty ring on the left.
    QVERIFY(std::abs(lightness(image.width() - fromEdge) - background) > 25);
    const auto widthOn = [&](int begin, int step) {
        int pixels = 0;
        for (int i = 0; i < 2 * fromEdge; ++i) {
            pixels += std::abs(lightness(begin + step * i) - background) > 10 ? 1 : 0;
        }
        return pixels;
    };
    QVERIFY(widthOn(0, 1) > 0);
    QVERIFY(widthOn(image.width() - 1, -1) > widthOn(0, 1));
    ring.setShare(7.0);
    QCOMPARE(ring.share(), 1.0);
    ring.setShare(-1.0);
    QCOMPARE(ring.share(), 0.0);
}

QTEST_MAIN(TestPointsPanelLook)
#include "test_pointspanel_look.moc"
