#include "workbench/controller/simulator/simulatorwords.h"

#include "libs/kestrel_wire/command.h"
#include "workbench/controller/command/commandchannel.h"
#include "workbench/controller/command/replyrules.h"

#include <QRegularExpression>

#include <algorithm>
#include <memory>

namespace workbench {

namespace {

// They go back to the controller as they are.
bool areWords(const QStringList& words) {
    static const QRegularExpression word(QStringLiteral("\\A[a-z][a-z0-9-]{0,49}\\z"));
    return words.size() <= SimulatorWords::maxWords &&
           std::all_of(words.cbegin(), words.cend(),
                       [](const QString& text) { return word.match(text).hasMatch(); });
}

struct Answers {
    SimulatorWords words;
    bool isGood = true;

    void take(QStringList& list, const CommandChannel::Answer& answer) {
        list = QString::fromStdString(answer.reply.value).split(QStringLiteral(", "));
        isGood = isGood && answer.result == Success && areWords(list);
    }
    void takeButtons(const CommandChannel::Answer& answer) {
        isGood = isGood && answer.result == Success &&
                 replyrules::toInt(answer.reply.value, &words.buttons) == Success &&
                 words.buttons >= 0 && words.buttons <= SimulatorWords::maxButtons;
    }
};

} // namespace

bool SimulatorWords::operator==(const SimulatorWords& other) const {
    return motions == other.motions && pivots == other.pivots &&
           misbehaviours == other.misbehaviours && buttons == other.buttons;
}

void SimulatorWords::ask(CommandChannel& channel, const Done& done) {
    const auto answers = std::make_shared<Answers>();
    const auto askFor = [&channel, &answers](const char* name, QStringList SimulatorWords::*list) {
        channel.askLater(kestrel_wire::getCommand(name),
                         [answers, list](const CommandChannel::Answer& answer) {
                             answers->take(answers->words.*list, answer);
                         });
    };
    askFor("sim motions", &SimulatorWords::motions);
    askFor("sim pivots", &SimulatorWords::pivots);
    askFor("sim misbehaviours", &SimulatorWords::misbehaviours);
    channel.askLater(kestrel_wire::getCommand("sim buttons"),
                     [answers, done](const CommandChannel::Answer& answer) {
                         if (answer.result == NotConnected || answer.result == TimedOut) {
                             return;
                         }
                         answers->takeButtons(answer);
                         done(answers->isGood ? std::make_optional(answers->words) : std::nullopt);
                     });
}

} // namespace workbench
