// convert: a table from one form to another.
#ifndef ORLUNE_TOOLS_CONVERT_H
#define ORLUNE_TOOLS_CONVERT_H

#include "tools/Command.h"

namespace tools {

extern const Command kConvertCommand;

} // namespace tools

#endif
