#include "tests/end_to_end/networkcut.h"

#include "tests/support/kernelfile.h"

#include <QFile>
#include <QProcess>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString reason; // why there is no network of our own; empty when there is

constexpr const char* ourAddress = "10.77.0.1";
constexpr const char* theirAddress = "10.77.0.2";
constexpr const char* nobodysHardware = "02:00:00:00:00:99"; // frames to it are nobody's

// What the other tests of the process talk over.
bool switchLoopbackOn() {
    const int descriptor = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    bool good = ::ioctl(descriptor, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    good = good && ::ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
    ::close(descriptor);
    return good;
}

bool run(const QStringList& words, QString* problem = nullptr) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(words.constFirst(), words.mid(1));
    const bool good = process.waitForStarted() && process.waitForFinished() &&
                      process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!good && problem != nullptr) {
        *problem = words.join(QLatin1Char(' ')) + QStringLiteral(": ") +
                   QString::fromUtf8(process.readAll()).trimmed() + process.errorString();
    }
    return good;
}

QStringList ip(const QString& words) {
    return (QStringLiteral("ip ") + words).split(QLatin1Char(' '));
}

} // namespace

void NetworkCut::enter() {
    const std::string user = std::to_string(::getuid());
    const std::string group = std::to_string(::getgid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        reason = QStringLiteral("the kernel refuses a network of our own: %1")
                     .arg(QString::fromLocal8Bit(std::strerror(errno)));
        return;
    }
    writeKernelFile("/proc/self/setgroups", "deny");
    if (!switchLoopbackOn() || !writeKernelFile("/proc/self/uid_map", "0 " + user + " 1") ||
        !writeKernelFile("/proc/self/gid_map", "0 " + group + " 1")) {
        reason = QStringLiteral("the kernel refuses to be root in a network of our own");
    }
}

NetworkCut::NetworkCut()
    : m_whyNot(reason) {
    if (!m_whyNot.isEmpty()) {
        return;
    }
    const pid_t keeper = ::fork();
    if (keeper == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::unshare(CLONE_NEWNET) == 0) {
            ::pause();
        }
        ::_exit(1);
    }
    m_keeper = keeper;
    const auto nameOf = [](const QString& process) {
        return QFile::symLinkTarget(QStringLiteral("/proc/%1/ns/net").arg(process));
    };
    while (nameOf(QString::number(keeper)) == nameOf(QStringLiteral("self")) &&
           ::waitpid(keeper, nullptr, WNOHANG) == 0) {
        ::usleep(1000);
    }
    const QStringList cable{
        QStringLiteral("link add ours type veth peer name theirs netns %1").arg(m_keeper),
        QStringLiteral("addr add %1/24 dev ours").arg(QLatin1String(ourAddress)),
        QStringLiteral("link set ours up")};
    for (const QString& words : cable) {
        if (!run(ip(words), &m_whyNot)) {
            return;
        }
    }
    if (!run(command() + ip(QStringLiteral("link set lo up")), &m_whyNot) ||
        !run(command() +
                 ip(QStringLiteral("addr add %1/24 dev theirs").arg(QLatin1String(theirAddress))),
             &m_whyNot) ||
        !run(command() + ip(QStringLiteral("link set theirs up")), &m_whyNot)) {
        return;
    }
}

NetworkCut::~NetworkCut() {
    if (m_keeper > 0) {
        mend();
        run(ip(QStringLiteral("link del ours")));
        ::kill(static_cast<pid_t>(m_keeper), SIGKILL);
        ::waitpid(static_cast<pid_t>(m_keeper), nullptr, 0);
    }
}

QString NetworkCut::simulatorsAddress() {
    return QLatin1String(theirAddress);
}

QStringList NetworkCut::command() const {
    return {QStringLiteral("nsenter"), QStringLiteral("--net=/proc/%1/ns/net").arg(m_keeper)};
}

bool NetworkCut::inBoth(const QString& ours, const QString& theirs) {
    return run(ip(ours)) && run(command() + ip(theirs));
}

void NetworkCut::cut() {
    const QString words = QStringLiteral("neigh replace %1 lladdr %2 dev %3 nud permanent");
    inBoth(words.arg(QLatin1String(theirAddress), QLatin1String(nobodysHardware),
                     QStringLiteral("ours")),
           words.arg(QLatin1String(ourAddress), QLatin1String(nobodysHardware),
                     QStringLiteral("theirs")));
}

void NetworkCut::mend() {
    const QString words = QStringLiteral("neigh del %1 dev %2");
    inBoth(words.arg(QLatin1String(theirAddress), QStringLiteral("ours")),
           words.arg(QLatin1String(ourAddress), QStringLiteral("theirs")));
}
