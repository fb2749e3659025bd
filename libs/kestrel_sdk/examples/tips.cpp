#include <KestrelParser.h>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

double degrees(double radians) {
    return radians * 57.29577951308232;
}

/// Where the tool's tip is, and how far the tool's own z axis is from the room's.
void printTool(const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool) {
    if (tool.quality == -1) {
        std::printf("  tool %d is not tracked\n", tool.id);
        return;
    }
    const double* zAxis = tool.rot + 6; // the third column
    std::printf("  tool %d: %.3f %.3f %.3f mm, tilted by %.1f degrees\n", tool.id, tool.loc[0],
                tool.loc[1], tool.loc[2], degrees(std::acos(zAxis[2])));
}

void printFrame(const KestrelParser& parser) {
    std::printf("frame %u, %.3f s\n", parser.getFrameCounter(), parser.getTimeStamp());
    for (int i = 0; i < parser.getNumMeaTool(); ++i) {
        printTool(*parser.getMeaTool(i));
    }
}

} // namespace

/// Reads data lines from the standard input, each frame beginning with its "fr", and prints the
/// Measurement Tools of each frame.
int main() {
    KestrelParser parser;
    std::string line;
    bool inFrame = false;
    const auto endFrame = [&] {
        if (inFrame) {
            parser.endFrame();
            printFrame(parser);
        }
    };
    while (std::getline(std::cin, line)) {
        if (line.compare(0, 3, "fr ") == 0) {
            endFrame();
            parser.startFrame();
            inFrame = true;
        }
        if (!parser.parseLine(line.c_str())) {
            std::fprintf(stderr, "malformed: %s\n", line.c_str());
        }
    }
    endFrame();
    return 0;
}
