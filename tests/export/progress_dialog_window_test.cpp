// The export progress dialog and its protocol, driven from a stand-in worker
// thread: the status line from the line messages, the painted Cancel, and the
// end message that alone closes the dialog.
#include "export/progress_dialog.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>

#include "base/app_state.h"
#include "base/messages.h"
#include "export/export_note.h"
#include "tests/common/owner_window.h"

namespace {

// What the stand-in worker does once the dialog is ready; it runs on a thread
// of its own while the test's thread runs the modal dialog.
struct Worker {
  ExportJob* job = nullptr;
  std::function<void(HWND dialog, ProgressDialogState& state)> body;
};

DWORD WINAPI RunWorker(LPVOID parameter) {
  auto* worker = static_cast<Worker*>(parameter);
  if (WaitForSingleObject(worker->job->readyEvent, 10000) != WAIT_OBJECT_0) return 1;
  HWND dialog = worker->job->dialog.load();
  auto* state = reinterpret_cast<ProgressDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  worker->body(dialog, *state);
  return 0;
}

LPARAM At(const RECT& rect, int dx = 0, int dy = 0) {
  return MAKELPARAM((rect.left + rect.right) / 2 + dx, (rect.top + rect.bottom) / 2 + dy);
}

class ProgressDialog : public ::testing::Test {
 protected:
  void SetUp() override {
    g_hInstance = GetModuleHandleW(nullptr);
    owner_ = MakeTestOwner();
    ASSERT_NE(owner_, nullptr);
    job_.owner = owner_;
    job_.outputPath = L"C:\\out\\page.html";
    job_.lineCount = 100;
    job_.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job_.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  }
  void TearDown() override {
    CloseHandle(job_.cancelEvent);
    CloseHandle(job_.readyEvent);
    DestroyWindow(owner_);
  }

  // Runs the dialog with the worker's body; returns the dialog's result.
  INT_PTR Run(std::function<void(HWND, ProgressDialogState&)> body, bool rtf = false) {
    Worker worker{&job_, std::move(body)};
    HANDLE thread = CreateThread(nullptr, 0, RunWorker, &worker, 0, nullptr);
    INT_PTR result = rtf ? RunRtfProgressDialog(job_) : RunExportProgressDialog(job_);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return result;
  }

  // The note the dialog posted to the owner at the end, or null.
  ExportResultNote* TakeNote(WPARAM* success) {
    MSG message;
    if (!PeekMessageW(&message, owner_, WM_HTML_EXPORT_FINISHED, WM_HTML_EXPORT_FINISHED, PM_REMOVE)) return nullptr;
    *success = message.wParam;
    return reinterpret_cast<ExportResultNote*>(message.lParam);
  }

  HWND owner_ = nullptr;
  ExportJob job_;
};

TEST_F(ProgressDialog, StatusFollowsTheLineMessagesAndTheEndClosesWithOne) {
  std::wstring first, line, finalizing;
  bool aliveAfterClose = false;
  RECT button = {}, client = {}, units = {0, 0, 70, 14};
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState& state) {
    first = state.status;
    SendMessageW(dialog, WM_EXPORT_LINE, 45, 0);  // sent: handled when it returns
    line = state.status;
    SendMessageW(dialog, WM_EXPORT_LINE, static_cast<WPARAM>(-1), 0);
    finalizing = state.status;
    // The close box doesn't stop a job: an ended dialog would hide. A modal
    // dialog shows itself once its loop first goes idle, which on a busy
    // machine can come after the worker started, so wait for that first.
    for (int waited = 0; !IsWindowVisible(dialog) && waited < 30000; waited += 10) Sleep(10);
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    aliveAfterClose = IsWindow(dialog) && IsWindowVisible(dialog);
    button = state.buttonRect;
    GetClientRect(dialog, &client);
    MapDialogRect(dialog, &units);
    PostMessageW(dialog, WM_HTML_EXPORT_FINISHED, 1, 0);
  });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(job_.succeeded, 1);
  EXPECT_EQ(first, L"Preparing...");
  EXPECT_EQ(line, L"Exporting line 45 of 100  (45%)");
  EXPECT_EQ(finalizing, L"Finalizing...");
  EXPECT_TRUE(aliveAfterClose);
  // The painted button: 70 by 14 dialog units, centred, its bottom 10 pixels up.
  EXPECT_EQ(button.right - button.left, units.right);
  EXPECT_EQ(button.bottom - button.top, units.bottom);
  EXPECT_EQ(button.left, (client.right - units.right) / 2);
  EXPECT_EQ(button.bottom, client.bottom - 10);
  // Not a preview: the owner hears of the end, with the path and the time.
  WPARAM success = 0;
  ExportResultNote* note = TakeNote(&success);
  ASSERT_NE(note, nullptr);
  EXPECT_EQ(success, 1u);
  EXPECT_EQ(note->outputPath, L"C:\\out\\page.html");
  EXPECT_LT(note->elapsedMs, 60000u);
  delete note;
}

TEST_F(ProgressDialog, NoLinesShowNoPercentage) {
  job_.lineCount = 0;
  std::wstring line;
  Run([&](HWND dialog, ProgressDialogState& state) {
    SendMessageW(dialog, WM_EXPORT_LINE, 3, 0);
    line = state.status;
    PostMessageW(dialog, WM_HTML_EXPORT_FINISHED, 0, 0);
  });
  EXPECT_EQ(line, L"Exporting line 3 of 0  (0%)");
}

TEST_F(ProgressDialog, CancelSetsTheEventAndWaitsForTheWorkersEnd) {
  bool cancelledOutside = true, eventSet = false, alive = false, enabledAfter = true, pressedAgain = true;
  std::wstring status;
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState& state) {
    // Pressed on the button, released outside it: nothing.
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
    SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect, 0, -40));
    cancelledOutside = state.cancelled || WaitForSingleObject(job_.cancelEvent, 0) == WAIT_OBJECT_0;
    // Pressed and released on it: the cancel starts.
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
    SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect));
    eventSet = WaitForSingleObject(job_.cancelEvent, 0) == WAIT_OBJECT_0;
    status = state.status;
    enabledAfter = state.buttonEnabled;
    // A second press finds the button disabled.
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
    pressedAgain = state.buttonPressed;
    SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect));
    alive = IsWindow(dialog) && IsWindowVisible(dialog);
    PostMessageW(dialog, WM_HTML_EXPORT_FINISHED, 0, 0);
  });
  EXPECT_FALSE(cancelledOutside);
  EXPECT_TRUE(eventSet);
  EXPECT_EQ(status, L"Cancelling...");
  EXPECT_FALSE(enabledAfter);
  EXPECT_FALSE(pressedAgain);
  EXPECT_TRUE(alive);  // only the worker's end closes it
  EXPECT_EQ(result, 2);
  EXPECT_EQ(job_.succeeded, 0);
  WPARAM success = 1;
  ExportResultNote* note = TakeNote(&success);
  ASSERT_NE(note, nullptr);
  EXPECT_EQ(success, 0u);
  delete note;
}

TEST_F(ProgressDialog, RtfDialogShowsPercentagesAndEndsWithoutANote) {
  std::wstring first, title, percent, finalizing, cancelling;
  INT_PTR result = Run(
      [&](HWND dialog, ProgressDialogState& state) {
        first = state.status;
        wchar_t caption[64] = {};
        GetWindowTextW(dialog, caption, 64);
        title = caption;
        SendMessageW(dialog, WM_RTF_PROGRESS, 43, 0);
        percent = state.status;
        SendMessageW(dialog, WM_RTF_PROGRESS, static_cast<WPARAM>(-1), 0);
        finalizing = state.status;
        SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, At(state.buttonRect));
        SendMessageW(dialog, WM_LBUTTONUP, 0, At(state.buttonRect));
        cancelling = state.status;
        PostMessageW(dialog, WM_RTF_FINISHED, 0, 0);
      },
      true);
  EXPECT_EQ(first, L"Preparing RTF...");
  EXPECT_EQ(title, L"Tavro - RTF Export");
  EXPECT_EQ(percent, L"Writing RTF...  43%");
  EXPECT_EQ(finalizing, L"Finalizing RTF...");
  EXPECT_EQ(cancelling, L"Cancelling...");
  EXPECT_EQ(WaitForSingleObject(job_.cancelEvent, 0), static_cast<DWORD>(WAIT_OBJECT_0));
  EXPECT_EQ(result, 2);
  EXPECT_EQ(job_.succeeded, 0);
  WPARAM success = 1;
  EXPECT_EQ(TakeNote(&success), nullptr);  // the RTF export reports itself
}

TEST_F(ProgressDialog, RtfDialogEndsWithOneOnSuccess) {
  INT_PTR result = Run([&](HWND dialog, ProgressDialogState&) { PostMessageW(dialog, WM_RTF_FINISHED, 1, 0); }, true);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(job_.succeeded, 1);
}

}  // namespace
