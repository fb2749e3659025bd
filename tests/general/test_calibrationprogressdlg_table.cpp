#include "tests/general/procedurerig.h"
#include "tests/support/statetable.h"

#include <QtTest>

Q_DECLARE_METATYPE(ProcedureRig::Event)

namespace {

using Event = ProcedureRig::Event;
using Row = StateTableRow<Event>;

// The letters are explained at ProcedureRig.
const char* const singleStepHeader = "followed by status active      | S 1 C H R 2 E";
const Row singleStepTable[] = {
    {"cal, step 1                    | S 1 C H R 2 E", Event::Cal1},
    {"cal, step 1, 100 %             | S C C H R C E", Event::Full},
    {"cal, step 2                    | S H H H R 2 E", Event::Cal2},
    {"none                           | S + + + R + E", Event::None},
    {"err                            | S E E E R E E", Event::Err},
    {"another state                  | S 1 C H R 2 E", Event::Other},
    {"no state                       | S 1 C H R 2 E", Event::Failed},
    {"the countdown runs out         | 1 1 C 2 R 2 E", Event::CountdownElapsed},
    {"the countdown is cut short     | 1 1 C 2 R 2 E", Event::CountdownStarted},
    {"the countdown is cancelled     | - 1 C R R 2 E", Event::CountdownCancelled},
    {"cancel                         | S - - - - - -", Event::Cancel},
    {"the error box is closed        | S 1 C H R 2 -", Event::BoxClosed},
    {"a caller's message             | S 1 C H R 2 E", Event::Message},
    {"the parent dies                | - - - - - - -", Event::ParentDies},
    {"the application quits          | - - - - - - -", Event::ApplicationQuits},
};

const char* const twoStepHeader = "followed by status step_active | S P 1 Q 2 R E";
const Row twoStepTable[] = {
    {"pause 1                        | S P P Q P R E", Event::Pause1},
    {"cal 1                          | S P 1 Q 2 R E", Event::Cal1},
    {"cal 1, 100 %                   | S P 1 Q 2 R E", Event::Full},
    {"pause 2                        | S P Q Q R R E", Event::Pause2},
    {"cal 2                          | S P 1 Q 2 R E", Event::Cal2},
    {"none                           | S P + Q + R E", Event::None},
    {"err                            | S P E Q E R E", Event::Err},
    {"another state                  | S P 1 Q 2 R E", Event::Other},
    {"no state                       | S P 1 Q 2 R E", Event::Failed},
    {"the countdown runs out         | 1 1 1 2 2 R E", Event::CountdownElapsed},
    {"the countdown is cut short     | 1 1 1 2 2 R E", Event::CountdownStarted},
    {"the countdown is cancelled     | - - 1 - 2 R E", Event::CountdownCancelled},
    {"cancel                         | S - - - - - -", Event::Cancel},
    {"the error box is closed        | S P 1 Q 2 R -", Event::BoxClosed},
    {"a caller's message             | S P 1 Q 2 R E", Event::Message},
    {"the parent dies                | - - - - - - -", Event::ParentDies},
    {"the application quits          | - - - - - - -", Event::ApplicationQuits},
};

const std::string stop = "send kestrel2 cal measurementtool stop";
const std::string describe2 = "get_string cal step_desc measurementtool s02";

// Of the polls, where the timer polls.
Lines expectedOfPoll(bool twoStep, QChar before, Event event) {
    Lines lines = {twoStep ? "get_string status step_active" : "get_string status active"};
    switch (event) {
    case Event::Cal1:
    case Event::Full:
    case Event::Cal2:
        lines.insert(lines.end(),
                     {"get_double status progress", "get_string status step_progress"});
        if (!twoStep && event == Event::Cal2 && (before == '1' || before == 'C')) {
            lines.push_back(describe2);
        }
        break;
    case Event::Pause2:
        lines.push_back(describe2);
        break;
    case Event::Err:
        lines.emplace_back("send kestrel2 get status err");
        if (twoStep) {
            lines.insert(lines.end(),
                         {"send kestrel2 tracking start", "send kestrel2 tracking stop"});
        }
        break;
    default:
        break;
    }
    return lines;
}

// What the controller is asked and told at the event.
Lines expectedOperations(bool twoStep, QChar before, Event event) {
    if (event <= Event::Failed) {
        const bool polls = QString(twoStep ? "12" : "1CH2").contains(before);
        return polls ? expectedOfPoll(twoStep, before, event) : Lines();
    }
    switch (event) {
    case Event::CountdownElapsed:
    case Event::CountdownStarted:
    case Event::CountdownCancelled:
        if (before == 'S' && event != Event::CountdownCancelled) {
            return {"get_string cal step_desc measurementtool s01", "get_string status active",
                    "set_channel_option 0 5000 0", "send kestrel2 cal measurementtool start"};
        }
        // A cancelled pause starts step 2 as well.
        return before == 'Q' ? Lines{"send kestrel2 cal measurementtool start_step s02"} : Lines();
    case Event::Cancel:
        return before == 'S' ? Lines() : Lines{stop};
    case Event::ApplicationQuits:
        return before == 'S' || before == 'E' ? Lines() : Lines{stop};
    default:
        return {};
    }
}

template <std::size_t size>
void addRows(const char* header, const Row (&table)[size], bool twoStep) {
    forEachCell(header, table,
                [&](const QString& name, const QString& before, Event event, const QString& after) {
                    QTest::addRow("%s, %s: %s", twoStep ? "two-step" : "single-step",
                                  qPrintable(before), qPrintable(name))
                        << twoStep << before << event << after;
                });
}

// Inside the application's own loop, as in a real host.
void runApplication(const std::function<void()>& body) {
    QTimer::singleShot(0, qApp, [&] {
        body();
        QCoreApplication::exit();
    });
    QCoreApplication::exec();
}

} // namespace

class TestCalibrationProgressTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyEventInEveryPlace_data() {
        QTest::addColumn<bool>("twoStep");
        QTest::addColumn<QString>("before");
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("after");
        addRows(singleStepHeader, singleStepTable, false);
        addRows(twoStepHeader, twoStepTable, true);
    }
    void everyEventInEveryPlace() {
        QFETCH(bool, twoStep);
        QFETCH(QString, before);
        QFETCH(Event, event);
        QFETCH(QString, after);
        runApplication([&] {
            ProcedureRig rig(twoStep);
            QCOMPARE(rig.meet(before[0], event, after[0]), after);
            QVERIFY(rig.hasBegun());
            QCOMPARE(rig.operations(), expectedOperations(twoStep, before[0], event));
            // After a cancelled pause the timer runs until the dialog is destroyed.
            QCOMPARE(rig.pollsAtEnd(),
                     event == Event::CountdownCancelled && (before == "P" || before == "Q"));
            if (event == Event::Message) {
                QCOMPARE(rig.info(), QString(before == "C" ? "calculating..." : "mine"));
            }
        });
    }
};

QTEST_MAIN(TestCalibrationProgressTable)
#include "test_calibrationprogressdlg_table.moc"
