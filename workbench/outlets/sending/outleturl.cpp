#include "workbench/outlets/sending/outleturl.h"

#include <QCoreApplication>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <arpa/inet.h>

namespace workbench {

namespace {

constexpr quint16 udpPort = 9870;
constexpr quint16 mqttPort = 1883;
constexpr quint16 mqttsPort = 8883;
constexpr quint16 igtlPort = 18944;
constexpr int longestUrl = 2000;
constexpr int longestHost = 253;

class UrlTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::OutletUrl)
};

/// The pieces of a URL, still with their percent signs.
struct Pieces {
    QString scheme;
    QString authority;
    QString path; // without its first "/"
    QString query;
    bool hasQuery = false;
};

bool isPlain(QChar c) {
    return c > QLatin1Char(' ') && c.unicode() != 0x7f;
}

// What stands behind "%" counts as UTF-8.
QString decoded(const QString& text) {
    return QUrl::fromPercentEncoding(text.toUtf8());
}

QString cut(const QString& text, Pieces& pieces) {
    if (text.size() > longestUrl || !std::all_of(text.begin(), text.end(), isPlain)) {
        return UrlTexts::tr("this is no URL");
    }
    const int colon = text.indexOf(QLatin1String("://"));
    if (colon <= 0) {
        return UrlTexts::tr("a URL begins with udp://, mqtt://, mqtts:// or igtl://");
    }
    pieces.scheme = text.left(colon).toLower();
    QString rest = text.mid(colon + 3);
    const int query = rest.indexOf(QLatin1Char('?'));
    if (query >= 0) {
        pieces.hasQuery = true;
        pieces.query = rest.mid(query + 1);
        rest.truncate(query);
    }
    const int slash = rest.indexOf(QLatin1Char('/'));
    pieces.authority = rest.left(slash);
    pieces.path = slash < 0 ? QString() : rest.mid(slash + 1);
    return {};
}

QString readUser(QString& authority, OutletUrl& url) {
    const int at = authority.lastIndexOf(QLatin1Char('@'));
    if (at < 0) {
        return {};
    }
    const QString user = authority.left(at);
    authority.remove(0, at + 1);
    if (url.kind != OutletUrl::Kind::Mqtt) {
        return UrlTexts::tr("only mqtt:// and mqtts:// take a user");
    }
    if (user.contains(QLatin1Char(':'))) {
        return UrlTexts::tr("a password does not belong into a URL, where others see it: write it "
                            "into a file and add ?password-file=FILE");
    }
    url.user = decoded(user);
    return url.user.isEmpty() ? UrlTexts::tr("the user before \"@\" is missing") : QString();
}

QString readPort(const QString& text, OutletUrl& url) {
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    if (!isNumber || port < 1 || port > 65535 || !text.at(0).isDigit()) {
        return UrlTexts::tr("a port is a number from 1 to 65535");
    }
    url.port = static_cast<quint16>(port);
    return {};
}

bool isAddress(const QString& text) {
    in6_addr ignored{};
    const QByteArray bytes = text.toUtf8();
    const QByteArray withoutZone = text.section(QLatin1Char('%'), 0, 0).toUtf8();
    return ::inet_pton(AF_INET, bytes.constData(), &ignored) == 1 ||
           ::inet_pton(AF_INET6, withoutZone.constData(), &ignored) == 1;
}

// Resolvers know more names than these, none of which has anything a URL or a topic could hide in.
bool isHostName(const QString& text) {
    const auto fits = [](QChar c) {
        return c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('.') ||
               c == QLatin1Char('_');
    };
    return !text.isEmpty() && text.size() <= longestHost && !text.startsWith(QLatin1Char('-')) &&
           std::all_of(text.begin(), text.end(), fits);
}

QString readHost(const QString& authority, OutletUrl& url) {
    const bool opens = authority.startsWith(QLatin1Char('['));
    const int bracket = opens ? authority.lastIndexOf(QLatin1Char(']')) : 0;
    const int colon = bracket < 0 ? -1 : authority.indexOf(QLatin1Char(':'), bracket);
    const QString host = authority.left(colon);
    if (colon >= 0) {
        const QString error = colon + 1 < authority.size()
                                  ? readPort(authority.mid(colon + 1), url)
                                  : UrlTexts::tr("a port is a number from 1 to 65535");
        if (!error.isEmpty()) {
            return error;
        }
    }
    const bool inBrackets = opens && host.endsWith(QLatin1Char(']'));
    url.host = inBrackets ? host.mid(1, host.size() - 2) : host;
    if (url.kind == OutletUrl::Kind::Igtl) {
        return url.host.isEmpty() || isAddress(url.host)
                   ? QString()
                   : UrlTexts::tr("igtl:// takes an address of this computer, or none");
    }
    const bool isGood = inBrackets ? isAddress(url.host) && url.host.contains(QLatin1Char(':'))
                                   : isHostName(url.host);
    return isGood ? QString() : UrlTexts::tr("the host is missing or cannot be one");
}

// Of what a level of a topic may not hold.
bool isLevel(const QString& text) {
    const auto spoils = [](QChar c) {
        return c == QLatin1Char('+') || c == QLatin1Char('#') || c == QLatin1Char('/') ||
               c.category() == QChar::Other_Control || c.isSurrogate() ||
               c.unicode() == QChar::ReplacementCharacter || c.isNonCharacter();
    };
    return !text.isEmpty() && std::none_of(text.begin(), text.end(), spoils);
}

QString readPrefix(const QString& path, OutletUrl& url) {
    url.prefix = decoded(path);
    if (url.prefix.endsWith(QLatin1Char('/'))) {
        url.prefix.chop(1);
    }
    const QStringList levels = url.prefix.split(QLatin1Char('/'));
    if (url.prefix.isEmpty()) {
        return UrlTexts::tr("the prefix of the topics is missing: %1://HOST/PREFIX")
            .arg(url.isEncrypted ? QStringLiteral("mqtts") : QStringLiteral("mqtt"));
    }
    return std::all_of(levels.begin(), levels.end(), isLevel) &&
                   !url.prefix.startsWith(QLatin1Char('$'))
               ? QString()
               : UrlTexts::tr(
                     "the prefix of the topics may hold no +, #, empty level or $ in front");
}

QString* fileOption(const QString& name, OutletUrl& url) {
    if (name == QLatin1String("password-file")) {
        return &url.passwordFile;
    }
    if (name == QLatin1String("ca")) {
        return &url.caFile;
    }
    if (name == QLatin1String("certificate")) {
        return &url.certificateFile;
    }
    return name == QLatin1String("key") ? &url.keyFile : nullptr;
}

QString readOption(const QString& option, OutletUrl& url) {
    const int equals = option.indexOf(QLatin1Char('='));
    const QString name = option.left(equals);
    const QString value = equals < 0 ? QString() : decoded(option.mid(equals + 1));
    if (name == QLatin1String("station")) {
        url.station = value;
        return isLevel(value) ? QString() : UrlTexts::tr("a station is a name without /, + and #");
    }
    QString* const file = fileOption(name, url);
    if (file == nullptr) {
        return UrlTexts::tr("there is no option \"%1\"; there are station, password-file, ca, "
                            "certificate and key")
            .arg(name);
    }
    *file = value;
    return value.startsWith(QLatin1Char('/'))
               ? QString()
               : UrlTexts::tr("the option \"%1\" takes a file name that begins with /").arg(name);
}

QString readOptions(const QString& query, OutletUrl& url) {
    const QStringList options = query.split(QLatin1Char('&'));
    for (const QString& option : options) {
        const QString error = readOption(option, url);
        if (!error.isEmpty()) {
            return error;
        }
    }
    if (!url.passwordFile.isEmpty() && url.user.isEmpty()) {
        return UrlTexts::tr("a password needs a user: %1://USER@HOST/PREFIX")
            .arg(url.isEncrypted ? QStringLiteral("mqtts") : QStringLiteral("mqtt"));
    }
    if (!url.isEncrypted && !(url.caFile + url.certificateFile + url.keyFile).isEmpty()) {
        return UrlTexts::tr("certificates need mqtts://");
    }
    if (url.certificateFile.isEmpty() != url.keyFile.isEmpty()) {
        return UrlTexts::tr("the options certificate and key need each other");
    }
    return {};
}

QString readScheme(const QString& scheme, OutletUrl& url) {
    if (scheme == QLatin1String("udp")) {
        url.kind = OutletUrl::Kind::Udp;
        url.port = udpPort;
    } else if (scheme == QLatin1String("mqtt") || scheme == QLatin1String("mqtts")) {
        url.kind = OutletUrl::Kind::Mqtt;
        url.isEncrypted = scheme.size() == 5;
        url.port = url.isEncrypted ? mqttsPort : mqttPort;
    } else if (scheme == QLatin1String("igtl")) {
        url.kind = OutletUrl::Kind::Igtl;
        url.port = igtlPort;
    } else {
        return UrlTexts::tr("a URL begins with udp://, mqtt://, mqtts:// or igtl://");
    }
    return {};
}

QString read(const QString& text, OutletUrl& url) {
    Pieces pieces;
    QString error = cut(text, pieces);
    if (error.isEmpty()) {
        error = readScheme(pieces.scheme, url);
    }
    if (error.isEmpty()) {
        error = readUser(pieces.authority, url);
    }
    if (error.isEmpty()) {
        error = readHost(pieces.authority, url);
    }
    if (!error.isEmpty()) {
        return error;
    }
    if (url.kind != OutletUrl::Kind::Mqtt) {
        return pieces.path.isEmpty() && !pieces.hasQuery
                   ? QString()
                   : UrlTexts::tr("nothing may stand behind host and port");
    }
    error = readPrefix(pieces.path, url);
    return error.isEmpty() && pieces.hasQuery ? readOptions(pieces.query, url) : error;
}

} // namespace

bool OutletUrl::parse(const QString& given, QString* error) {
    OutletUrl url;
    url.text = given.trimmed();
    const QString problem = read(url.text, url);
    if (!problem.isEmpty()) {
        *error = problem;
        return false;
    }
    *this = url;
    return true;
}

} // namespace workbench
