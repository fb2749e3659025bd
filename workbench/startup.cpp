#include "workbench/startup.h"

#include <QCoreApplication>
#include <QString>
#include <QtGlobal>

namespace workbench {

namespace {

QtMessageHandler handlerBefore = nullptr;

// The platform without a display says this for each window; nothing follows from it.
void dropNoise(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text != QLatin1String("This plugin does not support propagateSizeHints()")) {
        handlerBefore(type, context, text);
    }
}

} // namespace

void prepareForWindows() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    handlerBefore = qInstallMessageHandler(dropNoise);
}

} // namespace workbench
