// The profile manager's rules: the name rule, the list's labels, the status
// line and "Activate" as the selection moves, and the texts with a name.
#include <gtest/gtest.h>

#include <string>

#include "settings/profile_rules.h"

TEST(ProfileNameRule, TwentyFiveCharactersPassTwentySixFail) {
  EXPECT_TRUE(IsValidProfileName(std::wstring(25, L'a')));
  EXPECT_FALSE(IsValidProfileName(std::wstring(26, L'a')));
  EXPECT_TRUE(IsValidProfileName(L"a"));
  EXPECT_FALSE(IsValidProfileName(L""));
}

TEST(ProfileNameRule, LettersDigitsHyphensAndUnderscoresOnly) {
  EXPECT_TRUE(IsValidProfileName(L"Work-2_b"));
  EXPECT_TRUE(IsValidProfileName(L"default"));  // allowed: creating it meets the default's file
  EXPECT_FALSE(IsValidProfileName(L"my work"));
  EXPECT_FALSE(IsValidProfileName(L"work.old"));
  EXPECT_FALSE(IsValidProfileName(L"a/b"));
  EXPECT_FALSE(IsValidProfileName(L"a\\b"));
  EXPECT_FALSE(IsValidProfileName(L"x:"));
  EXPECT_FALSE(IsValidProfileName(L"tab\t"));
}

TEST(ProfileNameRule, LettersBeyondAsciiAsTheRuntimeJudgesThem) {
  // iswalnum decides; the C locale of the runtime calls "é" a letter on
  // Windows, and no punctuation is ever one.
  EXPECT_EQ(IsValidProfileName(L"caf\u00e9"), iswalnum(L'\u00e9') != 0);
  EXPECT_FALSE(IsValidProfileName(L"\u00ab\u00bb"));
}

TEST(ProfileList, ActiveRowCarriesItsMark) {
  EXPECT_EQ(ProfileListLabel(L"default", true), L"default (active)");
  EXPECT_EQ(ProfileListLabel(L"work", false), L"work");
}

TEST(ProfileSelection, DefaultSelected) {
  const std::wstring name = L"default";
  ProfileSelectionView view = ViewOfSelection(&name, true, L"");
  EXPECT_FALSE(view.activateEnabled);
  EXPECT_EQ(view.status, L"Default profile (always active) - cannot be renamed or deleted.");
  // It replaces any other text, a report of the last button included.
  EXPECT_EQ(ViewOfSelection(&name, true, L"Profile created.").status, kDefaultProfileStatus);
}

TEST(ProfileSelection, RunningProfileSelected) {
  const std::wstring name = L"work";
  ProfileSelectionView view = ViewOfSelection(&name, true, L"Profile \"work\" launched.");
  EXPECT_FALSE(view.activateEnabled);
  EXPECT_EQ(view.status, L"Profile \"work\" is currently running.");
}

TEST(ProfileSelection, IdleProfileClearsOnlyTheSelectionMessages) {
  const std::wstring name = L"home";
  ProfileSelectionView view = ViewOfSelection(&name, false, L"Profile \"work\" is currently running.");
  EXPECT_TRUE(view.activateEnabled);
  EXPECT_EQ(view.status, L"");
  EXPECT_EQ(ViewOfSelection(&name, false, kDefaultProfileStatus).status, L"");
  // Other reports stay until something replaces them.
  for (const wchar_t* kept : {L"Profile created.", L"Profile renamed.", L"Profile deleted.",
                              L"Profile \"home\" launched.", L"Select a profile first.",
                              L"Cannot rename default profile."}) {
    EXPECT_EQ(ViewOfSelection(&name, false, kept).status, kept);
  }
  // Found by its words: this report says "running", so it goes too.
  EXPECT_EQ(ViewOfSelection(&name, false, L"Cannot rename a running profile.").status, L"");
}

TEST(ProfileSelection, NothingSelected) {
  ProfileSelectionView view = ViewOfSelection(nullptr, false, L"Select a profile first.");
  EXPECT_FALSE(view.activateEnabled);
  EXPECT_EQ(view.status, L"Select a profile first.");
  EXPECT_EQ(ViewOfSelection(nullptr, false, L"Profile \"x\" is currently running.").status, L"");
}

TEST(ProfileTexts, WithTheirNames) {
  EXPECT_EQ(RunningStatusText(L"work"), L"Profile \"work\" is currently running.");
  EXPECT_EQ(LaunchedStatusText(L"work"), L"Profile \"work\" launched.");
  EXPECT_EQ(DeleteQuestionText(L"work"), L"Delete profile \"work\"?\n\nThis cannot be undone.");
  EXPECT_EQ(RenamedText(L"work", L"job"), L"Profile \"work\" renamed to \"job\".");
  EXPECT_EQ(AlreadyActiveText(L"default"), L"Profile \"default\" is already active.");
}
