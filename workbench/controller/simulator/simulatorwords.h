#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace workbench {

class CommandChannel;

/// The words that a simulated controller takes in its own commands, as it tells them itself.
struct SimulatorWords {
    static constexpr int maxWords = 100; ///< of a kind
    static constexpr int maxButtons = 16;

    QStringList motions;
    QStringList pivots;
    QStringList misbehaviours;
    int buttons = 0; ///< of each tool

    bool operator==(const SimulatorWords& other) const;

    /// `done` is called once, from the event loop, and not at all when the connection is lost
    /// meanwhile; without words when the controller does not tell them, as one does that is no
    /// simulator, or when they cannot be words of a command.
    using Done = std::function<void(const std::optional<SimulatorWords>& words)>;
    static void ask(CommandChannel& channel, const Done& done);
};

} // namespace workbench
