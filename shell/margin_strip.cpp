// "TavroMargin": the line-number strip left of the editor. It numbers
// display rows, so a wrapped line takes several numbers, like the status bar.
#include <windows.h>

#include <string>

#include "Scintilla.h"
#include "presentation/themes.h"
#include "settings/settings.h"
#include "shell/layout.h"
#include "shell/shell.h"

namespace {

constexpr wchar_t kMarginClass[] = L"TavroMargin";

struct StripState {
  int width = 0;
  HBITMAP buffer = nullptr;
  int bufferWidth = 0, bufferHeight = 0;
};
StripState g_strip;

void FreeBuffer() {
  if (g_strip.buffer) DeleteObject(g_strip.buffer);
  g_strip.buffer = nullptr;
  g_strip.bufferWidth = g_strip.bufferHeight = 0;
}

std::string AnsiFace() {
  char face[LF_FACESIZE] = {};
  WideCharToMultiByte(CP_ACP, 0, g_fontName, -1, face, LF_FACESIZE, nullptr, nullptr);
  return face;
}

void DrawStrip(HWND window, HDC dc, const RECT& client) {
  const ThemeColors& row = CurrentTheme();
  HBRUSH fill = CreateSolidBrush(row.marginBackground);
  FillRect(dc, &client, fill);
  DeleteObject(fill);
  HPEN border = CreatePen(PS_SOLID, 1, row.controlBorder);
  HGDIOBJ oldPen = SelectObject(dc, border);
  MoveToEx(dc, client.right - 1, 0, nullptr);
  LineTo(dc, client.right - 1, client.bottom);
  SelectObject(dc, oldPen);
  DeleteObject(border);
  if (!g_hwndEditor) return;

  int points = g_fontSize + static_cast<int>(SendEditor(SCI_GETZOOM));
  if (points < 6) points = 6;
  LOGFONTA logFont = {};
  logFont.lfHeight = -MulDiv(points, GetDeviceCaps(dc, LOGPIXELSY), 72);
  logFont.lfQuality = CLEARTYPE_QUALITY;
  lstrcpynA(logFont.lfFaceName, AnsiFace().c_str(), LF_FACESIZE);
  HFONT font = CreateFontIndirectA(&logFont);
  HGDIOBJ oldFont = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);

  int rowHeight = static_cast<int>(SendEditor(SCI_TEXTHEIGHT, 0));
  if (rowHeight < 1) rowHeight = 16;
  int first = static_cast<int>(SendEditor(SCI_GETFIRSTVISIBLELINE));
  int displayRows = static_cast<int>(SendEditor(SCI_VISIBLEFROMDOCLINE, SendEditor(SCI_GETLINECOUNT)));
  int caretRow = static_cast<int>(SendEditor(SCI_POINTYFROMPOSITION, 0, SendEditor(SCI_GETCURRENTPOS))) / rowHeight;
  for (int r = 0; first + r < displayRows && r * rowHeight < client.bottom; ++r) {
    wchar_t number[16];
    wsprintfW(number, L"%d", first + r + 1);
    SetTextColor(dc, r == caretRow ? row.marginCaretRow : row.marginText);
    RECT box = {0, r * rowHeight, client.right - 6, (r + 1) * rowHeight};
    DrawTextW(dc, number, -1, &box, DT_RIGHT | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
  }
  SelectObject(dc, oldFont);
  DeleteObject(font);
  (void)window;
}

void Paint(HWND window) {
  PAINTSTRUCT paint;
  HDC target = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  if (!g_strip.buffer || g_strip.bufferWidth != client.right || g_strip.bufferHeight != client.bottom) {
    FreeBuffer();
    g_strip.buffer = CreateCompatibleBitmap(target, client.right, client.bottom);
    g_strip.bufferWidth = client.right;
    g_strip.bufferHeight = client.bottom;
  }
  HDC dc = g_strip.buffer ? CreateCompatibleDC(target) : nullptr;
  if (dc) {
    HGDIOBJ old = SelectObject(dc, g_strip.buffer);
    DrawStrip(window, dc, client);
    BitBlt(target, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    SelectObject(dc, old);
    DeleteDC(dc);
  } else {
    DrawStrip(window, target, client);  // no memory bitmap: straight to the window
  }
  EndPaint(window, &paint);
}

LRESULT CALLBACK MarginProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      Paint(window);
      return 0;
    case WM_LBUTTONDOWN:
      if (g_hwndEditor) SetFocus(g_hwndEditor);
      return 0;
    case WM_SIZE:
    case WM_DESTROY:
      FreeBuffer();
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

void RegisterMarginClass(HINSTANCE instance) {
  WNDCLASSEXW wc = {};
  wc.cbSize = sizeof(wc);
  wc.style = CS_HREDRAW | CS_VREDRAW;
  wc.lpfnWndProc = MarginProc;
  wc.hInstance = instance;
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.lpszClassName = kMarginClass;
  RegisterClassExW(&wc);
}

HWND CreateMarginStrip(HWND parent) {
  g_hwndMargin = CreateWindowExW(0, kMarginClass, L"", WS_CHILD | (g_lineNumbers ? WS_VISIBLE : 0), 0, kToolbarHeight,
                                 0, 0, parent, nullptr, g_hInstance, nullptr);
  g_strip.width = 0;
  return g_hwndMargin;
}

int MarginStripWidth() { return g_strip.width; }

void RefreshMarginWidth() {
  if (!g_hwndMargin || !g_hwndEditor) return;
  int digitWidth = static_cast<int>(SendEditor(SCI_TEXTWIDTH, STYLE_LINENUMBER, reinterpret_cast<LPARAM>("9")));
  int width = LineNumberStripWidth(static_cast<int>(SendEditor(SCI_GETLINECOUNT)), digitWidth);
  if (width != g_strip.width) {
    g_strip.width = width;
    PostMessageW(GetParent(g_hwndMargin), WM_SIZE, 0, 0);
  }
  InvalidateRect(g_hwndMargin, nullptr, FALSE);
}
