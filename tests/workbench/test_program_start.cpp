#include "tests/support/datarows.h"
#include "workbench/controller/command/controlleraddress.h"
#include "workbench/window/settings/windowsettings.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <sys/types.h>

namespace {
constexpr int patience = 20000;
}

/// What somebody meets who starts the program from a menu: without options, as a process of its
/// own, in a home of its own. A plug-in of Qt's inside of it tells what there is to be seen.
class TestProgramStart : public QObject {
    Q_OBJECT

    struct Thing {
        int role = 0;
        bool canBeUsed = false; ///< visible and enabled
        QString name;
        QString description;
    };

    static QVector<Thing> thingsIn(const QString& fileName) {
        QVector<Thing> things;
        QFile file(fileName);
        if (file.open(QIODevice::ReadOnly)) {
            const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
            for (const QString& line : lines) {
                const QStringList cells = line.split(QLatin1Char('\t'));
                things += {cells.value(0).toInt(),
                           cells.value(1) == QLatin1String("visible") &&
                               cells.value(2) == QLatin1String("enabled"),
                           cells.value(3), cells.value(4)};
            }
        }
        return things;
    }

    static QStringList usable(QAccessible::Role role, const QString& fileName) {
        QStringList names;
        const QVector<Thing> things = thingsIn(fileName);
        for (const Thing& thing : things) {
            if (thing.role == role && thing.canBeUsed && !thing.name.isEmpty()) {
                names += thing.name;
            }
        }
        return names;
    }

private Q_SLOTS:
    void itLeadsToTheStartPage_data() {
        QTest::addColumn<QStringList>("before"); // controllers, the last one at the end
        QTest::addColumn<QStringList>("offered");
        row("the first time", QStringList(), QStringList());
        row("later", QStringList({"oldest", "old:1", "tracker:4711", "new:2"}),
            QStringList({"Connect to new:2", "Connect to tracker:4711", "Connect to old:1"}));
    }
    void itLeadsToTheStartPage() {
        QFETCH(QStringList, before);
        QFETCH(QStringList, offered);
        const QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkpath(QStringLiteral("kestrel")));
        if (!before.isEmpty()) {
            workbench::WindowSettings settings(
                home.filePath(QStringLiteral("kestrel/kestrel-workbench.ini")));
            for (const QString& name : before) {
                workbench::ControllerAddress address;
                QVERIFY(address.parse(name));
                settings.setAddress(address);
            }
        }
        const QString seen = home.filePath(QStringLiteral("seen.txt"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LANGUAGE"));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(WITNESS_FOLDER));
        environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"),
                           QStringLiteral("kestrelwitness:") + seen);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(WORKBENCH), QStringList());
        QVERIFY(process.waitForStarted(patience));
        // The file is there as a whole, with the first window.
        QTRY_VERIFY_WITH_TIMEOUT(!usable(QAccessible::PushButton, seen).isEmpty(), patience);
        const auto hasButton = [&](const QString& name) {
            return usable(QAccessible::PushButton, seen).contains(name);
        };
        for (const QString& name :
             {QStringLiteral("Connect…"), QStringLiteral("Try the simulator"),
              QStringLiteral("Open recording…"), QStringLiteral("User guide")}) {
            QTRY_VERIFY2_WITH_TIMEOUT(
                hasButton(name),
                qPrintable(usable(QAccessible::PushButton, seen).join(QLatin1Char('\n'))),
                patience);
        }
        const auto controllers = [&] {
            return usable(QAccessible::PushButton, seen).filter(QStringLiteral("Connect to "));
        };
        QTRY_COMPARE_WITH_TIMEOUT(controllers(), offered, patience);
        QVERIFY(usable(QAccessible::Dialog, seen).isEmpty());
        const QVector<Thing> things = thingsIn(seen);
        QVERIFY(std::any_of(things.begin(), things.end(), [](const Thing& thing) {
            return thing.canBeUsed && thing.name == QLatin1String("State of the connection") &&
                   thing.description == QLatin1String("Not connected");
        }));
        QCOMPARE(process.state(), QProcess::Running);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestProgramStart)
#include "test_program_start.moc"
