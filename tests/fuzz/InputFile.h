// A file in memory for what reads files by their paths.
#ifndef ORLUNE_TESTS_FUZZ_INPUTFILE_H
#define ORLUNE_TESTS_FUZZ_INPUTFILE_H

#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include "FuzzInput.h"

namespace fuzz {

// The file holds these bytes until the next call.
inline QString pathOf(const std::vector<std::uint8_t>& bytes)
{
    static const int file = memfd_create("input", MFD_CLOEXEC);
    require(ftruncate(file, 0) == 0 && pwrite(file, bytes.data(), bytes.size(), 0) == ssize_t(bytes.size()),
            "there is memory for a file");
    return QStringLiteral("/proc/self/fd/%1").arg(file);
}

} // namespace fuzz

#endif
