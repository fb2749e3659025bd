#include "tests/support/children.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/textfit.h"
#include "tests/windows/windowtour.h"
#include "tests/windows/workbenchwindows.h"
#include "workbench/window/look/savefile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QScrollArea>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

constexpr int patience = 20000;
constexpr int moreThanThereAre = 100; // widgets in a window
constexpr QSize screens[] = {{800, 600}, {1024, 768}};

QSize withoutFrame(const QSize& screen) {
    return screen - QSize(2 * 8, 40);
}

// A row for each of these windows, on each screen, in each language.
void addRows(const std::vector<TourStop>& stops) {
    QTest::addColumn<int>("stop");
    QTest::addColumn<QSize>("room");
    QTest::addColumn<QByteArray>("language");
    for (const QSize screen : screens) {
        for (std::size_t i = 0; i < stops.size(); ++i) {
            for (const char* language : {"en", "de"}) {
                QTest::addRow("%s, %d x %d, %s", stops[i].name, screen.width(), screen.height(),
                              language)
                    << static_cast<int>(i) << withoutFrame(screen) << QByteArray(language);
            }
        }
    }
}

void addScreens() {
    QTest::addColumn<QSize>("room");
    QTest::addColumn<QByteArray>("language");
    for (const QSize screen : screens) {
        for (const char* language : {"en", "de"}) {
            QTest::addRow("%d x %d, %s", screen.width(), screen.height(), language)
                << withoutFrame(screen) << QByteArray(language);
        }
    }
}

QString sizeText(const QSize& size) {
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

// What is wrong with a window that may be so large; empty when nothing is.
QString faultsIn(const QWidget& window, const QSize& room) {
    QStringList faults;
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    if (least.boundedTo(room) != least) {
        faults << QStringLiteral("needs ") + sizeText(least);
    }
    if (window.size().boundedTo(room) != window.size()) {
        faults << QStringLiteral("is ") + sizeText(window.size());
    }
    const QStringList texts = textFit(window).faults;
    std::copy_if(texts.begin(), texts.end(), std::back_inserter(faults), [](const QString& fault) {
        // The menu bar has a key of its own for the menus behind its end.
        return !fault.startsWith(QLatin1String("QMenuBar")) &&
               !fault.contains(QLatin1String("qt_menubar_ext_button")) &&
               // This one shows what an address looks like.
               !fault.startsWith(QLatin1String("QLineEdit lineEdit_url"));
    });
    return faults.join(QLatin1Char('\n'));
}

// What is not laid out yet is not judged; what stays is told.
QString faultsOnScreen(QWidget& window, const QSize& room) {
    window.setMaximumSize(room); // as a screen would bound it
    QCoreApplication::postEvent(&window, new QEvent(QEvent::LayoutRequest)); // it tells nobody
    QString faults;
    static_cast<void>(QTest::qWaitFor(
        [&] {
            faults = faultsIn(window, room);
            return faults.isEmpty();
        },
        patience));
    return faults;
}

bool isWhole(const QWidget& widget) {
    return widget.visibleRegion().boundingRect() == widget.rect();
}

QString nameOf(const QWidget& widget) {
    return QStringLiteral("%1 %2").arg(QLatin1String(widget.metaObject()->className()),
                                       widget.objectName());
}

// Those of its buttons that nothing scrolls, and where the focus comes to.
QString outOfSight(QWidget& dialog) {
    QStringList names;
    const auto buttons = dialog.findChildren<QAbstractButton*>();
    const auto* const area = dialog.findChild<QScrollArea*>(QStringLiteral("scrollArea_dialog"));
    for (const QAbstractButton* button : buttons) {
        if (button->isVisible() && (area == nullptr || !area->isAncestorOf(button)) &&
            !isWhole(*button)) {
            names << nameOf(*button);
        }
    }
    for (int i = 0; i < moreThanThereAre && QApplication::focusWidget() != nullptr; ++i) {
        const QWidget& focus = *QApplication::focusWidget();
        if (!focus.inherits("QAbstractScrollArea") &&
            !QTest::qWaitFor([&focus] { return isWhole(focus); }, patience)) {
            names << nameOf(focus) + QStringLiteral(" with the focus");
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return names.join(QLatin1Char('\n'));
}

} // namespace

class TestWindowsScreens : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // The same program runs with several of them.
        QCOMPARE(QWidget().logicalDpiX(), qEnvironmentVariableIntValue("QT_FONT_DPI"));
    }

    void everythingHasRoomOnASmallScreen_data() { addRows(workbenchStops()); }
    void everythingHasRoomOnASmallScreen() {
        QFETCH(int, stop); // the first ones of the tour
        QFETCH(QSize, room);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        QString faults = QStringLiteral("not seen");
        visit(stop, [&](QWidget& window) { faults = faultsOnScreen(window, room); });
        QCOMPARE(faults, QString());
    }

    void everythingInADialogCanBeReached_data() { addRows(workbenchStops()); }
    void everythingInADialogCanBeReached() {
        QFETCH(int, stop);
        QFETCH(QSize, room);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        QString hidden = QStringLiteral("not seen");
        visit(stop, [&](QWidget& window) {
            if (qobject_cast<QDialog*>(&window) == nullptr) {
                hidden.clear();
                return;
            }
            hidden = faultsOnScreen(window, room) + outOfSight(window);
        });
        QCOMPARE(hidden, QString());
    }

    void severalDocksHaveRoomOnASmallScreen_data() { addRows(crowdedStops()); }
    void severalDocksHaveRoomOnASmallScreen() {
        QFETCH(int, stop);
        QFETCH(QSize, room);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        QString faults = QStringLiteral("not seen");
        crowdedStops()[static_cast<std::size_t>(stop)].open([&](QWidget& window) {
            constexpr int finest = 192;
            faults.clear();
            if (window.logicalDpiX() < finest || room.height() > screens[0].height()) {
                faults = faultsOnScreen(window, room);
                return;
            }
            // Bars, banner and a dock are higher than this screen is then; the width is kept.
            window.setMaximumWidth(room.width());
            QCoreApplication::postEvent(&window, new QEvent(QEvent::LayoutRequest));
            QTRY_VERIFY_WITH_TIMEOUT(window.minimumSizeHint().width() <= room.width() &&
                                         window.width() <= room.width(),
                                     patience);
        });
        QCOMPARE(faults, QString());
    }

    void filesAreAskedForOnASmallScreen_data() { addScreens(); }
    void filesAreAskedForOnASmallScreen() {
        QFETCH(QSize, room);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        const workbench::SaveFileTexts texts{QStringLiteral("Save"), QStringLiteral("Logs (*.log)"),
                                             QStringLiteral("log")};
        QSize least;
        QSize shown;
        ModalWatchdog dog(patience);
        dog.on(QStringLiteral("QFileDialog"), [&](QWidget* dialog) {
            least = dialog->minimumSizeHint().expandedTo(dialog->minimumSize());
            shown = dialog->size();
            static_cast<void>(QMetaObject::invokeMethod(dialog, "reject"));
        });
        const QString name = workbench::askForFileToSave(
            texts, workbench::suggestedFile(QStringLiteral("kestrel-workbench"), texts.suffix),
            nullptr);
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(name, QString());
        QVERIFY(!shown.isEmpty());
        QCOMPARE(sizeText(shown.expandedTo(least).boundedTo(room)),
                 sizeText(shown.expandedTo(least)));
    }

    void theToolBarShowsAllOfItsEntries_data() { addScreens(); }
    void theToolBarShowsAllOfItsEntries() {
        QFETCH(QSize, room);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        visit(stopNamed("main window, measuring"), [&](QWidget& window) {
            faultsOnScreen(window, room);
            const QToolBar& bar = *child<QToolBar>(window, "toolBar");
            const auto actions = bar.actions();
            const auto* const stop =
                window.findChild<QAction*>(QStringLiteral("actionStopRecording"));
            QCOMPARE(actions.last(), stop);
            for (QAction* action : actions) {
                const auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(action));
                if (button != nullptr) {
                    QVERIFY2(isWhole(*button), qPrintable(action->text()));
                    QVERIFY(!button->toolTip().isEmpty());
                    // On every usual screen with its word.
                    QVERIFY(window.logicalDpiX() > 96 || action != stop ||
                            button->toolButtonStyle() == Qt::ToolButtonTextBesideIcon);
                }
            }
        });
    }

    void whatTheFoldedMiddleSaysStandsBelow() {
        visit(stopNamed("main window, measuring"), [](QWidget& window) {
            const QWidget& middle = *child<QWidget>(window, "centralwidget");
            const QLabel& inShort = *child<QLabel>(window, "statusInShort");
            QTRY_VERIFY_WITH_TIMEOUT(middle.isVisible(), patience);
            QVERIFY(!inShort.isVisible()); // one place for each state
            const int enough = window.minimumSizeHint().height();
            window.setMaximumHeight(enough - 1);
            window.resize(window.width(), enough - 1);
            QCoreApplication::postEvent(&window, new QEvent(QEvent::LayoutRequest));
            QTRY_VERIFY_WITH_TIMEOUT(!middle.isVisible(), patience);
            QTRY_VERIFY_WITH_TIMEOUT(inShort.isVisible(), patience);
            QTRY_VERIFY_WITH_TIMEOUT(inShort.text().endsWith(QLatin1String(" lost")), patience);
            QCOMPARE(inShort.accessibleDescription(), inShort.text());
            QVERIFY(!inShort.accessibleName().isEmpty());
            window.setMaximumHeight(2 * enough);
            window.resize(window.width(), 2 * enough);
            QTRY_VERIFY_WITH_TIMEOUT(middle.isVisible(), patience);
            QVERIFY(!inShort.isVisible());
        });
    }
};

QTEST_MAIN(TestWindowsScreens)
#include "test_windows_screens.moc"
