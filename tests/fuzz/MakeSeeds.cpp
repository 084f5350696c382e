// orlune-fuzz-seeds TABLES SCRIPTS SEEDS: writes what the fuzzer starts from, one folder of inputs a target.
// TABLES and SCRIPTS are the folders of the delivered tables and scripts. The values of a seed stand in the
// order in which its target takes them.
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

namespace {

class Seed
{
public:
    template <class T>
    Seed& put(T value)
    {
        m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    Seed& byte(int value) { return put(std::uint8_t(value)); }
    Seed& below(std::uint32_t value) { return put(value); }
    // A value that takeNear takes with this lower bound.
    Seed& near(int low, int value) { return byte(0).below(std::uint32_t(value - low + 2)); }
    Seed& text(const std::string& bytes)
    {
        m_bytes += bytes;
        return *this;
    }
    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

// A table's trailer, the name padded to 16 bytes.
std::string trailer(int gamma, int brightness, int contrast, int low, int high, std::string name)
{
    name.resize(16);
    return Seed().text("CBG0").put(gamma).put(brightness).put(contrast).put(low).put(high).text(name).bytes();
}

const std::string kTrailer = trailer(150, 20, -30, 100, 3000, "srgb");
const std::string kRamp("\1\0\0\0\2\0\0\0\xff\x0f\0\0\x80\x07\0\0", 16);

std::vector<Seed> lutFiles()
{
    const auto compact = [](const std::string& trailer) { return Seed().byte(1).text(trailer).text(kRamp); };
    return {compact(kTrailer), compact(trailer(100, 0, 0, 0, 4095, "lut4_11")),
            compact(trailer(400, 150, -150, 4032, 4095, "a name of 16 by.")),
            compact(trailer(0, -150, 150, 0, 63, "")), Seed().byte(0)};
}

std::vector<Seed> csvFiles()
{
    const auto lines = [](int times, const std::string& line, const std::string& end) {
        return Seed().put(std::uint16_t(times)).byte(int(line.size())).text(line).text(end);
    };
    return {lines(4096, "4095\n", ""), lines(4096, " 17\t\r\n", ""), lines(4095, "-5\n", "+4"),
            lines(4096, "0000000000000000000000000000000000000000", "1\n"), lines(2, "4096\n", "\n")};
}

std::vector<Seed> registers()
{
    const auto near = [](int length) { return Seed().below(1).below(std::uint32_t(length - 16424 + 64)); };
    const auto any = [](int length) { return Seed().below(0).below(std::uint32_t(length + 8)); };
    std::vector<Seed> seeds{near(16424), near(16384), near(16387), any(40),   any(41),
                            any(44),     any(4136),   any(1064),   any(6184), any(65576)};
    for (Seed& seed : seeds)
        seed.text(kRamp);
    return seeds;
}

std::vector<Seed> curves()
{
    const auto tones = [](int call, int brightness, int contrast, int gamma) {
        return Seed().byte(call).near(-150, brightness).near(-150, contrast).below(1).near(0, gamma);
    };
    return {
        Seed().byte(0).near(8, 12).near(2, 3).below(1).below(0).put(0).below(2000).put(4000).below(4095).put(
            4095),
        Seed()
            .byte(1)
            .below(2)
            .put(0.0)
            .put(0.0)
            .put(0.5)
            .put(0.7)
            .put(1.0)
            .put(1.0)
            .below(254)
            .below(0)
            .below(0)
            .below(1)
            .below(2),
        tones(2, 30, -40, 220).near(8, 12),
        tones(2, -150, 150, 0).near(8, 16),
        tones(3, 10, 20, 45).near(0, 100).near(0, 3000).below(1).byte(int(kRamp.size())).text(kRamp),
        Seed().byte(4).put(2.0).put(-5),
    };
}

std::vector<Seed> kernels()
{
    const auto frame = [](int words, int inPlace, int large, int width, int height) {
        return Seed()
            .below(std::uint32_t(words))
            .below(std::uint32_t(inPlace))
            .byte(large)
            .below(std::uint32_t(width - 1))
            .below(std::uint32_t(height - 1))
            .below(1);
    };
    const auto tables = [](Seed seed) {
        return seed.byte(int(kRamp.size())).text(kRamp).text("pixels of it");
    };
    return {tables(frame(0, 0, 0, 100, 3).below(3)),
            tables(frame(0, 1, 0, 64, 2)),
            tables(frame(1, 0, 0, 100, 3).below(3).near(1, 1024)),
            tables(frame(1, 1, 0, 65, 3).near(1, 4096)),
            tables(frame(0, 0, 0xff, 1600, 800).below(3)),
            tables(frame(1, 0, 0xff, 1600, 400).below(3).near(1, 4096))};
}

std::vector<Seed> frames()
{
    std::vector<Seed> seeds;
    for (const int format : {0, 5, 10, 19})
        seeds.push_back(Seed()
                            .byte(7)
                            .near(0, 220)
                            .near(-150, 10)
                            .near(-150, -10)
                            .text("12345678")
                            .text("abcdefgh")
                            .byte(format)
                            .below(1)
                            .below(20)
                            .below(10)
                            .near(1, 1)
                            .byte(0)
                            .below(0)
                            .byte(int(kRamp.size()))
                            .text(kRamp));
    return seeds;
}

std::vector<Seed> dialogs()
{
    std::vector<Seed> seeds;
    for (const int hasEnable : {0, 1}) {
        Seed seed;
        seed.below(std::uint32_t(hasEnable)).below(3).text(kTrailer).byte(int(kRamp.size())).text(kRamp);
        seed.byte(0xff).byte(hasEnable).byte(1);  // lengths, lock, user set
        seed.text(std::string(7, '\0')).below(0); // faults, language
        seed.byte(0).below(0);                    // device table
        seed.byte(1).below(0).near(0, 120);       // a slider
        seed.byte(2).below(1).near(-150, 50);     // an edit
        seed.byte(0).below(1).byte(3).below(2);   // a standard curve
        seed.byte(4).byte(5).near(1, 1);          // store, show
        seeds.push_back(seed);
    }
    return seeds;
}

// Whole files, behind the prefix that makes the target take them as they are.
void addFiles(const files::path& folder, const std::string& suffix, const std::string& prefix,
              std::vector<Seed>& seeds)
{
    for (const auto& entry : files::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != suffix)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        seeds.push_back(Seed().text(prefix).text({std::istreambuf_iterator<char>(file), {}}));
    }
}

void write(const files::path& folder, const std::vector<Seed>& seeds)
{
    files::create_directories(folder);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream file(folder / std::to_string(i), std::ios::binary);
        file << seeds[i].bytes();
        if (!file.flush())
            throw std::runtime_error("can't write to " + folder.string());
    }
}

} // namespace

int main(int argc, char* argv[])
try {
    if (argc != 4)
        throw std::runtime_error("usage: orlune-fuzz-seeds TABLES SCRIPTS SEEDS");
    std::map<std::string, std::vector<Seed>> targets{
        {"LutFile", lutFiles()}, {"CsvFile", csvFiles()},    {"Register", registers()}, {"Curve", curves()},
        {"Kernels", kernels()},  {"ProcessFrame", frames()}, {"Dialog", dialogs()}};
    addFiles(argv[1], ".lut", std::string(1, '\0'), targets["LutFile"]);
    addFiles(argv[1], ".bin", std::string(1, '\0'), targets["LutFile"]);
    addFiles(argv[1], ".csv", std::string(3, '\0'), targets["CsvFile"]);
    addFiles(argv[2], ".txt", {}, targets["Script"]);
    for (const auto& [name, seeds] : targets)
        write(files::path(argv[3]) / name, seeds);
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
