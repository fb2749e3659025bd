#pragma once

#include "general/host/hostpointer.h"

#include <QString>

#include <array>

class BackendVersions;

/// How the module's dialogs talk to the host: one reply buffer, one log line, one version gate and
/// the three queries that every dialog shares. All functions run on the GUI thread.
namespace hostlink {

/// Owns the buffer that the host writes a reply into. Starts zeroed and is always terminated, even
/// when a host fills all the bytes that it is allowed to write.
class Reply {
public:
    static constexpr int Size = 200; ///< bytes that a host may write, terminator included

    /// To be handed to IOManager; zeroed by each call, so a failed query leaves no old text behind.
    char* buffer();

    const char* text() const { return m_text.data(); }

    /// Exact, case-sensitive comparison of the whole reply.
    bool is(const char* expected) const;

    /// The reply as the controller's UTF-8.
    QString toString() const { return QString::fromUtf8(text()); }

private:
    std::array<char, Size + 1> m_text{};
};

/// No query is ever made for a body or device beyond this number, however many a reply or a data
/// line promises: a nonsense count must not keep the GUI busy.
inline constexpr int mostBodies = 255;

/// The acknowledgement of an action.
inline constexpr const char* ok = "kestrel2 ok";

/// Writes one line into the host's log, with the category, source and level of all module messages.
void log(const HostPointer& iom, const QString& text);

/// The same with `value` filled into "%1" of the text; the value itself is not searched for
/// placeholders.
void log(const HostPointer& iom, const char* text, const QString& value);

/// True when the controller's protocol is at least major.minor.0; an unknown patch (-1) passes.
/// No version record at all does not.
bool protocolPasses(const BackendVersions* versions, int major, int minor);

/// "measurementtool available"; false on any doubt and below protocol 1.3, without asking.
bool isMtAvailable(const HostPointer& iom, const BackendVersions* versions);

/// "tracking available"; true on any doubt and below protocol 0.17, without asking.
bool isTrackingAvailable(const HostPointer& iom, const BackendVersions* versions);

/// "config is_changeable" answered "no"; false on any doubt and below protocol 1.9, without asking.
bool isConfigLocked(const HostPointer& iom, const BackendVersions* versions);

} // namespace hostlink
