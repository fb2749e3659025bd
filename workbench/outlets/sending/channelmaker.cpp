#include "workbench/outlets/sending/channelmaker.h"

#include "workbench/outlets/sending/udpchannel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QStandardPaths>
#include <QSysInfo>

#include <cstring>

namespace workbench {

namespace {

class MakerTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::ChannelMaker)
};

/// What a scheme needs that is a file of its own.
struct Needed {
    QString name;    // for people
    QString file;    // without folder
    QString package; // that has the library
};

Needed neededFor(OutletUrl::Kind kind) {
    return kind == OutletUrl::Kind::Mqtt
               ? Needed{QStringLiteral("MQTT"), QStringLiteral("kestrel_outlet_mqtt.so"),
                        QStringLiteral("libmosquitto1")}
               : Needed{QStringLiteral("OpenIGTLink"), QStringLiteral("kestrel_outlet_igtl.so"),
                        QStringLiteral("libopenigtlink1.11")};
}

} // namespace

ChannelMaker::ChannelMaker(const QStringList& folders, const ChannelSurroundings& surroundings)
    : m_folders(folders)
    , m_surroundings(surroundings) {}

QStringList ChannelMaker::usualFolders() {
    const QDir programs(QCoreApplication::applicationDirPath());
    return {programs.filePath(QStringLiteral("../outlets")),
            programs.filePath(QStringLiteral("../" KESTREL_OUTLET_INSTALL_DIR))};
}

ChannelSurroundings ChannelMaker::usualSurroundings() {
    QString name = QSysInfo::machineHostName();
    name.remove(QLatin1Char('/')).remove(QLatin1Char('+')).remove(QLatin1Char('#'));
    ChannelSurroundings surroundings;
    surroundings.computerName = name.isEmpty() ? QStringLiteral("kestrel") : name;
    surroundings.dataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return surroundings;
}

std::unique_ptr<OutletChannel> ChannelMaker::make(const OutletUrl& url, QString* error) const {
    if (url.kind == OutletUrl::Kind::Udp) {
        return std::make_unique<UdpChannel>(url);
    }
    const Needed needed = neededFor(url.kind);
    QString reason;
    const ChannelModule* const module = load(needed.file, &reason);
    if (module == nullptr) {
        *error = MakerTexts::tr("%1 needs the packages kestrel-workbench-outlets and %2: %3")
                     .arg(needed.name, needed.package, reason);
        return nullptr;
    }
    return module->make(url, m_surroundings);
}

QString ChannelMaker::find(const QString& name) const {
    for (const QString& folder : m_folders) {
        const QString file = QDir(folder).filePath(name);
        if (QFileInfo::exists(file)) {
            return QDir::cleanPath(file);
        }
    }
    return {};
}

const ChannelModule* ChannelMaker::load(const QString& name, QString* reason) const {
    const QString file = find(name);
    if (file.isEmpty()) {
        *reason = MakerTexts::tr("%1 is not there").arg(name);
        return nullptr;
    }
    QLibrary library(file);
    const auto get = reinterpret_cast<ChannelModule::Get>(library.resolve(ChannelModule::symbol));
    if (get == nullptr) {
        *reason = library.errorString();
        return nullptr;
    }
    const ChannelModule* const module = get();
    if (std::strcmp(module->version, KESTREL_VERSION) != 0) {
        *reason = MakerTexts::tr("%1 is of version %2").arg(file, QLatin1String(module->version));
        return nullptr;
    }
    return module;
}

std::vector<ChannelMaker::Way> ChannelMaker::ways() const {
    std::vector<Way> ways;
    for (const auto kind : {OutletUrl::Kind::Mqtt, OutletUrl::Kind::Igtl}) {
        const Needed needed = neededFor(kind);
        Way way{needed.name, find(needed.file), {}, {}};
        if (way.file.isEmpty()) {
            way.reason = MakerTexts::tr("needs the packages kestrel-workbench-outlets and %1")
                             .arg(needed.package);
        } else if (!QLibrary(way.file).isLoaded()) {
            way.reason = MakerTexts::tr("nobody has wanted it yet");
        } else if (const ChannelModule* const module = load(needed.file, &way.reason)) {
            way.version = QLatin1Char('v') + QLatin1String(module->version);
        }
        ways.push_back(way);
    }
    return ways;
}

std::unique_ptr<OutletChannel> makeOutletChannel(const OutletUrl& url, QString* error) {
    return ChannelMaker(ChannelMaker::usualFolders(), ChannelMaker::usualSurroundings())
        .make(url, error);
}

std::unique_ptr<OutletChannel> makeTrialChannel(const OutletUrl& url, QString* error) {
    ChannelSurroundings surroundings = ChannelMaker::usualSurroundings();
    surroundings.isTrial = true;
    return ChannelMaker(ChannelMaker::usualFolders(), surroundings).make(url, error);
}

} // namespace workbench
