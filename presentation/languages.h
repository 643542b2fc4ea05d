// Languages of the editor: which lexer a file name selects, the keyword lists
// handed to it, and the table that gives each of its styles a colour of the
// current theme. Plain data and pure functions; the editor glue that sends
// them (ApplyLanguage, RestyleCurrentLanguage) is declared in presentation.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SciLexer.h"
#include "presentation/themes.h"

// A language is Scintilla's number of its lexer.
enum EditorLanguage : int {
  kLanguagePlain = SCLEX_NULL,  // 1
  kLanguagePython = SCLEX_PYTHON,  // 2
  kLanguageCFamily = SCLEX_CPP,  // 3: C, C++, C#, JavaScript, TypeScript
  kLanguageHtml = SCLEX_HTML,  // 4
  kLanguageXml = SCLEX_XML,  // 5
  kLanguageSql = SCLEX_SQL,  // 7
  kLanguageBatch = SCLEX_BATCH,  // 12
  kLanguageLua = SCLEX_LUA,  // 15
  kLanguageCss = SCLEX_CSS,  // 38
  kLanguageMarkdown = SCLEX_MARKDOWN,  // 98
  kLanguageJson = SCLEX_JSON,  // 120
};

// The language of the document in the editor; a theme change restyles it.
extern EditorLanguage g_currentLanguage;

// Which colour of the theme row a style takes.
enum class StyleColour : uint8_t { kText, kMuted, kKeyword, kComment, kString, kNumber, kType, kOperator };

// One style of a lexer. Bold and italic true force them on; false leaves the
// user's font choice. The background is the editor's unless codeBackground.
struct StyleRule {
  int style;
  StyleColour colour;
  bool bold;
  bool italic;
  bool codeBackground;
};

struct LanguageInfo {
  EditorLanguage language;
  const wchar_t* extensions;  // lower case, separated by single blanks
  const char* lexerName;  // for Lexilla's CreateLexer; null: no lexer
  const char* keywords[2];  // lists 0 and 1 for SCI_SETKEYWORDS; null: none
  const StyleRule* styles;  // null: no style table, the text stays plain
  size_t styleCount;
};

// Every language in the order extensions are matched, plain first.
const std::vector<LanguageInfo>& Languages();

// The entry of a language; plain text for a number that is none.
const LanguageInfo& LanguageOf(EditorLanguage language);

// The language of a path by the text behind its last dot, lower-cased.
// No dot, or nothing behind it, is plain text; the file's content is not read.
EditorLanguage DetectLanguage(const wchar_t* path);

// A style as it is sent to the editor.
struct StyleLook {
  int style;
  uint32_t fore;  // COLORREF
  uint32_t back;  // COLORREF
  bool bold;
  bool italic;
};

// The colour of the row that a rule names.
uint32_t StyleColourOf(StyleColour colour, const ThemeColors& row);

// The paper of code in Markdown: the editor's background with each channel
// raised by 18 in a dark theme and lowered by 14 in a light one, clamped.
uint32_t CodeBackground(const ThemeColors& row);

// The style table of a language in a theme, with the user's bold and italic
// where the table forces neither; empty for a language without one.
std::vector<StyleLook> LanguageStyles(EditorLanguage language, const ThemeColors& row, bool fontBold,
                                      bool fontItalic);
