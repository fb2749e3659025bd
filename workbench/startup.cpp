#include "workbench/startup.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QString>
#include <QtGlobal>

#include <malloc.h>

namespace workbench {

namespace {

constexpr int ownPagesFrom = 1024 * 1024; // bytes
constexpr int mostFreeAtTop = 1024 * 1024;

QtMessageHandler handlerBefore = nullptr;

// The platform without a display says this for each window; nothing follows from it.
void dropNoise(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text != QLatin1String("This plugin does not support propagateSizeHints()")) {
        handlerBefore(type, context, text);
    }
}

// Each thread would take a heap of its own, and threads come and go with connections, dialogs and
// replays all day: what one of them leaves between what stays is no use to the others.
void shareOneHeap() {
    ::mallopt(M_ARENA_MAX, 1);
}

// The modules' large buffers come and go with each connection. Left to itself the allocator takes
// them from the heap as soon as one has been freed, and each leaves another hole there.
void keepLargeBuffersOffTheHeap() {
    ::mallopt(M_MMAP_THRESHOLD, ownPagesFrom);
    ::mallopt(M_TRIM_THRESHOLD, mostFreeAtTop);
}

} // namespace

void prepareForWindows() {
    shareOneHeap();
    keepLargeBuffersOffTheHeap();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Half a step more is larger letters, not everything doubled: windows that fit stay so.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::RoundPreferFloor);
    handlerBefore = qInstallMessageHandler(dropNoise);
}

} // namespace workbench
