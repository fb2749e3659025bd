#include "tests/windows/windowtour.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTabBar>
#include <QToolBar>
#include <QtTest>

#include <memory>

namespace {

constexpr int moreThanThereAre = 100; // widgets in a window

QString nameOf(const QWidget& widget) {
    return QStringLiteral("%1 %2 in %3")
        .arg(QLatin1String(widget.metaObject()->className()), widget.objectName(),
             widget.parentWidget() != nullptr ? widget.parentWidget()->objectName() : QString());
}

QStringList namesOf(const QSet<const QWidget*>& widgets) {
    QStringList names;
    for (const QWidget* widget : widgets) {
        names << nameOf(*widget);
    }
    names.sort();
    return names;
}

bool isInteractive(const QWidget& widget) {
    return widget.inherits("QAbstractButton") || widget.inherits("QAbstractSpinBox") ||
           widget.inherits("QLineEdit") || widget.inherits("QPlainTextEdit") ||
           widget.inherits("QComboBox") || widget.inherits("QAbstractItemView") ||
           widget.inherits("QProgressBar") || widget.inherits("QLCDNumber") ||
           widget.inherits("QTabBar") || widget.inherits("QSlider") ||
           ((widget.focusPolicy() & Qt::TabFocus) != 0 && // also what draws itself
            widget.focusProxy() == nullptr);
}

// Of Qt's own making inside a widget, which speaks for it, or left over from docks that went.
bool isPartOfAnother(const QWidget& widget) {
    const auto* const tabs = qobject_cast<const QTabBar*>(&widget);
    return (tabs != nullptr && tabs->count() == 0) ||
           widget.objectName().startsWith(QLatin1String("qt_")) || widget.inherits("QHeaderView") ||
           widget.inherits("QTableCornerButton") || widget.inherits("QComboBoxPrivateContainer") ||
           widget.inherits("QComboBoxListView") || widget.inherits("QLineEditIconButton") ||
           (widget.parentWidget() != nullptr && widget.parentWidget()->inherits("QComboBox"));
}

QSet<const QWidget*> reachable(const QWidget& window) {
    QSet<const QWidget*> widgets;
    const auto children = window.findChildren<QWidget*>();
    for (const QWidget* widget : children) {
        if (widget->isVisible() && widget->isEnabled() && widget->window() == &window &&
            (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr &&
            !isPartOfAnother(*widget)) {
            widgets << widget;
        }
    }
    return widgets;
}

// The widgets that a key walks through until it comes back to where it began.
QSet<const QWidget*> walk(Qt::Key key) {
    QSet<const QWidget*> visited;
    for (int i = 0; i < moreThanThereAre && QApplication::focusWidget() != nullptr; ++i) {
        visited << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), key,
                        key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    }
    return visited;
}

// Keys that stand in for more than one of these texts.
QStringList keysUsedTwice(const QStringList& texts) {
    QStringList keys;
    QStringList twice;
    for (const QString& text : texts) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty() && keys.contains(key)) {
            twice << key + QStringLiteral(" of ") + text;
        }
        keys << key;
    }
    return twice;
}

QStringList mnemonicTexts(const QWidget& window) {
    QStringList texts;
    const auto widgets = window.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (!widget->isVisible() || widget->window() != &window) {
            continue;
        }
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
            texts << (button->inherits("QToolButton") ? QString() : button->text());
        } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            texts << (label->buddy() != nullptr ? label->text() : QString());
        } else if (const auto* bar = qobject_cast<const QTabBar*>(widget)) {
            for (int tab = 0; tab < bar->count(); ++tab) {
                texts << bar->tabText(tab);
            }
        } else if (const auto* menus = qobject_cast<const QMenuBar*>(widget)) {
            const auto titles = menus->actions();
            for (const QAction* menu : titles) {
                texts << menu->text();
            }
        }
    }
    return texts;
}

QList<QMenu*> menusOf(const QWidget& window) {
    QList<QMenu*> menus;
    const auto* const main = qobject_cast<const QMainWindow*>(&window);
    if (main != nullptr) {
        const auto titles = main->menuBar()->actions();
        for (const QAction* entry : titles) {
            menus << entry->menu();
        }
    }
    return menus;
}

// The first button that a key presses in a window, by object name or text; empty for none.
QString buttonPressedBy(Qt::Key key, QWidget& window) {
    const auto pressed = std::make_shared<QStringList>();
    QObject context;
    const auto buttons = window.findChildren<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        const QString name = button->objectName().isEmpty() ? button->text() : button->objectName();
        QObject::connect(button, &QAbstractButton::clicked, &context,
                         [pressed, name] { *pressed << name; });
    }
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &window, key);
    return pressed->value(0);
}

} // namespace

class TestWindowsKeyboard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingInteractiveHasAName_data() { addTourRows(); }
    void everythingInteractiveHasAName() {
        QFETCH(int, stop);
        QStringList nameless;
        int named = 0;
        visit(stop, [&](QWidget& window) {
            const auto widgets = window.findChildren<QWidget*>();
            for (QWidget* widget : widgets) {
                if (!widget->isVisible() || !isInteractive(*widget) || isPartOfAnother(*widget)) {
                    continue;
                }
                QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(widget);
                if (face == nullptr || face->text(QAccessible::Name).isEmpty()) {
                    nameless << nameOf(*widget);
                } else {
                    ++named;
                }
            }
        });
        QCOMPARE(nameless.join(QLatin1Char('\n')), QString());
        QVERIFY(named > 0);
    }

    void tabulatorReachesEverythingFromTheFirstFocusOn_data() {
        QTest::addColumn<int>("stop");
        QTest::addColumn<int>("key");
        for (std::size_t i = 0; i < tourStops().size(); ++i) {
            QTest::addRow("%s, forwards", tourStops()[i].name) << int(i) << int(Qt::Key_Tab);
            QTest::addRow("%s, backwards", tourStops()[i].name) << int(i) << int(Qt::Key_Backtab);
        }
    }
    void tabulatorReachesEverythingFromTheFirstFocusOn() {
        QFETCH(int, stop);
        QFETCH(int, key);
        QSet<const QWidget*> expected;
        QStringList missed;
        bool focused = false;
        visit(stop, [&](QWidget& window) {
            expected = reachable(window);
            if (QApplication::focusWidget() == nullptr) {
                QTest::keyClick(&window, Qt::Key_Tab); // what the first key finds
            }
            focused = QApplication::focusWidget() != nullptr;
            missed =
                namesOf(QSet<const QWidget*>(expected).subtract(walk(static_cast<Qt::Key>(key))));
        });
        QVERIFY(focused);
        QVERIFY(!expected.isEmpty());
        QCOMPARE(missed.join(QLatin1Char('\n')), QString());
    }

    void enterPressesTheButtonOfTheDialog_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("connect dialog") << "Connect";
        QTest::newRow("connect dialog, no address") << "";
        QTest::newRow("module list") << "Close";
        QTest::newRow("about") << "Close";
        QTest::newRow("settings") << "pushButton_ok";
        QTest::newRow("calibration refused") << "OK";
        QTest::newRow("calibration error") << "OK";
        QTest::newRow("help") << "pushButton_exit";
        QTest::newRow("countdown") << "pushButton_2";
        QTest::newRow("progress") << "pb_cancel";
        QTest::newRow("result") << "pushButton_accept";
    }
    void enterPressesTheButtonOfTheDialog() {
        QFETCH(QString, button);
        QString pressed;
        visit(stopNamed(QTest::currentDataTag()),
              [&](QWidget& window) { pressed = buttonPressedBy(Qt::Key_Return, window); });
        QCOMPARE(pressed.remove(QLatin1Char('&')), button);
    }

    void escapeLeavesEveryDialogAndNotTheMainWindow_data() { addTourRows(); }
    void escapeLeavesEveryDialogAndNotTheMainWindow() {
        QFETCH(int, stop);
        bool isDialog = false;
        bool open = false;
        visit(stop, [&](QWidget& window) {
            isDialog = window.inherits("QDialog");
            const QPointer<QWidget> watched(&window);
            QWidget* const focus = QApplication::focusWidget();
            QTest::keyClick(focus != nullptr ? focus : &window, Qt::Key_Escape);
            open = !watched.isNull() && watched->isVisible();
        });
        QCOMPARE(open, !isDialog);
    }

    void theWorkbenchTellsNothingByColour_data() {
        QTest::addColumn<bool>("open");
        for (const char* name : {"main window", "connect dialog, no address", "module list"}) {
            QTest::newRow(name) << true;
        }
    }
    void theWorkbenchTellsNothingByColour() {
        QStringList coloured;
        visit(stopNamed(QTest::currentDataTag()), [&](QWidget& window) {
            const auto widgets = window.findChildren<QWidget*>();
            for (const QWidget* widget : widgets) {
                if (!widget->styleSheet().isEmpty() ||
                    widget->property("text").toString().contains(QLatin1String("color")) ||
                    (widget->inherits("QLabel") && widget->testAttribute(Qt::WA_SetPalette))) {
                    coloured << nameOf(*widget);
                }
                const auto* const view = qobject_cast<const QAbstractItemView*>(widget);
                for (int row = 0; view != nullptr && row < view->model()->rowCount(); ++row) {
                    for (int column = 0; column < view->model()->columnCount(); ++column) {
                        const QModelIndex cell = view->model()->index(row, column);
                        if (cell.data(Qt::ForegroundRole).isValid() ||
                            cell.data(Qt::BackgroundRole).isValid()) {
                            coloured << nameOf(*view);
                        }
                    }
                }
            }
        });
        QCOMPARE(coloured.join(QLatin1Char('\n')), QString());
    }

    void noMnemonicIsUsedTwice_data() {
        QTest::addColumn<int>("stop");
        QTest::addColumn<QByteArray>("language");
        for (const char* language : {"en", "de"}) {
            for (std::size_t i = 0; i < tourStops().size(); ++i) {
                QTest::addRow("%s, %s", tourStops()[i].name, language)
                    << int(i) << QByteArray(language);
            }
        }
    }
    void noMnemonicIsUsedTwice() {
        QFETCH(int, stop);
        QFETCH(QByteArray, language);
        const Surroundings surroundings(language.constData(), 100);
        QStringList twice;
        QStringList without;
        visit(stop, [&](QWidget& window) {
            twice = keysUsedTwice(mnemonicTexts(window));
            const auto menus = menusOf(window);
            for (const QMenu* menu : menus) {
                QStringList texts{};
                const auto items = menu->actions();
                for (const QAction* entry : items) {
                    if (!entry->isSeparator()) {
                        texts << entry->text();
                        if (QKeySequence::mnemonic(entry->text()).isEmpty()) {
                            without << entry->text();
                        }
                    }
                }
                twice << keysUsedTwice(texts);
            }
        });
        QCOMPARE(twice.join(QLatin1Char('\n')), QString());
        QCOMPARE(without.join(QLatin1Char('\n')), QString());
    }

    void whatTheToolBarOffersIsInTheMenusToo() {
        visit(0, [](QWidget& window) {
            QSet<QAction*> entries;
            const auto menus = menusOf(window);
            for (const QMenu* menu : menus) {
                const auto items = menu->actions();
                for (QAction* entry : items) {
                    entries << entry;
                }
            }
            const auto* const bar = window.findChild<QToolBar*>();
            QVERIFY(bar != nullptr && !bar->actions().isEmpty());
            const auto actions = bar->actions();
            for (QAction* action : actions) {
                QVERIFY2(action->isSeparator() || entries.contains(action),
                         qPrintable(action->text()));
            }
        });
    }
};

QTEST_MAIN(TestWindowsKeyboard)
#include "test_windows_keyboard.moc"
