// ApplyLanguage and RestyleCurrentLanguage on a real Scintilla control, with
// the shipped lexilla.dll and with no CreateLexer at all.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "Scintilla.h"
#include "base/app_state.h"
#include "presentation/languages.h"
#include "presentation/presentation.h"
#include "settings/settings.h"
#include "tests/common/scintilla_dll.h"
#include "tests/common/test_folder.h"

namespace {

class Languages : public ::testing::Test {
 protected:
  void SetUp() override {
    scintilla_ = LoadScintillaDll();
    ASSERT_NE(scintilla_, nullptr);
    lexilla_ = LoadLibraryW((ProgramFolder() + L"lexilla.dll").c_str());
    ASSERT_NE(lexilla_, nullptr);
    lexer_ = reinterpret_cast<CreateLexerFn>(reinterpret_cast<void*>(GetProcAddress(lexilla_, "CreateLexer")));
    ASSERT_NE(lexer_, nullptr);
    editor_ = CreateWindowExW(0, L"Scintilla", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(editor_, nullptr);
    g_hwndEditor = editor_;
    g_themeIndex = 0;
    g_settings.fontBold = 0;
    g_settings.fontItalic = 0;
    const char* text = "import os\n# note\n";
    SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  }

  void TearDown() override {
    g_hwndEditor = nullptr;
    g_createLexer = nullptr;
    g_currentLanguage = kLanguagePlain;
    g_themeIndex = 0;
    if (editor_) DestroyWindow(editor_);
    if (lexilla_) FreeLibrary(lexilla_);
    if (scintilla_) FreeLibrary(scintilla_);
  }

  std::string LexerName() {
    std::string name(static_cast<size_t>(SendEditor(SCI_GETLEXERLANGUAGE)), '\0');
    SendEditor(SCI_GETLEXERLANGUAGE, 0, reinterpret_cast<LPARAM>(name.data()));
    return name;
  }

  int StyleAt(int position) {
    SendEditor(SCI_COLOURISE, 0, -1);
    return static_cast<int>(SendEditor(SCI_GETSTYLEAT, position));
  }

  uint32_t Fore(int style) { return static_cast<uint32_t>(SendEditor(SCI_STYLEGETFORE, style)); }

  HMODULE scintilla_ = nullptr;
  HMODULE lexilla_ = nullptr;
  CreateLexerFn lexer_ = nullptr;
  HWND editor_ = nullptr;
};

TEST_F(Languages, APythonFileGetsItsLexerKeywordsAndColours) {
  g_createLexer = lexer_;
  ApplyLanguage(L"C:\\work\\tool.py");
  EXPECT_EQ(g_currentLanguage, kLanguagePython);
  EXPECT_EQ(LexerName(), "python");
  EXPECT_EQ(StyleAt(0), 5);  // "import", from the keyword list
  EXPECT_EQ(StyleAt(10), 1);  // the comment
  EXPECT_EQ(Fore(5), ThemeRow(0).syntaxKeyword);
  EXPECT_EQ(SendEditor(SCI_STYLEGETBOLD, 5), 1);
  EXPECT_EQ(Fore(1), ThemeRow(0).syntaxComment);
  EXPECT_EQ(SendEditor(SCI_STYLEGETITALIC, 1), 1);
  for (int margin = 0; margin < 5; ++margin) EXPECT_EQ(SendEditor(SCI_GETMARGINWIDTHN, margin), 0) << margin;
  EXPECT_EQ(SendEditor(SCI_STYLEGETBACK, STYLE_LINENUMBER), ThemeRow(0).marginBackground);
  EXPECT_EQ(SendEditor(SCI_STYLEGETFORE, STYLE_LINENUMBER), ThemeRow(0).marginText);
}

TEST_F(Languages, ARestyleKeepsTheLexerAndTakesTheNewTheme) {
  g_createLexer = lexer_;
  ApplyLanguage(L"tool.py");
  g_createLexer = nullptr;  // a second lexer could not be made now
  g_themeIndex = 1;
  RestyleCurrentLanguage();
  EXPECT_EQ(LexerName(), "python");
  EXPECT_EQ(StyleAt(0), 5);
  EXPECT_EQ(Fore(5), ThemeRow(1).syntaxKeyword);
  EXPECT_EQ(SendEditor(SCI_STYLEGETBACK, 5), ThemeRow(1).editorBackground);
}

TEST_F(Languages, WithoutCreateLexerEveryFileIsPlainButTheLanguageIsKept) {
  g_createLexer = nullptr;
  ApplyLanguage(L"tool.py");
  EXPECT_EQ(g_currentLanguage, kLanguagePython);
  EXPECT_EQ(LexerName(), "");
  EXPECT_EQ(StyleAt(0), 0);
  EXPECT_EQ(Fore(5), ThemeRow(0).editorText);
  EXPECT_EQ(Fore(0), ThemeRow(0).editorText);
  // A theme change runs Python's table on the plain text.
  g_themeIndex = 1;
  RestyleCurrentLanguage();
  EXPECT_EQ(StyleAt(0), 0);
  EXPECT_EQ(Fore(0), ThemeRow(1).editorText);
  EXPECT_EQ(Fore(5), ThemeRow(1).syntaxKeyword);
}

TEST_F(Languages, JsonIsLexedButUncoloured) {
  g_createLexer = lexer_;
  const char* text = "{\"a\": 1}";
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  ApplyLanguage(L"data.JSON");
  EXPECT_EQ(LexerName(), "json");
  EXPECT_NE(StyleAt(1), 0);
  for (int style = 0; style < 32; ++style) EXPECT_EQ(Fore(style), ThemeRow(0).editorText) << style;
}

TEST_F(Languages, AnEmptyPathIsPlainText) {
  g_createLexer = lexer_;
  ApplyLanguage(L"tool.py");
  ApplyLanguage(L"");
  EXPECT_EQ(g_currentLanguage, kLanguagePlain);
  EXPECT_EQ(LexerName(), "");
  EXPECT_EQ(StyleAt(0), 0);
  EXPECT_EQ(Fore(5), ThemeRow(0).editorText);
}

}  // namespace
