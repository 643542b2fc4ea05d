#include "export/print_preview.h"

#include <windowsx.h>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "base/text_convert.h"
#include "export/page_render.h"
#include "export/pagination_dialog.h"
#include "export/pagination_worker.h"
#include "export/preview_layout.h"
#include "export/print_document.h"
#include "export/viewer_handoff.h"
#include "presentation/dialog_template.h"
#include "presentation/dialog_theme.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kTitle[] = L"Tavro - Print Preview";
constexpr COLORREF kShadow = 0x141414;
constexpr COLORREF kSheet = RGB(255, 255, 255);
constexpr int kButtonCorner = 8;
constexpr int kShadowOffset = 4;

PreviewState* StateOf(HWND window) { return reinterpret_cast<PreviewState*>(GetWindowLongPtrW(window, DWLP_USER)); }

RECT ToRect(const PreviewRect& r) { return {r.left, r.top, r.right, r.bottom}; }

HFONT SegoeFont(int height) {
  return CreateFontW(-height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
}

void FillColour(HDC dc, const RECT& box, COLORREF colour) {
  HBRUSH brush = CreateSolidBrush(colour);
  FillRect(dc, &box, brush);
  DeleteObject(brush);
}

// Renders the current page anew from the editor's lines in the live font.
void RenderCurrentPage(PreviewState& state) {
  if (state.pageBitmap) DeleteObject(state.pageBitmap);
  state.fontName = g_fontName;
  state.fontSize = g_fontSize;
  state.pageBitmap =
      RenderPage(state.currentPage, state.pageStarts, ReadDocumentLines(), state.geometry, state.fontName, state.fontSize);
}

// One line per page shown, for whoever reads the debug output.
void LogPageShown(const PreviewState& state) {
  const std::wstring line = L"[PrintPreview] " + PreviewPageText(state.currentPage, state.pageCount) + L"\n";
  OutputDebugStringW(line.c_str());
}

void PaintButton(HDC dc, const PreviewState& state, int button, int width, const ThemeColors& row) {
  const bool enabled = PreviewButtonEnabled(button, state.currentPage, state.pageCount);
  const bool hovered = enabled && state.hoveredButton == button;
  const RECT box = ToRect(PreviewButtonRect(button, width));
  PaintRoundBox(dc, box, hovered ? row.controlHover : row.controlBackground,
                hovered ? row.buttonBorderFocused : row.controlBorder, kButtonCorner);
  SetTextColor(dc, hovered ? row.controlTextActive : enabled ? row.controlText : row.controlTextDisabled);
  RECT label = box;
  DrawTextW(dc, PreviewButtonText(button), -1, &label, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void PaintSheet(HDC dc, const PreviewState& state, int width, int height, const ThemeColors& row) {
  const RECT sheet = ToRect(PreviewSheetRect(width, height, state.paperWidth, state.paperHeight));
  RECT shadow = sheet;
  OffsetRect(&shadow, kShadowOffset, kShadowOffset);
  FillColour(dc, shadow, kShadow);
  FillColour(dc, sheet, kSheet);
  if (state.pageBitmap) {
    HDC page = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(page, state.pageBitmap);
    SetStretchBltMode(dc, HALFTONE);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    StretchBlt(dc, sheet.left, sheet.top, sheet.right - sheet.left, sheet.bottom - sheet.top, page, 0, 0,
               state.paperWidth, state.paperHeight, SRCCOPY);
    SelectObject(page, old);
    DeleteDC(page);
  }
  HPEN border = CreatePen(PS_SOLID, 1, row.separator);
  HGDIOBJ oldPen = SelectObject(dc, border);
  HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
  Rectangle(dc, sheet.left, sheet.top, sheet.right + 1, sheet.bottom + 1);
  SelectObject(dc, oldBrush);
  SelectObject(dc, oldPen);
  DeleteObject(border);
}

void Paint(HWND window, PreviewState& state) {
  PAINTSTRUCT paint;
  HDC target = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  const int width = client.right, height = client.bottom;
  if (width > 0 && height > 0) {
    // Buffered: a page turn or a hover never flickers.
    HDC dc = CreateCompatibleDC(target);
    HBITMAP buffer = CreateCompatibleBitmap(target, width, height);
    HGDIOBJ oldBuffer = SelectObject(dc, buffer);
    SetBkMode(dc, TRANSPARENT);
    const ThemeColors& row = CurrentTheme();

    FillColour(dc, {0, 0, width, kPreviewBarHeight}, row.toolbarBackground);
    FillColour(dc, {0, kPreviewBarLine, width, kPreviewBarLine + 1}, row.separator);
    HGDIOBJ oldFont = SelectObject(dc, state.buttonFont);
    for (int button = 0; button < kPreviewButtonCount; ++button) PaintButton(dc, state, button, width, row);
    SelectObject(dc, state.pageTextFont);
    SetTextColor(dc, row.controlText);
    RECT counter = ToRect(PreviewPageTextRect(width));
    const std::wstring text = PreviewPageText(state.currentPage, state.pageCount);
    DrawTextW(dc, text.c_str(), -1, &counter, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SelectObject(dc, oldFont);

    FillColour(dc, {0, kPreviewBarHeight, width, height}, row.dialogBackground);
    PaintSheet(dc, state, width, height, row);

    BitBlt(target, 0, 0, width, height, dc, 0, 0, SRCCOPY);
    SelectObject(dc, oldBuffer);
    DeleteObject(buffer);
    DeleteDC(dc);
  }
  EndPaint(window, &paint);
}

void InvalidateBar(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  RECT bar = {0, 0, client.right, kPreviewBarHeight};
  InvalidateRect(window, &bar, FALSE);
}

void ApplyTitleBar(HWND window) { SetDarkTitleBar(window, (CurrentTheme().isDark & 0xFF) != 0); }

void Close(HWND window) {
  RECT box;
  GetWindowRect(window, &box);
  g_settings.previewWidth = box.right - box.left;
  g_settings.previewHeight = box.bottom - box.top;
  SaveSettings(g_settings);
  EndDialog(window, 0);
}

void Turn(HWND window, PreviewState& state, int direction) {
  const int32_t page = TurnPreviewPage(state.currentPage, state.pageCount, direction);
  if (page == state.currentPage) return;
  state.currentPage = page;
  RenderCurrentPage(state);
  LogPageShown(state);
  InvalidateRect(window, nullptr, FALSE);
}

void RunCommand(HWND window, PreviewState& state, int command) {
  switch (command - kPreviewFirstCommand) {
    case kPreviewPrev: Turn(window, state, -1); break;
    case kPreviewNext: Turn(window, state, +1); break;
    case kPreviewPrint:
      PrintDocument(state.owner);
      // The print dialog, owned by the main window, gives that window back
      // its input and activation as it closes; the preview is still modal
      // over it, and keeps the keys.
      EnableWindow(state.owner, FALSE);
      SetActiveWindow(window);
      SetFocus(window);
      break;
    case kPreviewClose: Close(window); break;
    default: break;
  }
}

bool OnKey(HWND window, PreviewState& state, WPARAM key) {
  switch (key) {
    case VK_LEFT:
    case VK_PRIOR: RunCommand(window, state, kPreviewFirstCommand + kPreviewPrev); return true;
    case VK_RIGHT:
    case VK_NEXT: RunCommand(window, state, kPreviewFirstCommand + kPreviewNext); return true;
    case VK_ESCAPE: Close(window); return true;
    default: return false;
  }
}

void OnMouseMove(HWND window, PreviewState& state, POINT point) {
  if (!state.tracking) {
    TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, window, 0};
    state.tracking = TrackMouseEvent(&track) != FALSE;
  }
  RECT client;
  GetClientRect(window, &client);
  const int button = PreviewButtonAt(point.x, point.y, client.right);
  if (button != state.hoveredButton) {
    state.hoveredButton = button;
    InvalidateBar(window);
  }
}

bool OverEnabledButton(HWND window, const PreviewState& state) {
  POINT point;
  GetCursorPos(&point);
  ScreenToClient(window, &point);
  RECT client;
  GetClientRect(window, &client);
  const int button = PreviewButtonAt(point.x, point.y, client.right);
  return button >= 0 && PreviewButtonEnabled(button, state.currentPage, state.pageCount);
}

void OnInit(HWND window, PreviewState& state) {
  SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(&state));
  state.buttonFont = SegoeFont(13);
  state.pageTextFont = SegoeFont(12);
  ApplyTitleBar(window);
  HICON icon = LoadIconW(g_hInstance, MAKEINTRESOURCEW(IDI_TAVRO));
  SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
  SendMessageW(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
  const int screenWidth = GetSystemMetrics(SM_CXSCREEN), screenHeight = GetSystemMetrics(SM_CYSCREEN);
  const PreviewSize size =
      PreviewOpeningSize(g_settings.previewWidth, g_settings.previewHeight, screenWidth, screenHeight);
  SetWindowPos(window, nullptr, (screenWidth - size.width) / 2, (screenHeight - size.height) / 2, size.width,
               size.height, SWP_NOZORDER);
  SetFocus(window);
  LogPageShown(state);
}

void OnDestroy(HWND window, PreviewState& state) {
  if (state.pageBitmap) DeleteObject(state.pageBitmap);
  state.pageBitmap = nullptr;
  DeleteObject(state.buttonFont);
  DeleteObject(state.pageTextFont);
  state.buttonFont = state.pageTextFont = nullptr;
  SetWindowLongPtrW(window, DWLP_USER, 0);
}

INT_PTR CALLBACK PreviewProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(window, *reinterpret_cast<PreviewState*>(lParam));
    return FALSE;  // the window itself keeps the focus: it has no controls
  }
  PreviewState* state = StateOf(window);
  if (!state) return FALSE;
  if (PaintedWindowMessage(window, message)) return TRUE;
  switch (message) {
    case WM_PAINT: Paint(window, *state); return TRUE;
    case WM_KEYDOWN: return OnKey(window, *state, wParam) ? TRUE : FALSE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDCANCEL) {  // Esc, as the dialog manager reports it
        Close(window);
        return TRUE;
      }
      RunCommand(window, *state, LOWORD(wParam));
      return TRUE;
    case WM_CLOSE: Close(window); return TRUE;
    case WM_GETMINMAXINFO: {
      auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
      info->ptMinTrackSize.x = kPreviewMinWidth;
      info->ptMinTrackSize.y = kPreviewMinHeight;
      return TRUE;
    }
    case WM_SIZING: {
      auto* rect = reinterpret_cast<RECT*>(lParam);
      PreviewRect box = {rect->left, rect->top, rect->right, rect->bottom};
      KeepPreviewMinimum(box, wParam == WMSZ_LEFT || wParam == WMSZ_TOPLEFT || wParam == WMSZ_BOTTOMLEFT,
                         wParam == WMSZ_TOP || wParam == WMSZ_TOPLEFT || wParam == WMSZ_TOPRIGHT);
      *rect = ToRect(box);
      SetWindowLongPtrW(window, DWLP_MSGRESULT, TRUE);
      return TRUE;
    }
    case WM_SIZE: InvalidateRect(window, nullptr, FALSE); return TRUE;
    case WM_MOUSEMOVE: OnMouseMove(window, *state, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}); return TRUE;
    case WM_MOUSELEAVE:
      state->tracking = false;
      state->hoveredButton = -1;
      InvalidateBar(window);
      return TRUE;
    case WM_SETCURSOR:
      if (LOWORD(lParam) == HTCLIENT) {
        SetCursor(LoadCursorW(nullptr, OverEnabledButton(window, *state) ? IDC_HAND : IDC_ARROW));
        SetWindowLongPtrW(window, DWLP_MSGRESULT, TRUE);
        return TRUE;
      }
      return FALSE;
    case WM_LBUTTONDOWN: {
      RECT client;
      GetClientRect(window, &client);
      const int button = PreviewButtonAt(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam), client.right);
      if (button >= 0 && PreviewButtonEnabled(button, state->currentPage, state->pageCount))
        RunCommand(window, *state, kPreviewFirstCommand + button);
      return TRUE;
    }
    case WM_THEME_CHANGED:
      ApplyTitleBar(window);
      RenderCurrentPage(*state);
      InvalidateRect(window, nullptr, FALSE);
      return TRUE;
    case WM_DESTROY: OnDestroy(window, *state); return TRUE;
    default: return FALSE;
  }
}

// The preview window, modal over the owner, until it closes; -1 when it
// can't be made.
INT_PTR RunPreviewWindow(PreviewState& state) {
  TemplateWriter t;
  WriteDialogHeader(t, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX, 0, 400, 300, kTitle);
  return DialogBoxIndirectParamW(g_hInstance, reinterpret_cast<const DLGTEMPLATE*>(t.words.data()), state.owner,
                                 PreviewProc, reinterpret_cast<LPARAM>(&state));
}

}  // namespace

void ShowPrintPreview(HWND owner) {
  if (SendEditor(SCI_GETLENGTH) == 0) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"The document is empty. Nothing to preview.");
    return;
  }
  PaginationJob job;
  job.text = Utf8ToWide(EditorTextUtf8());
  job.lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
  ComputePreviewGeometry(job.geometry);
  job.fontName = g_fontName;
  job.fontSize = g_fontSize;
  job.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  job.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE worker = job.readyEvent && job.cancelEvent ? CreateThread(nullptr, 0, PaginationWorker, &job, 0, nullptr)
                                                    : nullptr;
  if (!worker) {
    if (job.readyEvent) CloseHandle(job.readyEvent);
    if (job.cancelEvent) CloseHandle(job.cancelEvent);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to start Print Preview worker thread.");
    return;
  }
  const INT_PTR result = RunPaginationProgressDialog(owner, job);
  // The end message is the worker's last word; it returns right after.
  WaitForSingleObject(worker, INFINITE);
  CloseHandle(worker);
  CloseHandle(job.readyEvent);
  CloseHandle(job.cancelEvent);
  if (job.cancelled.load() || result != 1) {
    if (job.firstPage) DeleteObject(job.firstPage);
    return;
  }

  auto* state = new PreviewState();
  state->owner = owner;
  state->pageStarts = std::move(job.pageStarts);
  state->pageCount = static_cast<int32_t>(state->pageStarts.size());
  state->pageBitmap = job.firstPage;
  state->paperWidth = job.geometry.paperWidth;
  state->paperHeight = job.geometry.paperHeight;
  state->geometry = job.geometry;
  state->fontName = job.fontName;
  state->fontSize = job.fontSize;
  const INT_PTR shown = RunPreviewWindow(*state);
  // The window deletes its bitmap when it goes; one it never took is deleted here.
  if (state->pageBitmap) DeleteObject(state->pageBitmap);
  delete state;
  if (shown == -1) ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to open Print Preview dialog.");
}
