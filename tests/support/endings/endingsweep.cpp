#include "tests/support/endings/endingsweep.h"

#include "host_api/metatypes.h"
#include "tests/support/loadedplugin.h"

#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <unistd.h>

// Called by a sanitizer before it ends the program; null without one.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

constexpr int hangingDialogMs = 10000;
constexpr int patienceSeconds = 60;
const std::string pauseLine = "log test host 1 pause";

struct Named {
    EndBy endBy;
    const char* name;
};
constexpr Named endings[] = {
    {EndBy::Exit, "exit"},
    {EndBy::EventsThenExit, "events, then exit"},
    {EndBy::ExitThenUnload, "exit, unloaded afterwards"},
    {EndBy::ParentDeath, "death of the parent"},
    {EndBy::EventsThenClose, "events, in which the window is closed"},
    {EndBy::RootDeath, "death of the root object"},
    {EndBy::DeleteLater, "contents deleted later"},
    {EndBy::ExitAndUnload, "exit and unload at once"},
};

// A crash or a hang tells where.
char caseUnderWay[200] = "";

void tellCase() {
    const ssize_t written = ::write(STDERR_FILENO, caseUnderWay, std::strlen(caseUnderWay));
    static_cast<void>(written);
}

void setCase(const QString& text) {
    qstrncpy(caseUnderWay, qPrintable(text + QLatin1Char('\n')), sizeof caseUnderWay);
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(&tellCase);
    } else {
        std::signal(SIGSEGV, [](int number) {
            tellCase();
            std::signal(number, SIG_DFL);
            std::raise(number);
        });
    }
    std::signal(SIGALRM, [](int) {
        tellCase();
        std::abort();
    });
    ::alarm(patienceSeconds);
}

void handleWhatIsDue() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

EndingHost::EndingHost(const QString& plugin, EndBy endBy, int place, Places places)
    : dog(hangingDialogMs)
    , m_plugin(plugin)
    , m_endBy(endBy)
    , m_place(place)
    , m_places(places)
    , m_versions(std::make_unique<BackendVersions>(VersionInfo(3, 0, 0), VersionInfo(1, 14, 0),
                                                   VersionInfo(3, 0, 0), QStringLiteral("KESTREL")))
    , m_window(new QMainWindow) {
    m_window->setAttribute(Qt::WA_DeleteOnClose);
    m_window->show();
    io.onOperation = [this](const std::string& line) {
        const bool isPlace = m_places == Places::EveryCall || line == pauseLine;
        if (!m_ended && isPlace && m_calls++ == m_place) {
            end();
        }
    };
}

EndingHost::~EndingHost() {
    io.onOperation = nullptr;
    unload();
    delete m_window.data();
}

void EndingHost::load() {
    m_loader.setLoadHints(QLibrary::LoadHints()); // really unmap it
    m_loader.setFileName(m_plugin);
    module = qobject_cast<ModuleInterface*>(m_loader.instance());
    if (module == nullptr) {
        qFatal("%s", qPrintable(m_loader.errorString()));
    }
    module->set_param("CommandManager", QVariant::fromValue(static_cast<IOManager*>(&io)));
    module->set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(m_window)));
    module->set_param("BackendVersions", QVariant::fromValue(m_versions.get()));
    const QList<_GuiElement*> elements = module->get_gui_elements();
    if (m_ended) {
        return;
    }
    for (const _GuiElement* element : elements) {
        m_entries << element->menu_entry;
        m_contents << element->content;
    }
    for (const QPointer<QWidget>& content : qAsConst(m_contents)) {
        if (auto* const dock = qobject_cast<QDockWidget*>(content.data())) {
            dock->hide();
            m_window->addDockWidget(Qt::BottomDockWidgetArea, dock);
        }
    }
}

void EndingHost::trigger(int entry) {
    act([&] { m_entries.at(entry)->trigger(); });
}

void EndingHost::pause() {
    act([this] { io.write_log("test", "host", 1, "pause"); });
}

void EndingHost::act(const std::function<void()>& action) {
    if (!m_ended) {
        action();
    }
}

void EndingHost::end() {
    m_ended = true;
    if (m_contents.isEmpty()) {
        const auto children = m_window->findChildren<QWidget*>();
        for (QWidget* child : children) {
            if (qobject_cast<QDialog*>(child) || qobject_cast<QDockWidget*>(child)) {
                m_builtEarly << child;
            }
        }
    }
    switch (m_endBy) {
    case EndBy::EventsThenExit:
        QCoreApplication::processEvents();
        module->about_to_exit_module();
        [[fallthrough]];
    case EndBy::Exit:
    case EndBy::ExitThenUnload:
        module->exit_module();
        m_versions.reset();
        break;
    case EndBy::ParentDeath:
        delete m_window.data();
        break;
    case EndBy::EventsThenClose:
        closeByUser();
        break;
    case EndBy::RootDeath:
        delete m_loader.instance();
        module = nullptr;
        m_versions.reset();
        break;
    case EndBy::DeleteLater:
        deleteContentsLater();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        break;
    case EndBy::ExitAndUnload:
        module->about_to_exit_module();
        module->exit_module();
        unload();
        m_versions.reset();
        break;
    }
    m_saidAtEnd = io.journal().size();
}

void EndingHost::deleteContentsLater() {
    const auto contents = m_contents + m_builtEarly;
    for (const QPointer<QWidget>& content : contents) {
        if (!content.isNull()) {
            content->deleteLater();
        }
    }
}

void EndingHost::closeByUser() {
    QTimer::singleShot(0, m_window, &QWidget::close);
    QElapsedTimer elapsed;
    elapsed.start();
    while (!m_window.isNull() && !elapsed.hasExpired(hangingDialogMs)) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void EndingHost::unload() {
    module = nullptr;
    m_loader.unload();
}

QString EndingHost::objection() {
    if (m_endBy == EndBy::ExitThenUnload) {
        unload(); // before the event loop has deleted anything
        if (LoadedPlugin::isMapped(QFileInfo(m_plugin).fileName())) {
            return QStringLiteral("still mapped");
        }
    }
    handleWhatIsDue();
    if (!dog.strays().isEmpty()) {
        return QStringLiteral("stays open: ") + dog.strays().join(QLatin1Char(' '));
    }
    if (QApplication::activeModalWidget() != nullptr) {
        return QStringLiteral("a dialog is still open");
    }
    const auto contents = m_contents + m_builtEarly;
    for (const QPointer<QWidget>& content : contents) {
        if (!content.isNull()) {
            return QStringLiteral("lives on: ") + content->objectName();
        }
    }
    for (const char* channel : {"fr", "ts", "6dmt", "6dmt2", "6dmtr"}) {
        if (!io.requesters(channel).empty()) {
            return QStringLiteral("still subscribed");
        }
    }
    if (!io.measurementRequesters().empty()) {
        return QStringLiteral("still registered");
    }
    // The call in which it ended is noted last; a registration that it completes is taken back.
    const auto journal = io.journal();
    for (std::size_t i = m_saidAtEnd + 1; i < journal.size(); ++i) {
        if (journal[i].rfind("unregister", 0) != 0) {
            return QStringLiteral("talks on: ") + QString::fromStdString(journal[i]);
        }
    }
    return {};
}

QString EndingSweep::play(EndingHost& host) const {
    QEventLoop loop;
    QString objection;
    QTimer::singleShot(0, &loop, [&] {
        script(host.io);
        host.load();
        host.act([&] { flow(host); });
        objection = host.hasEnded() ? host.objection() : QString();
        loop.quit();
    });
    loop.exec();
    return objection;
}

QString EndingSweep::run(EndBy endBy) const {
    QElapsedTimer elapsed;
    elapsed.start();
    int count = 0;
    {
        setCase(name + QLatin1String(", undisturbed"));
        EndingHost undisturbed(plugin, endBy, -1, places);
        const QString objection = play(undisturbed);
        count = undisturbed.places();
        if (!objection.isEmpty() || count == 0 || !undisturbed.dog.strays().isEmpty()) {
            return QStringLiteral("undisturbed: ") + objection;
        }
    }
    for (int place = 0; place < count; ++place) {
        const QString text = QStringLiteral("%1: %2 at place %3")
                                 .arg(name, QLatin1String(endings[int(endBy)].name))
                                 .arg(place);
        setCase(text);
        EndingHost host(plugin, endBy, place, places);
        const QString objection = play(host);
        if (!host.hasEnded()) {
            return text + QLatin1String(": not reached");
        }
        if (!objection.isEmpty()) {
            return text + QLatin1String(": ") + objection;
        }
    }
    ::alarm(0);
    qInfo("%-24s %-40s %4d places %6lld ms", qPrintable(name), endings[int(endBy)].name, count,
          elapsed.elapsed());
    return {};
}

void addEndingRows(const QStringList& flows, bool deleteLater) {
    QTest::addColumn<EndBy>("endBy");
    QTest::addColumn<int>("flow");
    QTest::addColumn<QString>("name");
    for (const Named& ending : endings) {
        if (ending.endBy == EndBy::DeleteLater && !deleteLater) {
            continue;
        }
        int flow = 0;
        for (const QString& name : flows) {
            QTest::addRow("%s, %s", qPrintable(name), ending.name)
                << ending.endBy << flow++ << name;
        }
    }
}
