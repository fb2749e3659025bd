#include "tests/support/children.h"
#include "tests/support/datarows.h"
#include "tests/workbench/backendfixture.h"
#include "workbench/window/sending/outletcontrol.h"
#include "workbench/window/sending/senddialog.h"
#include "workbench/window/settings/windowsettings.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <memory>
#include <mutex>

using workbench::ModuleResult;
using workbench::OutletChannel;
using workbench::OutletControl;
using workbench::OutletHub;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::SendDialog;
using workbench::TrackedFrame;
using State = OutletWord::State;

namespace {

constexpr int patience = 20000;

/// The word of a test's channels, which the test may change.
struct Script {
    std::mutex mutex;
    OutletWord word;
    OutletChannel::Delivery delivery = OutletChannel::Delivery::Sent;

    void say(State state, const char* text) {
        const std::lock_guard<std::mutex> lock(mutex);
        word.state = state;
        word.text = QString::fromUtf8(text);
    }
};

class ScriptedChannel : public OutletChannel {
public:
    explicit ScriptedChannel(std::shared_ptr<Script> script)
        : m_script(std::move(script)) {}
    bool takesResults() const override { return true; }
    void tend() override {}
    OutletWord word() const override {
        const std::lock_guard<std::mutex> lock(m_script->mutex);
        return m_script->word;
    }
    Delivery send(const TrackedFrame&) override {
        const std::lock_guard<std::mutex> lock(m_script->mutex);
        return m_script->delivery;
    }
    void send(const ModuleResult&) override {
        const std::lock_guard<std::mutex> lock(m_script->mutex);
        ++m_script->word.waitingResults;
    }

private:
    const std::shared_ptr<Script> m_script;
};

} // namespace

class TestSendDialog : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<Script> m_script;
    std::unique_ptr<OutletHub> m_hub;
    std::unique_ptr<BackendFixture> m_parts;
    std::unique_ptr<workbench::OutletFeed> m_feed;
    std::unique_ptr<workbench::WindowSettings> m_settings;
    std::unique_ptr<OutletControl> m_control;
    std::unique_ptr<SendDialog> m_dialog;

    OutletHub::Maker maker() {
        return [this](const OutletUrl& url, QString* error) -> std::unique_ptr<OutletChannel> {
            if (url.kind == OutletUrl::Kind::Igtl) {
                *error = QStringLiteral("no library");
                return nullptr;
            }
            return std::make_unique<ScriptedChannel>(m_script);
        };
    }

    void openControl() {
        m_control.reset();
        m_feed.reset();
        m_settings.reset(); // writes what it has
        m_hub = std::make_unique<OutletHub>(maker());
        m_feed = std::make_unique<workbench::OutletFeed>(m_parts->facts, *m_hub);
        m_settings = std::make_unique<workbench::WindowSettings>(
            m_folder->filePath(QStringLiteral("s.ini")));
        m_control = std::make_unique<OutletControl>(*m_hub, *m_feed, m_parts->log, *m_settings);
    }

    QTableWidget& table() const { return *child<QTableWidget>(*m_dialog, "tableWidget_outlets"); }
    QPushButton& button(const char* name) const { return *child<QPushButton>(*m_dialog, name); }
    QString said() const { return child<QLabel>(*m_dialog, "label_word")->text(); }
    QString cell(int row, int column) const { return table().item(row, column)->text(); }
    void type(const char* text) const {
        child<QLineEdit>(*m_dialog, "lineEdit_url")->setText(QString::fromUtf8(text));
    }
    QString log() const {
        QCoreApplication::processEvents();
        return m_parts->log.toText();
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_script = std::make_shared<Script>();
        m_script->say(State::Waiting, "nobody there");
        m_parts = std::make_unique<BackendFixture>();
        openControl();
        m_dialog = std::make_unique<SendDialog>(*m_control, maker(), nullptr,
                                                std::chrono::milliseconds(1000));
        m_dialog->show();
    }
    void cleanup() {
        m_dialog.reset();
        m_control.reset();
        m_feed.reset();
        m_hub.reset();
        m_settings.reset();
        m_parts.reset();
    }

    void anOutletIsAddedShownAndRemembered() {
        QVERIFY(child<QLabel>(*m_dialog, "label_none")->isVisible());
        QVERIFY(!button("pushButton_add").isEnabled());
        type(" udp://plotter ");
        QVERIFY(button("pushButton_add").isEnabled());
        button("pushButton_add").click();
        QCOMPARE(table().rowCount(), 1);
        QCOMPARE(cell(0, 0), QStringLiteral("udp://plotter"));
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Waiting: nobody there"), patience);
        QVERIFY(!child<QLabel>(*m_dialog, "label_none")->isVisible());
        QCOMPARE(child<QLineEdit>(*m_dialog, "lineEdit_url")->text(), QString());

        m_dialog.reset();
        openControl();
        m_control->restore();
        QVERIFY(m_control->has(QStringLiteral("udp://plotter")));
        m_control->remove(QStringLiteral("udp://plotter"));
        openControl();
        m_control->restore();
        QVERIFY(!m_control->has(QStringLiteral("udp://plotter")));
    }

    void statesAndNumbersFollow() {
        type("udp://plotter");
        button("pushButton_add").click();
        m_script->say(State::Connected, "<b>fine</b>");
        for (int i = 0; i < 1500; ++i) {
            m_hub->frame({"fr 1"});
        }
        m_hub->result(QStringLiteral("A"), QStringLiteral("{}"));
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Connected: <b>fine</b>"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 2), QLocale().toString(1500), patience);
        QCOMPARE(cell(0, 3), QStringLiteral("0"));
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 4), QStringLiteral("1 waiting"), patience);
        {
            const std::lock_guard<std::mutex> lock(m_script->mutex);
            m_script->delivery = OutletChannel::Delivery::Dropped;
        }
        m_hub->frame({"fr 1"});
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 3), QStringLiteral("1"), patience);
    }

    void thatNothingOfAReplayIsSentIsSaid() {
        type("udp://plotter");
        button("pushButton_add").click();
        m_script->say(State::Connected, "sending");
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Connected: sending"), patience);
        const auto* const words = child<QLabel>(*m_dialog, "label_replay");
        QVERIFY(!words->isVisible());
        m_control->setReplay(true);
        m_control->setReplay(true); // another one in its place
        m_hub->frame({"fr 1"});
        QTRY_COMPARE_WITH_TIMEOUT(
            cell(0, 1),
            QStringLiteral("Connected: nothing of the recording that is played is sent"), patience);
        QVERIFY(words->isVisible());
        QCOMPARE(log().count(QStringLiteral("nothing of it is sent")), 1);
        m_script->say(State::Refused, "not you");
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Refused: not you"), patience);
        m_script->say(State::Connected, "sending");
        m_control->setReplay(false);
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Connected: sending"), patience);
        QVERIFY(!words->isVisible());
        QCOMPARE(cell(0, 2), QStringLiteral("0"));
        QCOMPARE(cell(0, 3), QStringLiteral("0"));
    }

    void aSentenceHasTheRoomThatNumbersLeave_data() {
        QTest::addColumn<int>("points");
        QTest::newRow("9 pt") << 9;
        QTest::newRow("14 pt") << 14; // as high in pixels as 9 at 144 dpi
    }
    void aSentenceHasTheRoomThatNumbersLeave() {
        QFETCH(int, points);
        const QFont usual = QApplication::font();
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        OutletUrl url;
        QString error;
        QVERIFY(url.parse(QStringLiteral("mqtt://measuring-room.example/tracking"), &error));
        QVERIFY(m_control->add(url, OutletControl::Memory::Kept, &error));
        m_dialog = std::make_unique<SendDialog>(*m_control, maker(), nullptr,
                                                std::chrono::milliseconds(1000));
        QApplication::setFont(usual);
        m_dialog->setFont(font);
        m_dialog->show();
        m_script->say(State::Connected, "what nobody has heard of yet, and is sent again");
        const QHeaderView& header = *table().horizontalHeader();
        QTRY_VERIFY_WITH_TIMEOUT(cell(0, 1).startsWith(QStringLiteral("Connected: what")),
                                 patience);
        QTRY_COMPARE_WITH_TIMEOUT(header.length(), table().viewport()->width(), patience);
        for (const int column : {2, 3, 4}) {
            QCOMPARE(header.sectionSize(column),
                     std::max(header.sectionSizeHint(column), header.minimumSectionSize()));
        }
        const QFontMetrics metrics = table().fontMetrics();
        QVERIFY(header.sectionSize(1) >= 45 * metrics.averageCharWidth());
        // Results come later, and need more than their header then.
        for (int count = 0; count < 1000; ++count) {
            m_hub->result(QStringLiteral("A"), QStringLiteral("{}"));
        }
        QTRY_VERIFY_WITH_TIMEOUT(cell(0, 4).endsWith(QStringLiteral(" waiting")), patience);
        QTRY_VERIFY_WITH_TIMEOUT(header.sectionSize(4) > metrics.horizontalAdvance(cell(0, 4)),
                                 patience);
        QTRY_COMPARE_WITH_TIMEOUT(header.length(), table().viewport()->width(), patience);
    }

    void theLogTellsOfEachChangeOnce() {
        qRegisterMetaType<State>("workbench::OutletWord::State");
        QSignalSpy changes(m_control.get(), &OutletControl::stateChanged);
        type("udp://plotter");
        button("pushButton_add").click();
        QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 1, patience);
        m_script->say(State::Refused, "not you");
        QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 2, patience);
        m_script->say(State::Refused, "still not you");
        QTRY_COMPARE_WITH_TIMEOUT(cell(0, 1), QStringLiteral("Refused: still not you"), patience);
        QCOMPARE(changes.size(), 2);
        QCOMPARE(log().count(QStringLiteral("Data for udp://plotter: ")), 2);
        QVERIFY(log().contains(QStringLiteral("Data for udp://plotter: Refused: not you")));
    }

    void whatIsWrongIsSaidAndTheTextStays() {
        type("udp://");
        button("pushButton_add").click();
        QVERIFY2(said().contains(QStringLiteral("host")), qPrintable(said()));
        QCOMPARE(child<QLineEdit>(*m_dialog, "lineEdit_url")->text(), QStringLiteral("udp://"));
        type("igtl://");
        button("pushButton_add").click();
        QCOMPARE(said(), QStringLiteral("no library"));
        button("pushButton_test").click();
        QCOMPARE(said(), QStringLiteral("no library"));
        type("udp://a");
        button("pushButton_add").click();
        QCOMPARE(said(), QString());
        type("udp://a");
        button("pushButton_add").click();
        QCOMPARE(said(), QStringLiteral("data go there already"));
        QCOMPARE(table().rowCount(), 1);
    }

    void theSelectedOneIsRemoved() {
        for (const char* url : {"udp://a", "udp://b"}) {
            type(url);
            button("pushButton_add").click();
        }
        QVERIFY(!button("pushButton_remove").isEnabled());
        table().selectRow(0);
        QVERIFY(button("pushButton_remove").isEnabled());
        button("pushButton_remove").click();
        QCOMPARE(table().rowCount(), 1);
        QCOMPARE(cell(0, 0), QStringLiteral("udp://b"));
        QVERIFY(log().contains(QStringLiteral("Data go to udp://a no more")));
    }

    void aTrialTellsWhatItFound_data() {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("text");
        QTest::newRow("works") << int(State::Connected) << QStringLiteral("It works: so it is");
        row("refused", int(State::Refused), QStringLiteral("It does not work: so it is"));
        row("nobody", int(State::Waiting), QStringLiteral("Nobody has answered: so it is"));
    }
    void aTrialTellsWhatItFound() {
        QFETCH(int, state);
        QFETCH(QString, text);
        m_script->say(static_cast<State>(state), "so it is");
        type("udp://plotter");
        button("pushButton_test").click();
        QVERIFY(!button("pushButton_test").isEnabled());
        QVERIFY(said().contains(QStringLiteral("udp://plotter")));
        QTRY_COMPARE_WITH_TIMEOUT(said(), text, patience);
        QVERIFY(button("pushButton_test").isEnabled());
        QCOMPARE(table().rowCount(), 0);
    }

    void aTrialMayBeLeftAlone() {
        type("udp://plotter");
        button("pushButton_test").click();
        m_dialog.reset();
        QVERIFY(m_control->entries().empty());
    }

    void whatWasRememberedAndIsNoneIsALineOfTheLog() {
        m_settings->setOutlets({QStringLiteral("tcp://a"), QStringLiteral("udp://good")});
        m_control->restore();
        QVERIFY(log().contains(QStringLiteral("No data go to tcp://a: ")));
        QVERIFY(m_control->has(QStringLiteral("udp://good")));
    }
};

QTEST_MAIN(TestSendDialog)
#include "test_senddialog.moc"
