#include "workbench/window/simulatormenu.h"

#include "libs/kestrel_wire/command.h"
#include "workbench/controller/command/replyrules.h"
#include "workbench/controller/controllersession.h"
#include "workbench/modules/entrystates.h"
#include "workbench/modules/menuarranger.h"
#include "workbench/window/log/commanddock.h"

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace workbench {

namespace {

constexpr int menuOrder = 500; // between View and Help
constexpr int maxTools = 100;

} // namespace

SimulatorMenu::SimulatorMenu(const Room& room, QWidget* window)
    : QObject(window)
    , m_room(room)
    , m_window(window) {}

void SimulatorMenu::offer() {
    const int asked = ++m_asked;
    SimulatorWords::ask(m_room.session.channel(), [self = QPointer<SimulatorMenu>(this), asked](
                                                      const std::optional<SimulatorWords>& words) {
        if (!self || asked != self->m_asked) {
            return;
        }
        if (!words) {
            self->withdraw();
        } else if (!(words == self->m_words)) {
            self->build(*words);
        }
        self->refresh();
    });
}

void SimulatorMenu::withdraw() {
    ++m_asked;
    if (!m_words) {
        return;
    }
    m_words.reset();
    m_tools = nullptr;
    m_toolCount = -1;
    m_room.menus.remove(MenuEntry::Owner::Simulator);
    m_room.menus.arrange();
    for (QMenu* menu : m_menus) {
        menu->deleteLater(); // one of its entries may be the one that is being carried out
    }
    m_menus.clear();
}

void SimulatorMenu::refresh() {
    ControllerSession& session = m_room.session;
    // Since then there are tools; any patch of it has them.
    const VersionInfo toolVersion(1, 3, -1);
    if (!m_words || !session.isReady() || session.versions()->protocol() < toolVersion) {
        return;
    }
    session.channel().askLater(kestrel_wire::getCommand("measurementtool number_of_tools"),
                               [self = QPointer<SimulatorMenu>(this),
                                asked = m_asked](const CommandChannel::Answer& answer) {
                                   int count = 0;
                                   if (self && asked == self->m_asked && self->m_words &&
                                       answer.result == Success &&
                                       replyrules::toInt(answer.reply.value, &count) == Success) {
                                       self->buildTools(std::clamp(count, 0, maxTools));
                                   }
                               });
}

void SimulatorMenu::build(const SimulatorWords& words) {
    const int asked = m_asked;
    withdraw();
    m_asked = asked;
    m_words = words;
    m_tools = addMenu(10, tr("&Tools"));
    QMenu* const misbehaviour = addMenu(20, tr("&Misbehaviour"));
    addWords(*misbehaviour, words.misbehaviours, QStringLiteral("kestrel2 sim misbehave %1"));
    misbehaviour->addSeparator();
    addLine(*misbehaviour, tr("&End all"), QStringLiteral("kestrel2 sim behave"));
    QMenu* const calibration = addMenu(30, tr("&Calibration outcome"));
    addWords(*calibration, words.pivots, QStringLiteral("kestrel2 sim pivot %1"));
    buildTools(0);
    m_room.menus.arrange();
}

QMenu* SimulatorMenu::addMenu(int order, const QString& title) {
    auto* const menu = new QMenu(title, m_window);
    menu->setToolTipsVisible(true);
    m_menus.push_back(menu);
    m_room.menus.add(
        {tr("Simulator"), menuOrder, order, menu->menuAction(), MenuEntry::Owner::Simulator});
    m_room.states.add(menu->menuAction(), Need::Connection);
    return menu;
}

void SimulatorMenu::buildTools(int count) {
    if (count == m_toolCount) {
        return;
    }
    m_toolCount = count;
    const auto before = m_tools->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    m_tools->clear();
    for (QMenu* menu : before) {
        menu->deleteLater();
    }
    for (int number = 1; number <= count; ++number) {
        m_tools->addMenu(addToolMenu(number));
    }
    m_tools->menuAction()->setVisible(count > 0);
}

QMenu* SimulatorMenu::addToolMenu(int number) {
    const QString tool = QStringLiteral("tool b%1").arg(number, 2, 10, QLatin1Char('0'));
    const auto line = [&tool](const char* verb, const QString& rest) {
        return QStringLiteral("kestrel2 sim %1 %2%3").arg(QLatin1String(verb), tool, rest);
    };
    auto* const menu = new QMenu(
        QStringLiteral("M%1%2").arg(QLatin1String(number < 10 ? "&" : "")).arg(number), m_tools);
    menu->setToolTipsVisible(true);
    addWords(*menu, m_words->motions, line("move", QStringLiteral(" %1")));
    menu->addSeparator();
    for (int button = 1; button <= m_words->buttons; ++button) {
        addLine(*menu, tr("Press button &%1").arg(button),
                line("press", QStringLiteral(" %1").arg(1U << static_cast<unsigned>(button - 1))));
    }
    addLine(*menu, tr("Let go of the &buttons"), line("press", QStringLiteral(" 0")));
    menu->addSeparator();
    addLine(*menu, tr("&Hide"), line("occlude", QStringLiteral(" yes")));
    addLine(*menu, tr("&Show"), line("occlude", QStringLiteral(" no")));
    menu->addSeparator();
    addLine(*menu, tr("Back to its &own motion"), line("release", QString()));
    return menu;
}

void SimulatorMenu::addWords(QMenu& menu, const QStringList& words, const QString& linePattern) {
    for (const QString& word : words) {
        addLine(menu, word, linePattern.arg(word));
    }
}

void SimulatorMenu::addLine(QMenu& menu, const QString& text, const QString& line) {
    QAction* const action = menu.addAction(text);
    action->setToolTip(line);
    action->setStatusTip(line);
    connect(action, &QAction::triggered, this, [this, line] { m_room.commands.run(line); });
}

} // namespace workbench
