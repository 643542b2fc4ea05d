// The language table, the keyword lists and the style table of every
// language, and the lookups over them. No window is touched here.
//
// Style numbers are Lexilla's, written by their SciLexer.h names so that a
// lexer version that renumbered a style would carry its meaning along. In the
// Lexilla we ship (that of scite 5.3.3) every number below is the one the
// tables were drawn up with; the unit tests pin them as numbers.
#include "presentation/languages.h"

#include <cwctype>
#include <string>

namespace {

constexpr StyleColour kText = StyleColour::kText;
constexpr StyleColour kMuted = StyleColour::kMuted;
constexpr StyleColour kKeyword = StyleColour::kKeyword;
constexpr StyleColour kComment = StyleColour::kComment;
constexpr StyleColour kString = StyleColour::kString;
constexpr StyleColour kNumber = StyleColour::kNumber;
constexpr StyleColour kType = StyleColour::kType;
constexpr StyleColour kOperator = StyleColour::kOperator;
constexpr bool B = true;  // bold forced on
constexpr bool I = true;  // italic forced on
constexpr bool C = true;  // on the code background

// Keywords, then self, cls, super and the common built-ins: 76 words.
constexpr char kPythonKeywords[] =
    "False None True and as assert async await break class continue def del elif else except finally for from "
    "global if import in is lambda nonlocal not or pass raise return try while with yield "
    "self cls super "
    "print len range type isinstance issubclass hasattr getattr setattr delattr callable iter next enumerate zip "
    "map filter sorted reversed min max sum abs round open int float str bool list dict set tuple bytes bytearray "
    "memoryview complex frozenset";

// The C++ keywords with the coroutine and concept words: 92.
constexpr char kCFamilyKeywords[] =
    "alignas alignof and and_eq asm auto bitand bitor bool break case catch char char8_t char16_t char32_t class "
    "compl concept const consteval constexpr constinit const_cast continue co_await co_return co_yield decltype "
    "default delete do double dynamic_cast else enum explicit export extern false float for friend goto if inline "
    "int long mutable namespace new noexcept not not_eq nullptr operator or or_eq private protected public register "
    "reinterpret_cast requires return short signed sizeof static static_assert static_cast struct switch template "
    "this thread_local throw true try typedef typeid typename union unsigned using virtual void volatile wchar_t "
    "while xor xor_eq";

// Windows and library type names, the C family's second list: 62.
constexpr char kCFamilyTypes[] =
    "NULL TRUE FALSE BOOL BYTE WORD DWORD QWORD INT8 INT16 INT32 INT64 UINT UINT8 UINT16 UINT32 UINT64 LPSTR "
    "LPCSTR LPWSTR LPCWSTR LPVOID HANDLE HWND HINSTANCE HMODULE HFONT HBRUSH HPEN HDC HMENU HICON WPARAM LPARAM "
    "LRESULT CALLBACK WINAPI size_t ptrdiff_t uintptr_t int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t "
    "uint64_t string wstring vector map unordered_map set pair optional variant unique_ptr shared_ptr weak_ptr "
    "make_unique make_shared";

// Commands and the conditions: 38.
constexpr char kBatchKeywords[] =
    "call cd chdir cls copy del dir echo endlocal erase exit for goto if md mkdir move path pause popd pushd rd rem "
    "ren rename rmdir set setlocal shift start title type xcopy robocopy defined exist errorlevel not";

constexpr StyleRule kCFamilyStyles[] = {
    {SCE_C_DEFAULT, kText, false, false, false},
    {SCE_C_COMMENT, kComment, false, I, false},
    {SCE_C_COMMENTLINE, kComment, false, I, false},
    {SCE_C_COMMENTDOC, kComment, false, I, false},
    {SCE_C_NUMBER, kNumber, false, false, false},
    {SCE_C_WORD, kKeyword, B, false, false},
    {SCE_C_STRING, kString, false, false, false},
    {SCE_C_CHARACTER, kString, false, false, false},
    {SCE_C_PREPROCESSOR, kType, false, false, false},
    {SCE_C_OPERATOR, kOperator, false, false, false},
    {SCE_C_IDENTIFIER, kText, false, false, false},
    {SCE_C_STRINGEOL, kString, false, false, false},
    {SCE_C_VERBATIM, kString, false, false, false},
    {SCE_C_COMMENTLINEDOC, kComment, false, I, false},
    {SCE_C_WORD2, kKeyword, false, I, false},
};

constexpr StyleRule kPythonStyles[] = {
    {SCE_P_DEFAULT, kText, false, false, false},
    {SCE_P_COMMENTLINE, kComment, false, I, false},
    {SCE_P_NUMBER, kNumber, false, false, false},
    {SCE_P_STRING, kString, false, false, false},
    {SCE_P_CHARACTER, kString, false, false, false},
    {SCE_P_WORD, kKeyword, B, false, false},
    {SCE_P_TRIPLE, kString, false, false, false},
    {SCE_P_TRIPLEDOUBLE, kString, false, false, false},
    {SCE_P_CLASSNAME, kKeyword, B, false, false},
    {SCE_P_DEFNAME, kType, false, false, false},
    {SCE_P_OPERATOR, kOperator, false, false, false},
    {SCE_P_IDENTIFIER, kText, false, false, false},
    {SCE_P_COMMENTBLOCK, kComment, false, I, false},
    {SCE_P_DECORATOR, kType, false, false, false},
};

// HTML and XML share it.
constexpr StyleRule kMarkupStyles[] = {
    {SCE_H_DEFAULT, kText, false, false, false},
    {SCE_H_TAG, kKeyword, B, false, false},
    {SCE_H_TAGUNKNOWN, kKeyword, false, false, false},
    {SCE_H_ATTRIBUTE, kType, false, false, false},
    {SCE_H_ATTRIBUTEUNKNOWN, kType, false, false, false},
    {SCE_H_NUMBER, kNumber, false, false, false},
    {SCE_H_DOUBLESTRING, kString, false, false, false},
    {SCE_H_SINGLESTRING, kString, false, false, false},
    {SCE_H_OTHER, kText, false, false, false},
    {SCE_H_COMMENT, kComment, false, I, false},
    {SCE_H_ENTITY, kNumber, false, false, false},
    {SCE_H_TAGEND, kKeyword, B, false, false},
    {SCE_H_XMLSTART, kOperator, B, false, false},
    {SCE_H_XMLEND, kOperator, B, false, false},
    {SCE_H_CDATA, kString, false, false, false},
};

constexpr StyleRule kCssStyles[] = {
    {SCE_CSS_DEFAULT, kText, false, false, false},
    {SCE_CSS_TAG, kKeyword, B, false, false},
    {SCE_CSS_CLASS, kType, false, false, false},
    {SCE_CSS_PSEUDOCLASS, kType, false, false, false},
    {SCE_CSS_UNKNOWN_PSEUDOCLASS, kComment, false, false, false},
    {SCE_CSS_OPERATOR, kOperator, false, false, false},
    {SCE_CSS_IDENTIFIER, kKeyword, false, false, false},
    {SCE_CSS_UNKNOWN_IDENTIFIER, kText, false, false, false},
    {SCE_CSS_VALUE, kString, false, false, false},
    {SCE_CSS_COMMENT, kComment, false, I, false},
    {SCE_CSS_ID, kType, B, false, false},
    {SCE_CSS_IMPORTANT, kKeyword, B, false, false},
    {SCE_CSS_DIRECTIVE, kType, false, false, false},
    {SCE_CSS_DOUBLESTRING, kString, false, false, false},
    {SCE_CSS_SINGLESTRING, kString, false, false, false},
    {SCE_CSS_ATTRIBUTE, kType, false, false, false},
    {SCE_CSS_PSEUDOELEMENT, kType, false, false, false},
    {SCE_CSS_GROUP_RULE, kKeyword, B, false, false},
    {SCE_CSS_VARIABLE, kNumber, false, false, false},
};

constexpr StyleRule kBatchStyles[] = {
    {SCE_BAT_DEFAULT, kText, false, false, false},
    {SCE_BAT_COMMENT, kComment, false, I, false},
    {SCE_BAT_WORD, kKeyword, B, false, false},
    {SCE_BAT_LABEL, kType, false, false, false},
    {SCE_BAT_HIDE, kComment, false, false, false},  // the at sign that hides a command's echo
    {SCE_BAT_COMMAND, kKeyword, B, false, false},  // external commands
    {SCE_BAT_IDENTIFIER, kText, false, false, false},
    {SCE_BAT_OPERATOR, kOperator, false, false, false},
};

constexpr StyleRule kMarkdownStyles[] = {
    {SCE_MARKDOWN_DEFAULT, kText, false, false, false},
    {SCE_MARKDOWN_LINE_BEGIN, kText, false, false, false},
    {SCE_MARKDOWN_STRONG1, kText, B, false, false},
    {SCE_MARKDOWN_STRONG2, kText, B, false, false},
    {SCE_MARKDOWN_EM1, kText, false, I, false},
    {SCE_MARKDOWN_EM2, kText, false, I, false},
    {SCE_MARKDOWN_HEADER1, kKeyword, B, false, false},
    {SCE_MARKDOWN_HEADER2, kType, B, false, false},
    {SCE_MARKDOWN_HEADER3, kString, false, false, false},
    {SCE_MARKDOWN_HEADER4, kMuted, false, false, false},
    {SCE_MARKDOWN_HEADER5, kMuted, false, false, false},
    {SCE_MARKDOWN_HEADER6, kMuted, false, false, false},
    {SCE_MARKDOWN_PRECHAR, kString, false, false, C},
    {SCE_MARKDOWN_ULIST_ITEM, kOperator, false, false, false},
    {SCE_MARKDOWN_OLIST_ITEM, kOperator, false, false, false},
    {SCE_MARKDOWN_BLOCKQUOTE, kMuted, false, I, false},
    {SCE_MARKDOWN_STRIKEOUT, kMuted, false, false, false},
    {SCE_MARKDOWN_HRULE, kComment, false, false, false},
    {SCE_MARKDOWN_LINK, kString, false, I, false},
    {SCE_MARKDOWN_CODE, kString, false, false, C},
    {SCE_MARKDOWN_CODE2, kString, false, false, C},
    {SCE_MARKDOWN_CODEBK, kString, false, false, C},
};

template <size_t N>
constexpr LanguageInfo WithStyles(EditorLanguage language, const wchar_t* extensions, const char* lexerName,
                                  const char* list0, const char* list1, const StyleRule (&styles)[N]) {
  return {language, extensions, lexerName, {list0, list1}, styles, N};
}

constexpr LanguageInfo Unstyled(EditorLanguage language, const wchar_t* extensions, const char* lexerName) {
  return {language, extensions, lexerName, {nullptr, nullptr}, nullptr, 0};
}

}  // namespace

const std::vector<LanguageInfo>& Languages() {
  // SQL, Lua and JSON get their lexer but no style table: they stay uncoloured.
  static const std::vector<LanguageInfo> table = {
      Unstyled(kLanguagePlain, L"", nullptr),
      WithStyles(kLanguagePython, L"py pyw pyi", "python", kPythonKeywords, nullptr, kPythonStyles),
      WithStyles(kLanguageCFamily, L"c cpp cxx cc h hpp hxx cs js ts jsx tsx", "cpp", kCFamilyKeywords,
                 kCFamilyTypes, kCFamilyStyles),
      WithStyles(kLanguageHtml, L"html htm php asp aspx", "hypertext", nullptr, nullptr, kMarkupStyles),
      WithStyles(kLanguageXml, L"xml xaml svg xsl xslt xsd", "xml", nullptr, nullptr, kMarkupStyles),
      Unstyled(kLanguageSql, L"sql", "sql"),
      WithStyles(kLanguageBatch, L"bat cmd", "batch", kBatchKeywords, nullptr, kBatchStyles),
      Unstyled(kLanguageLua, L"lua", "lua"),
      WithStyles(kLanguageCss, L"css scss less", "css", nullptr, nullptr, kCssStyles),
      WithStyles(kLanguageMarkdown, L"md markdown", "markdown", nullptr, nullptr, kMarkdownStyles),
      Unstyled(kLanguageJson, L"json jsonc", "json"),
  };
  return table;
}

const LanguageInfo& LanguageOf(EditorLanguage language) {
  for (const LanguageInfo& info : Languages())
    if (info.language == language) return info;
  return Languages().front();
}

namespace {

// Whether a blank-separated list holds the word exactly.
bool ListHolds(const wchar_t* list, const std::wstring& word) {
  const wchar_t* start = list;
  for (const wchar_t* p = list;; ++p) {
    if (*p == L' ' || *p == L'\0') {
      if (static_cast<size_t>(p - start) == word.size() && word.compare(0, word.size(), start, word.size()) == 0)
        return true;
      if (*p == L'\0') return false;
      start = p + 1;
    }
  }
}

}  // namespace

EditorLanguage DetectLanguage(const wchar_t* path) {
  if (!path) return kLanguagePlain;
  // The whole path counts: a dot in a folder name can leave a long
  // "extension" with a backslash in it, which matches nothing.
  std::wstring extension;
  const wchar_t* dot = nullptr;
  for (const wchar_t* p = path; *p; ++p)
    if (*p == L'.') dot = p;
  if (!dot || dot[1] == L'\0') return kLanguagePlain;
  for (const wchar_t* p = dot + 1; *p; ++p) extension.push_back(static_cast<wchar_t>(std::towlower(*p)));
  for (const LanguageInfo& info : Languages())
    if (info.language != kLanguagePlain && ListHolds(info.extensions, extension)) return info.language;
  return kLanguagePlain;
}

uint32_t StyleColourOf(StyleColour colour, const ThemeColors& row) {
  switch (colour) {
    case StyleColour::kText: return row.editorText;
    case StyleColour::kMuted: return row.mutedText;
    case StyleColour::kKeyword: return row.syntaxKeyword;
    case StyleColour::kComment: return row.syntaxComment;
    case StyleColour::kString: return row.syntaxString;
    case StyleColour::kNumber: return row.syntaxNumber;
    case StyleColour::kType: return row.syntaxType;
    case StyleColour::kOperator: return row.syntaxOperator;
  }
  return row.editorText;
}

uint32_t CodeBackground(const ThemeColors& row) {
  const bool dark = (row.isDark & 0xFF) != 0;
  uint32_t result = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    int channel = static_cast<int>((row.editorBackground >> shift) & 0xFF) + (dark ? 18 : -14);
    channel = channel < 0 ? 0 : channel > 255 ? 255 : channel;
    result |= static_cast<uint32_t>(channel) << shift;
  }
  return result;
}

std::vector<StyleLook> LanguageStyles(EditorLanguage language, const ThemeColors& row, bool fontBold,
                                      bool fontItalic) {
  const LanguageInfo& info = LanguageOf(language);
  std::vector<StyleLook> looks;
  looks.reserve(info.styleCount);
  for (size_t i = 0; i < info.styleCount; ++i) {
    const StyleRule& rule = info.styles[i];
    looks.push_back({rule.style, StyleColourOf(rule.colour, row),
                     rule.codeBackground ? CodeBackground(row) : row.editorBackground, rule.bold || fontBold,
                     rule.italic || fontItalic});
  }
  return looks;
}
