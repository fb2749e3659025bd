#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Runs the fuzz target over every file of the given folders, and over each file cut short at every
// place. An empty corpus is an error.
int main(int argc, char* argv[]) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream stream(entry.path(), std::ios::binary);
            const std::string content((std::istreambuf_iterator<char>(stream)),
                                      std::istreambuf_iterator<char>());
            for (std::size_t size = 0; size <= content.size(); ++size) {
                const std::string input = content.substr(0, size) + '\n';
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()),
                                       input.size());
            }
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files > 0 ? 0 : 1;
}
