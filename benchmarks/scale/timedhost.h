#pragma once

#include "host_api/iomanager.h"
#include "host_api/requester.h"
#include "libs/kestrel_wire/formattedhost.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// What was seen on the receiving thread.
struct LineTimes {
    long long frames = 0;         ///< with a number of the sender's
    double longestCall = 0.0;     ///< seconds inside one set_ascii_data of the module
    double longestUnderWay = 0.0; ///< seconds from sending to the module
    long long accepted = 0;       ///< lines that the module took
    long long rejected = 0;       ///< lines that it did not
};

/// Stands between the module and the workbench's host: hands everything on, and measures every data
/// line on its way to the module.
class TimedHost : public kestrel_wire::FormattedHost<IOManager> {
public:
    explicit TimedHost(IOManager& host);
    ~TimedHost() override;
    TimedHost(const TimedHost&) = delete;
    TimedHost& operator=(const TimedHost&) = delete;

    LineTimes times() const;
    void reset();

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

    class FrameHead;
    class TimedRequester;

    IOManager& m_host;
    mutable std::mutex m_mutex; // of the times
    LineTimes m_times;
    double m_sentAt = 0.0; // receiving thread only
    std::unique_ptr<FrameHead> m_head;
    std::map<Requester*, std::unique_ptr<TimedRequester>> m_timed;
};
