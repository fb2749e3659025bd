#include "probecheck/tipcheck/tipchecktexts.h"

#include "general/host/bodytexts.h"
#include "probecheck/data/resultline.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <cmath>

using kestrel_probe::Verdict;

namespace tipchecktexts {

namespace {

constexpr double greatestUsefulTilt = 40.0; // degrees; beyond it trackers lose the tool
constexpr double reserve = 1.2;             // on what would just decide
constexpr double leastDistance = 0.02;      // mm between error and tolerance that can be resolved

// The context is this room's own: these are no texts of a class.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(TipCheckTexts)
};

QString mm(double value) {
    return bodytexts::fixed(value, 2);
}

QString degrees(double value) {
    return bodytexts::fixed(value, 0);
}

QString percent(double share) {
    return bodytexts::fixed(100.0 * share, 0);
}

QString errorWithRadius(const TipCheck::Result& result) {
    return QStringLiteral("%1 ± %2").arg(mm(result.error), mm(result.pivot->radius95));
}

QString endWord(TipCheck::End end) {
    switch (end) {
    case TipCheck::End::Decided:
        return QStringLiteral("decided");
    case TipCheck::End::TimeIsUp:
        return QStringLiteral("time_is_up");
    case TipCheck::End::Stopped:
        return QStringLiteral("stopped");
    case TipCheck::End::Slipped:
        return QStringLiteral("slipped");
    case TipCheck::End::MeasurementStopped:
        break;
    }
    return QStringLiteral("measurement_stopped");
}

QString verdictWord(Verdict verdict) {
    switch (verdict) {
    case Verdict::Conforms:
        return QStringLiteral("conforms");
    case Verdict::DoesNotConform:
        return QStringLiteral("does_not_conform");
    case Verdict::Undecided:
        break;
    }
    return QStringLiteral("undecided");
}

QString withoutNumber(const TipCheck::Result& result) {
    const QString what = Texts::tr("No result: this motion does not determine the tip.");
    QString advice = missingTilts(result.rose.missing);
    if (result.tooFast) {
        advice = Texts::tr("Tilt more slowly.");
    } else if (advice.isEmpty()) {
        advice = Texts::tr("Tilt further and for longer.");
    }
    return what + QLatin1Char(' ') + advice;
}

QString row(const QString& name, const QString& value) {
    return QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
}

QString triple(const double (&values)[3]) {
    return QStringLiteral("%1  %2  %3").arg(mm(values[0]), mm(values[1]), mm(values[2]));
}

} // namespace

QString missingTilts(TiltRose::Missing missing) {
    switch (missing) {
    case TiltRose::Missing::AllSides:
        return Texts::tr("Tilt the tool to all sides.");
    case TiltRose::Missing::LeftRight:
        return Texts::tr("Tilt more to left and right.");
    case TiltRose::Missing::FrontBack:
        return Texts::tr("Tilt more to front and back.");
    case TiltRose::Missing::FrontRightBackLeft:
        return Texts::tr("Tilt more to front right and back left.");
    case TiltRose::Missing::FrontLeftBackRight:
        return Texts::tr("Tilt more to front left and back right.");
    case TiltRose::Missing::Nothing:
        break;
    }
    return QString();
}

QString runningWords(const TipCheck& check) {
    const TipCheck::Result& result = check.result();
    switch (check.state()) {
    case TipCheck::State::Hidden:
        return Texts::tr("The tool is hidden.");
    case TipCheck::State::ReferenceLost:
        return Texts::tr("The reference %1 is lost.")
            .arg(bodytexts::referenceName(result.reference));
    case TipCheck::State::Silent:
        return Texts::tr("No data come.");
    default:
        break;
    }
    if (result.slipped) {
        return Texts::tr("The tip seems to slip.");
    }
    const QString missing = missingTilts(result.rose.missing);
    if (!missing.isEmpty()) {
        return missing;
    }
    if (result.tooFast) {
        return Texts::tr("Tilt more slowly.");
    }
    return result.pivot ? Texts::tr("Go on. So far: %1 mm.").arg(errorWithRadius(result))
                        : Texts::tr("Go on.");
}

QString whatWouldDecide(const TipCheck::Result& result) {
    const double distance = std::abs(result.tolerance - result.error);
    if (!(result.tolerance > 0.0)) {
        return Texts::tr("A tolerance would decide.");
    }
    if (distance < leastDistance) {
        return Texts::tr("The error is too close to the tolerance to be told from it.");
    }
    const double tilt = std::max(result.rose.greatest, 1.0);
    // The region shrinks as the tilt grows.
    const double needed = std::max(reserve * tilt * result.pivot->radius95 / distance, tilt + 1.0);
    if (needed <= greatestUsefulTilt) {
        return Texts::tr("Tilt by %1 degrees instead of %2.").arg(degrees(needed), degrees(tilt));
    }
    if (tilt < greatestUsefulTilt - 1.0) {
        return Texts::tr("Tilt by %1 degrees instead of %2, and for longer.")
            .arg(degrees(greatestUsefulTilt), degrees(tilt));
    }
    return Texts::tr("Tilt for longer.");
}

QString resultWords(const TipCheck::Result& result) {
    if (result.slipped) {
        return Texts::tr("No result: the tip has slipped by %1 mm. Hold it in the hollow and start "
                         "again.")
            .arg(mm(result.pivot->slip));
    }
    if (!result.pivot) {
        return withoutNumber(result);
    }
    const QString error = errorWithRadius(result);
    const QString tolerance = mm(result.tolerance);
    switch (result.verdict) {
    case Verdict::Conforms:
        return Texts::tr("The tip conforms: wrong by %1 mm, tolerance %2 mm.")
            .arg(error, tolerance);
    case Verdict::DoesNotConform:
        return Texts::tr("The tip does not conform: wrong by %1 mm, tolerance %2 mm: calibrate "
                         "again, menu Tracking, \"Measurement Tool tip calibration\".")
            .arg(error, tolerance);
    case Verdict::Undecided:
        break;
    }
    return Texts::tr("Undecided: wrong by %1 mm, tolerance %2 mm.").arg(error, tolerance) +
           QLatin1Char(' ') + whatWouldDecide(result);
}

QString resultTable(const TipCheck::Result& result) {
    QStringList rows;
    if (result.pivot && !result.slipped) {
        rows << row(Texts::tr("Error of the tip x, y, z [mm]"), triple(result.pivot->tip))
             << row(Texts::tr("Its length ± radius of the 95 % region [mm]"),
                    errorWithRadius(result))
             << row(Texts::tr("Residual (RMS distance from the resting point) [mm]"),
                    mm(result.pivot->residual))
             << row(Texts::tr("Resting point x, y, z [mm]"), triple(result.pivot->restingPoint))
             << row(Texts::tr("Slip [mm]"), mm(result.pivot->slip));
    }
    rows << row(Texts::tr("Coverage (0 to 1), tilt [degrees]"),
                QStringLiteral("%1, %2").arg(bodytexts::fixed(result.coverage, 3),
                                             degrees(result.rose.greatest)))
         << row(Texts::tr("Poses, duration [s], hidden [%]"),
                QStringLiteral("%1, %2, %3")
                    .arg(QString::number(result.poses), bodytexts::fixed(result.duration, 1),
                         percent(result.hiddenShare)));
    return QStringLiteral("<table>%1</table>").arg(rows.join(QString()));
}

QByteArray toJson(const TipCheck::Result& result, const QDateTime& time) {
    QJsonObject object{
        {QStringLiteral("type"), QStringLiteral("tip_check")},
        {QStringLiteral("time"), time.toUTC().toString(Qt::ISODateWithMs)},
        {QStringLiteral("tool"), bodytexts::toolName(result.tool)},
        {QStringLiteral("reference"), result.reference < 0
                                          ? QStringLiteral("none")
                                          : bodytexts::referenceName(result.reference)},
        {QStringLiteral("ended_by"), endWord(result.end)},
        {QStringLiteral("tolerance_mm"), result.tolerance},
        {QStringLiteral("coverage"), result.coverage},
        {QStringLiteral("tilt_deg"), result.rose.greatest},
        {QStringLiteral("poses"), static_cast<qint64>(result.poses)},
        {QStringLiteral("duration_s"), result.duration},
        {QStringLiteral("hidden_share"), result.hiddenShare},
        {QStringLiteral("determined"), result.pivot.has_value() && !result.slipped},
        {QStringLiteral("slipped"), result.slipped},
        {QStringLiteral("verdict"), verdictWord(result.verdict)},
    };
    if (result.pivot) {
        object.insert(QStringLiteral("slip_mm"), result.pivot->slip);
    }
    if (result.pivot && !result.slipped) {
        const kestrel_probe::PivotResult& pivot = *result.pivot;
        object.insert(QStringLiteral("error_mm"), result.error);
        object.insert(QStringLiteral("radius95_mm"), pivot.radius95);
        object.insert(QStringLiteral("residual_rms_mm"), pivot.residual);
        object.insert(QStringLiteral("error_xyz_mm"),
                      QJsonArray{pivot.tip[0], pivot.tip[1], pivot.tip[2]});
        object.insert(
            QStringLiteral("resting_point_xyz_mm"),
            QJsonArray{pivot.restingPoint[0], pivot.restingPoint[1], pivot.restingPoint[2]});
    }
    return resultLine(object);
}

} // namespace tipchecktexts
