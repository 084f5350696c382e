// A file in memory for what reads files by their paths.
#ifndef ORLUNE_TESTS_FUZZ_INPUTFILE_H
#define ORLUNE_TESTS_FUZZ_INPUTFILE_H

#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include "FuzzInput.h"

namespace fuzz {

class InputFile
{
public:
    explicit InputFile(const std::vector<std::uint8_t>& bytes) : m_file(memfd_create("input", MFD_CLOEXEC))
    {
        require(m_file >= 0 && write(m_file, bytes.data(), bytes.size()) == ssize_t(bytes.size()),
                "there is memory for a file");
    }
    ~InputFile() { close(m_file); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_file); }

private:
    int m_file;
};

} // namespace fuzz

#endif
