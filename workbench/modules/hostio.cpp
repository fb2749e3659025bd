#include "workbench/modules/hostio.h"

#include "libs/kestrel_wire/command.h"
#include "libs/kestrel_wire/printftext.h"
#include "workbench/controller/controllersession.h"
#include "workbench/controller/replyrules.h"
#include "workbench/controller/requesterregistry.h"
#include "workbench/text/logmodel.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr int longestTimeoutMs = 60000;

QString text(const char* bytes) {
    return bytes == nullptr ? QString() : QString::fromUtf8(bytes);
}

} // namespace

HostIo::HostIo(ControllerSession& session, RequesterRegistry& registry, LogModel& log)
    : m_session(session)
    , m_registry(registry)
    , m_log(log)
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

CommandChannel::Answer HostIo::get(const char* format, std::va_list arguments) {
    std::string parameter;
    CommandChannel::Answer answer;
    if (!kestrel_wire::printfText(parameter, kestrel_wire::maxLineLength, format, arguments) ||
        parameter.empty()) {
        answer.result = reported(BadCommand, format);
        return answer;
    }
    answer = ask(kestrel_wire::getCommand(parameter));
    if (answer.result == BadCommand) {
        reported(BadCommand, format);
    } else if (answer.result == Success && answer.reply.kind != kestrel_wire::Reply::Kind::Value) {
        answer.result = MalformedReply;
    }
    return answer;
}

// What the channel cannot know of: the reasons that lie between a module and the channel.
int HostIo::reported(int result, const char* what) {
    m_log.problem(QStringLiteral("%1: %2").arg(
        QLatin1String(describe(static_cast<ChannelResult>(result))), text(what)));
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

int HostIo::get_parameter_string(char* reply, const char* format, ...) {
    if (reply == nullptr) {
        return BadArgument;
    }
    reply[0] = '\0';
    std::va_list arguments;
    va_start(arguments, format);
    const CommandChannel::Answer answer = get(format, arguments);
    va_end(arguments);
    if (answer.result != Success) {
        return answer.result;
    }
    const int copied = replyrules::copyText(reply, answer.reply.value);
    return copied == Success ? copied : reported(copied, format);
}

template <typename Value>
int HostIo::getConverted(Value* value, int (*convert)(std::string_view, Value*), const char* format,
                         std::va_list arguments) {
    const CommandChannel::Answer answer = get(format, arguments);
    if (answer.result != Success) {
        return answer.result;
    }
    const int result = value == nullptr ? int(BadArgument) : convert(answer.reply.value, value);
    return result == Success ? result : reported(result, answer.line.c_str());
}

int HostIo::get_parameter_int(int* value, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = getConverted(value, &replyrules::toInt, format, arguments);
    va_end(arguments);
    return result;
}

int HostIo::get_parameter_double(double* value, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = getConverted(value, &replyrules::toDouble, format, arguments);
    va_end(arguments);
    return result;
}

int HostIo::get_parameter_bool(bool* value, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = getConverted(value, &replyrules::toBool, format, arguments);
    va_end(arguments);
    return result;
}

int HostIo::set_parameter(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string setting;
    const bool good =
        kestrel_wire::printfText(setting, kestrel_wire::maxLineLength, format, arguments);
    va_end(arguments);
    if (!good || setting.empty()) {
        return reported(BadCommand, format);
    }
    const CommandChannel::Answer answer = ask(kestrel_wire::setCommand(setting));
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
    m_log.add(text(category), text(source), level, text(message));
}

} // namespace workbench
