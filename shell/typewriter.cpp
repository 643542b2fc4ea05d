#include "shell/typewriter.h"

int TypewriterClipFor(unsigned ch, bool soundOnKey, bool soundOnEnter) {
  if (!soundOnKey) return 0;
  if (ch == 13) return soundOnEnter ? kTypewriterReturnClip : 0;
  if (ch >= 32 && ch <= 126) return kTypewriterKeyClip;
  return 0;
}
