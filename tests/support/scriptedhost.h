#pragma once

#include "host_api/iomanager.h"
#include "libs/kestrel_wire/formattedhost.h"

#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// A host whose answers are a table and whose calls are a journal: the test's side of IOManager.
///
/// Each operation adds one line to the journal, in the order of the calls:
///   "get_string measurementtool available"      "set measurementtool number_of_tools 3"
///   "get_int ..." "get_double ..." "get_bool ..." "send kestrel2 tracking start"
///   "set_channel_option 0 5000 0"               "register 6dmt" "unregister 6dmt"
///   "register_measurement" "unregister_measurement"
///   "log standard KESTREL3 1 Error: ..."
/// Formatting follows C's printf in the "C" locale. A parameter without an entry in the table fails
/// with error 1. set_parameter and send_command succeed ("kestrel2 ok") unless told otherwise.
/// Registrations and journal are safe to use from several threads.
class ScriptedHost
    : public kestrel_wire::FormattedHost<IOManager, std::numeric_limits<int>::max()> {
public:
    // --- the script ---

    /// The value of a parameter, for all get operations. `set_parameter` does not change it.
    void answer(const std::string& parameter, const std::string& value);

    /// Values for the next calls, one each; the last one stays.
    void answerInTurn(const std::string& parameter, const std::vector<std::string>& values);

    /// The whole reply line to a command; without one it is "kestrel2 ok".
    void answerCommand(const std::string& command, const std::string& replyLine);
    void answerCommandInTurn(const std::string& command, const std::vector<std::string>& lines);

    /// Makes every operation on exactly this parameter, setting or command fail with `error`.
    /// Like a real host it may leave rubbish in the buffer.
    void fail(const std::string& text, int error = 1);
    void succeed(const std::string& text); ///< takes that back

    /// What a failing controller operation looks like in a fault sweep. Behind the bar: what a
    /// number (int, double) and a truth value become. Options and registrations have nothing but a
    /// result; a registration that fails registers nobody.
    enum class Fault {
        Error,        ///< result 1, rubbish in the buffer | rubbish, the opposite
        EmptyReply,   ///< success, empty text | left as they were
        Garbage,      ///< success, bytes that are no text | lowest and nan, the opposite
        Unterminated, ///< success, 200 bytes without a terminator | highest and inf, the opposite
        HugeNumber,   ///< success, "2000000000" | 2000000000, true
        MinusOne,     ///< success, "-1" | -1, true
    };

    /// Lets the `index`-th controller operation from now go wrong (0-based; all but log lines are
    /// counted); with `fromThenOn` all that follow as well.
    void injectFault(int index, Fault fault, bool fromThenOn);
    void clearFault();

    /// Number of controller operations since construction or the last clearJournal.
    int operationCount() const;

    /// Called on each operation before it is answered, with its journal line and without a lock
    /// held: the place to deliver a line, a stop or a delete from inside a query.
    std::function<void(const std::string& line)> onOperation;

    // --- what happened ---

    std::vector<std::string> journal() const;
    /// The journal without log lines, or the texts of the log lines alone.
    std::vector<std::string> operations() const;
    std::vector<std::string> logTexts() const;
    void clearJournal();

    std::vector<Requester*> requesters(const std::string& channel) const;
    std::vector<Requester*> measurementRequesters() const;

    /// Hands a line to the requesters of the channel that is its first word; returns the last
    /// result, or 0 when nobody has subscribed.
    int deliver(const std::string& line);
    void startMeasurement();
    void stopMeasurement();

    // --- IOManager ---
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

    struct Answer {
        int result = 0;
        std::string text;
        bool terminated = true;
        std::optional<Fault> fault;
    };

    std::optional<Fault> nextFault();
    static Answer faultyAnswer(Fault fault);
    int acknowledge(const std::string& line);
    Answer ask(const std::string& verb, const std::string& text, bool isCommand);
    static void write(char* reply, const Answer& answer);
    void record(const std::string& line);

    mutable std::mutex m_mutex;
    std::map<std::string, std::deque<std::string>> m_values;
    std::map<std::string, std::deque<std::string>> m_commandReplies;
    std::map<std::string, int> m_failures;
    std::vector<std::string> m_journal;
    int m_operations = 0;
    int m_faultIndex = -1;
    Fault m_fault = Fault::Error;
    bool m_faultStays = false;
    std::map<std::string, std::vector<Requester*>> m_requesters;
    std::vector<Requester*> m_measurementRequesters;
};
