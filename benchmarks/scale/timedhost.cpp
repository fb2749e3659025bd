#include "benchmarks/scale/timedhost.h"

#include "benchmarks/scale/sender.h"
#include "libs/kestrel_wire/lineframer.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>

namespace {

double monotonicSeconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

const char* textOf(const std::string* formatted) {
    return formatted == nullptr ? "" : formatted->c_str();
}

} // namespace

// Counter and time stamp come before the lines of the module.
class TimedHost::FrameHead : public Requester {
public:
    explicit FrameHead(TimedHost& host)
        : m_host(host) {}
    virtual ~FrameHead() = default;

    int set_ascii_data(const char* type, const char* data) override {
        if (std::strcmp(type, "ts") == 0) {
            m_host.m_sentAt = std::strtod(data + 3, nullptr);
        } else if (std::strtoll(data + 3, nullptr, 10) >= firstFrame) {
            const std::lock_guard<std::mutex> lock(m_host.m_mutex);
            ++m_host.m_times.frames;
        }
        return 0;
    }
    void set_mea_started() override {}
    void set_mea_stopped() override {}

private:
    TimedHost& m_host;
};

class TimedHost::TimedRequester : public Requester {
public:
    TimedRequester(TimedHost& host, Requester& requester)
        : m_host(host)
        , m_requester(requester) {}
    virtual ~TimedRequester() = default;

    int set_ascii_data(const char* type, const char* data) override {
        const double begin = monotonicSeconds();
        const int result = m_requester.set_ascii_data(type, data);
        const double call = monotonicSeconds() - begin;
        const std::lock_guard<std::mutex> lock(m_host.m_mutex);
        LineTimes& times = m_host.m_times;
        times.longestCall = std::max(times.longestCall, call);
        if (m_host.m_sentAt > 0.0) {
            times.longestUnderWay = std::max(times.longestUnderWay, begin - m_host.m_sentAt);
        }
        ++(result == 0 ? times.accepted : times.rejected);
        return result;
    }
    void set_mea_started() override { m_requester.set_mea_started(); }
    void set_mea_stopped() override { m_requester.set_mea_stopped(); }

private:
    TimedHost& m_host;
    Requester& m_requester;
};

TimedHost::TimedHost(IOManager& host)
    : m_host(host)
    , m_head(std::make_unique<FrameHead>(*this)) {
    m_host.register_data_requester("fr", m_head.get());
    m_host.register_data_requester("ts", m_head.get());
}

TimedHost::~TimedHost() {
    m_host.unregister_data_requester("fr", m_head.get());
    m_host.unregister_data_requester("ts", m_head.get());
}

LineTimes TimedHost::times() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_times;
}

void TimedHost::reset() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_times = LineTimes();
}

int TimedHost::set_channel_option(int channel, int timeout_ms, int flags) {
    return m_host.set_channel_option(channel, timeout_ms, flags);
}

int TimedHost::send_command(char* reply, const char* command) {
    return m_host.send_command(reply, command);
}

int TimedHost::getString(char* reply, const std::string* parameter, const char* /*format*/) {
    return m_host.get_parameter_string(reply, "%s", textOf(parameter));
}

int TimedHost::getInt(int* value, const std::string* parameter, const char* /*format*/) {
    return m_host.get_parameter_int(value, "%s", textOf(parameter));
}

int TimedHost::getDouble(double* value, const std::string* parameter, const char* /*format*/) {
    return m_host.get_parameter_double(value, "%s", textOf(parameter));
}

int TimedHost::getBool(bool* value, const std::string* parameter, const char* /*format*/) {
    return m_host.get_parameter_bool(value, "%s", textOf(parameter));
}

int TimedHost::set(const std::string* setting, const char* /*format*/) {
    return m_host.set_parameter("%s", textOf(setting));
}

int TimedHost::register_data_requester(const char* channel, Requester* requester) {
    std::unique_ptr<TimedRequester>& timed = m_timed[requester];
    if (timed == nullptr) {
        timed = std::make_unique<TimedRequester>(*this, *requester);
    }
    return m_host.register_data_requester(channel, timed.get());
}

int TimedHost::unregister_data_requester(const char* channel, Requester* requester) {
    const auto timed = m_timed.find(requester);
    return timed == m_timed.end() ? -1
                                  : m_host.unregister_data_requester(channel, timed->second.get());
}

int TimedHost::register_measurement_requester(Requester* requester) {
    return m_host.register_measurement_requester(requester);
}

int TimedHost::unregister_measurement_requester(Requester* requester) {
    return m_host.unregister_measurement_requester(requester);
}

void TimedHost::write_log(const char* category, const char* source, int level, const char* text) {
    m_host.write_log(category, source, level, text);
}
