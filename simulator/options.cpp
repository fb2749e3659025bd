#include "simulator/options.h"

#include "simulator/words/text.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

namespace kestrel_simulator {

namespace {

constexpr int maxBodiesOfAKind = 100;

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

QString rangeText(double minimum, double maximum) {
    return QStringLiteral("a number from %1 to %2")
        .arg(toQString(text::shortest(minimum)), toQString(text::shortest(maximum)));
}

// Reads the values of the options that were given; remembers the first that is bad.
class ValueReader {
public:
    explicit ValueReader(const QCommandLineParser& parser)
        : m_parser(parser) {}

    // `take` says what it expected instead when it does not take a value, else nothing.
    void read(const char* name, const std::function<QString(const QString&)>& take) {
        const QStringList values = m_parser.values(QLatin1String(name));
        for (const QString& value : values) {
            const QString expected = take(value);
            if (!expected.isEmpty() && m_error.isEmpty()) {
                m_error = QStringLiteral("bad value '%1' of --%2: expected %3")
                              .arg(value, QLatin1String(name), expected);
            }
        }
    }

    void number(const char* name, int& value, int minimum, int maximum) {
        read(name, [&](const QString& given) {
            bool ok = false;
            value = given.toInt(&ok);
            return ok && value >= minimum && value <= maximum
                       ? QString()
                       : QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum);
        });
    }

    void number(const char* name, double& value, double minimum, double maximum) {
        read(name, [&](const QString& given) {
            bool ok = false;
            value = given.toDouble(&ok);
            return ok && value >= minimum && value <= maximum ? QString()
                                                              : rangeText(minimum, maximum);
        });
    }

    void version(const char* name, Version& version) {
        read(name, [&](const QString& given) {
            return Version::parse(given.toStdString(), version)
                       ? QString()
                       : QStringLiteral("two or three numbers, as in 1.14.0");
        });
    }

    const QString& error() const { return m_error; }

private:
    const QCommandLineParser& m_parser;
    QString m_error;
};

QString misbehaviourHelp() {
    QString help = QStringLiteral("\nMisbehaviours (--misbehave NAME[=N], may be repeated):\n");
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        help += QStringLiteral("  %1 %2 (N: %3, up to %4)\n")
                    .arg(toQString(info.name), -22)
                    .arg(toQString(info.help))
                    .arg(info.defaultNumber)
                    .arg(info.maximum);
    }
    help += QStringLiteral("\nExit codes: 0 stopped, 2 bad option, 3 cannot listen, "
                           "4 unreadable or malformed recording.\n");
    return help;
}

void addOptions(QCommandLineParser& parser) {
    const auto add = [&](const char* name, const char* value, const QString& help) {
        parser.addOption({QLatin1String(name), help, QLatin1String(value)});
    };
    add("listen", "ADDRESS", QStringLiteral("Address to listen on (127.0.0.1)."));
    add("port", "N", QStringLiteral("TCP port of the commands (47300); 0 takes any free one."));
    add("tools", "N", QStringLiteral("Measurement Tools at the start (4)."));
    add("references", "N", QStringLiteral("References at the start (2)."));
    add("max-bodies", "N",
        QStringLiteral("Tools and references together (7, or as many as at the start)."));
    add("bodies", "N", QStringLiteral("Standard bodies in the line 6d (2)."));
    add("devices", "N", QStringLiteral("Radio devices in range, one of them comes and goes (4)."));
    add("rate", "HZ", QStringLiteral("Frames per second, up to 1000 (60)."));
    add("noise", "MM", QStringLiteral("Measurement noise (0.05)."));
    add("seed", "N", QStringLiteral("Seed of all that is random (1)."));
    add("model", "TEXT", QStringLiteral("Controller model (SIMULATOR)."));
    add("protocol", "VERSION",
        QStringLiteral("Protocol version (1.14.0); two numbers leave the patch unknown."));
    add("system", "VERSION", QStringLiteral("System version (3.1.0)."));
    add("pivot", "MOTION",
        QStringLiteral("Motion of a tip calibration: %1.")
            .arg(QString::fromStdString(pivotNames())));
    add("cal-duration", "SECONDS", QStringLiteral("Duration of a calibration step (6)."));
    add("cal-pause", "SECONDS", QStringLiteral("Pause before a calibration step (5); 0 is none."));
    add("tip", "[bNN=]X,Y,Z",
        QStringLiteral("True tip of all tools or of one, in mm from its body's origin."));
    add("lever", "[bNN=]MM", QStringLiteral("Distance of the true tip from the body's origin."));
    add("slip", "[bNN=]MM", QStringLiteral("How far the tip slips in the motion slip (4)."));
    add("misbehave", "NAME[=N]", QStringLiteral("Start with a misbehaviour, see below."));
    add("replay", "FILE",
        QStringLiteral("Send the frames of a recording instead of simulated ones."));
    parser.addOption({QStringLiteral("replay-once"),
                      QStringLiteral("Stop at the end of --replay instead of beginning anew.")});
    parser.addOption({QStringLiteral("no-occlusion"), QStringLiteral("Tools are always seen.")});
    parser.addOption({QStringLiteral("help"), QStringLiteral("Show this help.")});
    parser.addOption({QStringLiteral("version"), QStringLiteral("Show the version.")});
}

QString readMisbehaviour(const QString& given, SimulatorOptions& options) {
    const QString name = given.section(QLatin1Char('='), 0, 0);
    const MisbehaviourInfo* const info = findMisbehaviour(name.toStdString());
    if (!info) {
        return QStringLiteral("a name from the list of misbehaviours");
    }
    int number = info->defaultNumber;
    bool ok = true;
    if (given.contains(QLatin1Char('='))) {
        number = given.section(QLatin1Char('='), 1).toInt(&ok);
    }
    options.misbehaviours.emplace_back(info->id, number);
    return ok && info->allows(number) ? QString()
                                      : QStringLiteral("%1=N with a whole number N from 0 to %2")
                                            .arg(name)
                                            .arg(info->maximum);
}

// Which tool a value is of, and the numbers behind it; none when it is something else.
struct ProbeValue {
    int tool = 0; // 1-based; 0: all
    std::vector<double> numbers;
};

std::optional<ProbeValue> readProbeValue(const QString& given, int tools) {
    ProbeValue value;
    const int equals = given.indexOf(QLatin1Char('='));
    if (equals >= 0) {
        value.tool = text::readNumbered(given.left(equals).toStdString(), 'b');
        if (value.tool < 1 || value.tool > tools) {
            return std::nullopt;
        }
    }
    const QStringList words = given.mid(equals + 1).split(QLatin1Char(','));
    for (const QString& word : words) {
        double number = 0.0;
        if (!text::readDouble(word.toStdString(), number)) {
            return std::nullopt;
        }
        value.numbers.push_back(number);
    }
    return value;
}

void readProbes(ValueReader& values, ControllerSetup& setup) {
    const int tools = setup.limits.tools;
    const auto read = [&](const char* name, std::size_t count, double minimum, double maximum,
                          const std::function<void(ProbeSetup&, const std::vector<double>&)>& set) {
        values.read(name, [&](const QString& given) {
            const std::optional<ProbeValue> value = readProbeValue(given, tools);
            const bool ok = value && value->numbers.size() == count &&
                            std::all_of(value->numbers.begin(), value->numbers.end(),
                                        [&](double n) { return n >= minimum && n <= maximum; });
            if (ok) {
                ProbeSetup probe;
                probe.tool = value->tool;
                set(probe, value->numbers);
                setup.probes.push_back(probe);
            }
            const QString form = count == 1 ? QStringLiteral("MM") : QStringLiteral("X,Y,Z");
            return ok ? QString()
                      : QStringLiteral("%1 or bNN=%1, each %2, NN up to %3")
                            .arg(form, rangeText(minimum, maximum))
                            .arg(tools);
        });
    };
    using Numbers = std::vector<double>;
    read("tip", 3, -Probe::maxLength, Probe::maxLength,
         [](ProbeSetup& probe, const Numbers& n) { probe.tip = Eigen::Vector3d(n.data()); });
    read("lever", 1, Probe::minLever, Probe::maxLength,
         [](ProbeSetup& probe, const Numbers& n) { probe.lever = n.front(); });
    read("slip", 1, 0.0, Probe::maxSlip,
         [](ProbeSetup& probe, const Numbers& n) { probe.slip = n.front(); });
    // what is said of one tool goes before what is said of all
    std::stable_partition(setup.probes.begin(), setup.probes.end(),
                          [](const ProbeSetup& probe) { return probe.tool == 0; });
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
        return ok ? QString()
                  : QStringLiteral("a whole number from 0 to %1")
                        .arg(std::numeric_limits<std::uint64_t>::max());
    });
    values.read("model", [&](const QString& given) {
        setup.model = given.toStdString();
        const bool ok =
            !given.trimmed().isEmpty() && std::none_of(given.begin(), given.end(), [](QChar c) {
                return c.unicode() < 0x20 || c.unicode() == 0x7f;
            });
        return ok ? QString() : QStringLiteral("a text without control characters");
    });
    values.version("protocol", setup.protocol);
    values.version("system", setup.system);
    Calibration::Settings& calibration = setup.calibration;
    values.number("noise", setup.noise.position, 0.0, 10.0);
    values.read("pivot", [&](const QString& given) {
        const auto pivot = findPivot(given.toStdString());
        calibration.pivot = pivot.value_or(calibration.pivot);
        return pivot ? QString() : QStringLiteral("one of ") + QString::fromStdString(pivotNames());
    });
    values.number("cal-duration", calibration.stepSeconds, 0.05, 3600.0);
    values.number("cal-pause", calibration.pauseSeconds, 0, Calibration::maxPauseSeconds);
}

void readReplay(ValueReader& values, const QCommandLineParser& parser, SimulatorOptions& options) {
    values.read("replay", [&](const QString& given) {
        options.replayFile = given;
        return given.isEmpty() ? QStringLiteral("a file") : QString();
    });
    if (parser.isSet(QStringLiteral("replay-once"))) {
        options.replayEnd = Replay::AtEnd::Stop;
    }
}

// Empty when all values are good, else what is wrong with the first that is not.
QString readValues(const QCommandLineParser& parser, SimulatorOptions& options) {
    ValueReader values(parser);
    values.read("listen", [&](const QString& given) {
        return options.address.setAddress(given)
                   ? QString()
                   : QStringLiteral("an address in numbers, such as 127.0.0.1");
    });
    int port = options.port;
    values.number("port", port, 0, 65535);
    options.port = static_cast<quint16>(port);
    readBodies(values, options.controller);
    readController(values, options.controller);
    readProbes(values, options.controller);
    values.read("misbehave",
                [&](const QString& given) { return readMisbehaviour(given, options); });
    readReplay(values, parser, options);
    options.controller.occlusions = !parser.isSet(QStringLiteral("no-occlusion"));
    return values.error();
}

// What would be without effect is not passed over in silence. Empty when all goes together.
QString contradiction(const QCommandLineParser& parser) {
    if (!parser.isSet(QStringLiteral("replay"))) {
        return parser.isSet(QStringLiteral("replay-once"))
                   ? QStringLiteral("--replay-once needs --replay")
                   : QString();
    }
    // Of frames and versions, which are the recording's, and of calibrations, which it has none of.
    for (const char* name : {"bodies", "rate", "noise", "no-occlusion", "model", "protocol",
                             "system", "pivot", "tip", "lever", "slip"}) {
        if (parser.isSet(QLatin1String(name))) {
            return QStringLiteral("--%1 has no effect with --replay").arg(QLatin1String(name));
        }
    }
    return {};
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
    parsed.text = readValues(parser, parsed.options);
    if (parsed.text.isEmpty() && !parser.positionalArguments().isEmpty()) {
        parsed.text = QStringLiteral("unexpected argument '%1'")
                          .arg(parser.positionalArguments().constFirst());
    }
    if (parsed.text.isEmpty()) {
        parsed.text = contradiction(parser);
    }
    if (!parsed.text.isEmpty()) {
        parsed.action = ParsedOptions::Action::Refuse;
    }
    return parsed;
}

} // namespace kestrel_simulator
