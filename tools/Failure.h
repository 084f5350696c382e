// How a command fails: with one sentence for the error output and an exit status.
#ifndef ORLUNE_TOOLS_FAILURE_H
#define ORLUNE_TOOLS_FAILURE_H

#include <QString>

namespace tools {

enum ExitStatus {
    kGood = 0,
    kNoTable = 1,   // a file holds no table
    kDifferent = 1, // two tables differ
    kTrouble = 2 // a wrong command line, a file that can't be read or written, a picture that can't be mapped
};

struct Failure
{
    ExitStatus status;
    QString sentence;
};

} // namespace tools

#endif
