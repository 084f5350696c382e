// A .csv file from anywhere.
#include "FuzzInput.h"
#include "InputFile.h"
#include "lut/LutFiles.h"
#include "lut/ResultCodes.h"

using namespace orlune;
using fuzz::require;

namespace {

// How often, how long, then that many bytes, which are repeated so often, and the end of the file: a table
// takes 4096 lines, and a line that is too long takes more bytes.
std::vector<std::uint8_t> fileOf(fuzz::Input input)
{
    const int times = input.take<std::uint16_t>() % 4200;
    const auto lines = input.takeBytes(input.take<std::uint8_t>() % 64);
    const auto start = fuzz::repeated<std::uint8_t>(lines, lines.size() * std::size_t(times));
    std::vector<std::uint8_t> file(start.get(), start.get() + lines.size() * std::size_t(times));
    const auto end = input.takeRest();
    file.insert(file.end(), end.begin(), end.end());
    return file;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto current = std::make_unique<LutImage>();
    const auto base = std::make_unique<LutImage>();
    const int code = ReadCsvFile(fuzz::pathOf(fileOf(fuzz::Input(data, size))), *current, *base);
    require(code == kSuccess || code == kInvalidData, "the result is one of two");

    const LutImage zero{};
    require(std::memcmp(base.get(), code == kSuccess ? current.get() : &zero, sizeof zero) == 0,
            "the base is the table, or zero");
    require(std::memcmp(current->Trailer, zero.Trailer, sizeof zero.Trailer) == 0, "there is no trailer");
    require(std::all_of(current->Entries, current->Entries + kLutEntries,
                        [](qint32 entry) { return entry <= kLutMaxOutput; }),
            "no entry is above the highest output");
    return 0;
}
