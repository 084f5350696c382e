// plot: curves, and what they do to a picture's histogram, as a picture.
#ifndef ORLUNE_TOOLS_PLOT_H
#define ORLUNE_TOOLS_PLOT_H

#include "tools/Command.h"

namespace tools {

extern const Command kPlotCommand;

} // namespace tools

#endif
