// What outlets cost the line path: the work of the receiving thread for one datagram, with outlets
// and without, in turns, at the pace at which frames come.

#include "KestrelParser.h"
#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/recorder.h"
#include "workbench/outlets/sending/channelmaker.h"
#include "workbench/outlets/sending/outlethub.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int tools = 20;
constexpr std::chrono::microseconds period{1000};
constexpr int framesInTurn = 1000;
constexpr double boundShare = 0.01; // of the period
constexpr std::chrono::seconds patience{20};

void require(bool good, const std::string& what) {
    if (!good) {
        std::fprintf(stderr, "bench_outlets: %s\n", what.c_str());
        std::exit(1);
    }
}

/// Reads the lines as the live display does.
class Display : public Requester {
public:
    int set_ascii_data(const char*, const char* line) override {
        return m_parser.parseLine(line) ? 0 : -1;
    }
    void set_mea_started() override {}
    void set_mea_stopped() override {}

private:
    KestrelParser m_parser;
};

std::string frameText(int counter) {
    const std::string pose = "[1234.567 -234.567 34.567][0.866025 0.500000 0.000000 -0.500000 "
                             "0.866025 0.000000 0.000000 0.000000 1.000000]";
    const std::string count = std::to_string(tools);
    std::string text = "fr " + std::to_string(counter) + "\r\nts " +
                       std::to_string(1000 + counter / 1000) + ".125\r\n6dcal 0\r\n6dmt2 " + count +
                       ' ' + count;
    for (int i = 0; i < tools; ++i) {
        text += " [" + std::to_string(i) + " 0.875 4 0.750]" + pose +
                "[5][0.001 0.000 0.000 0.001 0.000 0.001]";
    }
    text += "\r\n6dmtr " + count + ' ' + count;
    for (int i = 0; i < tools; ++i) {
        text += " [" + std::to_string(i) + " 1.000]" + pose;
    }
    return text;
}

/// The line path of a workbench, with outlets or without.
class LinePath {
public:
    explicit LinePath(workbench::OutletHub* hub)
        : m_receiver(m_registry, m_recorder, nullptr, hub) {
        for (const char* channel : {"6dmt2", "6dmtr"}) {
            m_registry.add(channel, &m_display);
        }
    }

    void takeTurn(int& counter) {
        Clock::time_point due = Clock::now();
        for (int i = 0; i < framesInTurn; ++i) {
            const std::string text = frameText(++counter);
            std::this_thread::sleep_until(due += period);
            const Clock::time_point begin = Clock::now();
            m_receiver.handOut(text);
            m_times.push_back(Seconds(Clock::now() - begin).count());
        }
    }

    double mean() const {
        double sum = 0.0;
        for (const double time : m_times) {
            sum += time;
        }
        return sum / static_cast<double>(m_times.size());
    }
    double quantile(double share) const {
        std::vector<double> sorted = m_times;
        std::sort(sorted.begin(), sorted.end());
        return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
    }

private:
    workbench::RequesterRegistry m_registry;
    workbench::Recorder m_recorder;
    workbench::DataReceiver m_receiver;
    Display m_display;
    std::vector<double> m_times;
};

void printRow(const char* name, const LinePath& path) {
    std::printf("| %s | %.2f | %.2f | %.2f |\n", name, 1e6 * path.quantile(0.5), 1e6 * path.mean(),
                1e6 * path.quantile(0.99));
}

bool isTakenByAll(workbench::OutletHub& hub, quint64 frames) {
    const auto entries = hub.entries();
    return std::all_of(entries.begin(), entries.end(), [&](const auto& entry) {
        return entry.status.sentFrames + entry.status.droppedFrames >= frames ||
               entry.url.kind != workbench::OutletUrl::Kind::Udp;
    });
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"send", "An outlet; may be repeated.", "URL"},
                       {"turns", "A second each, with outlets and without (10).", "NUMBER", "10"}});
    parser.addHelpOption();
    parser.process(application);
    const QStringList urls = parser.values("send");
    require(!urls.isEmpty(), "--send is missing");

    workbench::OutletHub hub(workbench::makeOutletChannel);
    for (const QString& text : urls) {
        workbench::OutletUrl url;
        QString error;
        require(url.parse(text, &error) && hub.add(url, &error), error.toStdString());
    }
    LinePath without(nullptr);
    LinePath with(&hub);
    int counter = 0;
    const int turns = parser.value("turns").toInt();
    require(turns > 0, "bad number of turns");
    for (int turn = 0; turn < turns; ++turn) {
        without.takeTurn(counter);
        with.takeTurn(counter);
    }
    const auto frames = static_cast<quint64>(turns) * framesInTurn;
    const Clock::time_point deadline = Clock::now() + patience;
    while (!isTakenByAll(hub, frames) && Clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }

    std::printf("| line path, %d tools and references at 1000 frames/s | median, µs | mean, µs | "
                "99 %%, µs |\n|---|---|---|---|\n",
                tools);
    printRow("without outlets", without);
    printRow("with outlets", with);
    const double share = (with.mean() - without.mean()) / Seconds(period).count();
    std::printf("\noutlets take %.2f %% of the time (bound %.0f %%)\n\n", 100.0 * share,
                100.0 * boundShare);
    for (const auto& entry : hub.entries()) {
        std::printf("%s: %llu of %llu frames sent, %llu dropped; %s\n",
                    entry.url.text.toUtf8().constData(),
                    static_cast<unsigned long long>(entry.status.sentFrames),
                    static_cast<unsigned long long>(frames),
                    static_cast<unsigned long long>(entry.status.droppedFrames),
                    entry.status.word.text.toUtf8().constData());
    }
    require(share < boundShare, "outlets hold the line path up");
    return 0;
}
