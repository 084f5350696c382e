// How the viewer looks: style, font and colours. The plug-in's window has a fixed geometry that was drawn for
// texts of about 12 pixels; the font here is the one that fits it in both languages.
#ifndef ORLUNE_HOST_APP_APPEARANCE_H
#define ORLUNE_HOST_APP_APPEARANCE_H

#include <QString>

namespace host {

enum class Colours { Light, Dark };

// Before the first window.
void applyStyle();

// Any time; open windows follow.
void applyColours(Colours colours);

} // namespace host

#endif
