#include "tests/support/datarows.h"
#include "workbench/window/look/screenroom.h"
#include "workbench/window/settings/windowsettings.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

using workbench::ControllerAddress;
using workbench::EntryMemo;
using workbench::WindowSettings;

class TestWindowSettings : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("s.ini")); }

    void write(const QByteArray& content) {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    struct Window : QMainWindow {
        QDockWidget* dock;
        Window() {
            setObjectName(QStringLiteral("w"));
            dock = new QDockWidget(QStringLiteral("Log"), this);
            dock->setObjectName(QStringLiteral("log"));
            addDockWidget(Qt::BottomDockWidgetArea, dock);
        }
    };

private Q_SLOTS:
    void init() {
        QFile::remove(path());
        QFile::remove(path() + QStringLiteral(".damaged"));
    }

    void rectanglesAreMovedAndShrunkOntoAScreen_data() {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QRect>("expected");
        row("fits", QRect(10, 20, 300, 200), QRect(10, 20, 300, 200));
        row("too far right", QRect(840, 20, 300, 200), QRect(700, 20, 300, 200));
        row("too far down", QRect(10, 790, 300, 200), QRect(10, 600, 300, 200));
        row("above the top", QRect(10, -90, 300, 200), QRect(10, 0, 300, 200));
        row("larger than the screen", QRect(-50, -50, 5000, 4000), QRect(0, 0, 1000, 800));
        row("on the second screen", QRect(1100, 20, 300, 200), QRect(1100, 20, 300, 200));
        row("mostly on the second screen", QRect(950, 20, 300, 200), QRect(1000, 20, 300, 200));
        row("on no screen", QRect(9000, 9000, 300, 200), QRect(700, 600, 300, 200));
    }
    void rectanglesAreMovedAndShrunkOntoAScreen() {
        QFETCH(QRect, rect);
        const QVector<QRect> screens{QRect(0, 0, 1000, 800), QRect(1000, 0, 500, 400)};
        QTEST(WindowSettings::clamped(rect, screens), "expected");
    }

    void onASmallScreenTheFrameIsInSightToo() {
        constexpr int titleBar = 30; // of a usual letter's height of 16
        const QRect screen(0, 0, 800, 600);
        const QRect inside = WindowSettings::clamped(
            QRect(-5, -5, 5000, 4000), {workbench::insideFrame(screen, titleBar / 2)});
        QVERIFY2(screen.contains(inside.adjusted(-4, -titleBar, 4, 4)), "the frame is cut off");
        QVERIFY2(inside.width() >= 784 && inside.height() >= 560, "room is given away");
    }

    void theLastThreeControllersComeBackWithTheirPorts() {
        const auto texts = [](const QVector<ControllerAddress>& controllers) {
            QStringList list;
            for (const ControllerAddress& address : controllers) {
                list += address.toString() + QStringLiteral(" data %1").arg(address.dataPort);
            }
            return list;
        };
        {
            WindowSettings settings(path());
            QVERIFY(settings.recentControllers().isEmpty());
            for (const char* text : {"first:1", "a:47300", "[::1]:47301", "a:47302", "a:47300"}) {
                ControllerAddress address;
                QVERIFY(address.parse(QLatin1String(text)));
                address.dataPort = 5000;
                settings.setAddress(address);
            }
        }
        QCOMPARE(texts(WindowSettings(path()).recentControllers()),
                 QStringList({"a:47300 data 5000", "a:47302 data 5000", "[::1]:47301 data 5000"}));
    }

    void anOldFileHasOneControllerAndADamagedOneNone_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("controller");
        row("hosts only", QByteArray("[connection]\nhosts=pi, mu\nport=4711\n"),
            QStringLiteral("pi:4711"));
        row("none", QByteArray("[window]\nmaximized=false\n"), QString());
        row("no port of data", QByteArray("[connection]\ncontrollers=pi:4711\n"), QString());
        row("a bad port", QByteArray("[connection]\ncontrollers=pi:99999/0\n"), QString());
        row("a bad port of data", QByteArray("[connection]\ncontrollers=pi:1/65536\n"), QString());
        row("no host", QByteArray("[connection]\ncontrollers=/1\n"), QString());
    }
    void anOldFileHasOneControllerAndADamagedOneNone() {
        QFETCH(QByteArray, content);
        QFETCH(QString, controller);
        write(content);
        WindowSettings settings(path());
        const QVector<ControllerAddress> controllers = settings.recentControllers();
        QCOMPARE(controllers.isEmpty() ? QString() : controllers.first().toString(), controller);
        QCOMPARE(!settings.takeNotice().isEmpty(), content.contains("controllers"));
    }

    void theModulesEntriesComeBackInTheirLanguage() {
        const QVector<EntryMemo> entries{
            {QStringLiteral("&Tracking"), 300, QStringLiteral("&Settings, all"), 50},
            {QStringLiteral("Ansicht"), -1, QStringLiteral("Größe"), 270}};
        {
            WindowSettings settings(path());
            QVERIFY(settings.moduleEntries().isEmpty());
            QVector<EntryMemo> more = entries;
            more += EntryMemo{QStringLiteral("Menu"), 1, QStringLiteral("tab\tinside"), 1};
            more += EntryMemo{QStringLiteral("Menu"), 1, QString(), 1};
            more += EntryMemo{QStringLiteral("Menu"), 1, QString(100000, QLatin1Char('x')), 1};
            settings.setModuleEntries(more);
        }
        {
            WindowSettings settings(path());
            QCOMPARE(settings.moduleEntries(), entries);
            QCOMPARE(settings.takeNotice(), QString());
        }
        QSettings(path(), QSettings::IniFormat).setValue(QStringLiteral("modules/language"), "xx");
        WindowSettings settings(path());
        QVERIFY(settings.moduleEntries().isEmpty());
        QCOMPARE(settings.takeNotice(), QString());
    }

    void damagedEntriesAreNone_data() {
        QTest::addColumn<QByteArray>("entries");
        row("a word", QByteArray("rubbish"));
        row("no numbers", QByteArray("a\\tb\\tMenu\\tEntry"));
        row("no text", QByteArray("1\\t2\\tMenu\\t"));
        row("no menu", QByteArray("1\\t2\\t\\tEntry"));
        row("too much", QByteArray("1\\t2\\tMenu\\tEntry\\tmore"));
        row("one good, one bad", QByteArray("1\\t2\\tMenu\\tEntry, x"));
        row("too long", "1\\t2\\tMenu\\t" + QByteArray(100000, 'x'));
    }
    void damagedEntriesAreNone() {
        QFETCH(QByteArray, entries);
        write("[modules]\nlanguage=en\nentries=" + entries + "\n");
        WindowSettings settings(path());
        QVERIFY(settings.moduleEntries().isEmpty());
        QVERIFY(!settings.takeNotice().isEmpty());
    }

    void windowAndDocksComeBack() {
        {
            Window window;
            window.setGeometry(30, 40, 500, 400);
            window.dock->hide();
            WindowSettings settings(path());
            settings.save(window);
        }
        Window window;
        WindowSettings settings(path());
        settings.restore(window);
        QCOMPARE(window.geometry(), QRect(30, 40, 500, 400));
        QVERIFY(window.dock->isHidden());
        QCOMPARE(settings.takeNotice(), QString());
    }

    void sizesOfDocksComeBackEachSetUnderItsName() {
        const QMap<QString, QSize> start{{QStringLiteral("LogDock"), QSize(1080, 250)}};
        const QMap<QString, QSize> working{
            {QStringLiteral("LogDock"), QSize(1080, 270)},
            {QStringLiteral("moduleDock_x, y; \"z\" / ä"), QSize(1, 32767)}};
        {
            WindowSettings settings(path());
            settings.setDockSizes("start", start);
            settings.setDockSizes("working", working);
            settings.save(Window());
        }
        WindowSettings settings(path());
        QCOMPARE(settings.dockSizes("start"), start);
        QCOMPARE(settings.dockSizes("working"), working);
        QVERIFY(settings.dockSizes("other").isEmpty());
        QCOMPARE(settings.takeNotice(), QString());
    }

    void aDockWhoseNameCannotBeKeptIsLeftOut() {
        WindowSettings settings(path());
        settings.setDockSizes("start", {{QStringLiteral("a\tb"), QSize(10, 10)},
                                        {QStringLiteral("c"), QSize(10, 10)}});
        QCOMPARE(settings.dockSizes("start").keys(), QStringList(QStringLiteral("c")));
        QCOMPARE(settings.takeNotice(), QString());
    }

    void damagedSizesOfDocksAreNone_data() {
        QTest::addColumn<QByteArray>("sizes");
        row("no size", QByteArray("LogDock"));
        row("no name", QByteArray("\"10\\t10\\t\""));
        row("too many parts", QByteArray("\"10\\t10\\tLogDock\\tx\""));
        row("no width", QByteArray("\"x\\t10\\tLogDock\""));
        row("nothing high", QByteArray("\"10\\t0\\tLogDock\""));
        row("negative", QByteArray("\"-10\\t10\\tLogDock\""));
        row("larger than any window", QByteArray("\"10\\t32768\\tLogDock\""));
        row("the second of them", QByteArray("\"10\\t10\\tLogDock\", x"));
    }

    void damagedSizesOfDocksAreNone() {
        QFETCH(QByteArray, sizes);
        write("[window]\ndockSizes_start=" + sizes + "\n");
        WindowSettings settings(path());
        QVERIFY(settings.dockSizes("start").isEmpty());
        QVERIFY(!settings.takeNotice().isEmpty());
    }

    void theLastControllerIsRemembered() {
        {
            WindowSettings settings(path());
            QCOMPARE(settings.address().toString(), QStringLiteral("127.0.0.1:47300"));
            settings.setAddress({QStringLiteral("a.example"), 1234, 5678});
            settings.setAddress({QStringLiteral("fe80::1"), 1235, 0});
            settings.setCommandHistory({QStringLiteral("one"), QStringLiteral("two")});
        }
        WindowSettings settings(path());
        QCOMPARE(settings.address().toString(), QStringLiteral("[fe80::1]:1235"));
        QCOMPARE(settings.recentHosts(),
                 QStringList({QStringLiteral("fe80::1"), QStringLiteral("a.example")}));
        QCOMPARE(settings.commandHistory(),
                 QStringList({QStringLiteral("one"), QStringLiteral("two")}));
        QCOMPARE(settings.takeNotice(), QString());
    }

    void aMaximizedWindowComesBackMaximized() {
        {
            Window window;
            window.setWindowState(Qt::WindowMaximized);
            WindowSettings(path()).save(window);
        }
        Window window;
        WindowSettings settings(path());
        settings.restore(window);
        QVERIFY(window.isMaximized());
        QCOMPARE(settings.takeNotice(), QString());
    }

    void thePort0IsTheUsualOne() {
        write("[connection]\nport=0\n");
        WindowSettings settings(path());
        QCOMPARE(settings.address().toString(), QStringLiteral("127.0.0.1:47300"));
        QCOMPARE(settings.takeNotice(), QString());
    }

    void noFileIsNoReasonForANotice() {
        Window window;
        WindowSettings settings(path());
        settings.restore(window);
        QVERIFY(window.width() > 500);
        QCOMPARE(settings.takeNotice(), QString());
    }

    void damagedFilesGiveDefaultsAndOneNotice_data() {
        QTest::addColumn<QByteArray>("content");
        row("binary", QByteArray("\x7f\x45LF\0\1\2\xff\xfe rubbish\n]][[\n", 24));
        row("no keys", QByteArray("this is no settings file\nat all\n"));
        row("rect is a word", QByteArray("[window]\nrect=wide\n"));
        row("rect is empty", QByteArray("[window]\nrect=@Rect(0 0 0 0)\n"));
        row("rect is negative", QByteArray("[window]\nrect=@Rect(0 0 -5 -5)\n"));
        row("rect is huge", QByteArray("[window]\nrect=@Rect(0 0 2000000000 1000)\n"));
        row("rect is far away",
            QByteArray("[window]\nrect=@Rect(2000000000 -2000000000 1000 800)\n"));
        row("rect overflows",
            QByteArray("[window]\nrect=@Rect(2147483647 2147483647 2147483647 2147483647)\n"));
        row("docks", QByteArray("[window]\ndocks=rubbish\n"));
        row("port", QByteArray("[connection]\nport=many\n"));
        row("port too large", QByteArray("[connection]\nport=70000\n"));
        row("host", QByteArray("[connection]\nhosts=a b c\n"));
    }
    void damagedFilesGiveDefaultsAndOneNotice() {
        QFETCH(QByteArray, content);
        write(content);
        Window window;
        WindowSettings settings(path());
        settings.restore(window);
        QVERIFY(window.width() > 500);
        QCOMPARE(settings.address().toString(), QStringLiteral("127.0.0.1:47300"));
        const QString kept = path() + QStringLiteral(".damaged");
        const QString notice = settings.takeNotice();
        QVERIFY2(notice.contains(path()), qPrintable(notice));
        QVERIFY2(notice.endsWith(QStringLiteral("kept as ") + kept), qPrintable(notice));
        QCOMPARE(settings.takeNotice(), QString());
        QFile file(kept);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
        settings.save(window);
        QVERIFY(QFile::exists(path()));
        WindowSettings next(path());
        next.restore(window);
        static_cast<void>(next.address());
        QCOMPARE(next.takeNotice(), QString());
    }

    void goodValuesOfADamagedFileAreUsed() {
        write("[window]\nrect=wide\n[connection]\nhosts=a.example, b c, d.example\nport=1234\n");
        Window window;
        {
            WindowSettings settings(path());
            settings.restore(window);
            QCOMPARE(settings.recentHosts(), QStringList({"a.example", "d.example"}));
            settings.save(window);
        }
        WindowSettings next(path());
        QCOMPARE(next.address().toString(), QStringLiteral("a.example:1234"));
        QCOMPARE(next.takeNotice(), QString());
    }

    void aFileThatCannotBeReadIsLeftWhereItIs() {
        QVERIFY(QDir().mkpath(path() + QStringLiteral("/folder")));
        Window window;
        WindowSettings settings(path());
        settings.restore(window);
        QVERIFY(window.width() > 500);
        settings.save(window);
        QVERIFY(QDir(path()).exists());
        QVERIFY(QDir(path()).removeRecursively());
    }
};

QTEST_MAIN(TestWindowSettings)
#include "test_windowsettings.moc"
