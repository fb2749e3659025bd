#pragma once

#include <QMetaType>
#include <QString>

namespace workbench {

/// Where a controller listens, and the own port that it is to send its data lines to.
struct ControllerAddress {
    static constexpr quint16 defaultPort = 47300;

    QString host = QStringLiteral("127.0.0.1");
    quint16 port = defaultPort;
    quint16 dataPort = 0; ///< 0: any free one

    /// Reads "HOST", "HOST:PORT", "[IPV6]" or "[IPV6]:PORT". False, and `*this` untouched, for
    /// anything else.
    bool parse(const QString& text);

    QString toString() const; ///< "127.0.0.1:47300", "[::1]:47300"
};

} // namespace workbench

Q_DECLARE_METATYPE(workbench::ControllerAddress)
