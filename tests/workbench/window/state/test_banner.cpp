#include "tests/support/contrast.h"
#include "tests/support/datarows.h"
#include "workbench/window/state/banner.h"

#include <QAccessible>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyle>
#include <QStyleFactory>
#include <QToolButton>
#include <QtTest>

#include <algorithm>
#include <cmath>

using workbench::Banner;
using workbench::BannerTopic;
using workbench::Severity;

Q_DECLARE_METATYPE(workbench::Severity)
Q_DECLARE_METATYPE(workbench::BannerTopic)

namespace {

constexpr int patience = 5000;
constexpr double readable = 4.5; // contrast of text, as WCAG asks for it

QPalette dark() {
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::WindowText, Qt::white);
    return palette;
}

/// Counts what is painted.
struct Painted : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

class TestBanner : public QObject {
    Q_OBJECT

    std::unique_ptr<QMainWindow> m_window;
    Banner* m_banner = nullptr;
    QDockWidget* m_dock = nullptr;
    QToolBar* m_toolBar = nullptr;

    void makeWindow() {
        m_window = std::make_unique<QMainWindow>();
        m_window->menuBar()->addMenu("&File");
        m_window->statusBar();
        m_window->setCentralWidget(new QWidget);
        m_toolBar = m_window->addToolBar("Tools");
        m_toolBar->setObjectName("tools");
        m_toolBar->addAction("Do");
        m_dock = new QDockWidget("Dock", m_window.get());
        m_dock->setObjectName("dock");
        m_dock->setWidget(new QLabel("in the dock"));
        m_window->addDockWidget(Qt::TopDockWidgetArea, m_dock);
        m_banner = new Banner(m_window.get());
        m_banner->placeIn(*m_window);
        m_window->resize(700, 500);
    }

    void showWindow() {
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    QLabel* label(BannerTopic topic) const {
        return m_banner->findChild<QLabel*>(QStringLiteral("bannerText%1").arg(int(topic)));
    }
    QToolButton* button(BannerTopic topic) const {
        return m_banner->findChild<QToolButton*>(QStringLiteral("bannerDismiss%1").arg(int(topic)));
    }
    QRect place(const QWidget* widget) const {
        return {widget->mapTo(m_window.get(), QPoint(0, 0)), widget->size()};
    }
    bool isBetweenMenuAndDocks() const {
        return m_banner->isVisible() &&
               place(m_banner).top() > place(m_window->menuBar()).bottom() &&
               place(m_banner).top() > place(m_toolBar).bottom() &&
               place(m_banner).bottom() < place(m_dock).top();
    }

private Q_SLOTS:
    void initTestCase() {
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        qRegisterMetaType<BannerTopic>("workbench::BannerTopic");
    }
    void init() { makeWindow(); }
    void cleanup() {
        qApp->setPalette(QApplication::style()->standardPalette());
        m_window.reset();
    }

    void withoutALineThereIsNoStrip() {
        showWindow();
        QVERIFY(!m_banner->isVisible());
        m_banner->show();
        QVERIFY(!m_banner->isVisible());
    }

    void aLineStandsBetweenMenuAndDocksAndGoesAgain() {
        showWindow();
        m_banner->set(BannerTopic::NoData, Severity::Warning, "No data for 3 s");
        QTRY_VERIFY_WITH_TIMEOUT(isBetweenMenuAndDocks(), patience);
        QCOMPARE(place(m_banner).width(), m_window->width());
        QCOMPARE(m_banner->text(BannerTopic::NoData), QString("No data for 3 s"));
        m_banner->clear(BannerTopic::NoData);
        QVERIFY(!m_banner->isVisible());
        QVERIFY(m_banner->text(BannerTopic::NoData).isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(place(m_dock).top() - place(m_toolBar).bottom() < 10, patience);
    }

    void aLineSetBeforeTheWindowIsShownIsThere() {
        m_banner->set(BannerTopic::Notice, Severity::Information, "Early");
        showWindow();
        QTRY_VERIFY_WITH_TIMEOUT(isBetweenMenuAndDocks(), patience);
    }

    void levelsAreWordsAndSymbols_data() {
        QTest::addColumn<Severity>("level");
        QTest::addColumn<QString>("word");
        QTest::newRow("information") << Severity::Information << "Note: x";
        QTest::newRow("warning") << Severity::Warning << "Warning: x";
        QTest::newRow("error") << Severity::Error << "Error: x";
    }
    void levelsAreWordsAndSymbols() {
        QFETCH(Severity, level);
        QFETCH(QString, word);
        m_banner->set(BannerTopic::Notice, level, "x");
        showWindow();
        QCOMPARE(m_banner->lines(), QStringList(word));
        QCOMPARE(label(BannerTopic::Notice)->text(), word);
        QCOMPARE(label(BannerTopic::Notice)->accessibleName(), word);
        const auto symbols = m_banner->findChildren<QLabel*>();
        QCOMPARE(std::count_if(symbols.begin(), symbols.end(),
                               [](const QLabel* one) {
                                   return one->pixmap(Qt::ReturnByValue).width() >= 16;
                               }),
                 1);
    }

    void theStripIsReadableOnEveryPalette_data() {
        QTest::addColumn<bool>("onDark");
        QTest::addColumn<Severity>("level");
        for (const bool onDark : {false, true}) {
            for (const Severity level :
                 {Severity::Information, Severity::Warning, Severity::Error}) {
                row(qPrintable((onDark ? "dark, " : "light, ") + Banner::word(level)), onDark,
                    level);
            }
        }
    }
    void theStripIsReadableOnEveryPalette() {
        QFETCH(bool, onDark);
        QFETCH(Severity, level);
        m_banner->set(BannerTopic::Notice, level, "x");
        showWindow();
        qApp->setPalette(onDark ? dark() : QApplication::style()->standardPalette());
        QCoreApplication::processEvents();
        const QLabel* const text = label(BannerTopic::Notice);
        const QColor background =
            text->parentWidget()->grab().toImage().pixelColor(1, 1); // beside the text
        QVERIFY(background != qApp->palette().color(QPalette::Window));
        QCOMPARE(background.lightness() < 128, onDark);
        QVERIFY(contrast(text->palette().color(QPalette::WindowText), background) > readable);
    }

    void theMostImportantLineStandsOnTop() {
        m_banner->set(BannerTopic::Notice, Severity::Information, "notice");
        m_banner->set(BannerTopic::Connection, Severity::Error, "lost");
        m_banner->set(BannerTopic::Replay, Severity::Information, "replay");
        m_banner->set(BannerTopic::NoData, Severity::Warning, "no data");
        showWindow();
        const QStringList lines{"Error: lost", "Warning: no data", "Note: replay", "Note: notice"};
        QCOMPARE(m_banner->lines(), lines);
        int bottom = -1;
        for (const BannerTopic topic : {BannerTopic::Connection, BannerTopic::NoData,
                                        BannerTopic::Replay, BannerTopic::Notice}) {
            QTRY_VERIFY_WITH_TIMEOUT(place(label(topic)).top() > bottom, patience);
            bottom = place(label(topic)).bottom();
        }
        QTRY_VERIFY_WITH_TIMEOUT(isBetweenMenuAndDocks(), patience);
        m_banner->clear(BannerTopic::NoData);
        QCOMPARE(m_banner->lines().size(), 3);
        m_banner->clear(BannerTopic::NoData);
        QCOMPARE(m_banner->lines().size(), 3);
    }

    void aLongTextIsWrappedAndNotCutOff() {
        const QString text = QString("Many words of which not all fit into one line. ").repeated(8);
        m_banner->set(BannerTopic::NoData, Severity::Warning, text);
        showWindow();
        const QLabel* const shown = label(BannerTopic::NoData);
        const auto fits = [&] { return shown->height() >= shown->heightForWidth(shown->width()); };
        QTRY_VERIFY_WITH_TIMEOUT(fits() && shown->height() > 2 * shown->fontMetrics().height(),
                                 patience);
        QCOMPARE(m_window->width(), 700);
        const int before = shown->height();
        m_window->resize(400, 500);
        QTRY_VERIFY_WITH_TIMEOUT(fits() && shown->height() > before, patience);
        m_window->resize(1200, 500);
        QTRY_VERIFY_WITH_TIMEOUT(fits() && shown->height() < before, patience);
        QTRY_VERIFY_WITH_TIMEOUT(isBetweenMenuAndDocks(), patience);
    }

    void aLineOfTheOwnerHasNoButtonOneThatHappenedHas() {
        QSignalSpy dismissed(m_banner, &Banner::dismissed);
        m_banner->set(BannerTopic::NoData, Severity::Warning, "a state");
        m_banner->set(BannerTopic::Recording, Severity::Error, "The recording ended",
                      Banner::Ending::ByUser);
        showWindow();
        QVERIFY(!button(BannerTopic::NoData)->isVisible());
        QToolButton* const dismiss = button(BannerTopic::Recording);
        QVERIFY(dismiss->isVisible());
        QCOMPARE(dismiss->accessibleName(), QString("Dismiss: The recording ended"));
        dismiss->setFocus();
        QTest::keyClick(dismiss, Qt::Key_Space);
        QCOMPARE(m_banner->lines(), QStringList("Warning: a state"));
        QCOMPARE(dismissed.count(), 1);
        QCOMPARE(dismissed.first().first().value<BannerTopic>(), BannerTopic::Recording);
        m_banner->set(BannerTopic::Recording, Severity::Error, "again", Banner::Ending::ByUser);
        QCOMPARE(m_banner->lines().size(), 2);
    }

    void textsOfOthersAreNotInterpreted() {
        m_banner->set(BannerTopic::Notice, Severity::Warning, "<b>bold</b>");
        QCOMPARE(label(BannerTopic::Notice)->textFormat(), Qt::PlainText);
    }

    void assistiveToolsReadTheWholeLine() {
        QCOMPARE(m_banner->accessibleName(), QString("Notices"));
        m_banner->set(BannerTopic::NoData, Severity::Warning, "one");
        QLabel* const text = label(BannerTopic::NoData);
        const auto name = [text] {
            return QAccessible::queryAccessibleInterface(text)->text(QAccessible::Name);
        };
        QCOMPARE(name(), QString("Warning: one"));
        m_banner->set(BannerTopic::NoData, Severity::Error, "two");
        QCOMPARE(label(BannerTopic::NoData), text);
        QCOMPARE(name(), QString("Error: two"));
    }

    void aSavedStateDoesNotShowHideOrMoveTheStrip() {
        const QByteArray withoutBanner = [] {
            QMainWindow other;
            auto* const bar = other.addToolBar("Tools");
            bar->setObjectName("tools");
            return other.saveState();
        }();
        showWindow();
        const QByteArray empty = m_window->saveState();
        m_banner->set(BannerTopic::Notice, Severity::Warning, "x");
        const QByteArray shown = m_window->saveState();
        for (const QByteArray& state : {empty, shown, withoutBanner}) {
            QVERIFY(m_window->restoreState(state));
            m_banner->placeIn(*m_window);
            QTRY_VERIFY_WITH_TIMEOUT(isBetweenMenuAndDocks(), patience);
        }
        m_banner->clear(BannerTopic::Notice);
        QVERIFY(m_window->restoreState(shown));
        QVERIFY(!m_banner->isVisible());
        QVERIFY(!m_banner->toggleViewAction()->isVisible());
    }

    void aLineCanBePaintedWithoutTheEventLoopAndMovesNothing_data() {
        QTest::addColumn<bool>("withStrip");
        QTest::newRow("alone") << false;
        QTest::newRow("under the strip") << true;
    }
    void aLineCanBePaintedWithoutTheEventLoopAndMovesNothing() {
        QFETCH(bool, withStrip);
        if (withStrip) {
            m_banner->set(BannerTopic::NoData, Severity::Warning, "no data");
        }
        showWindow();
        QTRY_VERIFY_WITH_TIMEOUT(!withStrip || isBetweenMenuAndDocks(), patience);
        const QRect before = place(m_dock);
        Painted painted;
        m_dock->widget()->installEventFilter(&painted);
        m_banner->showAtOnce(Severity::Information, "Waiting");
        auto* const line = m_window->findChild<QWidget*>("bannerLineAtOnce");
        QVERIFY(line->isVisible());
        QCOMPARE(place(line).width(), m_window->width());
        QVERIFY(std::abs(place(line).top() - before.top()) < 10);
        QVERIFY(!withStrip || place(line).top() > place(m_banner).bottom() - 2);
        QVERIFY(line->height() >= line->fontMetrics().height());
        QCOMPARE(place(m_dock), before);
        QCOMPARE(painted.count, 0);
        QCOMPARE(m_banner->lines().constLast(), QString("Note: Waiting"));
        m_banner->hideAtOnce();
        QCOMPARE(m_window->findChild<QWidget*>("bannerLineAtOnce"), nullptr);
        QCOMPARE(m_banner->lines().size(), withStrip ? 1 : 0);
        QCOMPARE(place(m_dock), before);
    }
};

QTEST_MAIN(TestBanner)
#include "test_banner.moc"
