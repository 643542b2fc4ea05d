// Languages: detection from file names, the lexer names, the keyword lists
// and the style tables of every language in every theme.
#include "presentation/languages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Words(const char* list) {
  std::vector<std::string> words;
  std::istringstream in(list);
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// Field n of a theme row, by its number in the row.
uint32_t Field(const ThemeColors& row, int field) {
  uint32_t values[35];
  std::memcpy(values, &row, sizeof(values));
  return values[field];
}

constexpr int kEditorBackground = 1, kEditorText = 5, kMuted = 6, kKeyword = 29, kComment = 30, kString = 31,
              kNumber = 32, kType = 33, kOperator = 34;
constexpr int kCode = -1;  // the Markdown code background

struct Row {
  int style;
  int colourField;
  bool bold;
  bool italic;
  int backField = kEditorBackground;
};

TEST(DetectLanguage, CaseOfTheExtensionDoesNotCount) {
  EXPECT_EQ(DetectLanguage(L"Notes.TXT"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"Main.CPP"), kLanguageCFamily);
  EXPECT_EQ(DetectLanguage(L"script.Py"), kLanguagePython);
  EXPECT_EQ(DetectLanguage(L"README.MarkDown"), kLanguageMarkdown);
}

TEST(DetectLanguage, NoDotIsPlainAndALeadingDotIsAnExtension) {
  EXPECT_EQ(DetectLanguage(L"c"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L".c"), kLanguageCFamily);
  EXPECT_EQ(DetectLanguage(L"C:\\src\\.c"), kLanguageCFamily);
  EXPECT_EQ(DetectLanguage(L"C:\\src\\Makefile"), kLanguagePlain);
}

TEST(DetectLanguage, OnlyTheLastPartCounts) {
  EXPECT_EQ(DetectLanguage(L"archive.tar.md"), kLanguageMarkdown);
  EXPECT_EQ(DetectLanguage(L"C:\\docs\\report.final.html"), kLanguageHtml);
  EXPECT_EQ(DetectLanguage(L"page.html.txt"), kLanguagePlain);
}

TEST(DetectLanguage, NothingBehindTheLastDotIsPlain) {
  EXPECT_EQ(DetectLanguage(L"name."), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"name.py."), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"."), kLanguagePlain);
}

TEST(DetectLanguage, ADotInAFolderNameGivesALongExtensionThatMatchesNothing) {
  EXPECT_EQ(DetectLanguage(L"C:\\my.project\\readme"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"C:\\tools.py\\build"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"C:\\v1.2\\main.c"), kLanguageCFamily);
}

TEST(DetectLanguage, EmptyAndMissingPathsArePlain) {
  EXPECT_EQ(DetectLanguage(L""), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(nullptr), kLanguagePlain);
}

TEST(DetectLanguage, TheExtensionMustMatchWhole) {
  EXPECT_EQ(DetectLanguage(L"a.mdx"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"a.m"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"a.c "), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"a.pyc"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"a.txt"), kLanguagePlain);
}

TEST(DetectLanguage, EveryExtensionOfTheTable) {
  const struct {
    const wchar_t* extensions;
    EditorLanguage language;
  } expected[] = {
      {L"py pyw pyi", kLanguagePython},
      {L"c cpp cxx cc h hpp hxx cs js ts jsx tsx", kLanguageCFamily},
      {L"html htm php asp aspx", kLanguageHtml},
      {L"xml xaml svg xsl xslt xsd", kLanguageXml},
      {L"sql", kLanguageSql},
      {L"bat cmd", kLanguageBatch},
      {L"lua", kLanguageLua},
      {L"css scss less", kLanguageCss},
      {L"md markdown", kLanguageMarkdown},
      {L"json jsonc", kLanguageJson},
  };
  for (const auto& row : expected) {
    std::wistringstream in(row.extensions);
    for (std::wstring extension; in >> extension;) {
      std::wstring name = L"C:\\work\\file." + extension;
      EXPECT_EQ(DetectLanguage(name.c_str()), row.language) << std::string(extension.begin(), extension.end());
    }
  }
}

TEST(DetectLanguage, AShebangOrPrologInTheNameChangesNothing) {
  // Only the name is read; these are not files at all.
  EXPECT_EQ(DetectLanguage(L"#!/usr/bin/env python"), kLanguagePlain);
  EXPECT_EQ(DetectLanguage(L"<?xml version=\"1.0\"?>"), kLanguagePlain);
}

TEST(Languages, NumbersAreTheLexerNumbers) {
  EXPECT_EQ(kLanguagePlain, 1);
  EXPECT_EQ(kLanguagePython, 2);
  EXPECT_EQ(kLanguageCFamily, 3);
  EXPECT_EQ(kLanguageHtml, 4);
  EXPECT_EQ(kLanguageXml, 5);
  EXPECT_EQ(kLanguageSql, 7);
  EXPECT_EQ(kLanguageBatch, 12);
  EXPECT_EQ(kLanguageLua, 15);
  EXPECT_EQ(kLanguageCss, 38);
  EXPECT_EQ(kLanguageMarkdown, 98);
  EXPECT_EQ(kLanguageJson, 120);
}

TEST(Languages, LexerNamesAndTheirOrder) {
  const struct {
    EditorLanguage language;
    const char* lexer;
  } expected[] = {
      {kLanguagePlain, nullptr}, {kLanguagePython, "python"}, {kLanguageCFamily, "cpp"},
      {kLanguageHtml, "hypertext"}, {kLanguageXml, "xml"}, {kLanguageSql, "sql"},
      {kLanguageBatch, "batch"}, {kLanguageLua, "lua"}, {kLanguageCss, "css"},
      {kLanguageMarkdown, "markdown"}, {kLanguageJson, "json"},
  };
  ASSERT_EQ(Languages().size(), std::size(expected));
  for (size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(Languages()[i].language, expected[i].language) << i;
    const char* lexer = LanguageOf(expected[i].language).lexerName;
    if (!expected[i].lexer) EXPECT_EQ(lexer, nullptr);
    else EXPECT_STREQ(lexer, expected[i].lexer);
  }
}

TEST(Languages, AnUnknownNumberReadsAsPlain) {
  EXPECT_EQ(LanguageOf(static_cast<EditorLanguage>(6)).language, kLanguagePlain);
  EXPECT_EQ(LanguageOf(static_cast<EditorLanguage>(0)).language, kLanguagePlain);
}

TEST(Keywords, OnlyPythonCFamilyAndBatchHaveLists) {
  for (const LanguageInfo& info : Languages()) {
    const bool list0 = info.language == kLanguagePython || info.language == kLanguageCFamily ||
                       info.language == kLanguageBatch;
    EXPECT_EQ(info.keywords[0] != nullptr, list0) << info.language;
    EXPECT_EQ(info.keywords[1] != nullptr, info.language == kLanguageCFamily) << info.language;
  }
}

TEST(Keywords, SingleBlanksBetweenWords) {
  for (const LanguageInfo& info : Languages())
    for (const char* list : info.keywords) {
      if (!list) continue;
      std::string text = list;
      EXPECT_EQ(text.find("  "), std::string::npos);
      EXPECT_NE(text.front(), ' ');
      EXPECT_NE(text.back(), ' ');
      EXPECT_EQ(text.find_first_of("\t\r\n"), std::string::npos);
    }
}

TEST(Keywords, Python) {
  std::vector<std::string> words = Words(LanguageOf(kLanguagePython).keywords[0]);
  ASSERT_EQ(words.size(), 76u);
  EXPECT_EQ(words.front(), "False");
  EXPECT_EQ(words.back(), "frozenset");
  EXPECT_STREQ(LanguageOf(kLanguagePython).keywords[0],
               "False None True and as assert async await break class continue def del elif else except finally for "
               "from global if import in is lambda nonlocal not or pass raise return try while with yield self cls "
               "super print len range type isinstance issubclass hasattr getattr setattr delattr callable iter next "
               "enumerate zip map filter sorted reversed min max sum abs round open int float str bool list dict set "
               "tuple bytes bytearray memoryview complex frozenset");
  EXPECT_EQ(words[35], "self");
  EXPECT_EQ(words[36], "cls");
  EXPECT_EQ(words[37], "super");
  EXPECT_EQ(words[38], "print");
}

TEST(Keywords, CFamilyKeywords) {
  std::vector<std::string> words = Words(LanguageOf(kLanguageCFamily).keywords[0]);
  ASSERT_EQ(words.size(), 92u);
  EXPECT_EQ(words.front(), "alignas");
  EXPECT_EQ(words.back(), "xor_eq");
  for (const char* word : {"char8_t", "co_await", "co_return", "co_yield", "concept", "requires", "consteval",
                           "constinit"})
    EXPECT_NE(std::find(words.begin(), words.end(), word), words.end()) << word;
}

TEST(Keywords, CFamilyTypes) {
  const char* list = LanguageOf(kLanguageCFamily).keywords[1];
  std::vector<std::string> words = Words(list);
  ASSERT_EQ(words.size(), 62u);
  EXPECT_EQ(words.front(), "NULL");
  EXPECT_EQ(words.back(), "make_shared");
  EXPECT_STREQ(list,
               "NULL TRUE FALSE BOOL BYTE WORD DWORD QWORD INT8 INT16 INT32 INT64 UINT UINT8 UINT16 UINT32 UINT64 "
               "LPSTR LPCSTR LPWSTR LPCWSTR LPVOID HANDLE HWND HINSTANCE HMODULE HFONT HBRUSH HPEN HDC HMENU HICON "
               "WPARAM LPARAM LRESULT CALLBACK WINAPI size_t ptrdiff_t uintptr_t int8_t int16_t int32_t int64_t "
               "uint8_t uint16_t uint32_t uint64_t string wstring vector map unordered_map set pair optional variant "
               "unique_ptr shared_ptr weak_ptr make_unique make_shared");
}

TEST(Keywords, Batch) {
  const char* list = LanguageOf(kLanguageBatch).keywords[0];
  std::vector<std::string> words = Words(list);
  ASSERT_EQ(words.size(), 38u);
  EXPECT_EQ(words.front(), "call");
  EXPECT_EQ(words.back(), "not");
  EXPECT_STREQ(list,
               "call cd chdir cls copy del dir echo endlocal erase exit for goto if md mkdir move path pause popd "
               "pushd rd rem ren rename rmdir set setlocal shift start title type xcopy robocopy defined exist "
               "errorlevel not");
}

// The tables by number, as they are meant to stand.
const std::vector<Row> kCFamily = {
    {0, kEditorText, false, false}, {1, kComment, false, true}, {2, kComment, false, true},
    {3, kComment, false, true},     {4, kNumber, false, false},  {5, kKeyword, true, false},
    {6, kString, false, false},     {7, kString, false, false},  {9, kType, false, false},
    {10, kOperator, false, false},  {11, kEditorText, false, false}, {12, kString, false, false},
    {13, kString, false, false},    {15, kComment, false, true}, {16, kKeyword, false, true},
};
const std::vector<Row> kPython = {
    {0, kEditorText, false, false}, {1, kComment, false, true},  {2, kNumber, false, false},
    {3, kString, false, false},     {4, kString, false, false},  {5, kKeyword, true, false},
    {6, kString, false, false},     {7, kString, false, false},  {8, kKeyword, true, false},
    {9, kType, false, false},       {10, kOperator, false, false}, {11, kEditorText, false, false},
    {12, kComment, false, true},    {15, kType, false, false},
};
const std::vector<Row> kMarkup = {
    {0, kEditorText, false, false}, {1, kKeyword, true, false},  {2, kKeyword, false, false},
    {3, kType, false, false},       {4, kType, false, false},    {5, kNumber, false, false},
    {6, kString, false, false},     {7, kString, false, false},  {8, kEditorText, false, false},
    {9, kComment, false, true},     {10, kNumber, false, false}, {11, kKeyword, true, false},
    {12, kOperator, true, false},   {13, kOperator, true, false}, {17, kString, false, false},
};
const std::vector<Row> kCss = {
    {0, kEditorText, false, false}, {1, kKeyword, true, false},  {2, kType, false, false},
    {3, kType, false, false},       {4, kComment, false, false}, {5, kOperator, false, false},
    {6, kKeyword, false, false},    {7, kEditorText, false, false}, {8, kString, false, false},
    {9, kComment, false, true},     {10, kType, true, false},    {11, kKeyword, true, false},
    {12, kType, false, false},      {13, kString, false, false}, {14, kString, false, false},
    {16, kType, false, false},      {18, kType, false, false},   {22, kKeyword, true, false},
    {23, kNumber, false, false},
};
const std::vector<Row> kBatch = {
    {0, kEditorText, false, false}, {1, kComment, false, true}, {2, kKeyword, true, false},
    {3, kType, false, false},       {4, kComment, false, false}, {5, kKeyword, true, false},
    {6, kEditorText, false, false}, {7, kOperator, false, false},
};
const std::vector<Row> kMarkdown = {
    {0, kEditorText, false, false},        {1, kEditorText, false, false},
    {2, kEditorText, true, false},         {3, kEditorText, true, false},
    {4, kEditorText, false, true},         {5, kEditorText, false, true},
    {6, kKeyword, true, false},            {7, kType, true, false},
    {8, kString, false, false},            {9, kMuted, false, false},
    {10, kMuted, false, false},            {11, kMuted, false, false},
    {12, kString, false, false, kCode},    {13, kOperator, false, false},
    {14, kOperator, false, false},         {15, kMuted, false, true},
    {16, kMuted, false, false},            {17, kComment, false, false},
    {18, kString, false, true},            {19, kString, false, false, kCode},
    {20, kString, false, false, kCode},    {21, kString, false, false, kCode},
};

const std::vector<Row>& ExpectedTable(EditorLanguage language) {
  static const std::vector<Row> none;
  switch (language) {
    case kLanguageCFamily: return kCFamily;
    case kLanguagePython: return kPython;
    case kLanguageHtml:
    case kLanguageXml: return kMarkup;
    case kLanguageCss: return kCss;
    case kLanguageBatch: return kBatch;
    case kLanguageMarkdown: return kMarkdown;
    default: return none;
  }
}

// #RRGGBB as COLORREF.
constexpr uint32_t Rgb(uint32_t rgb) { return ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16); }

TEST(StyleTables, EveryLanguageInEveryThemeWithThePlainFont) {
  for (unsigned theme = 0; theme < kThemeCount; ++theme) {
    const ThemeColors& row = ThemeRow(theme);
    for (const LanguageInfo& info : Languages()) {
      const std::vector<Row>& expected = ExpectedTable(info.language);
      std::vector<StyleLook> looks = LanguageStyles(info.language, row, false, false);
      ASSERT_EQ(looks.size(), expected.size()) << "language " << info.language;
      for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE("theme " + std::to_string(theme) + " language " + std::to_string(info.language) + " style " +
                     std::to_string(expected[i].style));
        EXPECT_EQ(looks[i].style, expected[i].style);
        EXPECT_EQ(looks[i].fore, Field(row, expected[i].colourField));
        EXPECT_EQ(looks[i].back, expected[i].backField == kCode ? CodeBackground(row)
                                                                : Field(row, expected[i].backField));
        EXPECT_EQ(looks[i].bold, expected[i].bold);
        EXPECT_EQ(looks[i].italic, expected[i].italic);
      }
    }
  }
}

TEST(StyleTables, TheUsersBoldAndItalicHoldWhereNothingIsForced) {
  const ThemeColors& row = ThemeRow(1);
  for (const LanguageInfo& info : Languages()) {
    for (const StyleLook& look : LanguageStyles(info.language, row, true, false)) {
      EXPECT_TRUE(look.bold) << info.language << " " << look.style;
    }
    for (const StyleLook& look : LanguageStyles(info.language, row, false, true)) {
      EXPECT_TRUE(look.italic) << info.language << " " << look.style;
    }
  }
  // Forced italic stays with a bold font, and the other way round.
  std::vector<StyleLook> python = LanguageStyles(kLanguagePython, row, true, false);
  EXPECT_TRUE(python[1].italic);  // comment
  EXPECT_FALSE(python[0].italic);
}

TEST(StyleTables, SqlLuaJsonAndPlainHaveNone) {
  for (EditorLanguage language : {kLanguagePlain, kLanguageSql, kLanguageLua, kLanguageJson}) {
    EXPECT_TRUE(LanguageStyles(language, ThemeRow(0), false, false).empty()) << language;
    EXPECT_EQ(LanguageOf(language).styles, nullptr);
  }
}

TEST(StyleTables, ColoursOfTwoThemesByValue) {
  // Python keywords bold in the theme's keyword colour, comments italic.
  std::vector<StyleLook> dark = LanguageStyles(kLanguagePython, ThemeRow(0), false, false);
  EXPECT_EQ(dark[5].fore, Rgb(0x569CD6));
  EXPECT_EQ(dark[1].fore, Rgb(0x6A9955));
  EXPECT_EQ(dark[3].fore, Rgb(0xCE9178));
  EXPECT_EQ(dark[0].back, Rgb(0x1C1C1E));
  std::vector<StyleLook> light = LanguageStyles(kLanguagePython, ThemeRow(1), false, false);
  EXPECT_EQ(light[5].fore, Rgb(0x0000FF));
  EXPECT_EQ(light[1].fore, Rgb(0x008000));
  EXPECT_EQ(light[3].fore, Rgb(0xA31515));
  EXPECT_EQ(light[0].back, Rgb(0xFFFFFF));
  // An index of 6 or more reads row 0.
  EXPECT_EQ(LanguageStyles(kLanguagePython, ThemeRow(9), false, false)[5].fore, Rgb(0x569CD6));
}

TEST(CodeBackground, RaisedInDarkThemesAndLoweredInLightOnes) {
  EXPECT_EQ(CodeBackground(ThemeRow(0)), Rgb(0x2E2E30));  // #1C1C1E + 18
  EXPECT_EQ(CodeBackground(ThemeRow(1)), Rgb(0xF1F1F1));  // #FFFFFF - 14
  EXPECT_EQ(CodeBackground(ThemeRow(2)), Rgb(0xDDE6F1));  // #EBF4FF - 14
  EXPECT_EQ(CodeBackground(ThemeRow(3)), Rgb(0xDDF1DD));  // #EBFFEB - 14
  EXPECT_EQ(CodeBackground(ThemeRow(4)), Rgb(0x323230));  // #20201E + 18
  EXPECT_EQ(CodeBackground(ThemeRow(5)), Rgb(0xF1EADD));  // #FFF8EB - 14
}

TEST(CodeBackground, ChannelsClampAtTheirEnds) {
  ThemeColors row = ThemeRow(0);
  row.editorBackground = Rgb(0xF0FA05);
  row.isDark = 1;
  EXPECT_EQ(CodeBackground(row), Rgb(0xFFFF17));
  row.isDark = 0;
  EXPECT_EQ(CodeBackground(row), Rgb(0xE2EC00));
  // Only the low byte of isDark is read.
  row.isDark = 0x100;
  EXPECT_EQ(CodeBackground(row), Rgb(0xE2EC00));
}

}  // namespace
