// Registers of any length, with anything in the table and in the register.
#include "FuzzInput.h"
#include "lut/RegisterImage.h"

using namespace orlune;
using fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    // Around the table's length, shorter than a trailer, or up to four tables.
    const int length =
        input.takeBelow(2) ? kImageBytes - 64 + input.takeBelow(128) : input.takeBelow(4 * kTableBytes) - 8;
    const auto pattern = input.takeRest();

    const auto imageBytes = fuzz::repeated<std::uint8_t>(pattern, kImageBytes);
    const auto image = std::make_unique<LutImage>();
    FromBytes(*image, imageBytes.get(), kImageBytes);
    const auto bytes = std::size_t(std::max(length, 0));

    // What a camera holds, into a table.
    const auto foreign = fuzz::repeated<std::uint8_t>(pattern, bytes);
    const auto fromForeign = std::make_unique<LutImage>(*image);
    const bool fits = RegisterToTable(foreign.get(), length, *fromForeign);
    require(fits == (length > kTrailerBytes), "a register has room for more than a trailer, or no table");

    // A table into a register, and back, and into a register once more.
    const auto first = fuzz::repeated<std::uint8_t>({}, bytes);
    require(TableToRegister(*image, first.get(), length) == fits, "both ways take the same lengths");
    const auto back = std::make_unique<LutImage>(*image);
    RegisterToTable(first.get(), length, *back);
    require(fits || (std::count(first.get(), first.get() + bytes, 0) == std::ptrdiff_t(bytes) &&
                     std::memcmp(back.get(), image.get(), sizeof *image) == 0),
            "without room nothing is written");
    const auto second = fuzz::repeated<std::uint8_t>({}, bytes);
    TableToRegister(*back, second.get(), length);
    require(std::equal(first.get(), first.get() + bytes, second.get()),
            "a register keeps what it can hold of a table");
    return 0;
}
