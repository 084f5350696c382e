// orlune-fuzz-seeds TABLES SCRIPTS SEEDS: writes what the fuzzer starts from, one folder of inputs a target.
// TABLES and SCRIPTS are the folders of the delivered tables and scripts. The others get each target past its
// first checks.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace files = std::filesystem;
using namespace std::string_literals;

namespace {

std::string bytesOf(const std::string& text)
{
    return text;
}

template <class T>
std::string bytesOf(T value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

// The values in the order in which the target takes them: a char as a byte, an int as what takeBelow gives.
template <class... Values>
std::string seed(const Values&... values)
{
    return (bytesOf(values) + ...);
}

// What takeNear takes as this value with this lower bound.
std::string near(int low, int value)
{
    return seed('\0', value - low + 2);
}

const std::string kTrailer = seed("CBG0"s, 150, 20, -30, 100, 3000, "srgb"s, std::string(12, '\0'));
const std::string kRamp = seed(1, 2, 4095, 1920);
const std::string kPattern = seed(char(kRamp.size()), kRamp); // with its length

using Seeds = std::map<std::string, std::vector<std::string>>;

Seeds handmade()
{
    const std::string tones = near(-150, 30) + near(-150, -40) + seed(1) + near(0, 220);
    const std::string range = near(0, 100) + near(0, 3000);
    const auto frame = [](int stage) {
        return seed("12345678"s, "abcdefgh"s, '\5', 1, 20, 10, near(1, stage), '\0', 0, kPattern);
    };
    return {
        {"LutFile",
         {seed('\1', kTrailer, kRamp), seed('\0', "part"s, "of"s), seed('\0', std::string(100000, 'x'))}},
        {"CsvFile", {seed(std::uint16_t(4096), '\5', "4095\n"s)}},
        {"Register", {seed(1, 64, kRamp), seed(0, 1072, kRamp), seed(0, 40000, kRamp), seed(0, 48, kRamp)}},
        {"Curve",
         {seed('\0', near(8, 12), near(2, 3), 1, 0, 0, 2000, 4000, 4095, 4095),
          seed('\1', 2, 0.0, 0.0, 0.5, 0.7, 1.0, 1.0, 254, 0, 0, 1, 2, '\4', 2.0, -5),
          seed('\2', tones, near(8, 12)), seed('\3', tones, range, 1, kPattern)}},
        {"ProcessFrame", {seed('\7', near(0, 220), near(-150, 10), near(-150, -10), frame(1), frame(0))}},
        {"Script", {"wait 1\nnonsense\n"}},
    };
}

// Whole files, behind the prefix that makes the target take them as they are.
void addFiles(const files::path& folder, const std::string& suffix, const std::string& prefix,
              std::vector<std::string>& seeds)
{
    for (const auto& entry : files::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != suffix)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        seeds.push_back(prefix + std::string(std::istreambuf_iterator<char>(file), {}));
    }
}

} // namespace

int main(int argc, char* argv[])
try {
    if (argc != 4)
        throw std::runtime_error("usage: orlune-fuzz-seeds TABLES SCRIPTS SEEDS");
    Seeds targets = handmade();
    addFiles(argv[1], ".lut", std::string(1, '\0'), targets["LutFile"]);
    addFiles(argv[1], ".bin", std::string(1, '\0'), targets["LutFile"]);
    addFiles(argv[1], ".csv", std::string(3, '\0'), targets["CsvFile"]);
    addFiles(argv[2], ".txt", {}, targets["Script"]);
    for (const auto& [name, seeds] : targets) {
        const files::path folder = files::path(argv[3]) / name;
        files::create_directories(folder);
        for (std::size_t i = 0; i < seeds.size(); ++i) {
            std::ofstream file(folder / std::to_string(i), std::ios::binary);
            file << seeds[i];
            if (!file.flush())
                throw std::runtime_error("can't write to " + folder.string());
        }
    }
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
