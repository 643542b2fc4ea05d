#include "base/app_state.h"

#include <gtest/gtest.h>

namespace {

TEST(DefaultProfile, EmptyAndDefaultNameIt) {
  EXPECT_TRUE(IsDefaultProfileName(L""));
  EXPECT_TRUE(IsDefaultProfileName(L"default"));
  EXPECT_FALSE(IsDefaultProfileName(L"Default"));  // the name is case-sensitive
  EXPECT_FALSE(IsDefaultProfileName(L"work"));
}

TEST(DefaultProfile, LabelNamesTheDefaultProfileDefault) {
  EXPECT_EQ(ProfileLabel(L""), L"default");
  EXPECT_EQ(ProfileLabel(L"default"), L"default");
  EXPECT_EQ(ProfileLabel(L"work"), L"work");
}

TEST(InstanceMutex, NameIsThePrefixAndTheLabel) {
  EXPECT_EQ(kInstanceMutexPrefix + ProfileLabel(L""), L"Local\\Tavro_Instance_default");
  EXPECT_EQ(kInstanceMutexPrefix + ProfileLabel(L"a_b"), L"Local\\Tavro_Instance_a_b");
}

TEST(SendEditor, WithoutAnEditorSendsNowhere) {
  HWND saved = g_hwndEditor;
  g_hwndEditor = nullptr;
  EXPECT_EQ(SendEditor(WM_GETTEXTLENGTH), 0);
  g_hwndEditor = saved;
}

}  // namespace
