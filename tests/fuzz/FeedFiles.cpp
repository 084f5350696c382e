// FeedFiles PATH...: gives the target each file of these paths, folders with all that is in them, and stops
// with the name of the file that it fails on as the last line of the output.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "FuzzInput.h"

namespace files = std::filesystem;

int main(int argc, char* argv[])
{
    std::vector<files::path> inputs;
    for (int i = 1; i < argc; ++i) {
        if (files::is_directory(argv[i]))
            std::copy(files::directory_iterator(argv[i]), {}, std::back_inserter(inputs));
        else
            inputs.emplace_back(argv[i]);
    }
    std::sort(inputs.begin(), inputs.end());
    for (const files::path& path : inputs) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
        std::printf("%s, %zu bytes\n", path.c_str(), bytes.size());
        std::fflush(stdout);
        fuzz::require(bool(file), "the file is read");
        const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    return inputs.empty() ? 1 : 0;
}
