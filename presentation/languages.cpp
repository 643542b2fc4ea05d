// The editor's lexer and styles: ApplyLanguage picks the lexer of a path,
// RestyleCurrentLanguage reruns the styles of the current language in the
// live theme and font without touching the lexer.
#include <windows.h>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/text_convert.h"
#include "presentation/languages.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "settings/settings.h"

EditorLanguage g_currentLanguage = kLanguagePlain;

namespace {

// Style 32 in the live font, on the theme's paper and ink.
void StyleDefaultFont(const ThemeColors& row) {
  SendEditor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>(WideToUtf8(g_fontName).c_str()));
  SendEditor(SCI_STYLESETSIZE, STYLE_DEFAULT, g_fontSize);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
}

// Every style as style 32 in the theme's colours and the user's bold and
// italic. Font and size stay as they are.
void StylePlain(const ThemeColors& row) {
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold ? 1 : 0);
  SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic ? 1 : 0);
  SendEditor(SCI_STYLECLEARALL);
}

// Every style as style 32, then the language's table over it; a language
// without a table stays at that.
void RunStyleTable(EditorLanguage language, const ThemeColors& row) {
  SendEditor(SCI_STYLECLEARALL);
  for (const StyleLook& look : LanguageStyles(language, row, g_settings.fontBold != 0, g_settings.fontItalic != 0)) {
    SendEditor(SCI_STYLESETFORE, look.style, look.fore);
    SendEditor(SCI_STYLESETBACK, look.style, look.back);
    SendEditor(SCI_STYLESETBOLD, look.style, look.bold ? 1 : 0);
    SendEditor(SCI_STYLESETITALIC, look.style, look.italic ? 1 : 0);
  }
}

// The built-in margins stay hidden: line numbers have a window of their own.
void HideMarginsAndColourThem(const ThemeColors& row) {
  for (int margin = 0; margin < 5; ++margin) SendEditor(SCI_SETMARGINWIDTHN, margin, 0);
  SendEditor(SCI_SETMARGINBACKN, 0, row.marginBackground);
  SendEditor(SCI_STYLESETBACK, STYLE_LINENUMBER, row.marginBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_LINENUMBER, row.marginText);
}

}  // namespace

void ApplyLanguage(const wchar_t* path) {
  g_currentLanguage = DetectLanguage(path);
  if (!g_hwndEditor) return;
  const ThemeColors& row = CurrentTheme();
  const LanguageInfo& info = LanguageOf(g_currentLanguage);
  void* lexer = info.lexerName && g_createLexer ? g_createLexer(info.lexerName) : nullptr;
  if (lexer) {
    SendEditor(SCI_SETILEXER, 0, reinterpret_cast<LPARAM>(lexer));
    StyleDefaultFont(row);
    for (int list = 0; list < 2; ++list)
      if (info.keywords[list]) SendEditor(SCI_SETKEYWORDS, list, reinterpret_cast<LPARAM>(info.keywords[list]));
    RunStyleTable(g_currentLanguage, row);
  } else {
    // No lexer library entry or no such lexer: plain text, while
    // g_currentLanguage keeps the language for the next restyle.
    SendEditor(SCI_SETILEXER, 0, 0);
    StylePlain(row);
  }
  HideMarginsAndColourThem(row);
}

void RestyleCurrentLanguage() {
  if (!g_hwndEditor) return;
  const ThemeColors& row = CurrentTheme();
  StyleDefaultFont(row);
  if (LanguageOf(g_currentLanguage).lexerName) RunStyleTable(g_currentLanguage, row);
  else StylePlain(row);
  HideMarginsAndColourThem(row);
}
