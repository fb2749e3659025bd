#include "tests/support/datarows.h"
#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"

#include <QtTest>

namespace {

constexpr int patience = 8000;
constexpr int shortTimeoutMs = 50;

const QString start = QStringLiteral("kestrel2 cal measurementtool start");
const QString stop = QStringLiteral("kestrel2 cal measurementtool stop");
const QString accept = QStringLiteral("kestrel2 measurementtool accept_new_calibration");
const QString discarded = QStringLiteral("Calibration discarded: the one before it stays in use");

} // namespace

/// What the log tells of the conversation with the controller.
class TestCommandNews : public QObject {
    Q_OBJECT

    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<BackendFixture> m_parts;
    bool m_isDialogOpen = false;

    void ask(const QString& command, int timeoutMs = patience) {
        m_parts->session.channel().ask(command.toStdString(), timeoutMs);
    }

    // The texts of the lines in which `part` stands.
    QStringList lines(const QString& part) const {
        QStringList found;
        for (int row = 0; row < m_parts->log.rowCount(); ++row) {
            const QString text =
                m_parts->log.index(row, workbench::LogModel::TextColumn).data().toString();
            if (text.contains(part)) {
                found += text;
            }
        }
        return found;
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        m_controller->answer("status active", "none");
        m_parts = std::make_unique<BackendFixture>();
        m_isDialogOpen = false;
        m_parts->news.setDialogQuestion([this] { return m_isDialogOpen; });
        m_parts->connectTo(m_controller->port());
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
    }
    void cleanup() {
        m_parts.reset();
        m_controller.reset();
    }

    void whatBecomesOfACalibrationIsALine_data() {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("expected");
        const QString begun = QStringLiteral("Calibration started");
        const QString accepted = QStringLiteral("Calibration accepted");
        row("accepted", QStringList({"open", "is cal", start, "is none", accept, "closed"}),
            QStringList({begun, accepted}));
        row("in two steps",
            QStringList({"open", "is cal", start, "is pause 2", "is cal", "is none", accept}),
            QStringList({begun, accepted}));
        row("the dialog is closed", QStringList({"open", "is cal", start, "is none", "closed"}),
            QStringList({begun, discarded}));
        row("the dialog is closed while it runs",
            QStringList({"open", "is cal", start, "closed", "is cal", "is none"}),
            QStringList({begun, discarded}));
        row("another one is begun",
            QStringList({"open", "is cal", start, "is none", start, "is cal", stop, "closed"}),
            QStringList({begun, discarded, begun, "Calibration cancelled"}));
        row("cancelled", QStringList({"open", "is cal", start, "is cal", stop, "closed"}),
            QStringList({begun, "Calibration cancelled"}));
        row("failed", QStringList({"open", "is cal", start, "is err", "closed"}),
            QStringList({begun, "Calibration failed"}));
        row("typed by hand, no dialog anywhere",
            QStringList({"is cal", start, "is none", "is none", accept}),
            QStringList({begun, accepted}));
        row("with more blanks",
            QStringList({"is cal", "kestrel2  cal measurementtool  start ", "is none",
                         "kestrel2 measurementtool  accept_new_calibration"}),
            QStringList({begun, accepted}));
        row("nothing runs that could be stopped", QStringList({stop}), QStringList());
        row("a dialog without a calibration", QStringList({"open", "is none", "closed"}),
            QStringList());
    }
    void whatBecomesOfACalibrationIsALine() {
        QFETCH(QStringList, steps);
        QFETCH(QStringList, expected);
        const QString status = QStringLiteral("is ");
        for (const QString& step : qAsConst(steps)) {
            if (step == QLatin1String("open")) {
                m_isDialogOpen = true;
            } else if (step == QLatin1String("closed")) {
                m_isDialogOpen = false;
                ask(QStringLiteral("kestrel2 get status active"));
            } else if (step.startsWith(status)) {
                m_controller->answer("status active", step.mid(status.size()).toStdString());
                ask(QStringLiteral("kestrel2 get status active"));
            } else {
                ask(step);
            }
        }
        m_parts->log.info(QStringLiteral("end of the test"));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("end of the test")).size(), 1, patience);
        QCOMPARE(lines(QStringLiteral("Calibration ")), expected);
    }

    void whatTheControllerRefusesHasNotHappened() {
        for (const QString& command : {start, accept}) {
            m_controller->answerRaw(command.toStdString(), "kestrel2 err 8 \"not now\"\r\n");
            ask(command);
        }
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("not now")).size(), 2, patience);
        QCOMPARE(lines(QStringLiteral("Calibration ")), QStringList());
    }

    void aCalibrationIsForgottenWithItsConnection() {
        m_isDialogOpen = true;
        m_controller->answer("status active", "cal");
        ask(start);
        m_controller->answer("status active", "none");
        m_controller->dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(!m_parts->session.isReady(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        m_isDialogOpen = false;
        ask(QStringLiteral("kestrel2 get status active"));
        m_parts->log.info(QStringLiteral("end of the test"));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("end of the test")).size(), 1, patience);
        QCOMPARE(lines(QStringLiteral("Calibration ")), QStringList("Calibration started"));
    }

    void aLostAndARegainedLinkAreALineEach() {
        m_controller->dropConnections();
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral(" is back: ")).size(), 1, patience);
        QCOMPARE(lines(QStringLiteral(" lost (")).size(), 1);
        QCOMPARE(lines(QStringLiteral("Connected to ")).size(), 1);
    }

    void whatIsSentAndAnsweredIsToldWhenItIsWanted() {
        m_controller->answer("version model", "SCRIPT");
        const QString question = QStringLiteral("kestrel2 get version model");
        const auto told = [this, question] { return lines(question + QStringLiteral(" → ")); };
        ask(question);
        m_parts->log.info(QStringLiteral("first"));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("first")).size(), 1, patience);
        QCOMPARE(told(), QStringList());
        m_parts->news.setTrafficWanted(true);
        ask(question);
        QTRY_COMPARE_WITH_TIMEOUT(told().size(), 1, patience);
        QVERIFY2(told().constFirst().endsWith(QStringLiteral("SCRIPT")),
                 qPrintable(told().constFirst()));
        m_controller->setSilent(true);
        const QString unanswered = QStringLiteral("kestrel2 tracking start");
        ask(unanswered, shortTimeoutMs);
        const QString reason = QStringLiteral("no reply in time");
        QTRY_COMPARE_WITH_TIMEOUT(
            lines(unanswered), QStringList(unanswered + QStringLiteral(" → ") + reason), patience);
        const QString text = m_parts->log.toText();
        QVERIFY(text.contains(QStringLiteral("\ttraffic\tCONTROLLER\tInformation\t") + unanswered));
        m_controller->setSilent(false);
        m_parts->news.setTrafficWanted(false);
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        const int before = told().size();
        ask(question);
        m_parts->log.info(QStringLiteral("last"));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("last")).size(), 1, patience);
        QCOMPARE(told().size(), before);
    }
};

QTEST_MAIN(TestCommandNews)
#include "test_commandnews.moc"
