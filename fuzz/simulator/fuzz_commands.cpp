#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/reply.h"
#include "simulator/controller/controller.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace kestrel_simulator;

namespace {

// Whatever was asked: one line, of one of the four forms.
void check(const ReplyPlan& plan) {
    const bool oneLine = std::none_of(plan.reply.begin(), plan.reply.end(),
                                      [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    if (!oneLine || plan.copies < 0 || plan.copies > 2) {
        std::abort();
    }
    const bool isError = plan.reply.rfind("kestrel2 err ", 0) == 0;
    if (isError &&
        kestrel_wire::parseReply(plan.reply, "").kind != kestrel_wire::Reply::Kind::Error) {
        std::abort();
    }
}

// Whatever was asked: no line of a frame is two.
void check(const std::vector<std::string>& frame) {
    const bool eachIsOne = std::all_of(frame.begin(), frame.end(), [](const std::string& line) {
        return line.find_first_of("\r\n") == std::string::npos;
    });
    if (!eachIsOne) {
        std::abort();
    }
}

} // namespace

// The bytes are a command stream; time passes with each command.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ControllerSetup setup;
    setup.calibration.stepSeconds = 0.5;
    Controller controller(setup);
    Session session;
    kestrel_wire::LineFramer framer(4096);
    framer.feed(reinterpret_cast<const char*>(data), size);
    std::string line;
    double now = 0.0;
    int commands = 0;
    while (framer.takeLine(line) && ++commands < 200) {
        const ReplyPlan plan = controller.execute(line, session, now);
        if (!controller.misbehaviours().has(Misbehaviour::GarbledReply) && !plan.cut) {
            check(plan);
        }
        kestrel_wire::parseReply(line, "measurementtool device b01");
        now += 0.1;
        std::vector<std::string> lines;
        controller.takeFrame(now, lines);
        check(lines);
    }
    return 0;
}
