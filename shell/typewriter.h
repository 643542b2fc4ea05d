// Which typewriter clip a typed character plays. Kept free of windows so
// the rule can be tested on its own; the editor's WM_CHAR handler plays the
// returned wave resource.
#pragma once

#include "resources/resource_ids.h"

// Wave resources built into Tavro.exe.
constexpr int kTypewriterKeyClip = IDW_TYPEWRITER_KEY;
constexpr int kTypewriterReturnClip = IDW_TYPEWRITER_RETURN;

// Resource number of the clip for character `ch`, or 0 for silence.
// Nothing sounds while soundOnKey is off, Enter included: soundOnEnter only
// matters with soundOnKey on. Then a carriage return plays the return clip if
// soundOnEnter is on, printable ASCII (32..126) plays the key clip, and
// everything else stays silent, characters outside ASCII on purpose.
int TypewriterClipFor(unsigned ch, bool soundOnKey, bool soundOnEnter);
