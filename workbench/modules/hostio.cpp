#include "workbench/modules/hostio.h"

#include "libs/kestrel_wire/command.h"
#include "workbench/controller/command/replyrules.h"
#include "workbench/controller/command/resultwords.h"
#include "workbench/controller/controllersession.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/sending/outlethub.h"
#include "workbench/text/logmodel.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr int longestTimeoutMs = 60000;
constexpr const char* replayedResult = "result (replay)"; // nobody takes it for one of today

QString text(const char* bytes) {
    return bytes == nullptr ? QString() : QString::fromUtf8(bytes);
}

} // namespace

HostIo::HostIo(ControllerSession& session, RequesterRegistry& registry, LogModel& log,
               OutletHub* outlets)
    : m_session(session)
    , m_registry(registry)
    , m_log(log)
    , m_outlets(outlets)
    , m_guiThread(QThread::currentThread()) {}

int HostIo::set_channel_option(int channel, int timeout_ms, int flags) {
    if (channel != 0 || timeout_ms <= 0 || flags != 0) {
        return BadArgument;
    }
    m_nextTimeoutMs = std::min(timeout_ms, longestTimeoutMs);
    return Success;
}

CommandChannel::Answer HostIo::ask(const std::string& command) {
    CommandChannel::Answer answer;
    if (QThread::currentThread() != m_guiThread) {
        answer.result = WrongThread;
        reported(WrongThread, command.c_str());
        return answer;
    }
    const int timeout = std::exchange(m_nextTimeoutMs, CommandChannel::defaultTimeoutMs);
    return m_session.isReady() ? m_session.channel().ask(command, timeout) : answer;
}

CommandChannel::Answer HostIo::get(const std::string* parameter, const char* format) {
    CommandChannel::Answer answer;
    if (parameter == nullptr || parameter->empty()) {
        answer.result = reported(BadCommand, format);
        return answer;
    }
    answer = ask(kestrel_wire::getCommand(*parameter));
    if (answer.result == BadCommand) {
        reported(BadCommand, format);
    } else if (answer.result == Success && answer.reply.kind != kestrel_wire::Reply::Kind::Value) {
        answer.result = MalformedReply;
    }
    return answer;
}

// What the channel cannot know of: the reasons that lie between a module and the channel.
int HostIo::reported(int result, const char* what) {
    m_log.problem(QStringLiteral("%1: %2").arg(resultWords(result), text(what)));
    return result;
}

int HostIo::send_command(char* reply, const char* command) {
    if (reply == nullptr || command == nullptr) {
        return BadArgument;
    }
    reply[0] = '\0';
    const CommandChannel::Answer answer = ask(command);
    if (answer.result == BadCommand) {
        return reported(BadCommand, command);
    }
    if (answer.result < 0) {
        return answer.result;
    }
    const int copied = replyrules::copyText(reply, answer.line);
    return copied == Success ? answer.result : reported(copied, command);
}

int HostIo::getString(char* reply, const std::string* parameter, const char* format) {
    if (reply == nullptr) {
        return BadArgument;
    }
    reply[0] = '\0';
    const CommandChannel::Answer answer = get(parameter, format);
    if (answer.result != Success) {
        return answer.result;
    }
    const int copied = replyrules::copyText(reply, answer.reply.value);
    return copied == Success ? copied : reported(copied, format);
}

template <typename Value>
int HostIo::getConverted(Value* value, int (*convert)(std::string_view, Value*),
                         const std::string* parameter, const char* format) {
    const CommandChannel::Answer answer = get(parameter, format);
    if (answer.result != Success) {
        return answer.result;
    }
    const int result = value == nullptr ? int(BadArgument) : convert(answer.reply.value, value);
    return result == Success ? result : reported(result, answer.line.c_str());
}

int HostIo::getInt(int* value, const std::string* parameter, const char* format) {
    return getConverted(value, &replyrules::toInt, parameter, format);
}

int HostIo::getDouble(double* value, const std::string* parameter, const char* format) {
    return getConverted(value, &replyrules::toDouble, parameter, format);
}

int HostIo::getBool(bool* value, const std::string* parameter, const char* format) {
    return getConverted(value, &replyrules::toBool, parameter, format);
}

int HostIo::set(const std::string* setting, const char* format) {
    if (setting == nullptr || setting->empty()) {
        return reported(BadCommand, format);
    }
    const CommandChannel::Answer answer = ask(kestrel_wire::setCommand(*setting));
    return answer.result == BadCommand ? reported(BadCommand, format) : answer.result;
}

int HostIo::register_data_requester(const char* channel, Requester* requester) {
    return channel == nullptr ? int(BadArgument) : m_registry.add(channel, requester);
}

int HostIo::unregister_data_requester(const char* channel, Requester* requester) {
    return channel == nullptr ? int(BadArgument) : m_registry.remove(channel, requester);
}

int HostIo::register_measurement_requester(Requester* requester) {
    return m_registry.addForMeasurement(requester);
}

int HostIo::unregister_measurement_requester(Requester* requester) {
    return m_registry.removeForMeasurement(requester);
}

void HostIo::write_log(const char* category, const char* source, int level, const char* message) {
    const bool isResult = category != nullptr && isResultCategory(category);
    const bool isReplayed = isResult && m_outlets != nullptr && m_outlets->isReplay();
    m_log.add(isReplayed ? QLatin1String(replayedResult) : text(category), text(source), level,
              text(message));
    if (isResult && m_outlets != nullptr) {
        m_outlets->result(text(source), text(message));
    }
}

} // namespace workbench
