#include "base/heap_text.h"

#include <gtest/gtest.h>

namespace {

constexpr UINT kTestMessage = WM_APP + 77;

TEST(HeapText, CopyIsTerminatedAndComplete) {
  wchar_t* copy = HeapCopyText(std::wstring(L"C:\\a b\\\u00e9.txt"));
  ASSERT_NE(copy, nullptr);
  EXPECT_STREQ(copy, L"C:\\a b\\\u00e9.txt");
  FreeHeapText(copy);
  wchar_t* empty = HeapCopyText(std::wstring());
  ASSERT_NE(empty, nullptr);
  EXPECT_STREQ(empty, L"");
  FreeHeapText(empty);
  FreeHeapText(nullptr);  // nothing to free, no harm
}

TEST(HeapText, PostedTextReachesTheReceiverWhoFreesIt) {
  // A null window posts to this thread's own queue.
  ASSERT_TRUE(PostHeapText(nullptr, kTestMessage, L"posted text"));
  MSG msg = {};
  ASSERT_TRUE(PeekMessageW(&msg, nullptr, kTestMessage, kTestMessage, PM_REMOVE));
  auto* text = reinterpret_cast<wchar_t*>(msg.lParam);
  EXPECT_EQ(msg.wParam, 0u);
  EXPECT_STREQ(text, L"posted text");
  FreeHeapText(text);
}

LRESULT CALLBACK Receiver(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kTestMessage) {
    auto* text = reinterpret_cast<wchar_t*>(lParam);
    SetWindowTextW(window, text);
    FreeHeapText(text);
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

// A message-only window that takes the text as its title and frees it.
HWND MakeReceiver() {
  WNDCLASSW wc = {};
  wc.lpfnWndProc = Receiver;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"HeapTextReceiver";
  RegisterClassW(&wc);  // fails harmlessly once registered
  return CreateWindowExW(0, L"HeapTextReceiver", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, wc.hInstance, nullptr);
}

TEST(HeapText, APostThatFailsReportsIt) {
  HWND gone = MakeReceiver();
  ASSERT_NE(gone, nullptr);
  DestroyWindow(gone);
  EXPECT_FALSE(PostHeapText(gone, kTestMessage, L"lost"));
}

TEST(HeapText, SentTextIsHandledBeforeTheCallReturns) {
  HWND window = MakeReceiver();
  ASSERT_NE(window, nullptr);
  SendHeapText(window, kTestMessage, L"sent text");
  wchar_t title[32] = {};
  GetWindowTextW(window, title, 32);
  EXPECT_STREQ(title, L"sent text");
  DestroyWindow(window);
}

}  // namespace
