// diff: where two tables differ.
#ifndef ORLUNE_TOOLS_DIFF_H
#define ORLUNE_TOOLS_DIFF_H

#include "tools/Command.h"

namespace tools {

extern const Command kDiffCommand;

} // namespace tools

#endif
