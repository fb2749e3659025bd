#include "probecheck/points/soundsink.h"
#include "tests/support/datarows.h"
#include "tests/support/loadedplugin.h"

#include <QDir>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cstdio>

using points::Loudspeaker;
using points::Notice;
using points::Sound;

Q_DECLARE_METATYPE(Notice)
Q_DECLARE_METATYPE(std::optional<Sound>)

namespace {

constexpr int patienceMs = 20000;
constexpr int longestCallMs = 2000; // of a call that waits for nobody, on a busy machine
constexpr int pagesDock = 1;        // of the points

const QString pluginFile = QStringLiteral(KESTREL_PLUGIN_FILE);

std::atomic<int> messages{0};

void countMessage(QtMsgType /*type*/, const QMessageLogContext& /*place*/, const QString& text) {
    ++messages;
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

/// Takes the place of the sound server: listens, and never says a word.
class MuteServer {
public:
    explicit MuteServer(const QString& runtimeFolder) {
        QDir(runtimeFolder).mkpath(QStringLiteral("pulse"));
        m_server.setMaxPendingConnections(1000);
        if (!m_server.listen(runtimeFolder + QStringLiteral("/pulse/native"))) {
            qFatal("%s", qPrintable(m_server.errorString()));
        }
    }
    /// Somebody has said something: more than who only looks whether it is there.
    bool wasSpokenTo() {
        while (m_server.hasPendingConnections()) {
            m_connections.append(m_server.nextPendingConnection());
        }
        return std::any_of(m_connections.cbegin(), m_connections.cend(),
                           [](const QLocalSocket* s) { return s->bytesAvailable() > 0; });
    }

private:
    QLocalServer m_server;
    QVector<QLocalSocket*> m_connections; // the server's
};

/// The plug-in with the dock of the points.
struct Loaded : LoadedPlugin {
    Loaded()
        : LoadedPlugin(pluginFile) {
        if (module == nullptr) {
            qFatal("%s", qPrintable(loader.errorString()));
        }
        setUp(false);
        dock = qobject_cast<QDockWidget*>(module->get_gui_elements().at(pagesDock)->content);
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
        window.show();
        dock->show();
    }

    /// Nothing is measured: nothing can be captured, and that is heard.
    void fail() const { QTest::keyClick(dock->widget(), Qt::Key_Space); }

    QDockWidget* dock = nullptr;
};

} // namespace

/// The sounds and their ways: to the library that plays them, or to the bell.
class TestSounds : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void eachNoticeHasItsSound_data();
    void eachNoticeHasItsSound();
    void theFolderIsThatOfTheCode();
    void withoutTheLibraryTheBellIsRung();
    void withoutAServerTheBellIsRungAndNobodyWarns();
    void aServerThatNeverAnswersHoldsNobodyUp();
    void thePluginIsUnmappedWhileASoundIsPlayed();
    void wherePulseAudioIsLookedFor_data();
    void wherePulseAudioIsLookedFor();

private:
    static QString pluginFolder() { return QFileInfo(pluginFile).absolutePath(); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSounds::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(qunsetenv("PULSE_SERVER"));
    QVERIFY(qunsetenv("PULSE_RUNTIME_PATH"));
}

void TestSounds::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
        QVERIFY(qputenv(name, m_folder->path().toLocal8Bit()));
    }
    QVERIFY(qputenv("PULSE_COOKIE", m_folder->filePath("cookie").toLocal8Bit()));
}

void TestSounds::cleanup() {
    qInstallMessageHandler(nullptr);
}

void TestSounds::eachNoticeHasItsSound_data() {
    using Heard = std::optional<Sound>;
    QTest::addColumn<Notice>("notice");
    QTest::addColumn<Heard>("sound");
    row("begun", Notice::Begun, Heard(Sound::Begun));
    row("begun anew", Notice::BegunAnew, Heard());
    row("not on the disk yet", Notice::Captured, Heard());
    row("on the disk", Notice::Kept, Heard(Sound::Captured));
    row("in memory only", Notice::NotKept, Heard(Sound::Failed));
    row("cancelled", Notice::Cancelled, Heard(Sound::Failed));
    row("tool hidden", Notice::ToolHidden, Heard(Sound::Lost));
    row("reference lost", Notice::ReferenceLost, Heard(Sound::Lost));
    row("reference changed", Notice::ReferenceChanged, Heard(Sound::Failed));
    row("no data", Notice::Silent, Heard(Sound::Lost));
    row("measurement ended", Notice::MeasurementEnded, Heard(Sound::Failed));
    row("out of sight", Notice::OutOfSight, Heard(Sound::Failed));
    row("not measuring", Notice::NotMeasuring, Heard(Sound::Failed));
    row("not calibrated", Notice::NotCalibrated, Heard(Sound::Failed));
    row("busy", Notice::StillBusy, Heard(Sound::Failed));
}

void TestSounds::eachNoticeHasItsSound() {
    QFETCH(Notice, notice);
    QFETCH(std::optional<Sound>, sound);
    QVERIFY(points::soundOf(notice) == sound);
}

void TestSounds::theFolderIsThatOfTheCode() {
    QCOMPARE(QFileInfo(Loudspeaker::folderOfThisLibrary()).canonicalFilePath(),
             QFileInfo(QCoreApplication::applicationDirPath()).canonicalFilePath());
}

void TestSounds::withoutTheLibraryTheBellIsRung() {
    const MuteServer server(m_folder->path());
    int bells = 0;
    Loudspeaker loudspeaker(m_folder->path(), [&bells] { ++bells; });
    loudspeaker.play(Sound::Begun);
    loudspeaker.play(Sound::Captured);
    QCOMPARE(bells, 2);
}

void TestSounds::withoutAServerTheBellIsRungAndNobodyWarns() {
    constexpr int sounds = 20;
    QDir(m_folder->path()).mkpath("pulse");
    QFile left(m_folder->filePath("pulse/native")); // by a server that is gone
    QVERIFY(left.open(QIODevice::WriteOnly));
    int bells = 0;
    Loudspeaker loudspeaker(pluginFolder(), [&bells] { ++bells; });
    messages = 0;
    qInstallMessageHandler(countMessage);
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < sounds; ++i) {
        loudspeaker.play(static_cast<Sound>(i % 4));
    }
    QVERIFY(time.elapsed() < longestCallMs);
    QCOMPARE(bells, sounds);
    QCOMPARE(messages.load(), 0);
}

void TestSounds::aServerThatNeverAnswersHoldsNobodyUp() {
    if (!KESTREL_HAS_SOUNDS) {
        // QSKIP wants one argument more than C++17 lets it have.
        QTest::qSkip("built without sounds", __FILE__, __LINE__);
        return;
    }
    MuteServer server(m_folder->path());
    int bells = 0;
    Loudspeaker loudspeaker(pluginFolder(), [&bells] { ++bells; });
    messages = 0;
    qInstallMessageHandler(countMessage);
    for (const Sound sound : {Sound::Begun, Sound::Captured, Sound::Failed, Sound::Lost}) {
        QElapsedTimer time;
        time.start();
        loudspeaker.play(sound);
        QVERIFY(time.elapsed() < longestCallMs);
    }
    QTRY_VERIFY_WITH_TIMEOUT(server.wasSpokenTo(), patienceMs);
    QCOMPARE(bells, 0);
    QCOMPARE(messages.load(), 0);
    for (const char* name : {"begun", "captured", "failed", "lost"}) {
        const QString file = QStringLiteral(":/probecheck/sounds/%1.wav").arg(name);
        QVERIFY2(QFileInfo(file).size() > 1000, qPrintable(file));
    }
}

void TestSounds::thePluginIsUnmappedWhileASoundIsPlayed() {
    constexpr int rounds = 3;
    MuteServer server(m_folder->path());
    for (int round = 0; round < rounds; ++round) {
        Loaded f;
        f.fail();
        QCOMPARE(LoadedPlugin::isMapped("libProbeCheckSounds.so"), bool(KESTREL_HAS_SOUNDS));
        QVERIFY(f.unload());
        QVERIFY(!LoadedPlugin::isMapped("libProbeCheckModule.so"));
        QCOMPARE(LoadedPlugin::isMapped("libProbeCheckSounds.so"), bool(KESTREL_HAS_SOUNDS));
        QCoreApplication::processEvents();
    }
}

void TestSounds::wherePulseAudioIsLookedFor_data() {
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("place"); // below the folder, or the whole of it
    QTest::addColumn<bool>("isFound");
    row("runtime path", QByteArray("PULSE_RUNTIME_PATH"), QByteArray("/pulse"), true);
    row("runtime path elsewhere", QByteArray("PULSE_RUNTIME_PATH"), QByteArray("/nowhere"), false);
    row("no path of a socket", QByteArray("XDG_RUNTIME_DIR"), QByteArray(200, '/'), false);
    row("chosen by somebody", QByteArray("PULSE_SERVER"), QByteArray("/pulse/native"), true);
}

void TestSounds::wherePulseAudioIsLookedFor() {
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, place);
    QFETCH(bool, isFound);
    MuteServer server(m_folder->path());
    int bells = 0;
    Loudspeaker loudspeaker(pluginFolder(), [&bells] { ++bells; });
    QVERIFY(qputenv(variable.constData(), m_folder->path().toLocal8Bit() + place));
    loudspeaker.play(Sound::Begun);
    if (variable != "XDG_RUNTIME_DIR") {
        QVERIFY(qunsetenv(variable.constData()));
    }
    QCOMPARE(bells, isFound && KESTREL_HAS_SOUNDS ? 0 : 1);
}

QTEST_MAIN(TestSounds)
#include "test_sounds.moc"
