#include "workbench/window/readout/readouttexts.h"

#include "libs/kestrel_recording/numbertext.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <string>

namespace workbench::readouttexts {

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::Readout)
};

constexpr int decimals = 2;
constexpr double longest = 1e7;
constexpr int shownButtons = 4; // as many as the live display has

std::array<double, 3> anglesOf(const ReadoutView& view) {
    const auto& angles = view.figures->angles;
    return {angles.rx, angles.ry, angles.rz};
}

QString stateWord(ReadoutState state, bool isReplay) {
    switch (state) {
    case ReadoutState::NotConnected:
        return Texts::tr("not connected");
    case ReadoutState::NotMeasuring:
        return Texts::tr("not measuring");
    case ReadoutState::NoData:
        return Texts::tr("no data yet");
    case ReadoutState::NoTool:
        return Texts::tr("no such tool");
    case ReadoutState::NotCalibrated:
        return Texts::tr("not calibrated");
    case ReadoutState::Live:
        return isReplay ? Texts::tr("replay") : Texts::tr("live");
    case ReadoutState::Hidden:
        return Texts::tr("hidden");
    case ReadoutState::Old:
        break;
    }
    return Texts::tr("old");
}

} // namespace

QString figure(double value) {
    if (std::isfinite(value) && std::abs(value) >= longest) {
        return QString::number(value, 'e', decimals);
    }
    std::string text;
    kestrel_recording::appendNumber(value, decimals, text);
    return QString::fromStdString(text);
}

QString axisName(int axis, bool isAngle) {
    return (isAngle ? QStringLiteral("r") : QString()) + QLatin1Char(static_cast<char>('x' + axis));
}

QString word(const ReadoutView& view) {
    return view.isFrozen ? Texts::tr("frozen") : stateWord(view.state, view.isReplay);
}

QStringList allWords() {
    QStringList words{Texts::tr("frozen"), Texts::tr("replay")};
    for (int state = 0; state < readoutStates; ++state) {
        words += stateWord(static_cast<ReadoutState>(state), false);
    }
    return words;
}

QColor colour(const ReadoutView& view) {
    if (view.isFrozen) {
        return {130, 190, 255};
    }
    switch (view.state) {
    case ReadoutState::Live:
        return view.isReplay ? QColor(205, 170, 255) : QColor(0, 220, 60);
    case ReadoutState::Hidden:
        return {255, 105, 90};
    case ReadoutState::Old:
        return {255, 185, 40};
    default:
        return {185, 185, 185};
    }
}

QString age(const ReadoutView& view) {
    if (!view.figures) {
        return {};
    }
    constexpr double fine = 10.0;
    const double shown =
        view.age < fine ? std::floor(view.age * 10.0) / 10.0 : std::floor(view.age);
    return QStringLiteral("%1 s").arg(QString::number(shown, 'f', view.age < fine ? 1 : 0));
}

QString reference(const ReadoutView& view) {
    if (!view.reference) {
        return {};
    }
    if (*view.reference == 0) {
        return Texts::tr("no reference");
    }
    const QString name = QStringLiteral("MR%1").arg(*view.reference);
    switch (view.referenceSight) {
    case ReadoutView::Sight::Seen:
        return Texts::tr("%1 seen", "a reference").arg(name);
    case ReadoutView::Sight::Hidden:
        return Texts::tr("%1 hidden", "a reference").arg(name);
    case ReadoutView::Sight::Unknown:
        break;
    }
    return name;
}

QString buttons(const ReadoutView& view) {
    QStringList texts;
    for (int button = 0; button < std::min(view.buttonCount, shownButtons); ++button) {
        const bool isPressed = (view.pressedButtons >> static_cast<unsigned>(button) & 1U) != 0;
        texts += Texts::tr("b%1", "a button").arg(button) + QLatin1Char(' ') +
                 QChar(isPressed ? 0x25cf : 0x25cb);
    }
    return texts.join(QLatin1Char(' '));
}

QString toolName(int number) {
    return QStringLiteral("M%1").arg(number);
}

QString sentence(const ReadoutView& view, bool withAngles) {
    QStringList parts{toolName(view.tool), word(view)};
    if (view.figures) {
        for (int axis = 0; axis < 3; ++axis) {
            parts += QStringLiteral("%1 %2 mm")
                         .arg(axisName(axis, false),
                              figure(view.figures->position[static_cast<std::size_t>(axis)]));
        }
        for (int axis = 0; withAngles && axis < 3; ++axis) {
            parts += QStringLiteral("%1 %2°").arg(
                axisName(axis, true), figure(anglesOf(view)[static_cast<std::size_t>(axis)]));
        }
    }
    if (view.figures && view.age >= 1.0) { // less is no news, and would be told five times a second
        parts += Texts::tr("%1 s ago").arg(QString::number(std::floor(view.age), 'f', 0));
    }
    parts += reference(view);
    for (int button = 0; button < std::min(view.buttonCount, shownButtons); ++button) {
        if ((view.pressedButtons >> static_cast<unsigned>(button) & 1U) != 0) {
            parts += Texts::tr("b%1 pressed").arg(button);
        }
    }
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString forClipboard(const ReadoutView& view, bool withAngles) {
    if (!view.figures) {
        return {};
    }
    QStringList parts{toolName(view.tool), word(view)};
    for (const double value : view.figures->position) {
        parts += figure(value);
    }
    const std::array<double, 3> angles = anglesOf(view);
    for (int axis = 0; withAngles && axis < 3; ++axis) {
        parts += figure(angles[static_cast<std::size_t>(axis)]);
    }
    return parts.join(QLatin1Char('\t'));
}

} // namespace workbench::readouttexts
