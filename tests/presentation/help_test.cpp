// The Help window's text against its topic table, the shortcuts it names
// against the program's accelerator table, the window's layout arithmetic,
// and the splash's fixed texts and fade.
#include <windows.h>

#include <gtest/gtest.h>

#include <cwctype>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "presentation/help_layout.h"
#include "presentation/help_text.h"
#include "presentation/splash_layout.h"
#include "tavro_version.h"
#include "tests/common/test_folder.h"

namespace {

struct ExpectedTopic {
  const wchar_t* title;
  int lines;
  std::vector<std::wstring> headings;  // empty: the topic's headings are free
};

const ExpectedTopic kExpected[11] = {
    {L"Getting started", 71,
     {L"Welcome to Tavro - Now with AI!", L"What can Tavro do?", L"Built-in AI Assistant", L"Profiles",
      L"Tips for getting started"}},
    {L"Keyboard shortcuts", 32, {L"File", L"Edit", L"Find & Replace", L"Regex Search", L"Font", L"Print"}},
    {L"Themes", 13, {L"Themes"}},
    {L"File formats", 35, {L"Text encoding", L"Line endings", L"Syntax highlighting"}},
    {L"Export & Print", 42, {L"PDF export", L"HTML export", L"RTF export", L"Print Preview", L"Page Setup"}},
    {L"MD Preview", 33, {L"Markdown Preview", L"Supported Markdown formatting", L"What is not supported"}},
    {L"AI Assistant", 116,
     {L"AI Assistant", L"Which AI services are supported?", L"How to get a free API key", L"Setting up the AI",
      L"Using the AI", L"Conversation memory", L"Chat history", L"Typing animation", L"Panel size", L"Privacy",
      L"Troubleshooting"}},
    {L"Regular Expressions", 124,
     {L"Regular Expressions", L"Basic Patterns", L"Character Classes", L"Quantifiers", L"Anchors",
      L"Groups & Alternation", L"Capture Groups in Replace", L"Character Escapes", L"Practical Examples",
      L"Find & Replace Examples", L"Regex Dialog Options", L"Performance Tips"}},
    {L"Syntax Highlighting", 50,
     {L"Syntax Highlighting", L"Supported file types", L"What gets coloured", L"Markdown colour coding"}},
    {L"Known limitations", 22,
     {L"Known limitations", L"Print Preview with very large files", L"Syntax highlighting",
      L"Saving files originally in UTF-16"}},
    {L"About Tavro", 29, {}},
};

std::vector<std::wstring> Lines(int topic) {
  std::vector<std::wstring> lines;
  for (const wchar_t* const* line = kHelpTopics[topic].lines; *line; ++line) lines.emplace_back(*line);
  return lines;
}

std::vector<std::wstring> Headings(int topic) {
  std::vector<std::wstring> headings;
  for (const std::wstring& line : Lines(topic))
    if (line.compare(0, 2, L"##") == 0) headings.push_back(line.substr(2));
  return headings;
}

TEST(HelpText, TitlesLineCountsAndHeadingsAreThoseOfTheTable) {
  for (int topic = 0; topic < 11; ++topic) {
    const ExpectedTopic& expected = kExpected[topic];
    SCOPED_TRACE(topic);
    EXPECT_STREQ(kHelpTopics[topic].title, expected.title);
    EXPECT_EQ(static_cast<int>(Lines(topic).size()), expected.lines);
    std::vector<std::wstring> headings = Headings(topic);
    if (expected.headings.empty()) {
      EXPECT_FALSE(headings.empty());
      continue;
    }
    // Shown from the third character on: the blank after the marks is part of it.
    std::vector<std::wstring> shown;
    for (const std::wstring& heading : expected.headings) shown.push_back(L" " + heading);
    EXPECT_EQ(headings, shown);
  }
}

TEST(HelpText, NoHeadingIsEmptyAndNoLineHoldsBreaksOrTabs) {
  for (int topic = 0; topic < 11; ++topic) {
    std::vector<std::wstring> lines = Lines(topic);
    for (const std::wstring& line : lines) {
      if (line.compare(0, 2, L"##") == 0) {
        EXPECT_GT(line.size(), 3u) << topic;
      }
      EXPECT_EQ(line.find(L'\n'), std::wstring::npos) << topic;
      EXPECT_EQ(line.find(L'\t'), std::wstring::npos) << topic;
    }
  }
}

TEST(HelpText, OnlyTheAboutTopicHoldsTheLinkLine) {
  for (int topic = 0; topic < 11; ++topic) {
    int links = 0;
    for (const std::wstring& line : Lines(topic))
      if (ClassifyHelpLine(line.c_str()) == HelpLineKind::Link) ++links;
    EXPECT_EQ(links, topic == 10 ? 1 : 0) << topic;
  }
  EXPECT_EQ(std::wstring(kHelpLinkTarget).compare(0, 8, L"https://"), 0);
  EXPECT_GT(wcslen(kHelpLinkLabel), 0u);
}

TEST(HelpText, TheAboutTopicNamesTheProgramsVersion) {
  bool found = false;
  for (const std::wstring& line : Lines(10)) found = found || line.find(kTavroVersion) != std::wstring::npos;
  EXPECT_TRUE(found);
}

TEST(HelpText, TheThreeProvidersAndTheirConsolesAreNamed) {
  std::wstring all;
  for (const std::wstring& line : Lines(6)) all += line + L"\n";
  for (const wchar_t* text : {L"Groq", L"Cloudflare", L"Mistral AI", L"https://console.groq.com/keys",
                              L"https://dash.cloudflare.com", L"https://console.mistral.ai"})
    EXPECT_NE(all.find(text), std::wstring::npos) << text;
}

// The regex examples are patterns the program's engine takes: each one that
// the text gives after "pattern " compiles as ECMAScript.
TEST(HelpText, TheRegexReplaceExamplesCompile) {
  int checked = 0;
  for (const std::wstring& line : Lines(7)) {
    size_t at = line.find(L": pattern ");
    if (at == std::wstring::npos) continue;
    size_t start = at + 10, end = line.find(L" - replace", start);
    ASSERT_NE(end, std::wstring::npos) << line;
    std::wstring pattern = line.substr(start, end - start);
    EXPECT_NO_THROW(std::wregex(pattern, std::regex::ECMAScript)) << std::string(pattern.begin(), pattern.end());
    ++checked;
  }
  EXPECT_GE(checked, 8);
}

TEST(HelpText, TheRegexExamplesFindWhatTheySay) {
  auto finds = [](const wchar_t* pattern, const wchar_t* text, const wchar_t* match) {
    std::wsmatch m;
    std::wstring subject(text);
    return std::regex_search(subject, m, std::wregex(pattern, std::regex::ECMAScript)) && m.str(0) == match;
  };
  EXPECT_TRUE(finds(L"colou?r", L"the colour", L"colour"));
  EXPECT_TRUE(finds(L"<.+?>", L"<b>bold</b>", L"<b>"));
  EXPECT_TRUE(finds(L"\\b(\\w+)\\s+\\1\\b", L"see the the end", L"the the"));
  EXPECT_TRUE(finds(L"[ \\t]+(?=\\r?\\n)", L"abc  \r\nx", L"  "));
  EXPECT_TRUE(finds(L"\\d+(?!px)", L"12px 34", L"1"));
  EXPECT_TRUE(finds(L"\\nTODO", L"a\nTODO b", L"\nTODO"));
  EXPECT_TRUE(finds(L"#[0-9A-Fa-f]{6}\\b", L"color: #1E1E2E;", L"#1E1E2E"));
  EXPECT_EQ(std::regex_replace(std::wstring(L"2024-05-17"), std::wregex(L"(\\d{4})-(\\d{2})-(\\d{2})"),
                               std::wstring(L"$3.$2.$1")),
            L"17.05.2024");
  EXPECT_EQ(std::regex_replace(std::wstring(L"Smith, John"), std::wregex(L"(\\w+), (\\w+)"), std::wstring(L"$2 $1")),
            L"John Smith");
  EXPECT_THROW(std::wregex(L"(?<=a)b", std::regex::ECMAScript), std::regex_error);
}

// Ctrl combinations of the program's accelerator table, read from Tavro.exe.
std::set<std::wstring> AcceleratorShortcuts() {
  std::set<std::wstring> keys;
  HMODULE module = LoadLibraryExW((ProgramFolder() + L"Tavro.exe").c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  if (!module) return keys;
  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(103), MAKEINTRESOURCEW(9));  // RT_ACCELERATOR
  if (resource) {
    struct Entry {
      WORD flags, key, command, padding;
    };
    const auto* entries = static_cast<const Entry*>(LockResource(LoadResource(module, resource)));
    size_t count = SizeofResource(module, resource) / sizeof(Entry);
    for (size_t i = 0; i < count; ++i) {
      std::wstring name;
      if (entries[i].flags & FCONTROL) name += L"Ctrl+";
      if (entries[i].flags & FSHIFT) name += L"Shift+";
      if (entries[i].flags & FALT) name += L"Alt+";
      name += static_cast<wchar_t>(entries[i].key);
      keys.insert(name);
    }
  }
  FreeLibrary(module);
  return keys;
}

TEST(HelpText, EveryShortcutItNamesIsInTheAcceleratorTable) {
  ASSERT_FALSE(ProgramFolder().empty()) << "TAVRO_BIN is not set";
  std::set<std::wstring> table = AcceleratorShortcuts();
  ASSERT_GE(table.size(), 14u);
  const std::wregex shortcut(L"Ctrl\\+(?:Shift\\+)?(?:Alt\\+)?[A-Za-z0-9]+");
  int named = 0;
  for (int topic = 0; topic < 11; ++topic) {
    for (const std::wstring& line : Lines(topic)) {
      for (std::wsregex_iterator it(line.begin(), line.end(), shortcut), end; it != end; ++it) {
        ++named;
        EXPECT_TRUE(table.count(it->str())) << "topic " << topic << ": not a key of the program: "
                                             << std::string(it->str().begin(), it->str().end());
      }
    }
  }
  EXPECT_GE(named, 15);
  // The keyboard topic names every key of the table.
  std::wstring keyboard;
  for (const std::wstring& line : Lines(1)) keyboard += line + L"\n";
  for (const std::wstring& key : table) EXPECT_NE(keyboard.find(key + L" "), std::wstring::npos) << key.size();
}

TEST(HelpLayout, LinesAreClassifiedByTheirMarks) {
  EXPECT_EQ(ClassifyHelpLine(L""), HelpLineKind::Gap);
  EXPECT_EQ(ClassifyHelpLine(L"## Title"), HelpLineKind::Heading);
  EXPECT_EQ(ClassifyHelpLine(L"##"), HelpLineKind::Heading);
  EXPECT_EQ(ClassifyHelpLine(L"# one mark"), HelpLineKind::Paragraph);
  EXPECT_EQ(ClassifyHelpLine(kHelpLinkMarker), HelpLineKind::Link);
  EXPECT_EQ(ClassifyHelpLine(L"text"), HelpLineKind::Paragraph);
}

TEST(HelpLayout, SideBarRows) {
  EXPECT_EQ(HelpRowAt(0), -1);
  EXPECT_EQ(HelpRowAt(51), -1);
  EXPECT_EQ(HelpRowAt(52), 0);
  EXPECT_EQ(HelpRowAt(83), 0);
  EXPECT_EQ(HelpRowAt(84), 1);
  EXPECT_EQ(HelpRowAt(52 + 10 * 32), 10);
  EXPECT_EQ(HelpRowAt(52 + 11 * 32 - 1), 10);
  EXPECT_EQ(HelpRowAt(52 + 11 * 32), -1);
}

TEST(HelpLayout, TextColumn) {
  EXPECT_EQ(HelpTextRight(500), 24 + 438);
  EXPECT_EQ(HelpTextRight(102), 24 + 40);
  EXPECT_EQ(HelpTextRight(49), 24 + 40);
}

// A measure that gives every text one fixed height per font, so sums are exact.
HelpMeasure Fixed(int body, int heading, std::vector<int>* widths = nullptr) {
  return [=](const wchar_t*, bool isHeading, int width) {
    if (widths) widths->push_back(width);
    return isHeading ? heading : body;
  };
}

TEST(HelpLayout, TheMeasureStartsAt24AndHeadingsAdvanceBy6) {
  const wchar_t* const lines[] = {L"## First", L"text", L"", L"## Second", L"more", nullptr};
  HelpFontHeights fonts;
  fonts.body = 16;
  fonts.heading = 20;
  std::vector<int> widths;
  // 24 + (22 + 6) + (17 + 3) + 20 / 2 + [10 + 22 + 6] + (17 + 3)
  EXPECT_EQ(MeasureHelpTopic(lines, 500, fonts, Fixed(17, 22, &widths)), 24 + 28 + 20 + 10 + 38 + 20);
  for (int width : widths) EXPECT_EQ(width, 438);
}

TEST(HelpLayout, AnEmptyMeasureCountsOneLineHeight) {
  const wchar_t* const lines[] = {L"x", kHelpLinkMarker, nullptr};
  HelpFontHeights fonts;
  fonts.body = 16;
  fonts.heading = 20;
  EXPECT_EQ(MeasureHelpTopic(lines, 500, fonts, Fixed(0, 0)), 24 + (20 + 3) + (20 + 3));
}

TEST(HelpLayout, ANarrowContentAreaHasNoRange) {
  const wchar_t* const lines[] = {L"x", nullptr};
  HelpFontHeights fonts;
  fonts.body = 16;
  EXPECT_EQ(MeasureHelpTopic(lines, 48, fonts, Fixed(1000, 0)), 0);
  EXPECT_EQ(HelpScrollMax(0, 10), 0);
  EXPECT_GT(MeasureHelpTopic(lines, 49, fonts, Fixed(1000, 0)), 0);
  // A window 239 wide has a content area of 49 beside the 190 of the side bar.
  EXPECT_EQ(239 - kHelpSideWidth, 49);
}

TEST(HelpLayout, ScrollRangeAndClamping) {
  EXPECT_EQ(HelpScrollMax(1000, 400), 1000 + 24 - 400);
  EXPECT_EQ(HelpScrollMax(300, 400), 0);
  EXPECT_EQ(HelpScrollMax(376, 400), 0);
  EXPECT_EQ(HelpScrollMax(377, 400), 1);
  EXPECT_EQ(ClampHelpScroll(-20, 100), 0);
  EXPECT_EQ(ClampHelpScroll(120, 100), 100);
  EXPECT_EQ(ClampHelpScroll(60, 100), 60);
  EXPECT_EQ(ClampHelpScroll(40, 0), 0);
}

TEST(Splash, FixedTextsAndVersion) {
  EXPECT_EQ(SplashVersionLine().compare(0, 16, L"Version 1.1.0.0 "), 0);
  EXPECT_EQ(SplashVersionLine().find(std::wstring(L"Version ") + kTavroVersion), 0u);
  EXPECT_STREQ(kSplashFeatures[0].mark, L"\u2022");
  EXPECT_STREQ(kSplashFeatures[5].mark, L"\u26A1");
  EXPECT_STREQ(kSplashFeatures[6].mark, L"\U0001F464");
  EXPECT_STREQ(kSplashFeatures[3].text, L"6 themes - Dark, Light, Azure, Green, Night, Sepia");
  EXPECT_STREQ(kSplashFeatures[6].text, L"Profile Manager - Multiple instances and AI profiles");
  EXPECT_EQ(kSplashBackground, RGB(0x1E, 0x1E, 0x2E));
}

TEST(Splash, TheFadeTakesFourteenTicks) {
  int alpha = 255, ticks = 0;
  do {
    alpha = NextSplashAlpha(alpha);
    ++ticks;
  } while (!SplashFadeEnds(alpha));
  EXPECT_EQ(ticks, 14);
  EXPECT_FALSE(SplashFadeEnds(19));
  EXPECT_TRUE(SplashFadeEnds(18));
}

}  // namespace
