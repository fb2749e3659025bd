#include "tests/support/scriptedhost.h"

#include "libs/kestrel_wire/printftext.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t replySize = 200;
constexpr int endless = 1'000'000;

std::string nextOf(std::deque<std::string>& values) {
    const std::string value = values.front();
    if (values.size() > 1) {
        values.pop_front();
    }
    return value;
}

void removeOne(std::vector<Requester*>& list, Requester* requester) {
    const auto found = std::find(list.begin(), list.end(), requester);
    if (found != list.end()) {
        list.erase(found);
    }
}

std::string textOf(const std::string* formatted) {
    return formatted == nullptr ? std::string() : *formatted;
}

} // namespace

void ScriptedHost::answer(const std::string& parameter, const std::string& value) {
    answerInTurn(parameter, {value});
}

void ScriptedHost::answerInTurn(const std::string& parameter,
                                const std::vector<std::string>& values) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_values[parameter].assign(values.begin(), values.end());
}

void ScriptedHost::answerCommand(const std::string& command, const std::string& replyLine) {
    answerCommandInTurn(command, {replyLine});
}

void ScriptedHost::answerCommandInTurn(const std::string& command,
                                       const std::vector<std::string>& lines) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_commandReplies[command].assign(lines.begin(), lines.end());
}

void ScriptedHost::fail(const std::string& text, int error) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_failures[text] = error;
}

void ScriptedHost::succeed(const std::string& text) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_failures.erase(text);
}

void ScriptedHost::injectFault(int index, Fault fault, bool fromThenOn) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faultIndex = m_operations + index;
    m_fault = fault;
    m_faultStays = fromThenOn;
}

void ScriptedHost::clearFault() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faultIndex = -1;
}

int ScriptedHost::operationCount() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_operations;
}

std::vector<std::string> ScriptedHost::journal() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_journal;
}

std::vector<std::string> ScriptedHost::operations() const {
    std::vector<std::string> lines = journal();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) { return line.rfind("log ", 0) == 0; }),
                lines.end());
    return lines;
}

std::vector<std::string> ScriptedHost::logTexts() const {
    static const std::string prefix = "log standard KESTREL3 1 ";
    std::vector<std::string> texts;
    for (const std::string& line : journal()) {
        if (line.rfind("log ", 0) == 0) {
            // A line of another category, source or level is kept whole, so that it stands out.
            texts.push_back(line.rfind(prefix, 0) == 0 ? line.substr(prefix.size()) : line);
        }
    }
    return texts;
}

void ScriptedHost::clearJournal() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_journal.clear();
    m_operations = 0;
    m_faultIndex = -1;
}

std::vector<Requester*> ScriptedHost::requesters(const std::string& channel) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_requesters.find(channel);
    return found == m_requesters.end() ? std::vector<Requester*>() : found->second;
}

std::vector<Requester*> ScriptedHost::measurementRequesters() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_measurementRequesters;
}

int ScriptedHost::deliver(const std::string& line) {
    const std::string channel = line.substr(0, line.find(' '));
    int result = 0;
    for (Requester* requester : requesters(channel)) {
        result = requester->set_ascii_data(channel.c_str(), line.c_str());
    }
    return result;
}

void ScriptedHost::startMeasurement() {
    for (Requester* requester : measurementRequesters()) {
        requester->set_mea_started();
    }
}

void ScriptedHost::stopMeasurement() {
    for (Requester* requester : measurementRequesters()) {
        requester->set_mea_stopped();
    }
}

int ScriptedHost::set_channel_option(int channel, int timeout_ms, int flags) {
    return acknowledge("set_channel_option " + std::to_string(channel) + ' ' +
                       std::to_string(timeout_ms) + ' ' + std::to_string(flags));
}

int ScriptedHost::send_command(char* reply, const char* command) {
    const Answer answer = ask("send", command, true);
    write(reply, answer);
    return answer.result;
}

int ScriptedHost::getString(char* reply, const std::string* parameter, const char* /*format*/) {
    const Answer answer = ask("get_string", textOf(parameter), false);
    write(reply, answer);
    return answer.result;
}

int ScriptedHost::getInt(int* value, const std::string* parameter, const char* /*format*/) {
    const Answer answer = ask("get_int", textOf(parameter), false);
    using Limits = std::numeric_limits<int>;
    if (answer.result != 0) {
        *value = -123456789;
    } else if (answer.fault == Fault::Garbage || answer.fault == Fault::Unterminated) {
        *value = answer.fault == Fault::Garbage ? Limits::min() : Limits::max();
    } else if (answer.fault != Fault::EmptyReply) {
        *value = std::atoi(answer.text.c_str());
    }
    return answer.result;
}

int ScriptedHost::getDouble(double* value, const std::string* parameter, const char* /*format*/) {
    const Answer answer = ask("get_double", textOf(parameter), false);
    using Limits = std::numeric_limits<double>;
    if (answer.result != 0) {
        *value = -123456789.0;
    } else if (answer.fault == Fault::Garbage || answer.fault == Fault::Unterminated) {
        *value = answer.fault == Fault::Garbage ? Limits::quiet_NaN() : Limits::infinity();
    } else if (answer.fault != Fault::EmptyReply) {
        const kestrel_wire::CLocaleScope locale;
        *value = std::strtod(answer.text.c_str(), nullptr);
    }
    return answer.result;
}

int ScriptedHost::getBool(bool* value, const std::string* parameter, const char* /*format*/) {
    const Answer answer = ask("get_bool", textOf(parameter), false);
    const bool isNumber = answer.fault == Fault::HugeNumber || answer.fault == Fault::MinusOne;
    if (answer.result != 0 || answer.fault == Fault::Garbage ||
        answer.fault == Fault::Unterminated) {
        // The opposite of what it found: after a failure the value counts for nothing.
        *value = !*value;
    } else if (answer.fault != Fault::EmptyReply) {
        *value = isNumber || answer.text == "yes";
    }
    return answer.result;
}

int ScriptedHost::set(const std::string* setting, const char* /*format*/) {
    return ask("set", textOf(setting), true).result;
}

int ScriptedHost::register_data_requester(const char* channel, Requester* requester) {
    const int result = acknowledge(std::string("register ") + channel);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (result == 0) {
        m_requesters[channel].push_back(requester);
    }
    return result;
}

int ScriptedHost::unregister_data_requester(const char* channel, Requester* requester) {
    const int result = acknowledge(std::string("unregister ") + channel);
    const std::lock_guard<std::mutex> lock(m_mutex);
    removeOne(m_requesters[channel], requester);
    return result;
}

int ScriptedHost::register_measurement_requester(Requester* requester) {
    const int result = acknowledge("register_measurement");
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (result == 0) {
        m_measurementRequesters.push_back(requester);
    }
    return result;
}

int ScriptedHost::unregister_measurement_requester(Requester* requester) {
    const int result = acknowledge("unregister_measurement");
    const std::lock_guard<std::mutex> lock(m_mutex);
    removeOne(m_measurementRequesters, requester);
    return result;
}

void ScriptedHost::write_log(const char* category, const char* source, int level,
                             const char* text) {
    record(std::string("log ") + category + ' ' + source + ' ' + std::to_string(level) + ' ' +
           text);
}

std::optional<ScriptedHost::Fault> ScriptedHost::nextFault() {
    const int operation = m_operations++;
    if (operation > endless) {
        // Before the journal has eaten the memory: somebody follows a nonsense count.
        std::fprintf(stderr, "ScriptedHost: asked for ever, last %s\n", m_journal.back().c_str());
        std::abort();
    }
    const bool faulty = m_faultIndex >= 0 &&
                        (operation == m_faultIndex || (m_faultStays && operation > m_faultIndex));
    return faulty ? std::optional(m_fault) : std::nullopt;
}

int ScriptedHost::acknowledge(const std::string& line) {
    record(line);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto fault = nextFault();
    return fault ? faultyAnswer(*fault).result : 0;
}

ScriptedHost::Answer ScriptedHost::faultyAnswer(Fault fault) {
    switch (fault) {
    case Fault::Error:
        return {1, "rubbish", true, fault};
    case Fault::EmptyReply:
        return {0, "", true, fault};
    case Fault::Garbage:
        return {0, "\x01\xff\xfe%s%n\x80\"<b>", true, fault};
    case Fault::Unterminated:
        return {0, std::string(replySize, 'x'), false, fault};
    case Fault::HugeNumber:
        return {0, "2000000000", true, fault};
    case Fault::MinusOne:
        return {0, "-1", true, fault};
    }
    return {};
}

ScriptedHost::Answer ScriptedHost::ask(const std::string& verb, const std::string& text,
                                       bool isCommand) {
    record(verb + ' ' + text);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (const auto fault = nextFault()) {
        return faultyAnswer(*fault);
    }
    const auto failure = m_failures.find(text);
    if (failure != m_failures.end()) {
        return {failure->second, "rubbish", true, {}};
    }
    auto& table = isCommand ? m_commandReplies : m_values;
    const auto found = table.find(text);
    if (found != table.end()) {
        return {0, nextOf(found->second), true, {}};
    }
    return isCommand ? Answer{0, "kestrel2 ok", true, {}} : Answer{1, "unknown", true, {}};
}

void ScriptedHost::write(char* reply, const Answer& answer) {
    const std::size_t length =
        std::min(answer.text.size(), answer.terminated ? replySize - 1 : replySize);
    std::memcpy(reply, answer.text.data(), length);
    if (answer.terminated) {
        reply[length] = '\0';
    }
}

void ScriptedHost::record(const std::string& line) {
    // A copy: what is called may replace or remove it.
    if (const auto called = onOperation) {
        called(line);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_journal.push_back(line);
}
