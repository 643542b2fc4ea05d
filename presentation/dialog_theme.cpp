#include "presentation/dialog_theme.h"

#include <commctrl.h>
#include <uxtheme.h>

#include "presentation/presentation.h"
#include "presentation/themes.h"

namespace {

constexpr int kButtonFontHeight = -12;
constexpr UINT_PTR kGroupBoxSubclass = 1;
constexpr int kCaptionIndent = 8;
constexpr int kCaptionPadding = 2;

bool IsButton(HWND control) {
  wchar_t className[16] = {};
  GetClassNameW(control, className, 16);
  return lstrcmpiW(className, L"Button") == 0;
}

// Frame and caption; the inside stays as the dialog painted it. The caption
// takes the text colour and background that the dialog answers to
// WM_CTLCOLORSTATIC, as any static text of the dialog does.
void PaintGroupBox(HWND box, HDC dc) {
  const ThemeColors& row = CurrentTheme();
  RECT client;
  GetClientRect(box, &client);
  HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  wchar_t caption[128] = {};
  const int length = GetWindowTextW(box, caption, 128);
  SIZE extent = {};
  GetTextExtentPoint32W(dc, caption, length, &extent);

  HPEN pen = CreatePen(PS_SOLID, 1, row.controlBorder);
  HGDIOBJ oldPen = SelectObject(dc, pen);
  HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
  Rectangle(dc, client.left, client.top + metrics.tmHeight / 2, client.right, client.bottom);
  SelectObject(dc, oldBrush);
  SelectObject(dc, oldPen);
  DeleteObject(pen);

  if (length > 0) {
    SetTextColor(dc, row.dialogText);
    SetBkColor(dc, row.windowBackground);
    auto background = reinterpret_cast<HBRUSH>(
        SendMessageW(GetParent(box), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(box)));
    RECT behind = {client.left + kCaptionIndent - kCaptionPadding, client.top,
                   client.left + kCaptionIndent + extent.cx + kCaptionPadding, client.top + metrics.tmHeight};
    if (background) FillRect(dc, &behind, background);
    if (!IsWindowEnabled(box)) SetTextColor(dc, row.controlTextDisabled);
    SetBkMode(dc, TRANSPARENT);
    TextOutW(dc, client.left + kCaptionIndent, client.top, caption, length);
  }
  SelectObject(dc, oldFont);
}

LRESULT CALLBACK GroupBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint;
      HDC dc = BeginPaint(box, &paint);
      PaintGroupBox(box, dc);
      EndPaint(box, &paint);
      return 0;
    }
    case WM_ENABLE:
    case WM_SETTEXT: {
      const LRESULT result = DefSubclassProc(box, message, wParam, lParam);
      InvalidateRect(box, nullptr, TRUE);
      return result;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(box, GroupBoxProc, kGroupBoxSubclass);
      break;
  }
  return DefSubclassProc(box, message, wParam, lParam);
}

}  // namespace

void ThemeGroupBox(HWND box) {
  SetWindowTheme(box, L"", L"");
  SetWindowSubclass(box, GroupBoxProc, kGroupBoxSubclass, 0);
}

void ApplyDialogTheme(HWND dialog, DialogTheme& theme) {
  const ThemeColors& row = CurrentTheme();
  theme.background = CreateSolidBrush(row.windowBackground);
  theme.field = CreateSolidBrush(row.editorBackground);
  theme.classBrushBefore = SetClassLongPtrW(dialog, GCLP_HBRBACKGROUND, reinterpret_cast<LONG_PTR>(theme.background));
  SetDarkTitleBar(dialog, (row.isDark & 0xFF) != 0);
  theme.buttonFont = CreateFontW(kButtonFontHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                 OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsButton(child)) continue;
    const LONG_PTR style = GetWindowLongPtrW(child, GWL_STYLE);
    switch (style & BS_TYPEMASK) {
      case BS_PUSHBUTTON:
      case BS_DEFPUSHBUTTON:
        SetWindowLongPtrW(child, GWL_STYLE, (style & ~BS_TYPEMASK) | BS_OWNERDRAW);
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(theme.buttonFont), FALSE);
        break;
      case BS_GROUPBOX:
        ThemeGroupBox(child);
        break;
      default:  // check boxes and radio buttons
        SetWindowTheme(child, L"", L"");
        break;
    }
  }
}

bool DialogThemeMessage(const DialogTheme& theme, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR& result) {
  const ThemeColors& row = CurrentTheme();
  HDC dc = reinterpret_cast<HDC>(wParam);
  switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      SetBkColor(dc, row.windowBackground);
      SetTextColor(dc, row.dialogText);
      result = reinterpret_cast<INT_PTR>(theme.background);
      return true;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
      SetBkColor(dc, row.editorBackground);
      SetTextColor(dc, row.editorText);
      result = reinterpret_cast<INT_PTR>(theme.field);
      return true;
    case WM_DRAWITEM: {
      const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item->CtlType != ODT_BUTTON) return false;
      DrawThemedButton(item);
      result = TRUE;
      return true;
    }
  }
  return false;
}

void ReleaseDialogTheme(HWND dialog, DialogTheme& theme) {
  SetClassLongPtrW(dialog, GCLP_HBRBACKGROUND, theme.classBrushBefore);
  DeleteObject(theme.background);
  DeleteObject(theme.field);
  DeleteObject(theme.buttonFont);
  theme = DialogTheme();
}

void CentreOnOwner(HWND dialog) {
  HWND owner = GetWindow(dialog, GW_OWNER);
  RECT box, around;
  GetWindowRect(dialog, &box);
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(owner ? owner : dialog, MONITOR_DEFAULTTONEAREST), &monitor);
  if (!owner || !GetWindowRect(owner, &around)) around = monitor.rcWork;
  const int width = box.right - box.left, height = box.bottom - box.top;
  int x = around.left + ((around.right - around.left) - width) / 2;
  int y = around.top + ((around.bottom - around.top) - height) / 2;
  if (x + width > monitor.rcWork.right) x = monitor.rcWork.right - width;
  if (y + height > monitor.rcWork.bottom) y = monitor.rcWork.bottom - height;
  if (x < monitor.rcWork.left) x = monitor.rcWork.left;
  if (y < monitor.rcWork.top) y = monitor.rcWork.top;
  SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaintRoundBox(HDC dc, const RECT& box, COLORREF fill, COLORREF border, int corner) {
  HBRUSH brush = CreateSolidBrush(fill);
  HPEN pen = CreatePen(PS_SOLID, 1, border);
  HGDIOBJ oldBrush = SelectObject(dc, brush);
  HGDIOBJ oldPen = SelectObject(dc, pen);
  RoundRect(dc, box.left, box.top, box.right, box.bottom, corner, corner);
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(pen);
  DeleteObject(brush);
}

bool PaintedWindowMessage(HWND dialog, UINT message) {
  switch (message) {
    case WM_ERASEBKGND:
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return true;
    case WM_GETDLGCODE:
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, DLGC_WANTALLKEYS | DLGC_WANTARROWS);
      return true;
    default:
      return false;
  }
}
