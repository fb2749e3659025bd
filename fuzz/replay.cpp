// Runs a fuzz target over the files of the given folders, each as it is, cut short at every place,
// and in some hundred damaged versions, the same in every run. Needs no fuzzing library, so that it
// can be an ordinary test.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int damagedVersions = 300;

void run(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

std::string damaged(std::string bytes, std::mt19937& random) {
    const auto place = [&] { return random() % (bytes.size() + 1); };
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        const std::size_t at = place();
        switch (random() % 4) {
        case 0:
            bytes.insert(at, 1, static_cast<char>(random() % 256));
            break;
        case 1:
            bytes.erase(at, random() % 9);
            break;
        case 2:
            bytes.insert(at, bytes.substr(place(), random() % 40));
            break;
        default:
            if (at < bytes.size()) {
                bytes[at] = static_cast<char>(random() % 256);
            }
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes((std::istreambuf_iterator<char>(file)),
                                    std::istreambuf_iterator<char>());
            for (std::size_t size = 0; size <= bytes.size(); ++size) {
                run(bytes.substr(0, size));
            }
            std::mt19937 random(1);
            for (int version = 0; version < damagedVersions; ++version) {
                run(damaged(bytes, random));
            }
            ++files;
        }
    }
    std::printf("%d files\n", files);
    return files > 0 ? 0 : 1;
}
