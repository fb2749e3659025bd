#include "workbench/controller/command/resultwords.h"

#include "workbench/controller/command/channelresult.h"

#include <QCoreApplication>

namespace workbench {

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::ChannelResult)
};

} // namespace

QString resultWords(int result) {
    switch (result) {
    case Success:
        return Texts::tr("success");
    case NotConnected:
        return Texts::tr("not connected");
    case TimedOut:
        return Texts::tr("no reply in time");
    case MalformedReply:
        return Texts::tr("malformed reply");
    case ReplyTooLong:
        return Texts::tr("reply too long");
    case BadCommand:
        return Texts::tr("not a command line");
    case BadArgument:
        return Texts::tr("bad argument");
    case QueueFull:
        return Texts::tr("too many commands under way");
    case WrongThread:
        return Texts::tr("called from a thread other than the GUI thread");
    default:
        return Texts::tr("unknown result");
    }
}

} // namespace workbench
