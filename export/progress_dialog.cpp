#include "export/progress_dialog.h"

#include <windowsx.h>

#include "base/app_state.h"
#include "base/messages.h"
#include "export/export_note.h"
#include "export/progress_text.h"
#include "presentation/dialog_theme.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"

namespace {

constexpr int kButtonCorner = 6;

HFONT MakeSegoeFont(HWND dialog) {
  HDC dc = GetDC(dialog);
  int height = -MulDiv(9, GetDeviceCaps(dc, LOGPIXELSY), 72);
  ReleaseDC(dialog, dc);
  return CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
}

void PlaceButton(HWND dialog, ProgressDialogState& state) {
  RECT units = {0, 0, 70, 14};
  MapDialogRect(dialog, &units);
  RECT client;
  GetClientRect(dialog, &client);
  int width = units.right, height = units.bottom;
  state.buttonRect.left = (client.right - width) / 2;
  state.buttonRect.right = state.buttonRect.left + width;
  state.buttonRect.bottom = client.bottom - 10;
  state.buttonRect.top = state.buttonRect.bottom - height;
}

void OnInit(HWND dialog, ExportJob* job, bool rtf) {
  auto* state = new ProgressDialogState();
  state->job = job;
  state->cancelEvent = job->cancelEvent;
  state->status = rtf ? L"Preparing RTF..." : L"Preparing...";
  SetUpProgressDialog(dialog, state, rtf ? L"Tavro - RTF Export" : nullptr);
  job->dialog.store(dialog);
  job->startTicks = GetTickCount64();
  // The RTF dialog says it is ready once its set-up has run to the end.
  if (rtf)
    PostMessageW(dialog, WM_RTF_READY, 0, 0);
  else
    SetEvent(job->readyEvent);
}

void Paint(HWND dialog, ProgressDialogState& state) {
  PAINTSTRUCT ps;
  HDC screen = BeginPaint(dialog, &ps);
  RECT client;
  GetClientRect(dialog, &client);
  // Double-buffered: a new status never flickers.
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, client.right, client.bottom);
  HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
  FillRect(dc, &client, state.backgroundBrush);
  const ThemeColors& row = CurrentTheme();
  SetBkMode(dc, TRANSPARENT);

  RECT area = {14, 10, client.right - 14, state.buttonRect.top - 8};
  HGDIOBJ oldFont = SelectObject(dc, state.textFont);
  RECT measured = area;
  DrawTextW(dc, state.status.c_str(), -1, &measured, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
  int textHeight = measured.bottom - measured.top;
  RECT target = area;
  if (textHeight < area.bottom - area.top) target.top = area.top + (area.bottom - area.top - textHeight) / 2;
  target.bottom = target.top + textHeight;
  SetTextColor(dc, row.dialogText);
  DrawTextW(dc, state.status.c_str(), -1, &target, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);

  const bool pressed = state.buttonPressed && state.buttonEnabled;
  const RECT& b = state.buttonRect;
  PaintRoundBox(dc, b, pressed ? row.controlHover : row.controlBackground, row.controlBorder, kButtonCorner);
  SelectObject(dc, state.buttonFont);
  SetTextColor(dc, !state.buttonEnabled ? row.mutedText : pressed ? row.controlTextActive : row.controlText);
  RECT label = b;
  if (pressed) OffsetRect(&label, 0, 1);
  DrawTextW(dc, L"Cancel", -1, &label, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, oldFont);

  BitBlt(screen, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
  SelectObject(dc, oldBitmap);
  DeleteObject(bitmap);
  DeleteDC(dc);
  EndPaint(dialog, &ps);
}

void RepaintButton(HWND dialog, const ProgressDialogState& state) { InvalidateRect(dialog, &state.buttonRect, FALSE); }

void StartCancel(HWND dialog, ProgressDialogState& state) {
  state.buttonEnabled = false;
  state.cancelled = true;
  SetEvent(state.cancelEvent);
  state.status = L"Cancelling...";
  InvalidateRect(dialog, nullptr, FALSE);
  UpdateWindow(dialog);
}

bool InButton(const ProgressDialogState& state, LPARAM lParam) {
  POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  return PtInRect(&state.buttonRect, point) != 0;
}

void OnFinished(HWND dialog, ProgressDialogState& state, WPARAM result) {
  ExportJob& job = *state.job;
  uint64_t elapsed = GetTickCount64() - job.startTicks;
  job.succeeded = result ? 1 : 0;
  if (job.isPreview) {
    if (job.succeeded) {
      std::wstring text = L"MD exported successfully.\n\nLines: " + std::to_wstring(job.lineCount) +
                          L"\nExport time: " + FormatElapsed(elapsed);
      ShowMessageBox(dialog, kBoxOk, L"Tavro - MD Export", text.c_str());
    }
  } else {
    auto* note = new ExportResultNote();
    note->outputPath = job.outputPath;
    note->elapsedMs = elapsed;
    if (!PostMessageW(job.owner, WM_HTML_EXPORT_FINISHED, job.succeeded, reinterpret_cast<LPARAM>(note))) delete note;
  }
  EndDialog(dialog, job.succeeded ? 1 : 2);
}

INT_PTR CALLBACK ExportProgressDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(dialog, reinterpret_cast<ExportJob*>(lParam), false);
    return TRUE;
  }
  ProgressDialogState* state = ProgressStateOf(dialog);
  if (!state) return FALSE;
  switch (message) {
    case WM_EXPORT_LINE:
      SetProgressStatus(dialog, *state, ExportStatusText(static_cast<int32_t>(wParam), state->job->lineCount));
      return TRUE;
    case WM_HTML_EXPORT_FINISHED:
      OnFinished(dialog, *state, wParam);
      return TRUE;
  }
  return ProgressDialogMessage(dialog, message, wParam, lParam) ? TRUE : FALSE;
}

// The RTF writer's dialog: its own words and end, the rest as above.
INT_PTR CALLBACK RtfProgressDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(dialog, reinterpret_cast<ExportJob*>(lParam), true);
    return TRUE;
  }
  ProgressDialogState* state = ProgressStateOf(dialog);
  if (!state) return FALSE;
  switch (message) {
    case WM_RTF_READY:
      SetEvent(state->job->readyEvent);
      return TRUE;
    case WM_RTF_PROGRESS: {
      const auto percent = static_cast<int>(static_cast<INT_PTR>(wParam));
      SetProgressStatus(dialog, *state,
                        percent < 0 ? L"Finalizing RTF..." : L"Writing RTF...  " + std::to_wstring(percent) + L"%");
      return TRUE;
    }
    case WM_RTF_FINISHED:
      state->job->succeeded = wParam ? 1 : 0;
      EndDialog(dialog, wParam ? 1 : 2);
      return TRUE;
    case WM_EXPORT_LINE:
    case WM_HTML_EXPORT_FINISHED:
      return TRUE;
  }
  return ExportProgressDialog(dialog, message, wParam, lParam);
}

}  // namespace

ProgressDialogState* ProgressStateOf(HWND dialog) {
  return reinterpret_cast<ProgressDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

void SetUpProgressDialog(HWND dialog, ProgressDialogState* state, const wchar_t* title) {
  if (title) SetWindowTextW(dialog, title);
  SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(state));
  const ThemeColors& row = CurrentTheme();
  state->backgroundBrush = CreateSolidBrush(row.dialogBackground);
  state->textFont = MakeSegoeFont(dialog);
  state->buttonFont = MakeSegoeFont(dialog);
  // The dialog paints its own button.
  if (HWND button = GetDlgItem(dialog, IDCANCEL)) ShowWindow(button, SW_HIDE);
  PlaceButton(dialog, *state);
  if (row.isDark & 0xFF) SetDarkTitleAttribute(dialog, true);
  CentreOnOwner(dialog);
}

void SetProgressStatus(HWND dialog, ProgressDialogState& state, std::wstring status) {
  state.status = std::move(status);
  InvalidateRect(dialog, nullptr, FALSE);
}

bool ProgressDialogMessage(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
  ProgressDialogState* state = ProgressStateOf(dialog);
  if (!state) return false;
  switch (message) {
    case WM_PAINT:
      Paint(dialog, *state);
      return true;
    case WM_ERASEBKGND:
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return true;
    case WM_CLOSE:
      return true;  // the close box and Alt+F4 don't stop a job
    case WM_COMMAND:
      return true;  // Esc and Enter neither: only the painted button cancels
    case WM_LBUTTONDOWN:
      if (state->buttonEnabled && InButton(*state, lParam)) {
        state->buttonPressed = true;
        SetCapture(dialog);
        RepaintButton(dialog, *state);
      }
      return true;
    case WM_MOUSEMOVE: {
      bool inside = InButton(*state, lParam);
      if (inside != state->buttonHovered) {
        state->buttonHovered = inside;
        RepaintButton(dialog, *state);
      }
      TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, dialog, 0};
      TrackMouseEvent(&track);
      return true;
    }
    case WM_MOUSELEAVE:
      state->buttonHovered = false;
      state->buttonPressed = false;
      RepaintButton(dialog, *state);
      return true;
    case WM_LBUTTONUP: {
      bool wasPressed = state->buttonPressed;
      state->buttonPressed = false;
      ReleaseCapture();
      RepaintButton(dialog, *state);
      if (wasPressed && InButton(*state, lParam) && state->buttonEnabled) StartCancel(dialog, *state);
      return true;
    }
    case WM_SETCURSOR: {
      POINT point;
      GetCursorPos(&point);
      ScreenToClient(dialog, &point);
      if (state->buttonEnabled && PtInRect(&state->buttonRect, point)) {
        SetCursor(LoadCursorW(nullptr, IDC_HAND));
        SetWindowLongPtrW(dialog, DWLP_MSGRESULT, TRUE);
        return true;
      }
      return false;
    }
    case WM_DESTROY:
      DeleteObject(state->backgroundBrush);
      DeleteObject(state->textFont);
      DeleteObject(state->buttonFont);
      SetWindowLongPtrW(dialog, DWLP_USER, 0);
      delete state;
      return true;
  }
  return false;
}

void PostToExportDialog(ExportJob& job, UINT message, WPARAM wParam) {
  HWND dialog = job.dialog.load();
  if (dialog && IsWindow(dialog)) PostMessageW(dialog, message, wParam, 0);
}

INT_PTR RunExportProgressDialog(ExportJob& job) {
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_EXPORT_PROGRESS), job.owner, ExportProgressDialog,
                         reinterpret_cast<LPARAM>(&job));
}

INT_PTR RunRtfProgressDialog(ExportJob& job) {
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_EXPORT_PROGRESS), job.owner, RtfProgressDialog,
                         reinterpret_cast<LPARAM>(&job));
}
