#include "host_api/iomanager.h"
#include "tests/support/datarows.h"
#include "tests/workbench/backendfixture.h"
#include "workbench/modules/modulehost.h"

#include <QFile>
#include <QTemporaryDir>
#include <QWidget>
#include <QtTest>

using workbench::ModuleHost;
using workbench::ModuleInfo;

class TestModuleHost : public QObject {
    Q_OBJECT

    std::unique_ptr<BackendFixture> m_backend;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<ModuleHost> m_host;
    QTemporaryDir m_folder;

    static QStringList calls() { return qApp->property("calls").toStringList(); }

    QString write(const QString& name, const QByteArray& content) const {
        const QString path = m_folder.filePath(name);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(content);
        }
        return path;
    }

private Q_SLOTS:
    void init() {
        qApp->setProperty("calls", QStringList());
        m_backend = std::make_unique<BackendFixture>();
        m_window = std::make_unique<QWidget>();
        m_host =
            std::make_unique<ModuleHost>(ModuleHost::Services{&m_backend->io, m_window.get(),
                                                              m_backend->session.versions(), false},
                                         m_backend->log);
    }
    void cleanup() {
        m_host.reset();
        m_window.reset();
        m_backend.reset();
    }

    void aModuleIsLoadedAndGivenWhatItNeeds() {
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        QCOMPARE(m_host->modules().size(), 1);
        const ModuleInfo info = m_host->modules().constFirst();
        QVERIFY2(info.isLoaded(), qPrintable(info.reason));
        QCOMPARE(info.name, QStringLiteral("Fake"));
        QCOMPARE(info.version, QStringLiteral("v0.1.2"));
        QCOMPARE(info.className, QStringLiteral("FakeModule"));
        QCOMPARE(calls(), QStringList({"set_param CommandManager", "set_param ModuleParent",
                                       "set_param BackendVersions", "set_param ObserverMode",
                                       "no observer", "set_param Replay \"\""}));
    }

    void whatIsShownIsKnownBeforeItIsBuilt() {
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        m_host->build();
        m_host->tearDown();
        qApp->setProperty("calls", QStringList());
        m_host->setReplay(QStringLiteral("demo.kestrel"));
        m_host->build();
        QCOMPARE(calls().constFirst(), QString("set_param Replay \"demo.kestrel\""));
        QVERIFY2(calls().value(1).startsWith("built for "), qPrintable(calls().value(1)));
        m_host->tearDown();
        qApp->setProperty("calls", QStringList());
        m_host->setReplay(QString());
        m_host->build();
        QCOMPARE(calls().constFirst(), QString("set_param Replay \"\""));
    }

    void aModuleThatIsLoadedInAReplayIsToldOfIt() {
        m_host->setReplay(QStringLiteral("demo.kestrel"));
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        QCOMPARE(calls().constLast(), QString("set_param Replay \"demo.kestrel\""));
    }

    void itsEntriesAreBuiltAndTakenDownInOrder() {
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        QVERIFY(!m_host->isBuilt());
        const QList<_GuiElement*> elements = m_host->build();
        QCOMPARE(elements.size(), 2);
        QCOMPARE(elements.at(0)->menu_name, QStringLiteral("&Tracking"));
        qApp->setProperty("calls", QStringList());
        m_host->tearDown();
        m_host->tearDown();
        QCOMPARE(calls(), QStringList({"about_to_exit_module with window", "exit_module"}));
        QCOMPARE(m_host->build().size(), 2);
        qApp->setProperty("calls", QStringList());
        m_host.reset();
        QCOMPARE(calls(),
                 QStringList({"about_to_exit_module with window", "exit_module", "destroyed"}));
    }

    void whatIsNoModuleIsListedWithItsReason_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reason");
        row("missing", QStringLiteral("/no/such/file.so"), QStringLiteral("there is no such file"));
        row("text", write(QStringLiteral("text.so"), "I am a text\n"),
            QStringLiteral("it is not a Qt plug-in"));
        row("empty", write(QStringLiteral("empty.so"), ""),
            QStringLiteral("it is not a Qt plug-in"));
        row("folder", m_folder.path(), QStringLiteral("there is no such file"));
        row("plain library", QStringLiteral(PLAIN_LIBRARY),
            QStringLiteral("it is not a Qt plug-in"));
        row("other plug-in", QStringLiteral(OTHER_PLUGIN),
            QStringLiteral("does not have the interface"));
        QFile whole(QStringLiteral(FAKE_MODULE));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        const QByteArray half = whole.read(whole.size() / 2);
        row("cut module", write(QStringLiteral("cut.so"), half), QString());
    }
    void whatIsNoModuleIsListedWithItsReason() {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        m_host->loadFile(file);
        QCOMPARE(m_host->modules().size(), 1);
        const ModuleInfo info = m_host->modules().constFirst();
        QVERIFY(!info.isLoaded());
        QVERIFY2(info.reason.contains(reason), qPrintable(info.reason));
        QCoreApplication::processEvents();
        QVERIFY(m_backend->log.toText().contains(info.reason));
        QVERIFY(m_host->build().isEmpty());
    }

    void theSameModuleIsLoadedOnce() {
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        m_host->loadFile(QStringLiteral(FAKE_MODULE));
        QCOMPARE(m_host->modules().size(), 1);
        const QString copy = m_folder.filePath(QStringLiteral("copy.so"));
        QFile::remove(copy);
        QVERIFY(QFile::copy(QStringLiteral(FAKE_MODULE), copy));
        m_host->loadFile(copy);
        QCOMPARE(m_host->modules().size(), 2);
        QVERIFY(m_host->modules().at(1).reason.contains(QStringLiteral("is loaded already")));
    }

    void aFolderIsSearchedForLibraries() {
        const QTemporaryDir folder;
        QVERIFY(QFile::copy(QStringLiteral(FAKE_MODULE),
                            folder.filePath(QStringLiteral("libfake.so"))));
        QFile text(folder.filePath(QStringLiteral("README.txt")));
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("no library");
        text.close();
        m_host->loadFolder(folder.path());
        QCOMPARE(m_host->modules().size(), 1);
        QVERIFY(m_host->modules().constFirst().isLoaded());
        m_host->loadFolder(QStringLiteral("/no/such/folder"));
        QCOMPARE(m_host->modules().size(), 1);
    }
};

QTEST_MAIN(TestModuleHost)
#include "test_modulehost.moc"
