#include <KestrelParse.h>
#include <KestrelParser.h>
#include <cstdio>
#include <string>
#include <utility>

/// Prints the tips of the tools of one line.
int main() {
    std::string text = "6dmt2 1 1 [0 1.000 1 2.500][326.848 -187.216 109.503]"
                       "[1 0 0 0 1 0 0 0 1][1][0.5 0 0 0.5 0 0.5]";
    KestrelParser parser;
    char* line = text.data();
    if (!parser.parseLine(&line)) {
        return 1;
    }
    const KestrelParser moved = std::move(parser);
    for (int i = 0; i < moved.getNumMeaTool(); ++i) {
        const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool = *moved.getMeaTool(i);
        std::printf("tool %d: %.3f %.3f %.3f\n", tool.id, tool.loc[0], tool.loc[1], tool.loc[2]);
    }
    std::string number = "0x1f";
    int value = 0;
    return KestrelSDK_Parse::string_get_i(number.data(), &value) != nullptr && value == 31 ? 0 : 1;
}
