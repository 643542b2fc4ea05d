// The PDF progress dialog and its side of the protocol, driven from a
// stand-in worker: batches filled from a real editor on request, the page
// and final-stage texts, Cancel waking a waiting worker, and the end that
// removes the file of a cancelled job whose document had ended.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "tests/common/owner_window.h"
#include "export/pdf_export.h"
#include "export/progress_dialog.h"
#include "tests/common/scintilla_dll.h"
#include "tests/common/test_folder.h"

namespace {

struct Worker {
  PdfExportJob* job = nullptr;
  std::function<void(HWND dialog, ProgressDialogState& state, PdfExportJob& job)> body;
};

DWORD WINAPI RunWorker(LPVOID parameter) {
  auto* worker = static_cast<Worker*>(parameter);
  if (WaitForSingleObject(worker->job->readyEvent, 10000) != WAIT_OBJECT_0) return 1;
  HWND dialog = worker->job->dialog.load();
  auto* state = reinterpret_cast<ProgressDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  worker->body(dialog, *state, *worker->job);
  return 0;
}

LPARAM At(const RECT& rect) { return MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2); }

bool Signalled(HANDLE event) { return WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }

class PdfProgress : public ::testing::Test {
 protected:
  void SetUp() override {
    g_hInstance = GetModuleHandleW(nullptr);
    scintilla_ = LoadScintillaDll();
    ASSERT_NE(scintilla_, nullptr);
    owner_ = MakeTestOwner();
    editor_ = CreateWindowExW(0, L"Scintilla", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(editor_, nullptr);
    SendMessageW(editor_, SCI_SETCODEPAGE, 65001, 0);
    std::string text;
    for (int n = 0; n < 650; ++n) text += n % 7 == 3 ? std::string("\r\n") : "line " + std::to_string(n) + "\r\n";
    text += "last";
    SendMessageW(editor_, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    output_ = TestPath(L"pdf_progress_test.pdf");
  }
  void TearDown() override {
    DeleteFileW(output_.c_str());
    DestroyWindow(editor_);
    DestroyWindow(owner_);
  }

  // A job as ExportPdf makes it; the dialog frees it.
  PdfExportJob* NewJob() {
    auto* job = new PdfExportJob();
    job->outputPath = output_;
    job->owner = owner_;
    job->editor = editor_;
    job->totalLines = static_cast<int32_t>(SendMessageW(editor_, SCI_GETLINECOUNT, 0, 0));
    job->requestEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    job->batchReadyEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    job->cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job->readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return job;
  }

  INT_PTR Run(std::function<void(HWND, ProgressDialogState&, PdfExportJob&)> body) {
    Worker worker{NewJob(), std::move(body)};
    HANDLE thread = CreateThread(nullptr, 0, RunWorker, &worker, 0, nullptr);
    INT_PTR result = RunPdfProgressDialog(worker.job);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return result;
  }

  // The end the dialog posted to the owner: (found, result, elapsed ms).
  bool TakeEnd(WPARAM& result, LPARAM& elapsed) {
    MSG message;
    if (!PeekMessageW(&message, owner_, WM_PDF_EXPORT_FINISHED, WM_PDF_EXPORT_FINISHED, PM_REMOVE)) return false;
    result = message.wParam;
    elapsed = message.lParam;
    return true;
  }

  void WriteOutput() {
    FILE* file = _wfopen(output_.c_str(), L"wb");
    ASSERT_NE(file, nullptr);
    std::fputs("%!PS", file);
    std::fclose(file);
  }

  bool OutputExists() { return GetFileAttributesW(output_.c_str()) != INVALID_FILE_ATTRIBUTES; }

  HMODULE scintilla_ = nullptr;
  HWND owner_ = nullptr;
  HWND editor_ = nullptr;
  std::wstring output_;
};

TEST_F(PdfProgress, BatchesOfThreeHundredOnRequestTheLastOneMarked) {
  std::vector<size_t> sizes;
  std::vector<int> last, next;
  std::vector<bool> ready;
  std::wstring firstText, emptyLineRuns, tailText;
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState&, PdfExportJob& job) {
    for (int round = 0; round < 3; ++round) {
      SendMessageW(dialog, WM_PDF_BATCH_REQUEST, 0, 0);  // sent: filled when it returns
      ready.push_back(Signalled(job.batchReadyEvent));
      sizes.push_back(job.batch.size());
      last.push_back(job.lastBatch);
      next.push_back(job.nextLine);
      if (round == 0) {
        firstText = job.batch[0][0].text;
        emptyLineRuns = std::to_wstring(job.batch[3].size());
      }
      if (round == 2) tailText = job.batch.back()[0].text;
    }
    PostMessageW(dialog, WM_PDF_EXPORT_FINISHED, 1, 0);
  });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(ready, (std::vector<bool>{true, true, true}));
  EXPECT_EQ(sizes, (std::vector<size_t>{300, 300, 51}));
  EXPECT_EQ(last, (std::vector<int>{0, 0, 1}));
  EXPECT_EQ(next, (std::vector<int>{300, 600, 651}));
  EXPECT_EQ(firstText, L"line 0");  // the line end is not part of it
  EXPECT_EQ(emptyLineRuns, L"0");
  EXPECT_EQ(tailText, L"last");
  WPARAM end = 0;
  LPARAM elapsed = -1;
  ASSERT_TRUE(TakeEnd(end, elapsed));
  EXPECT_EQ(end, 1u);
  EXPECT_GE(elapsed, 0);
  EXPECT_LT(elapsed, 60000);
}

TEST_F(PdfProgress, PagesAndTheFinalStageInTheStatus) {
  std::wstring first, page0, page7, finalStage;
  bool finalizing = false;
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState& state, PdfExportJob&) {
    first = state.status;
    SendMessageW(dialog, WM_EXPORT_PROGRESS, 0, 0);
    page0 = state.status;
    SendMessageW(dialog, WM_EXPORT_PROGRESS, 7, 0);
    page7 = state.status;
    SendMessageW(dialog, WM_PDF_FINAL_STAGE, 0, 0);
    finalStage = state.status;
    finalizing = state.finalizing;
    PostMessageW(dialog, WM_PDF_EXPORT_FINISHED, 0, 0);
  });
  EXPECT_EQ(first, L"Preparing...");
  EXPECT_EQ(page0, L"Exporting page 0...");
  EXPECT_EQ(page7, L"Exporting page 7...");
  EXPECT_EQ(finalStage, kPdfFinalizingText);
  EXPECT_TRUE(finalizing);
  EXPECT_EQ(result, 2);
  WPARAM end = 1;
  LPARAM elapsed = 0;
  ASSERT_TRUE(TakeEnd(end, elapsed));
  EXPECT_EQ(end, 0u);
}

TEST_F(PdfProgress, CancelWakesAWaitingWorkerAndALaterRequestGetsNoBatch) {
  bool cancelSet = false, wokenByBatchEvent = false, cancelAfterRequest = false;
  int nextAfterRequest = -1;
  std::wstring status;
  WriteOutput();
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState& state, PdfExportJob& job) {
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
    SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect));
    status = state.status;
    cancelSet = Signalled(job.cancelEvent);
    wokenByBatchEvent = Signalled(job.batchReadyEvent);
    SendMessageW(dialog, WM_PDF_BATCH_REQUEST, 0, 0);
    nextAfterRequest = job.nextLine;
    cancelAfterRequest = Signalled(job.cancelEvent) && !Signalled(job.batchReadyEvent);
    // The worker said it ended well; a cancel makes it 0 all the same.
    PostMessageW(dialog, WM_PDF_EXPORT_FINISHED, 1, 0);
  });
  EXPECT_EQ(status, L"Cancelling...");
  EXPECT_TRUE(cancelSet);
  EXPECT_TRUE(wokenByBatchEvent);
  EXPECT_EQ(nextAfterRequest, 0);
  EXPECT_TRUE(cancelAfterRequest);
  EXPECT_EQ(result, 2);
  WPARAM end = 1;
  LPARAM elapsed = 0;
  ASSERT_TRUE(TakeEnd(end, elapsed));
  EXPECT_EQ(end, 0u);
  // Before the final stage the file is the worker's to remove.
  EXPECT_TRUE(OutputExists());
}

TEST_F(PdfProgress, ACancelAfterTheFinalStageRemovesTheFile) {
  WriteOutput();
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState& state, PdfExportJob&) {
    SendMessageW(dialog, WM_PDF_FINAL_STAGE, 0, 0);
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
    SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect));
    PostMessageW(dialog, WM_PDF_EXPORT_FINISHED, 1, 0);
  });
  EXPECT_EQ(result, 2);
  EXPECT_FALSE(OutputExists());
}

TEST_F(PdfProgress, TheFinalStageWithoutACancelKeepsTheFile) {
  WriteOutput();
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState&, PdfExportJob&) {
    SendMessageW(dialog, WM_PDF_FINAL_STAGE, 0, 0);
    PostMessageW(dialog, WM_PDF_EXPORT_FINISHED, 1, 0);
  });
  EXPECT_EQ(result, 1);
  EXPECT_TRUE(OutputExists());
}

}  // namespace
