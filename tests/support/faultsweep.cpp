#include "tests/support/faultsweep.h"

#include <QApplication>
#include <QDebug>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <sys/resource.h>
#include <unistd.h>

namespace faultsweep {

namespace {

using Lines = std::vector<std::string>;
using Fault = ScriptedHost::Fault;

struct Named {
    Fault fault;
    const char* name;
};
constexpr Named faults[] = {
    {Fault::Error, "error"},           {Fault::EmptyReply, "empty reply"},
    {Fault::Garbage, "garbage"},       {Fault::Unterminated, "200 bytes without terminator"},
    {Fault::HugeNumber, "2000000000"}, {Fault::MinusOne, "-1"},
};

// Aborts the program with the name of what is under way when it takes too long. A signal, because
// a loop without end serves no timer.
class HangGuard {
public:
    explicit HangGuard(const QString& what) {
        const QByteArray text = "\nhangs: " + what.toUtf8() + '\n';
        s_length = std::min(static_cast<std::size_t>(text.size()), s_text.size());
        std::copy_n(text.begin(), s_length, s_text.begin());
        std::signal(SIGALRM, [](int) {
            const ssize_t written = ::write(STDERR_FILENO, s_text.data(), s_length);
            static_cast<void>(written);
            std::abort();
        });
        ::alarm(patienceSeconds);
    }
    ~HangGuard() { ::alarm(0); }
    HangGuard(const HangGuard&) = delete;
    HangGuard& operator=(const HangGuard&) = delete;

private:
    static std::array<char, 300> s_text;
    static std::size_t s_length;
};

std::array<char, 300> HangGuard::s_text{};
std::size_t HangGuard::s_length = 0;

// Without what the offscreen platform says about each dialog that states its smallest size.
class QuietPlatform {
public:
    QuietPlatform() { s_before = qInstallMessageHandler(&QuietPlatform::say); }
    ~QuietPlatform() { qInstallMessageHandler(s_before); }
    QuietPlatform(const QuietPlatform&) = delete;
    QuietPlatform& operator=(const QuietPlatform&) = delete;

private:
    static void say(QtMsgType type, const QMessageLogContext& context, const QString& message) {
        if (!message.contains(QLatin1String("propagateSizeHints"))) {
            s_before(type, context, message);
        }
    }

    static QtMessageHandler s_before;
};

QtMessageHandler QuietPlatform::s_before = nullptr;

long peakMemoryKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Widgets and the timers that belong to them. (Other objects come as they are needed, such as a
// label's rich text.)
int livingObjects() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto widgets = QApplication::allWidgets();
    int count = widgets.size();
    for (const QWidget* widget : widgets) {
        count += widget->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly).size();
    }
    return count;
}

Lines withoutLogs(const Lines& journal) {
    Lines operations;
    std::copy_if(journal.begin(), journal.end(), std::back_inserter(operations),
                 [](const std::string& line) { return line.rfind("log ", 0) != 0; });
    return operations;
}

QString text(const Lines& lines) {
    QStringList texts;
    for (const std::string& line : lines) {
        texts << QString::fromUtf8(line.c_str());
    }
    return texts.join(QLatin1Char('\n'));
}

// A flow with what it does when nothing goes wrong.
class SweptFlow {
public:
    SweptFlow(QString name, const Play& play)
        : m_name(std::move(name))
        , m_play(play) {}

    // The first undisturbed runs; the objection or nothing.
    QString begin() {
        m_memory = peakMemoryKilobytes();
        const Outcome first = guarded({}, m_name);
        m_sound = first.journal;
        m_operations = withoutLogs(m_sound);
        if (!first.objection.isEmpty() || m_operations.empty()) {
            return QStringLiteral("undisturbed: %1\n").arg(first.objection) + text(m_sound);
        }
        const QString objection = soundRun(m_name + QLatin1String(", again"));
        m_objects = livingObjects();
        return objection;
    }

    QString disturb(const Case& fault, const QString& what) {
        const Outcome outcome = guarded(fault, what);
        if (!outcome.objection.isEmpty()) {
            return outcome.objection + QLatin1Char('\n') + text(outcome.journal);
        }
        const Lines operations = withoutLogs(outcome.journal);
        const auto hit = static_cast<std::size_t>(fault.operation) + 1;
        if (operations.size() < hit ||
            !std::equal(operations.begin(), operations.begin() + fault.operation + 1,
                        m_operations.begin())) {
            return QStringLiteral("another way to the fault\n") + text(operations);
        }
        if (operations.size() > std::size_t(mostOperations)) {
            return QStringLiteral("%1 operations").arg(operations.size());
        }
        if (peakMemoryKilobytes() - m_memory > mostMemoryKilobytes) {
            return QStringLiteral("%1 KB of memory").arg(peakMemoryKilobytes() - m_memory);
        }
        const QString objection = soundRun(what + QLatin1String(", then undisturbed"));
        const int objects = livingObjects();
        if (objection.isEmpty() && objects != m_objects) {
            return QStringLiteral("%1 widgets and timers became %2").arg(m_objects).arg(objects);
        }
        return objection;
    }

    int operations() const { return static_cast<int>(m_operations.size()); }

private:
    Outcome guarded(const Case& fault, const QString& what) {
        const HangGuard guard(what);
        return m_play(fault);
    }

    QString soundRun(const QString& what) {
        const Outcome outcome = guarded({}, what);
        if (outcome.journal != m_sound) {
            return QStringLiteral("undisturbed it was\n%1\nnow it is\n%2")
                .arg(text(m_sound), text(outcome.journal));
        }
        return outcome.objection;
    }

    QString m_name;
    const Play& m_play;
    Lines m_sound;
    Lines m_operations;
    int m_objects = 0;
    long m_memory = 0;
};

} // namespace

bool Case::isFaulty(int index) const {
    return !isSound() && (index == operation || (stays && index > operation));
}

NoPainting::NoPainting() {
    qApp->installEventFilter(this);
}

bool NoPainting::eventFilter(QObject* /*watched*/, QEvent* event) {
    return event->type() == QEvent::UpdateRequest || event->type() == QEvent::Expose;
}

void Case::inject(ScriptedHost& host) const {
    host.clearJournal();
    if (!isSound()) {
        host.injectFault(operation, fault, stays);
    }
}

QString Sweep::run(const QString& flow, const Play& play) {
    const QuietPlatform quiet;
    QElapsedTimer elapsed;
    elapsed.start();
    SweptFlow swept(flow, play);
    const QString objection = swept.begin();
    if (!objection.isEmpty()) {
        return flow + QLatin1String(": ") + objection;
    }
    int disturbed = 0;
    for (const Named& kind : faults) {
        for (const bool stays : {false, true}) {
            for (int operation = 0; operation < swept.operations(); ++operation) {
                const QString what =
                    QStringLiteral("%1: %2 at operation %3%4")
                        .arg(flow, QLatin1String(kind.name))
                        .arg(operation)
                        .arg(stays ? QStringLiteral(" and all that follow") : QString());
                const QString complaint = swept.disturb({operation, kind.fault, stays}, what);
                if (!complaint.isEmpty()) {
                    return what + QLatin1String(": ") + complaint;
                }
                ++disturbed;
            }
        }
    }
    const int runs = 2 + 2 * disturbed;
    qInfo("%-44s %4d operations %5d faults %6d runs %6lld ms", qPrintable(flow), swept.operations(),
          disturbed, runs, elapsed.elapsed());
    ++m_flows;
    m_operations += swept.operations();
    m_faults += disturbed;
    m_runs += runs;
    return {};
}

bool Sweep::report(const QString& title) const {
    qInfo("%s: %d flows, %d operations, %d faults, %d runs", qPrintable(title), m_flows,
          m_operations, m_faults, m_runs);
    return m_flows > 0 && m_operations > 0 && m_faults > 0 && m_runs > m_faults;
}

} // namespace faultsweep
