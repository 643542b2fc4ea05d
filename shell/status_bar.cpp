// The status bar: six parts of text, painted by the program in the theme.
#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include "Scintilla.h"
#include "document/document.h"
#include "presentation/themes.h"
#include "settings/settings.h"
#include "shell/shell.h"
#include "shell/status_text.h"

namespace {

constexpr int kStatusBarId = 2;
constexpr UINT_PTR kStatusSubclassId = 2;
constexpr int kMaxParts = 16;

void SetPart(int part, const std::wstring& text) {
  SendMessageW(g_hwndStatus, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text.c_str()));
}

void PaintStatusBar(HWND window, HDC target) {
  RECT client;
  GetClientRect(window, &client);
  HDC dc = CreateCompatibleDC(target);
  HBITMAP bitmap = CreateCompatibleBitmap(target, client.right, client.bottom);
  HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
  const ThemeColors& row = CurrentTheme();

  HBRUSH fill = CreateSolidBrush(row.statusBackground);
  FillRect(dc, &client, fill);
  DeleteObject(fill);
  HPEN separator = CreatePen(PS_SOLID, 1, row.separator);
  HGDIOBJ oldPen = SelectObject(dc, separator);
  MoveToEx(dc, 0, 0, nullptr);
  LineTo(dc, client.right, 0);

  HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, row.statusText);
  int edges[kMaxParts] = {};
  int parts = static_cast<int>(SendMessageW(window, SB_GETPARTS, kMaxParts, reinterpret_cast<LPARAM>(edges)));
  for (int part = 0; part < parts; ++part) {
    RECT box;
    SendMessageW(window, SB_GETRECT, part, reinterpret_cast<LPARAM>(&box));
    wchar_t text[512] = {};
    LRESULT length = SendMessageW(window, SB_GETTEXTLENGTHW, part, 0);
    if (LOWORD(length) > 0 && LOWORD(length) < 512) {
      SendMessageW(window, SB_GETTEXTW, part, reinterpret_cast<LPARAM>(text));
      RECT textBox = {box.left + 2, box.top + 1, box.right - 2, box.bottom};
      DrawTextW(dc, text, -1, &textBox, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    }
    if (part < parts - 1 && box.right < client.right) {
      MoveToEx(dc, box.right, box.top + 3, nullptr);
      LineTo(dc, box.right, box.bottom - 3);
    }
  }
  BitBlt(target, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
  SelectObject(dc, oldFont);
  SelectObject(dc, oldPen);
  DeleteObject(separator);
  SelectObject(dc, oldBitmap);
  DeleteObject(bitmap);
  DeleteDC(dc);
}

LRESULT CALLBACK StatusBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT paint;
      HDC dc = BeginPaint(window, &paint);
      PaintStatusBar(window, dc);
      EndPaint(window, &paint);
      return 0;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(window, StatusBarProc, kStatusSubclassId);
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

HWND CreateStatusBar(HWND parent) {
  g_hwndStatus = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, parent,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(kStatusBarId)), g_hInstance, nullptr);
  if (!g_hwndStatus) return nullptr;
  SetWindowTheme(g_hwndStatus, L"", L"");
  SetWindowSubclass(g_hwndStatus, StatusBarProc, kStatusSubclassId, 0);
  return g_hwndStatus;
}

void UpdateStatusBar() {
  if (!g_hwndStatus || !g_hwndEditor) return;
  // The bar's control repaints at once after each part's new text; one
  // repaint for all six is enough.
  SendMessageW(g_hwndStatus, WM_SETREDRAW, FALSE, 0);
  LRESULT caret = SendEditor(SCI_GETCURRENTPOS);
  int caretY = static_cast<int>(SendEditor(SCI_POINTYFROMPOSITION, 0, caret));
  int textHeight = static_cast<int>(SendEditor(SCI_TEXTHEIGHT, 0));
  SetPart(0, StatusLineColumnText(static_cast<int>(SendEditor(SCI_GETFIRSTVISIBLELINE)), caretY, textHeight,
                                  static_cast<int>(SendEditor(SCI_GETCOLUMN, caret))));
  LRESULT start = SendEditor(SCI_GETSELECTIONSTART), end = SendEditor(SCI_GETSELECTIONEND);
  SetPart(1, StatusSelectionText(end > start, static_cast<int>(SendEditor(SCI_COUNTCHARACTERS, start, end))));
  SetPart(2, StatusEncodingText(g_encoding));
  SetPart(3, StatusLineEndingText(static_cast<int>(SendEditor(SCI_GETEOLMODE))));
  SetPart(4, StatusZoomText(static_cast<int>(SendEditor(SCI_GETZOOM))));
  UpdateStatusFont();
  SendMessageW(g_hwndStatus, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(g_hwndStatus, nullptr, FALSE);
}

void UpdateStatusFont() {
  if (!g_hwndStatus) return;
  SetPart(5, StatusFontText(g_fontName, g_fontSize, g_settings.fontBold != 0, g_settings.fontItalic != 0));
}
