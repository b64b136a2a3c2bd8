// Entry point of a fuzz target built without libFuzzer: runs the target once on every file
// named on the command line, or found in a folder named there, so that the seed corpora and
// the inputs of past findings run as regression tests under CTest. A broken invariant aborts.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path arg(argv[i]);
        if (fs::is_directory(arg)) {
            for (const auto& entry : fs::recursive_directory_iterator(arg)) {
                if (entry.is_regular_file())
                    inputs.push_back(entry.path());
            }
        } else if (fs::is_regular_file(arg)) {
            inputs.push_back(arg);
        } else {
            std::fprintf(stderr, "%s: no such file or folder\n", argv[i]);
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());
    if (inputs.empty()) {
        // A corpus that went missing must not pass as a clean run.
        std::fprintf(stderr, "no inputs to replay\n");
        return 2;
    }
    for (const fs::path& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                      std::istreambuf_iterator<char>());
        std::fprintf(stderr, "replay %s (%zu bytes)\n", path.c_str(), bytes.size());
        // A copy of exactly the file's size, so that a read past the end is caught.
        std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(data.data(), data.size());
    }
    std::printf("replayed %zu inputs\n", inputs.size());
    return 0;
}
