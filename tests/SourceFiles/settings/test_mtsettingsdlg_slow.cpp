#include "tests/SourceFiles/settings/settingsrig.h"

#include <QElapsedTimer>
#include <QThread>
#include <QtTest>

#include <algorithm>

namespace {

constexpr int replyMs = 50;
constexpr int deviceCount = 8;
constexpr int tickMs = replyMs * (1 + 2 * deviceCount);
constexpr int intervalMs = 1000;
constexpr int patienceMs = 60000;
constexpr const char* firstQuery = "get_int measurementtool number_of_zelwpan_devices";

// A controller that takes its time for each reply from now on.
void slowDown(SettingsRig& rig) {
    rig.host.onOperation = [](const std::string& line) {
        if (line.rfind("get_", 0) == 0) {
            QThread::msleep(replyMs);
        }
    };
}

void manyDevices(SettingsRig& rig, int count) {
    std::vector<std::string> replies;
    replies.reserve(static_cast<std::size_t>(count));
    for (int k = 0; k < count; ++k) {
        replies.push_back("V M " + std::to_string(k));
    }
    rig.setDevices(replies);
}

int ticks(const SettingsRig& rig) {
    const Lines lines = rig.host.operations();
    return static_cast<int>(std::count(lines.begin(), lines.end(), firstQuery));
}

} // namespace

// What a user feels with a controller that takes 50 ms for each reply.
class TestMtSettingsDlgSlow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUserIsServedBetweenTwoRefreshesHoweverLongTheyTake_data() {
        QTest::addColumn<int>("devices");
        QTest::newRow("8 devices, 0.85 s a refresh") << deviceCount;
        QTest::newRow("12 devices, 1.25 s a refresh") << 12;
    }
    void theUserIsServedBetweenTwoRefreshesHoweverLongTheyTake() {
        QFETCH(int, devices);
        SettingsRig rig(VersionInfo(1, 14, 0), patienceMs);
        manyDevices(rig, devices);
        rig.run([&] {
            QElapsedTimer clock;
            clock.start();
            qint64 lastReply = 0;
            std::vector<qint64> pauses; // between the last reply of a refresh and the next refresh
            rig.host.onOperation = [&](const std::string& line) {
                if (line == firstQuery) {
                    pauses.push_back(clock.elapsed() - lastReply);
                }
                QThread::msleep(replyMs);
                lastReply = clock.elapsed();
            };
            // Comes as often as the event loop lets it; a long gap is a time without service.
            qint64 lastPoll = 0;
            qint64 served = 0;
            qint64 longest = 0;
            QTimer poll;
            connect(&poll, &QTimer::timeout, [&] {
                const qint64 gap = clock.elapsed() - lastPoll;
                lastPoll += gap;
                longest = std::max(longest, gap);
                served += gap < replyMs ? gap : 0;
            });
            poll.start(1);
            QTRY_COMPARE_WITH_TIMEOUT(pauses.size(), std::size_t(4), patienceMs);
            rig.host.onOperation = nullptr;
            qInfo("%d devices: longest time without service %lld ms, served %lld %% of the time",
                  devices, longest, 100 * served / clock.elapsed());
            for (const qint64 pause : pauses) {
                QVERIFY2(pause > intervalMs * 9 / 10, qPrintable(QString::number(pause)));
            }
        });
    }

    void anEditIsDoneBetweenTwoRefreshes() {
        SettingsRig rig(VersionInfo(1, 14, 0), patienceMs);
        manyDevices(rig, deviceCount);
        rig.run([&] {
            slowDown(rig);
            QTRY_COMPARE_WITH_TIMEOUT(ticks(rig), 1, patienceMs);
            QElapsedTimer clock;
            clock.start();
            rig.setSpin("spinBox_noOfRefBodies", 2);
            const qint64 edit = clock.elapsed();
            rig.host.onOperation = nullptr;
            qInfo("an edit of the number of references takes %lld ms", edit);
            QCOMPARE(rig.column("tableWidget_refBodies", 0), QStringList({"MR1", "MR2"}));
            QVERIFY(edit < tickMs);
        });
    }

    void whatTheRefreshItselfCostsIsSmall() {
        SettingsRig rig(VersionInfo(1, 14, 0), patienceMs);
        manyDevices(rig, deviceCount);
        rig.run([&] {
            constexpr int rounds = 1000;
            QElapsedTimer clock;
            clock.start();
            for (int i = 0; i < rounds; ++i) {
                rig.tick();
                rig.host.clearJournal();
            }
            const double each = double(clock.nsecsElapsed()) / rounds / 1000.0;
            qInfo("a refresh without news costs %.1f us beside the replies", each);
            QVERIFY(each < 50000.0);
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgSlow)
#include "test_mtsettingsdlg_slow.moc"
