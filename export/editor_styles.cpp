#include "export/editor_styles.h"

#include <windows.h>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/text_convert.h"
#include "document/document.h"
#include "document/save_prompt.h"
#include "settings/settings.h"

std::string EditorStyleBytes() {
  const Sci_Position length = static_cast<Sci_Position>(SendEditor(SCI_GETLENGTH));
  // Pairs of (character, style), and two zero bytes at the end.
  std::string pairs(static_cast<size_t>(length) * 2 + 2, '\0');
  Sci_TextRange range;
  range.chrg.cpMin = 0;
  range.chrg.cpMax = static_cast<Sci_PositionCR>(length);
  range.lpstrText = pairs.data();
  SendEditor(SCI_GETSTYLEDTEXT, 0, reinterpret_cast<LPARAM>(&range));
  std::string styles(static_cast<size_t>(length), '\0');
  for (Sci_Position i = 0; i < length; ++i) styles[i] = pairs[i * 2 + 1];
  return styles;
}

StyleLooks EditorStyleLooks() {
  StyleLooks looks;
  for (int n = 0; n < 128; ++n) {
    looks.fore[n] = static_cast<uint32_t>(SendEditor(SCI_STYLEGETFORE, n));
    looks.back[n] = static_cast<uint32_t>(SendEditor(SCI_STYLEGETBACK, n));
    looks.bold[n] = SendEditor(SCI_STYLEGETBOLD, n) != 0;
    looks.italic[n] = SendEditor(SCI_STYLEGETITALIC, n) != 0;
  }
  return looks;
}

std::string EditorFontNameUtf8() { return WideToUtf8(g_fontName); }

std::string DocumentDisplayNameUtf8() {
  return WideToUtf8(DocumentName(g_filePath));
}
