#pragma once

#include <QString>

namespace workbench {

/// Where data of the workbench go, as a URL says it:
///
/// - udp://HOST[:9870]
/// - mqtt://[USER@]HOST[:1883]/PREFIX[?OPTIONS], mqtts://[USER@]HOST[:8883]/PREFIX[?OPTIONS]
/// - igtl://[ADDRESS][:18944]
///
/// An IPv6 address stands in brackets. OPTIONS are NAME=VALUE with "&" between them: station,
/// password-file and, for mqtts, ca, certificate and key, all of them but the first with absolute
/// file names. "%20" and the like stand for characters with a meaning of their own.
struct OutletUrl {
    enum class Kind { Udp, Mqtt, Igtl };

    Kind kind = Kind::Udp;
    QString text; ///< as it was given, without blanks around it; has no password
    /// A name, or an address without brackets. Empty with Igtl: for clients of this machine alone.
    QString host;
    quint16 port = 0;
    bool isEncrypted = false;
    QString user;
    QString prefix;  ///< of the topics, without "/" at its ends
    QString station; ///< one level of a topic; empty: the computer's name
    QString passwordFile;
    QString caFile; ///< empty: the system's authorities
    QString certificateFile;
    QString keyFile;

    /// False with a sentence in `*error`, and nothing else changed, when `text` is no such URL.
    bool parse(const QString& text, QString* error);
};

} // namespace workbench
