// The modal progress dialog of a long export: a status line and a painted
// Cancel button on the main thread while a worker does the work. Workers
// talk to it only through posted messages and the job's events; only the
// worker's end message closes it.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

struct ExportJob {
  HWND owner = nullptr;   // the main window
  HWND editor = nullptr;  // the editor control
  std::wstring outputPath;
  std::wstring docName;   // display name
  std::wstring text;      // the Markdown text
  int32_t lineCount = 0;  // the base of percentages
  HANDLE cancelEvent = nullptr;  // manual reset, set by Cancel
  std::atomic<HWND> dialog{nullptr};  // written by the dialog before readyEvent is set
  HANDLE readyEvent = nullptr;   // manual reset
  uint64_t startTicks = 0;
  uint8_t succeeded = 0;
  uint8_t isPreview = 0;
};

// The dialog's own record, from WM_INITDIALOG to WM_DESTROY.
struct ProgressDialogState {
  ExportJob* job = nullptr;  // not owned
  bool cancelled = false;
  bool buttonHovered = false;
  bool buttonPressed = false;
  bool buttonEnabled = true;
  bool finalizing = false;
  HANDLE cancelEvent = nullptr;  // the job's, set by Cancel
  HBRUSH backgroundBrush = nullptr;
  HFONT textFont = nullptr;
  HFONT buttonFont = nullptr;
  std::wstring status;
  RECT buttonRect = {};
};

// What every progress dialog shares, for a dialog procedure of its own:
// at WM_INITDIALOG, the state (made with new, freed at WM_DESTROY) with its
// first status, the look, the painted button, the dark title bar and the
// place on the owner; the title when one is given.
void SetUpProgressDialog(HWND dialog, ProgressDialogState* state, const wchar_t* title);
// Painting, the painted Cancel, and the close box, Esc and Enter that do
// nothing. False for a message it leaves to the caller.
bool ProgressDialogMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
// The state of a dialog set up as above, or null.
ProgressDialogState* ProgressStateOf(HWND dialog);
// A new status line, painted at once.
void SetProgressStatus(HWND dialog, ProgressDialogState& state, std::wstring status);

// Posts to the job's dialog when it exists; workers call nothing else on it.
void PostToExportDialog(ExportJob& job, UINT message, WPARAM wParam);

// Runs the dialog for the job until the worker's end message: 1 when the
// job succeeded, 2 otherwise.
INT_PTR RunExportProgressDialog(ExportJob& job);

// Between the RTF writer and its dialog.
constexpr UINT WM_RTF_PROGRESS = WM_USER + 123;  // wParam a percentage; negative: the finishing stage
constexpr UINT WM_RTF_FINISHED = WM_USER + 124;  // wParam non-zero: success
constexpr UINT WM_RTF_READY = WM_USER + 125;     // the dialog to itself at the end of its set-up

// The same dialog for the RTF writer: titled "Tavro - RTF Export", it shows
// the percentage of bytes written, and its end posts nothing to the owner.
INT_PTR RunRtfProgressDialog(ExportJob& job);
