// Languages of the editor. Every document is plain text for now: no lexer,
// style 32 in the theme's colours spread over all styles.
#include <windows.h>

#include "Scintilla.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "settings/settings.h"
#include "base/app_state.h"

namespace {

// Font and size stay as they are; colours, bold and italic come from the
// theme and the settings.
void StylePlainText() {
  if (!g_hwndEditor) return;
  const ThemeColors& row = CurrentTheme();
  SendEditor(SCI_SETILEXER, 0, 0);
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold ? 1 : 0);
  SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic ? 1 : 0);
  SendEditor(SCI_STYLECLEARALL);
  for (int margin = 0; margin < 5; ++margin) SendEditor(SCI_SETMARGINWIDTHN, margin, 0);
  SendEditor(SCI_SETMARGINBACKN, 0, row.marginBackground);
  SendEditor(SCI_STYLESETBACK, STYLE_LINENUMBER, row.marginBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_LINENUMBER, row.marginText);
}

}  // namespace

void ApplyLanguage(const wchar_t* path) {
  (void)path;
  OutputDebugStringW(L"[ApplyLanguage] lexers not built yet: plain text\n");
  StylePlainText();
}

void RestyleCurrentLanguage() { StylePlainText(); }
