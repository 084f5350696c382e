// What a camera's LUT register means to the camera. By the register's length L:
//   L / 4 = 4096 or (L - 40) / 4 = 4096   4096 entries of 12-bit outputs
//   any other L above 43                  N = (L - 40) / 4 entries of 10-bit outputs;
//                                         the last 40 bytes belong to whoever wrote the table
//   L up to 43                            no table
// Entries are 32-bit, little-endian, from offset 0. The input is scaled to the entries: input v selects entry
// v * N / 4096, rounded down. An entry below 0 or above its depth counts as the nearest value inside.
#ifndef ORLUNE_HOST_CAMERA_LUTREGISTER_H
#define ORLUNE_HOST_CAMERA_LUTREGISTER_H

#include <array>
#include <cstdint>
#include <optional>

#include <QByteArray>

namespace host {

constexpr int kInputs = 4096; // 12-bit values

// Outputs for the inputs 0 to 4095, in 12 bits whatever depth the register has.
using OutputTable = std::array<std::uint16_t, kInputs>;

// Nothing when a register of that length holds no table.
std::optional<OutputTable> outputsOf(const QByteArray& lutRegister);

// The register as it leaves the factory: the identity at its resolution, zeros behind the entries.
QByteArray identityRegister(int length);

} // namespace host

#endif
