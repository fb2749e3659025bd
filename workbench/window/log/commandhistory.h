#pragma once

#include <QString>
#include <QStringList>

namespace workbench {

/// The commands that were typed, to be walked through with the arrow keys. Bounded; a command that
/// is given twice in a row is kept once.
class CommandHistory {
public:
    static constexpr int maxCommands = 100;

    void setCommands(const QStringList& commands);
    const QStringList& commands() const { return m_commands; } ///< the oldest first

    /// Appends and goes back to the end.
    void add(const QString& command);

    /// The command before the present place; `typed` is what stands in the line now and comes back
    /// at the end. At the beginning it stays on the first command.
    QString previous(const QString& typed);
    QString next(const QString& typed);

private:
    QStringList m_commands;
    QString m_typed;
    int m_place = 0; // == size: behind the last
};

} // namespace workbench
