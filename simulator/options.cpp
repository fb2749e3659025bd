#include "simulator/options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <functional>

namespace kestrel_simulator {

namespace {

constexpr int maxBodiesOfAKind = 100;

// Reads the values of the options that were given; remembers the first that is bad.
class ValueReader {
public:
    explicit ValueReader(const QCommandLineParser& parser)
        : m_parser(parser) {}

    void number(const char* name, int& value, int minimum, int maximum) {
        read(name, [&](const QString& given) {
            bool ok = false;
            value = given.toInt(&ok);
            return ok && value >= minimum && value <= maximum;
        });
    }

    void number(const char* name, double& value, double minimum, double maximum) {
        read(name, [&](const QString& given) {
            bool ok = false;
            value = given.toDouble(&ok);
            return ok && value >= minimum && value <= maximum;
        });
    }

    void version(const char* name, Version& version) {
        read(name,
             [&](const QString& given) { return Version::parse(given.toStdString(), version); });
    }

    void read(const char* name, const std::function<bool(const QString&)>& take) {
        const QStringList values = m_parser.values(QLatin1String(name));
        for (const QString& value : values) {
            if (!take(value) && m_error.isEmpty()) {
                m_error = QStringLiteral("bad value '%1' of --%2").arg(value, QLatin1String(name));
            }
        }
    }

    const QString& error() const { return m_error; }

private:
    const QCommandLineParser& m_parser;
    QString m_error;
};

QString misbehaviourHelp() {
    QString help = QStringLiteral("\nMisbehaviours (--misbehave NAME[=N], may be repeated):\n");
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        help +=
            QStringLiteral("  %1 %2 (N: %3, up to %4)\n")
                .arg(QString::fromUtf8(info.name.data(), static_cast<int>(info.name.size())), -22)
                .arg(QString::fromUtf8(info.help.data(), static_cast<int>(info.help.size())))
                .arg(info.defaultNumber)
                .arg(info.maximum);
    }
    help += QStringLiteral("\nExit codes: 0 stopped, 2 bad option, 3 cannot listen, "
                           "4 unreadable or malformed recording.\n");
    return help;
}

void addOptions(QCommandLineParser& parser) {
    const auto add = [&](const char* name, const char* value, const char* help) {
        parser.addOption({QLatin1String(name), QLatin1String(help), QLatin1String(value)});
    };
    add("listen", "ADDRESS", "Address to listen on (127.0.0.1).");
    add("port", "N", "TCP port of the commands (47300); 0 takes any free one.");
    add("tools", "N", "Measurement Tools at the start (4).");
    add("references", "N", "References at the start (2).");
    add("max-bodies", "N", "Tools and references together (7, or as many as at the start).");
    add("bodies", "N", "Standard bodies in the line 6d (2).");
    add("devices", "N", "Radio devices in range, one of them comes and goes (4).");
    add("rate", "HZ", "Frames per second, up to 1000 (60).");
    add("noise", "MM", "Measurement noise (0.05).");
    add("seed", "N", "Seed of all that is random (1).");
    add("model", "TEXT", "Controller model (SIMULATOR).");
    add("protocol", "VERSION", "Protocol version (1.14.0); two numbers leave the patch unknown.");
    add("system", "VERSION", "System version (3.1.0).");
    add("pivot", "MOTION", "Motion of a tip calibration: cone, planar, twist, slip, still.");
    add("cal-duration", "SECONDS", "Duration of a calibration step (6).");
    add("cal-pause", "SECONDS", "Pause before a calibration step (5); 0 is none.");
    add("misbehave", "NAME[=N]", "Start with a misbehaviour, see below.");
    add("replay", "FILE", "Send the frames of a recording instead of simulated ones.");
    parser.addOption({QStringLiteral("replay-once"),
                      QStringLiteral("Stop at the recording's end instead of beginning anew.")});
    parser.addOption({QStringLiteral("no-occlusion"), QStringLiteral("Tools are always seen.")});
    parser.addOption({QStringLiteral("help"), QStringLiteral("Show this help.")});
    parser.addOption({QStringLiteral("version"), QStringLiteral("Show the version.")});
}

bool readMisbehaviour(const QString& given, SimulatorOptions& options) {
    const QString name = given.section(QLatin1Char('='), 0, 0);
    const MisbehaviourInfo* const info = findMisbehaviour(name.toStdString());
    if (!info) {
        return false;
    }
    int number = info->defaultNumber;
    bool ok = true;
    if (given.contains(QLatin1Char('='))) {
        number = given.section(QLatin1Char('='), 1).toInt(&ok);
    }
    options.misbehaviours.emplace_back(info->id, number);
    return ok && info->allows(number);
}

void readBodies(ValueReader& values, ControllerSetup& setup) {
    values.number("tools", setup.tools, 0, maxBodiesOfAKind);
    values.number("references", setup.references, 0, maxBodiesOfAKind);
    BodyLimits& limits = setup.limits;
    limits.tools = std::max(limits.tools, setup.tools);
    limits.references = std::max(limits.references, setup.references);
    limits.bodies = std::max(limits.bodies, setup.tools + setup.references);
    values.number("max-bodies", limits.bodies, setup.tools + setup.references,
                  2 * maxBodiesOfAKind);
    values.number("bodies", setup.standardBodies, 0, maxBodiesOfAKind);
    values.number("devices", setup.devices, 0, RadioNetwork::maxDevices);
}

void readController(ValueReader& values, ControllerSetup& setup) {
    values.number("rate", setup.rate, 0.1, 1000.0);
    values.read("seed", [&](const QString& given) {
        bool ok = false;
        setup.seed = given.toULongLong(&ok);
        return ok;
    });
    values.read("model", [&](const QString& given) {
        setup.model = given.toStdString();
        return !given.trimmed().isEmpty() && std::none_of(given.begin(), given.end(), [](QChar c) {
            return c.unicode() < 0x20 || c.unicode() == 0x7f;
        });
    });
    values.version("protocol", setup.protocol);
    values.version("system", setup.system);
    Calibration::Settings& calibration = setup.calibration;
    values.number("noise", setup.noise.position, 0.0, 10.0);
    values.read("pivot", [&](const QString& given) {
        const auto pivot = findPivot(given.toStdString());
        calibration.pivot = pivot.value_or(calibration.pivot);
        return pivot.has_value();
    });
    values.number("cal-duration", calibration.stepSeconds, 0.05, 3600.0);
    values.number("cal-pause", calibration.pauseSeconds, 0, Calibration::maxPauseSeconds);
}

} // namespace

ParsedOptions parseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A simulated tracking controller: commands over TCP, data lines over UDP."));
    addOptions(parser);
    ParsedOptions parsed;
    if (!parser.parse(arguments)) {
        parsed.action = ParsedOptions::Action::Refuse;
        parsed.text = parser.errorText();
        return parsed;
    }
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("version"))) {
        parsed.action = ParsedOptions::Action::ShowText;
        parsed.text = parser.isSet(QStringLiteral("help"))
                          ? parser.helpText() + misbehaviourHelp()
                          : QStringLiteral("kestrel-simulator %1\n")
                                .arg(QCoreApplication::applicationVersion());
        return parsed;
    }
    SimulatorOptions& options = parsed.options;
    ValueReader values(parser);
    values.read("listen", [&](const QString& given) { return options.address.setAddress(given); });
    int port = options.port;
    values.number("port", port, 0, 65535);
    options.port = static_cast<quint16>(port);
    readBodies(values, options.controller);
    readController(values, options.controller);
    values.read("misbehave",
                [&](const QString& given) { return readMisbehaviour(given, options); });
    options.replayFile = parser.value(QStringLiteral("replay"));
    if (parser.isSet(QStringLiteral("replay-once"))) {
        options.replayEnd = Replay::AtEnd::Stop;
    }
    options.controller.occlusions = !parser.isSet(QStringLiteral("no-occlusion"));
    parsed.text = values.error();
    if (parsed.text.isEmpty() && !parser.positionalArguments().isEmpty()) {
        parsed.text = QStringLiteral("unexpected argument '%1'")
                          .arg(parser.positionalArguments().constFirst());
    }
    if (!parsed.text.isEmpty()) {
        parsed.action = ParsedOptions::Action::Refuse;
    }
    return parsed;
}

} // namespace kestrel_simulator
