#include "tests/support/datarows.h"
#include "tests/support/fulldisk.h"
#include "tests/support/modalwatchdog.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/log/logdock.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdlib>
#include <memory>

using workbench::LogDock;
using workbench::LogModel;

namespace {
constexpr int patience = 5000;
}

class TestLogDock : public QObject {
    Q_OBJECT

    template <typename Widget>
    static Widget* child(const LogDock& dock, const char* name) {
        return dock.findChild<Widget*>(QLatin1String(name));
    }

private Q_SLOTS:
    // In Qt's own style, on a light and on a dark palette.
    void aLevelIsAWordASymbolAndAColour_data() {
        QTest::addColumn<QColor>("base");
        row("light", QColor(Qt::white));
        row("dark", QColor(30, 30, 30));
    }
    void aLevelIsAWordASymbolAndAColour() {
        QFETCH(QColor, base);
        LogModel log;
        LogDock dock(log);
        auto* const view = child<QTableView>(dock, "tableView_log");
        const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
        view->setStyle(fusion.get());
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        view->setPalette(palette);
        log.info(QStringLiteral("all is well"));
        log.problem(QStringLiteral("all is lost"));
        log.add(QStringLiteral("a"), QStringLiteral("b"), 7, QStringLiteral("whatever that is"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 3, patience);
        const auto look = [view](int row, int role) {
            return view->model()->index(row, LogModel::LevelColumn).data(role);
        };
        const auto symbol = [&look](int row) {
            return look(row, Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
        };
        QCOMPARE(look(0, Qt::DisplayRole).toString(), QStringLiteral("Information"));
        QCOMPARE(look(1, Qt::DisplayRole).toString(), QStringLiteral("Error"));
        QCOMPARE(look(2, Qt::DisplayRole).toString(), QStringLiteral("Level 7"));
        QVERIFY(!symbol(0).isNull() && !symbol(1).isNull());
        QVERIFY(symbol(0) != symbol(1));
        QVERIFY(!look(2, Qt::DecorationRole).isValid());
        QVERIFY(!look(0, Qt::BackgroundRole).isValid());
        const QColor error = look(1, Qt::BackgroundRole).value<QColor>();
        QVERIFY(error.red() - base.red() > error.green() - base.green()); // redder than its row
        QVERIFY(std::abs(error.lightness() - base.lightness()) < 60);     // its words stay readable
        view->setStyle(nullptr);
    }

    void errorsThatNobodyHasSeenAreCountedInTheTitle() {
        LogModel log;
        QMainWindow window;
        auto* const dock = new LogDock(log, &window);
        dock->toggleViewAction()->setText(QStringLiteral("&Log"));
        auto* const other = new QDockWidget(QStringLiteral("Other"), &window);
        window.addDockWidget(Qt::BottomDockWidgetArea, dock);
        window.addDockWidget(Qt::BottomDockWidgetArea, other);
        window.tabifyDockWidget(dock, other);
        other->raise();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY_WITH_TIMEOUT(!other->visibleRegion().isEmpty(), patience);
        log.info(QStringLiteral("nothing bad"));
        log.problem(QStringLiteral("one"));
        log.problem(QStringLiteral("two"));
        QTRY_COMPARE_WITH_TIMEOUT(dock->windowTitle(), QStringLiteral("Log – new errors: 2"),
                                  patience);
        QCOMPARE(dock->toggleViewAction()->text(), QStringLiteral("&Log"));
        log.problem(QStringLiteral("two")); // the same once more
        QTRY_COMPARE_WITH_TIMEOUT(log.repetitions(2), 2, patience);
        QCOMPARE(dock->windowTitle(), QStringLiteral("Log – new errors: 2"));
        dock->raise();
        QTRY_COMPARE_WITH_TIMEOUT(dock->windowTitle(), QStringLiteral("Log"), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!dock->visibleRegion().isEmpty(), patience);
        log.problem(QStringLiteral("seen at once"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 4, patience);
        QCOMPARE(dock->windowTitle(), QStringLiteral("Log"));
        dock->hide();
        log.problem(QStringLiteral("seen at once"));
        QTRY_COMPARE_WITH_TIMEOUT(dock->windowTitle(), QStringLiteral("Log – new errors: 1"),
                                  patience);
        log.clear();
        QCOMPARE(dock->windowTitle(), QStringLiteral("Log"));
    }

    void errorsThatTheFilterLeavesOutAreNotSeen() {
        LogModel log;
        LogDock dock(log);
        dock.resize(600, 300);
        dock.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dock));
        auto* const levels = child<QComboBox>(dock, "comboBox_level");
        levels->setCurrentIndex(levels->findData(LogModel::Information));
        log.problem(QStringLiteral("hidden"));
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log – new errors: 1"),
                                  patience);
        log.info(QStringLiteral("shown"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        QCOMPARE(dock.windowTitle(), QStringLiteral("Log – new errors: 1"));
        levels->setCurrentIndex(levels->findData(LogModel::Problem));
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log"), patience);
        child<QLineEdit>(dock, "lineEdit_filter")->setText(QStringLiteral("something else"));
        log.problem(QStringLiteral("hidden, too"));
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log – new errors: 1"),
                                  patience);
        child<QLineEdit>(dock, "lineEdit_filter")->clear();
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log"), patience);
    }

    void errorsBelowWhatIsInViewAreNotSeen() {
        LogModel log;
        LogDock dock(log);
        dock.resize(600, 300);
        dock.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dock));
        for (int line = 0; line < 200; ++line) {
            log.info(QString::number(line));
        }
        QScrollBar* const bar = child<QTableView>(dock, "tableView_log")->verticalScrollBar();
        QTRY_VERIFY_WITH_TIMEOUT(bar->maximum() > 0 && bar->value() == bar->maximum(), patience);
        bar->setValue(0);
        log.problem(QStringLiteral("far below"));
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log – new errors: 1"),
                                  patience);
        bar->setValue(bar->maximum());
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log"), patience);
    }

    // One that has gone by while nobody looked is shown, and seen only then.
    void anErrorAboveWhatIsInViewIsNotSeen() {
        LogModel log;
        LogDock dock(log);
        dock.resize(600, 300);
        dock.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dock));
        auto* const view = child<QTableView>(dock, "tableView_log");
        const auto fill = [&log](int lines) {
            for (int line = 0; line < lines; ++line) {
                log.info(QString::number(log.rowCount() + line));
            }
        };
        dock.hide();
        log.problem(QStringLiteral("one"));
        fill(200);
        log.problem(QStringLiteral("two"));
        fill(200);
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 402, patience);
        QCOMPARE(dock.windowTitle(), QStringLiteral("Log – new errors: 2"));
        dock.show();
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log – new errors: 1"),
                                  patience);
        QCOMPARE(view->verticalScrollBar()->value(), 0);
        view->scrollToBottom();
        QCOMPARE(dock.windowTitle(), QStringLiteral("Log – new errors: 1"));
        view->scrollTo(view->model()->index(201, 0), QAbstractItemView::PositionAtCenter);
        QTRY_COMPARE_WITH_TIMEOUT(dock.windowTitle(), QStringLiteral("Log"), patience);
        // One that goes by while the end is followed was in view.
        view->scrollToBottom();
        log.problem(QStringLiteral("three"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 403, patience);
        fill(200);
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 603, patience);
        QTRY_COMPARE_WITH_TIMEOUT(view->verticalScrollBar()->value(),
                                  view->verticalScrollBar()->maximum(), patience);
        QCOMPARE(dock.windowTitle(), QStringLiteral("Log"));
    }

    void whatALineSaysHasRoomInANarrowDock() {
        LogModel log;
        LogDock dock(log);
        log.problem(QStringLiteral("what one wants to read"));
        dock.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dock));
        auto* const view = child<QTableView>(dock, "tableView_log");
        const auto resizeTo = [&](int letters) {
            dock.resize(letters * view->fontMetrics().averageCharWidth(), 1);
            QCoreApplication::processEvents();
        };
        resizeTo(200);
        QVERIFY(!view->isColumnHidden(LogModel::CategoryColumn));
        QVERIFY(!view->isColumnHidden(LogModel::SourceColumn));
        resizeTo(1);
        QVERIFY(view->isColumnHidden(LogModel::CategoryColumn));
        QVERIFY(view->isColumnHidden(LogModel::SourceColumn));
        QVERIFY(view->columnWidth(LogModel::TextColumn) >=
                10 * view->fontMetrics().averageCharWidth());
        QVERIFY(view->viewport()->height() >= 2 * view->verticalHeader()->defaultSectionSize());
        QCOMPARE(view->horizontalScrollBar()->maximum(), 0);
        resizeTo(200);
        QVERIFY(!view->isColumnHidden(LogModel::CategoryColumn));
    }

    void linesAreFilteredByLevelAndSource() {
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one"));
        log.problem(QStringLiteral("two"));
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 1,
                QStringLiteral("Error: three"));
        log.add(QStringLiteral("standard"), QStringLiteral("KESTREL3"), 2, QStringLiteral("four"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 4, patience);
        auto* const levels = child<QComboBox>(dock, "comboBox_level");
        auto* const sources = child<QComboBox>(dock, "comboBox_source");
        const auto shown = [&dock] {
            QStringList texts{};
            const QStringList lines = dock.shownText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            for (const QString& line : lines) {
                texts += line.section(QLatin1Char('\t'), -1);
            }
            return texts;
        };
        const auto textsOf = [](const QComboBox& box) {
            QStringList texts{};
            for (int i = 0; i < box.count(); ++i) {
                texts += box.itemText(i);
            }
            return texts;
        };
        QCOMPARE(textsOf(*levels), QStringList({"All levels", "Information", "Error"}));
        QCOMPARE(textsOf(*sources), QStringList({"All sources", "WORKBENCH", "KESTREL3"}));
        QCOMPARE(shown(), QStringList({"one", "two", "Error: three", "four"}));
        levels->setCurrentIndex(2);
        QCOMPARE(shown(), QStringList({"two", "Error: three"}));
        sources->setCurrentIndex(2);
        QCOMPARE(shown(), QStringList("Error: three"));
        levels->setCurrentIndex(1);
        QCOMPARE(shown(), QStringList());
        levels->setCurrentIndex(0);
        QCOMPARE(shown(), QStringList({"Error: three", "four"}));
        sources->setCurrentIndex(0);
        QCOMPARE(shown().size(), 4);
    }

    void theBoxOfSourcesIsBoundedAndTakesThemAsTheyAre() {
        LogModel log;
        LogDock dock(log);
        const auto* const sources = child<QComboBox>(dock, "comboBox_source");
        log.add(QStringLiteral("a"), QStringLiteral("All sources"), 1, QStringLiteral("x"));
        log.add(QStringLiteral("a"), QString(1000, QLatin1Char('x')), 1, QStringLiteral("x"));
        for (int i = 0; i < 1000; ++i) {
            log.add(QStringLiteral("a"), QString::number(i), 1, QStringLiteral("x"));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1002, patience);
        QVERIFY(sources->count() <= 100);
        QCOMPARE(sources->itemText(1), QStringLiteral("All sources"));
        QCOMPARE(sources->itemText(2), QStringLiteral("0"));
    }

    void theFilterShowsMatchingLinesAlone() {
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one apple"));
        log.problem(QStringLiteral("two pears [a-z]"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        auto* const view = child<QTableView>(dock, "tableView_log");
        auto* const filter = child<QLineEdit>(dock, "lineEdit_filter");
        filter->setClearButtonEnabled(false); // its fading outlives a dock that is not shown
        filter->setText(QStringLiteral("APPLE"));
        QCOMPARE(view->model()->rowCount(), 1);
        QVERIFY(dock.shownText().contains(QStringLiteral("one apple")));
        QVERIFY(!dock.shownText().contains(QStringLiteral("pears")));
        filter->setText(QStringLiteral("[a-z]")); // plain text, no pattern
        QCOMPARE(view->model()->rowCount(), 1);
        filter->clear();
        QCOMPARE(view->model()->rowCount(), 2);
    }

    void selectedLinesAreCopied() {
        LogModel log;
        LogDock dock(log);
        for (const char* text : {"one", "two", "three"}) {
            log.info(QLatin1String(text));
        }
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 3, patience);
        child<QTableView>(dock, "tableView_log")->selectRow(1);
        QVERIFY(dock.shownText().endsWith(QStringLiteral("two\n")));
        QCOMPARE(dock.shownText().count(QLatin1Char('\n')), 1);
    }

    void theWholeLogIsSaved() {
        const QTemporaryDir folder;
        LogModel log;
        const LogDock dock(log);
        log.info(QStringLiteral("grün"));
        log.problem(QStringLiteral("rot"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 2, patience);
        QString error;
        const QString path = folder.filePath(QStringLiteral("log.txt"));
        QVERIFY2(dock.saveTo(path, &error), qPrintable(error));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString saved = QString::fromUtf8(file.readAll());
        QCOMPARE(saved, log.toText());
        const QStringList lines = saved.split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 3);
        const QString head = QStringLiteral("\tworkbench\tWORKBENCH\t");
        QVERIFY2(lines.at(0).endsWith(head + QStringLiteral("Information\tgrün")),
                 qPrintable(saved));
        QVERIFY2(lines.at(1).endsWith(head + QStringLiteral("Error\trot")), qPrintable(saved));
        bool isSaved = true;
        {
            const FullDisk disk(16);
            isSaved = dock.saveTo(path, &error);
        }
        QVERIFY(!isSaved);
        QVERIFY(!error.isEmpty());
        QVERIFY(!dock.saveTo(QStringLiteral("/no/such/folder/log"), &error));
        QVERIFY(!error.isEmpty());
    }

    void theButtonAsksForAFileAndSaysWhenItCannotBeWritten() {
        const QTemporaryDir folder;
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        QString suggested;
        QString told;
        const auto saveAs = [&](const QString& name) {
            ModalWatchdog dog(patience);
            dog.on(QStringLiteral("QFileDialog"), [&](QWidget* widget) {
                auto* const line = widget->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
                suggested = line->text();
                line->setText(name);
                static_cast<void>(QMetaObject::invokeMethod(widget, "accept"));
            });
            dog.on(QStringLiteral("messageBox_saveLog"), [&](QWidget* widget) {
                told = qobject_cast<QMessageBox*>(widget)->text();
                widget->close();
            });
            child<QPushButton>(dock, "pushButton_save")->click();
            return dog.strays();
        };
        QCOMPARE(saveAs(folder.filePath(QStringLiteral("seen"))), QStringList());
        const QRegularExpression usual(
            QStringLiteral("^kestrel-workbench_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.log$"));
        QVERIFY2(usual.match(suggested).hasMatch(), qPrintable(suggested));
        QFile file(folder.filePath(QStringLiteral("seen.log")));
        QVERIFY2(file.open(QIODevice::ReadOnly), "the suffix is added");
        QCOMPARE(QString::fromUtf8(file.readAll()), log.toText());
        QCOMPARE(told, QString());
        const QString cut = folder.filePath(QStringLiteral("cut.log"));
        {
            const FullDisk disk(16);
            QCOMPARE(saveAs(cut), QStringList());
        }
        QVERIFY2(told.startsWith(cut + QStringLiteral(" could not be written: ")),
                 qPrintable(told));
        QVERIFY(!QFile::exists(cut));
    }

    void clearingRemovesAllLines() {
        LogModel log;
        LogDock dock(log);
        log.info(QStringLiteral("one"));
        QTRY_COMPARE_WITH_TIMEOUT(log.rowCount(), 1, patience);
        child<QPushButton>(dock, "pushButton_clear")->click();
        QCOMPARE(log.rowCount(), 0);
    }
};

QTEST_MAIN(TestLogDock)
#include "test_logdock.moc"
