// The pacing thread of the Markdown page, with a plain window standing for
// the progress dialog: what it posts, in what order, and what a cancel
// before the start leaves.
#include "export/markdown_export.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

#include "base/messages.h"
#include "export/progress_dialog.h"
#include "tests/common/test_folder.h"

namespace {

HWND MakeStandIn() {
  WNDCLASSW wc = {};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"PacingTestDialog";
  RegisterClassW(&wc);  // fails harmlessly once registered
  return CreateWindowExW(0, wc.lpszClassName, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, wc.hInstance, nullptr);
}

struct Posted {
  UINT message;
  long long value;
};

class Pacing : public ::testing::Test {
 protected:
  void SetUp() override {
    dialog_ = MakeStandIn();
    ASSERT_NE(dialog_, nullptr);
    job_.outputPath = TestPath(L"page.html");
    job_.docName = L"notes.md";
    job_.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job_.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job_.dialog.store(dialog_);
  }
  void TearDown() override {
    CloseHandle(job_.cancelEvent);
    CloseHandle(job_.readyEvent);
    DestroyWindow(dialog_);
  }

  std::vector<Posted> RunToTheEnd() {
    SetEvent(job_.readyEvent);
    HANDLE thread = CreateThread(nullptr, 0, MarkdownHtmlProgressThread, &job_, 0, nullptr);
    WaitForSingleObject(thread, 30000);
    CloseHandle(thread);
    std::vector<Posted> posted;
    MSG message;
    while (PeekMessageW(&message, dialog_, WM_EXPORT_LINE, WM_HTML_EXPORT_FINISHED, PM_REMOVE))
      posted.push_back({message.message, static_cast<long long>(static_cast<int32_t>(message.wParam))});
    return posted;
  }

  HWND dialog_ = nullptr;
  ExportJob job_;
};

TEST_F(Pacing, ClimbsByItsStepThenReportsAllLinesAndTheEnd) {
  job_.text = L"# Title\n\nsome text";
  job_.lineCount = 100;  // target 90, step 2
  auto posted = RunToTheEnd();
  ASSERT_GE(posted.size(), 3u);
  EXPECT_EQ(posted.front().message, WM_EXPORT_LINE);
  EXPECT_EQ(posted.front().value, 1);
  long long last = 1;
  for (size_t i = 1; i + 2 < posted.size(); ++i) {
    ASSERT_EQ(posted[i].message, WM_EXPORT_LINE);
    if (posted[i].value == -1) {
      EXPECT_EQ(last, 90);  // the final stage comes at the target
    } else {
      EXPECT_EQ(posted[i].value, last == 89 ? 90 : last + 2);
      last = posted[i].value;
    }
  }
  EXPECT_EQ(posted[posted.size() - 2].message, WM_EXPORT_LINE);
  EXPECT_EQ(posted[posted.size() - 2].value, 100);
  EXPECT_EQ(posted.back().message, WM_HTML_EXPORT_FINISHED);
  EXPECT_EQ(posted.back().value, 1);
  std::string page = ReadFileBytes(job_.outputPath);
  EXPECT_NE(page.find("<title>notes.md</title>"), std::string::npos);
  EXPECT_NE(page.find("<h1>Title</h1>\n<p></p>\n<p>some text</p>\n"), std::string::npos);
}

TEST_F(Pacing, AnEmptyDocumentEndsAsFailedWithoutAFile) {
  job_.lineCount = 1;
  auto posted = RunToTheEnd();
  ASSERT_FALSE(posted.empty());
  EXPECT_EQ(posted.back().message, WM_HTML_EXPORT_FINISHED);
  EXPECT_EQ(posted.back().value, 0);
  EXPECT_EQ(ReadFileBytes(job_.outputPath), "<missing>");
}

TEST_F(Pacing, ACancelBeforeTheStartEndsAtOnceAndWritesNothing) {
  job_.text = L"text";
  job_.lineCount = 1;
  SetEvent(job_.cancelEvent);
  auto posted = RunToTheEnd();
  ASSERT_EQ(posted.size(), 1u);
  EXPECT_EQ(posted[0].message, WM_HTML_EXPORT_FINISHED);
  EXPECT_EQ(posted[0].value, 0);
  EXPECT_EQ(ReadFileBytes(job_.outputPath), "<missing>");
}

TEST_F(Pacing, NothingIsPostedToADialogThatIsGone) {
  job_.text = L"text";
  job_.lineCount = 1;
  DestroyWindow(dialog_);
  RunToTheEnd();
  EXPECT_EQ(ReadFileBytes(job_.outputPath).substr(0, 15), "<!DOCTYPE html>");
}

}  // namespace
