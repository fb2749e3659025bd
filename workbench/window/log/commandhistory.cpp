#include "workbench/window/log/commandhistory.h"

#include <algorithm>

namespace workbench {

void CommandHistory::setCommands(const QStringList& commands) {
    m_commands = commands.mid(std::max(0, commands.size() - maxCommands));
    m_place = m_commands.size();
}

void CommandHistory::add(const QString& command) {
    if (!command.isEmpty() && (m_commands.isEmpty() || m_commands.constLast() != command)) {
        m_commands += command;
    }
    setCommands(m_commands);
    m_typed.clear();
}

QString CommandHistory::previous(const QString& typed) {
    if (m_commands.isEmpty()) {
        return typed;
    }
    if (m_place == m_commands.size()) {
        m_typed = typed;
    }
    m_place = std::max(0, m_place - 1);
    return m_commands.at(m_place);
}

QString CommandHistory::next(const QString& typed) {
    if (m_place == m_commands.size()) {
        return typed;
    }
    ++m_place;
    return m_place == m_commands.size() ? m_typed : m_commands.at(m_place);
}

} // namespace workbench
