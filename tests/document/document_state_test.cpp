// The document's handle helper and the listeners through which a load and a
// save reach the shell.
#include <gtest/gtest.h>

#include "document/document.h"
#include "tests/common/test_folder.h"

namespace {

int g_replaced = 0;
int g_saved = 0;

void CountReplaced() { ++g_replaced; }
void CountSaved() { ++g_saved; }

TEST(DocumentHandle, CloseClosesOnceAndMarksIt) {
  const std::wstring path = TestPath(L"doc.txt");
  ASSERT_TRUE(WriteFileBytes(path, "text"));
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  g_fileHandle = file;
  CloseDocumentHandle();
  EXPECT_EQ(g_fileHandle, INVALID_HANDLE_VALUE);
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(file, &flags));  // really closed
  CloseDocumentHandle();  // nothing open: nothing happens
  EXPECT_EQ(g_fileHandle, INVALID_HANDLE_VALUE);
}

TEST(DocumentListeners, CallUpOnlyWhileInstalled) {
  g_replaced = g_saved = 0;
  NotifyTextReplaced();
  NotifySaved();
  EXPECT_EQ(g_replaced + g_saved, 0);

  DocumentListeners listeners;
  listeners.textReplaced = CountReplaced;
  listeners.saved = CountSaved;
  SetDocumentListeners(listeners);
  NotifyTextReplaced();
  NotifySaved();
  NotifySaved();
  EXPECT_EQ(g_replaced, 1);
  EXPECT_EQ(g_saved, 2);

  SetDocumentListeners(DocumentListeners());
  NotifyTextReplaced();
  NotifySaved();
  EXPECT_EQ(g_replaced, 1);
  EXPECT_EQ(g_saved, 2);
}

}  // namespace
