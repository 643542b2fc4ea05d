// When the main editor takes the focus, the panel's transcript and input box
// lose their selections, and the transcript stays where it was scrolled.
#include "ai/panel/chat_selection.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "Scintilla.h"
#include "tests/common/scintilla_dll.h"
#include "tests/common/test_folder.h"

namespace {

// A window to stand for the panel.
HWND MakePanel(int width, int height) {
  WNDCLASSW wc = {};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"ChatSelectionTestPanel";
  RegisterClassW(&wc);  // fails harmlessly once registered
  return CreateWindowExW(0, wc.lpszClassName, L"", WS_POPUP, 0, 0, width, height, nullptr, nullptr, wc.hInstance,
                         nullptr);
}

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendMessageW(window, message, wParam, lParam);
}

class ChatSelection : public ::testing::Test {
 protected:
  void SetUp() override {
    scintilla_ = LoadScintillaDll();
    ASSERT_NE(scintilla_, nullptr);
    panel_ = MakePanel(400, 300);
    ASSERT_NE(panel_, nullptr);
    transcript_ = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE, 0, 0, 400, 200, panel_,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(kTranscriptId)), nullptr, nullptr);
    ASSERT_NE(transcript_, nullptr);
    input_ = CreateWindowExW(0, L"EDIT", L"a question being written", WS_CHILD | WS_VISIBLE | ES_MULTILINE, 0, 200,
                             400, 100, panel_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kInputBoxId)),
                             GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(input_, nullptr);
  }

  void TearDown() override {
    if (panel_) DestroyWindow(panel_);
    if (scintilla_) FreeLibrary(scintilla_);
  }

  HMODULE scintilla_ = nullptr;
  HWND panel_ = nullptr;
  HWND transcript_ = nullptr;
  HWND input_ = nullptr;
};

TEST_F(ChatSelection, BothLoseTheirSelectionAndTheTranscriptKeepsItsPlace) {
  std::string text;
  for (int line = 0; line < 200; ++line) text += "line " + std::to_string(line) + "\n";
  Send(transcript_, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  Send(transcript_, SCI_SETSEL, 30, 400);
  Send(transcript_, SCI_SETFIRSTVISIBLELINE, 120);
  ASSERT_EQ(Send(transcript_, SCI_GETFIRSTVISIBLELINE), 120);
  Send(input_, EM_SETSEL, 2, 10);

  ClearChatSelections(panel_);

  EXPECT_EQ(Send(transcript_, SCI_GETSELECTIONSTART), Send(transcript_, SCI_GETSELECTIONEND));
  EXPECT_EQ(Send(transcript_, SCI_GETFIRSTVISIBLELINE), 120);
  DWORD start = 0, end = 0;
  Send(input_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(start, end);
  // The texts themselves are untouched.
  EXPECT_EQ(Send(transcript_, SCI_GETLENGTH), static_cast<LRESULT>(text.size()));
  EXPECT_EQ(GetWindowTextLengthW(input_), 24);
}

TEST_F(ChatSelection, APanelWithOnlyAnInputBoxStillClearsIt) {
  ClearChatSelections(nullptr);  // no panel: nothing to touch
  HWND lone = MakePanel(200, 100);
  ASSERT_NE(lone, nullptr);
  HWND input = CreateWindowExW(0, L"EDIT", L"only the input", WS_CHILD | WS_VISIBLE, 0, 0, 200, 20, lone,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(kInputBoxId)), GetModuleHandleW(nullptr),
                               nullptr);
  ASSERT_NE(input, nullptr);
  Send(input, EM_SETSEL, 0, 4);
  ClearChatSelections(lone);
  DWORD start = 0, end = 0;
  Send(input, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(start, end);
  DestroyWindow(lone);
}

}  // namespace
