// make: the table that the window would save for the same settings.
#ifndef ORLUNE_TOOLS_MAKE_H
#define ORLUNE_TOOLS_MAKE_H

#include "tools/Command.h"

namespace tools {

extern const Command kMakeCommand;

} // namespace tools

#endif
