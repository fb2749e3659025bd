#pragma once

#include "host_api/iomanager.h"
#include "workbench/controller/commandchannel.h"

#include <cstdarg>
#include <string>
#include <string_view>

class QThread;

namespace workbench {

class ControllerSession;
class LogModel;
class RequesterRegistry;

/// What modules get as their command channel. Operations wait for the reply on the GUI thread, at
/// most for one time-out; while the session is not ready they fail at once.
class HostIo : public IOManager {
public:
    HostIo(ControllerSession& session, RequesterRegistry& registry, LogModel& log);

    int set_channel_option(int channel, int timeout_ms, int flags) override;
    int send_command(char* reply, const char* command) override;
    int get_parameter_string(char* reply, const char* format, ...) override
        KESTREL_PRINTF_FORMAT(3, 4);
    int get_parameter_int(int* value, const char* format, ...) override KESTREL_PRINTF_FORMAT(3, 4);
    int get_parameter_double(double* value, const char* format, ...) override
        KESTREL_PRINTF_FORMAT(3, 4);
    int get_parameter_bool(bool* value, const char* format, ...) override
        KESTREL_PRINTF_FORMAT(3, 4);
    int set_parameter(const char* format, ...) override KESTREL_PRINTF_FORMAT(2, 3);
    int register_data_requester(const char* channel, Requester* requester) override;
    int unregister_data_requester(const char* channel, Requester* requester) override;
    int register_measurement_requester(Requester* requester) override;
    int unregister_measurement_requester(Requester* requester) override;
    void write_log(const char* category, const char* source, int level, const char* text) override;

private:
    CommandChannel::Answer ask(const std::string& command);
    CommandChannel::Answer get(const char* format, std::va_list arguments);
    template <typename Value>
    int getConverted(Value* value, int (*convert)(std::string_view, Value*), const char* format,
                     std::va_list arguments);
    int reported(int result, const char* what);

    ControllerSession& m_session;
    RequesterRegistry& m_registry;
    LogModel& m_log;
    QThread* m_guiThread;
    int m_nextTimeoutMs = CommandChannel::defaultTimeoutMs;
};

} // namespace workbench
