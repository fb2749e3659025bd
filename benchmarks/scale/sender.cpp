#include "benchmarks/scale/sender.h"

#include "simulator/options.h"
#include "simulator/simulator.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace kestrel_simulator;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int references = 4;
constexpr int preparedFrames = 64;
constexpr double preparedRate = 60.0;
constexpr double never = 1e-9; // frames per second of the simulator itself
constexpr int ownLines = 2;    // counter and time stamp: written anew for each frame

// Whoever sends the first datagram is the controller: none of the simulator's own may arrive.
SimulatorOptions optionsFor(int tools) {
    return parseOptions({QStringLiteral("bench_scale"), QStringLiteral("--port"),
                         QStringLiteral("0"), QStringLiteral("--tools"), QString::number(tools),
                         QStringLiteral("--references"), QString::number(references),
                         QStringLiteral("--no-occlusion"), QStringLiteral("--misbehave"),
                         QStringLiteral("lost-data=100")})
        .options;
}

void command(Controller& controller, const std::string& text) {
    Session session;
    if (controller.execute("kestrel2 " + text, session, 0.0).reply != "kestrel2 ok") {
        std::fprintf(stderr, "refused: %s\n", text.c_str());
        std::exit(1);
    }
}

void calibrateAll(Controller& controller, int tools) {
    for (int i = 1; i <= tools; ++i) {
        const std::string body = (i < 10 ? "b0" : "b") + std::to_string(i);
        command(controller, "set sim body_calibrated tool " + body + " yes");
        command(controller, "set sim tip_calibrated " + body + " yes");
    }
    for (int i = 1; i <= references; ++i) {
        command(controller, "set sim body_calibrated reference b0" + std::to_string(i) + " yes");
    }
    command(controller, std::string("set measurementtool output_6dmt ") +
                            (tools >= shortenedFrom ? "yes" : "no"));
}

// Keeps two decimals of each number.
std::string shortened(const std::string& line) {
    constexpr int decimals = 2;
    std::string result;
    int behindPoint = -1;
    for (const char c : line) {
        const bool isDigit = c >= '0' && c <= '9';
        behindPoint = c == '.' ? 0 : isDigit && behindPoint >= 0 ? behindPoint + 1 : -1;
        if (behindPoint <= decimals) {
            result += c;
        }
    }
    return result;
}

// What follows counter and time stamp in frames of moving tools.
std::vector<std::string> prepareFrames(int tools) {
    SimulatorOptions options = optionsFor(tools);
    options.controller.rate = preparedRate;
    Controller controller(options.controller);
    calibrateAll(controller, tools);
    for (const char* channel : {"6dmt", "6dmt2", "6dmtr"}) {
        command(controller, std::string("set output active chmon ") + channel + " yes");
    }
    command(controller, "tracking start");
    std::vector<std::string> frames;
    std::vector<std::string> lines;
    for (double now = 0.0; frames.size() < preparedFrames; now += 1.0 / preparedRate) {
        if (!controller.takeFrame(now, lines)) {
            continue;
        }
        std::string frame;
        for (std::size_t i = ownLines; i < lines.size(); ++i) {
            frame += "\r\n" + (tools >= shortenedFrom ? shortened(lines[i]) : lines[i]);
        }
        frames.push_back(frame);
    }
    return frames;
}

double monotonicSeconds() {
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

class FrameThread {
public:
    explicit FrameThread(int tools)
        : m_frames(prepareFrames(tools))
        , m_socket(::socket(AF_INET, SOCK_DGRAM, 0)) {}
    ~FrameThread() {
        join();
        ::close(m_socket);
    }
    FrameThread(const FrameThread&) = delete;
    FrameThread& operator=(const FrameThread&) = delete;

    void start(int port, double rate, double seconds) {
        join();
        m_thread = std::thread([=] { send(port, rate, seconds); });
    }

private:
    void join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    // On time or, when the machine was elsewhere, as soon as possible; no frame is left out.
    void send(int port, double rate, double seconds) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        const auto count = static_cast<long long>(rate * seconds);
        const Clock::time_point begin = Clock::now();
        long long sent = 0;
        for (long long i = 0; i < count; ++i) {
            std::this_thread::sleep_until(
                begin + std::chrono::duration_cast<Clock::duration>(
                            std::chrono::duration<double>(static_cast<double>(i) / rate)));
            char head[96];
            const int size = std::snprintf(head, sizeof(head), "fr %lld\r\nts %.6f", firstFrame + i,
                                           monotonicSeconds());
            m_datagram.assign(head, static_cast<std::size_t>(size));
            m_datagram += m_frames[static_cast<std::size_t>(i) % m_frames.size()];
            sent += ::sendto(m_socket, m_datagram.data(), m_datagram.size(), 0,
                             reinterpret_cast<const sockaddr*>(&address), sizeof(address)) > 0;
        }
        const double took = std::chrono::duration<double>(Clock::now() - begin).count();
        std::printf("sent %lld %.3f\n", sent, took);
        std::fflush(stdout);
    }

    const std::vector<std::string> m_frames;
    const int m_socket;
    std::string m_datagram;
    std::thread m_thread;
};

} // namespace

int runSender(int argc, char* argv[], int tools) {
    const QCoreApplication application(argc, argv);
    FrameThread frames(tools);
    SimulatorOptions options = optionsFor(tools);
    options.controller.rate = never;
    Simulator simulator(options);
    calibrateAll(simulator.controller(), tools);
    QString error;
    if (simulator.start(error) != ExitOk) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    std::printf("port %d\n", int(simulator.port()));
    std::fflush(stdout);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char line[128] = {};
        int port = 0;
        double rate = 0.0;
        double seconds = 0.0;
        if (::read(STDIN_FILENO, line, sizeof(line) - 1) <= 0 ||
            std::sscanf(line, "send %d %lf %lf", &port, &rate, &seconds) != 3) {
            QCoreApplication::quit();
            return;
        }
        frames.start(port, rate, seconds);
    });
    return QCoreApplication::exec();
}
