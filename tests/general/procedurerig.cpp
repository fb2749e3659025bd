#include "tests/general/procedurerig.h"

#include "tests/support/children.h"

#include <QApplication>
#include <QLCDNumber>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr int never = 3600 * 1000;
constexpr int pause1 = 3;
constexpr int pause2 = 4;
constexpr int settlingTicks = 3;

} // namespace

ProcedureRig::ProcedureRig(bool twoStep)
    : m_twoStep(twoStep)
    , m_parent(new QWidget) {
    m_parent->show(); // without a window the application would end with the first countdown
    ScriptedHost& host = m_rig.host;
    if (twoStep) {
        scriptTwoStepProcedure(host, {"none"});
    } else {
        scriptProcedure(host, 2, {"none"});
    }
    host.answer("cal step_pause measurementtool s01", "yes " + std::to_string(pause1));
}

QWidget* ProcedureRig::countdown() const {
    QWidget* const top = QApplication::activeModalWidget();
    return qobject_cast<CountdownDlg*>(top) != nullptr ? top : nullptr;
}

QChar ProcedureRig::place() const {
    const QWidget* const top = QApplication::activeModalWidget();
    if (m_dialog.isNull() || top == nullptr) {
        return '?';
    }
    const bool polls = CalibrationProgressProbe::timer(*m_dialog).isActive();
    if (countdown() != nullptr) {
        // A place is told by what its countdown shows: seconds pass only as an event.
        CountdownProbe::timer(*qobject_cast<CountdownDlg*>(countdown())).stop();
        const int shown = child<QLCDNumber>(*countdown(), "lcdNumber")->intValue();
        if (!m_dialog->isVisible()) {
            return polls ? '?' : 'S';
        }
        return polls ? 'H' : shown == pause1 ? 'P' : shown == pause2 ? 'Q' : '?';
    }
    if (top != m_dialog) {
        return polls ? '?' : 'E';
    }
    if (!polls) {
        return 'R';
    }
    return CalibrationProgressProbe::isCalculating(*m_dialog) ? 'C'
           : CalibrationProgressProbe::step(*m_dialog) == 1   ? '1'
                                                              : '2';
}

// The way to each place, from the places on it.
void ProcedureRig::plan(QChar place) {
    struct Way {
        char to;
        char from;
        Event event;
    };
    const std::vector<Way> ways = {
        {'1', 'S', Event::CountdownStarted},
        {'C', '1', Event::Full},
        {'H', '1', Event::Cal2},
        {'P', '1', Event::Pause1},
        {'Q', '1', Event::Pause2},
        {'2', m_twoStep ? 'Q' : 'H', Event::CountdownStarted},
        {'R', m_twoStep ? '2' : 'H', m_twoStep ? Event::Pause2 : Event::CountdownCancelled},
        {'E', '1', Event::Err},
    };
    for (const Way& way : ways) {
        if (place == way.to) {
            plan(way.from);
            m_steps.push_back({way.from, [this, way] { happen(way.event); }});
        }
    }
}

// Runs the next step where it belongs, in whatever modal loop that is.
void ProcedureRig::tick() {
    QTimer::singleShot(1, &m_clock, [this] { tick(); });
    if (!m_steps.empty() && place() == m_steps.front().at) {
        const Step step = m_steps.front();
        m_steps.pop_front();
        step.action();
    }
}

QString ProcedureRig::meet(QChar before, Event event, QChar expected) {
    plan(before);
    m_steps.push_back({before, [this, event] {
                           m_begun = true;
                           m_before = m_rig.host.operations().size();
                           happen(event);
                       }});
    for (int i = 0; i < settlingTicks; ++i) {
        m_steps.push_back({expected, [] {}});
    }
    m_steps.push_back({expected, [this] {
                           m_stable = true;
                           endRun();
                       }});
    m_dialog = new CalibrationProgressDlg(&m_rig.host, m_parent, &m_rig.versions, m_twoStep, false);
    CalibrationProgressProbe::timer(*m_dialog).setInterval(never);
    tick();
    const int result = m_dialog->update_and_execute("measurementtool");
    m_steps.clear();
    m_polls = !m_dialog.isNull() && CalibrationProgressProbe::timer(*m_dialog).isActive();
    if (!m_stable) {
        const Lines all = m_rig.host.operations();
        m_operations.assign(all.begin() + static_cast<std::ptrdiff_t>(m_before), all.end());
    }
    delete m_parent.data();
    return m_stable ? QString(expected) : result != 0 ? "+" : "-";
}

void ProcedureRig::endRun() {
    const Lines all = m_rig.host.operations();
    m_operations.assign(all.begin() + static_cast<std::ptrdiff_t>(m_before), all.end());
    m_info = child<QLabel>(*m_dialog, "label_info")->text();
    if (m_dialog->isVisible()) {
        m_dialog->close();
    } else {
        child<QPushButton>(*countdown(), "pushButton")->click();
    }
}

void ProcedureRig::poll(const char* state, const char* progress, const char* stepProgress) {
    const char* const parameter = m_twoStep ? "status step_active" : "status active";
    m_rig.host.answer("status progress", progress);
    m_rig.host.answer("status step_progress", stepProgress);
    if (state == nullptr) {
        m_rig.host.fail(parameter);
    } else {
        m_rig.host.answer(parameter, state);
    }
    if (CalibrationProgressProbe::timer(*m_dialog).isActive()) {
        m_dialog->update_cal_status();
    }
}

void ProcedureRig::happen(Event event) {
    QWidget* const shown = countdown();
    const char* const cal = m_twoStep ? "cal 1" : "cal";
    switch (event) {
    case Event::Cal1:
        return poll(cal, "0.5", "1 0.9");
    case Event::Full:
        return poll(cal, "1.0", "1 1.0");
    case Event::Cal2:
        return poll(m_twoStep ? "cal 2" : "cal", "0.6", "2 0.1");
    case Event::Pause1:
        return poll("pause 1", "0", "1 0");
    case Event::Pause2:
        return poll("pause 2", "0.5", "1 1");
    case Event::None:
        return poll("none", "1", "2 1");
    case Event::Err:
        return poll("err", "0.5", "1 0.9");
    case Event::Other:
        return poll(m_twoStep ? "cal" : "tracking", "0.5", "1 0.9");
    case Event::Failed:
        return poll(nullptr, "0.5", "1 0.9");
    case Event::CountdownElapsed:
        while (shown != nullptr && shown->isVisible()) {
            qobject_cast<CountdownDlg*>(shown)->updateCountdown();
        }
        return;
    case Event::CountdownStarted:
    case Event::CountdownCancelled:
        if (shown != nullptr) {
            const bool started = event == Event::CountdownStarted;
            child<QPushButton>(*shown, started ? "pushButton_2" : "pushButton")->click();
        }
        return;
    case Event::Cancel:
        if (m_dialog->isVisible()) {
            m_dialog->close();
        }
        return;
    case Event::BoxClosed:
        if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            box->button(QMessageBox::Ok)->click();
        }
        return;
    case Event::Message:
        return m_dialog->show_custom_message("mine");
    case Event::ParentDies:
        delete m_parent.data();
        return;
    case Event::ApplicationQuits:
        return QCoreApplication::quit();
    }
}
