#include "workbench/text/recordingreason.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace workbench {

namespace {

constexpr const char* context = "workbench::RecordingReason";

constexpr const char* reasons[] = {
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "not a recording of a known format"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the header has no start"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the file ends inside its header"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable start"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unknown line in the header"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable version"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable parameter"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "too many parameters"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable time stamp"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the time stamp goes backwards"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable wall clock"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "unreadable escape"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the channel is not that of the line"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the line is too long"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the file cannot be read on"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason",
                      "only an ordinary file can be read, not a folder, pipe or device"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "a control character in a name or value"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "a line end inside the line"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason",
                      "only an ordinary file can be replayed, not a folder, pipe or device"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the recording is empty or unreadable"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the recording cannot be opened"),
    QT_TRANSLATE_NOOP("workbench::RecordingReason", "the recorded protocol version cannot be read"),
};

QString translated(const char* text) {
    return QCoreApplication::translate(context, text);
}

QString withoutLine(const QString& reason) {
    for (const char* const known : reasons) {
        const QLatin1String text(known);
        if (reason.startsWith(text)) {
            return translated(known) + reason.mid(text.size());
        }
    }
    return reason;
}

} // namespace

QString recordingReason(const QString& reason) {
    static const QRegularExpression line(QStringLiteral("^line (\\d+): "));
    const QRegularExpressionMatch match = line.match(reason);
    if (!match.hasMatch()) {
        return withoutLine(reason);
    }
    return translated(QT_TRANSLATE_NOOP("workbench::RecordingReason", "line %1: %2"))
        .arg(match.captured(1), withoutLine(reason.mid(match.capturedLength())));
}

} // namespace workbench
