#include "benchmarks/median.h"
#include "benchmarks/workbench/rawsockets.h"
#include "workbench/modules/backend.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

// What a command costs through the workbench's channel, as a module sees it, against the same
// command over plain sockets. Both in turns in one run, so that the machine's moods cancel out.

namespace {

constexpr int rounds = 41;
constexpr int commandsPerRound = 500;
constexpr double target = 1.4;
constexpr int connectTimeoutMs = 5000;

template <typename Function>
double microsecondsPerCommand(Function command) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < commandsPerRound; ++i) {
        command();
    }
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
    return time.count() / commandsPerRound;
}

void require(bool good, const char* what) {
    if (!good) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(1);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const RawServer server;
    RawClient raw(server.port());
    workbench::Backend backend;
    workbench::ControllerAddress address;
    address.port = server.port();
    backend.session.connectTo(address);
    QElapsedTimer clock;
    clock.start();
    while (!backend.session.isReady() && clock.elapsed() < connectTimeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    require(backend.session.isReady(), "no connection to the own server");
    IOManager& host = backend.io;

    std::vector<double> rawTimes;
    std::vector<double> channelTimes;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        rawTimes.push_back(microsecondsPerCommand([&] {
            require(raw.ask("kestrel2 get measurementtool reference_of_tool b01") ==
                        "kestrel2 set measurementtool reference_of_tool b01 none",
                    "wrong reply");
        }));
        channelTimes.push_back(microsecondsPerCommand([&] {
            char reply[200];
            require(host.get_parameter_string(reply, "measurementtool reference_of_tool b%2.2d",
                                              1) == 0 &&
                        std::strcmp(reply, "none") == 0,
                    "wrong reply");
        }));
        ratios.push_back(channelTimes.back() / rawTimes.back());
    }
    const double ratio = median(ratios);
    std::printf("%d rounds of %d commands each, medians\n", rounds, commandsPerRound);
    std::printf("plain sockets  %8.2f us per command\n", median(rawTimes));
    std::printf("channel        %8.2f us per command\n", median(channelTimes));
    std::printf("ratio          %8.2f (target: at most %.1f)\n", ratio, target);
    return ratio <= target ? 0 : 1;
}
