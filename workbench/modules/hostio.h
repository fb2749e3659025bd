#pragma once

#include "host_api/iomanager.h"
#include "libs/kestrel_wire/formattedhost.h"
#include "workbench/controller/command/commandchannel.h"

#include <string>
#include <string_view>

class QThread;

namespace workbench {

class ControllerSession;
class LogModel;
class OutletHub;
class RequesterRegistry;

/// What modules get as their command channel. Operations wait for the reply on the GUI thread, at
/// most for one time-out; while the session is not ready they fail at once.
class HostIo : public kestrel_wire::FormattedHost<IOManager> {
public:
    /// `outlets` get what modules log as results; it may be null.
    HostIo(ControllerSession& session, RequesterRegistry& registry, LogModel& log,
           OutletHub* outlets = nullptr);

    int set_channel_option(int channel, int timeout_ms, int flags) override;
    int send_command(char* reply, const char* command) override;
    int register_data_requester(const char* channel, Requester* requester) override;
    int unregister_data_requester(const char* channel, Requester* requester) override;
    int register_measurement_requester(Requester* requester) override;
    int unregister_measurement_requester(Requester* requester) override;
    void write_log(const char* category, const char* source, int level, const char* text) override;

private:
    int getString(char* reply, const std::string* parameter, const char* format) override;
    int getInt(int* value, const std::string* parameter, const char* format) override;
    int getDouble(double* value, const std::string* parameter, const char* format) override;
    int getBool(bool* value, const std::string* parameter, const char* format) override;
    int set(const std::string* setting, const char* format) override;

    CommandChannel::Answer ask(const std::string& command);
    CommandChannel::Answer get(const std::string* parameter, const char* format);
    template <typename Value>
    int getConverted(Value* value, int (*convert)(std::string_view, Value*),
                     const std::string* parameter, const char* format);
    int reported(int result, const char* what);

    ControllerSession& m_session;
    RequesterRegistry& m_registry;
    LogModel& m_log;
    OutletHub* m_outlets;
    QThread* m_guiThread;
    int m_nextTimeoutMs = CommandChannel::defaultTimeoutMs;
};

} // namespace workbench
