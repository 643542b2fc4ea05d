// The toolbar window: layout from the model, hover and press, painting
// double-buffered in the theme, and the command sent on the button's going down.
#include "shell/toolbar.h"

#include <atomic>

#include "document/document.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "shell/layout.h"
#include "shell/shell.h"
#include "shell/toolbar_model.h"

namespace {

constexpr wchar_t kToolbarClass[] = L"TavroToolbar";
constexpr int kCornerRadius = 8;

// The bar's working state; one toolbar per process.
struct ToolbarState {
  std::array<ToolbarRect, kToolbarButtonCount> rects{};
  std::array<bool, kToolbarButtonCount> enabled{};
  std::array<bool, kToolbarButtonCount> pressed{};
  int hovered = -1;
  bool trackingLeave = false;
};

ToolbarState g_toolbar;
std::atomic<bool> g_toolbarAiMode{false};
bool g_toolbarClassRegistered = false;

void ComputeEnabled() {
  g_toolbar.enabled = ToolbarEnabled(g_modified, IsDefaultProfileName(g_profileName));
  if (g_toolbar.hovered >= 0 && !g_toolbar.enabled[g_toolbar.hovered]) g_toolbar.hovered = -1;
}

void LayOutButtons(HWND bar) {
  RECT client;
  GetClientRect(bar, &client);
  g_toolbar.rects = ToolbarButtonRects(client.right);
}

void PaintButton(HDC dc, int index, const ThemeColors& row, bool aiMode) {
  const bool enabled = g_toolbar.enabled[index];
  const bool hovered = g_toolbar.hovered == index;
  const bool pressed = g_toolbar.pressed[index];
  const ToolbarButtonLook look = ToolbarButtonPaint(row, IsAccentButton(index, enabled), enabled, hovered, pressed);
  const ToolbarRect& box = g_toolbar.rects[index];
  RECT rect = {box.left, box.top, box.right, box.bottom + look.extraHeight};

  HBRUSH fill = CreateSolidBrush(look.fill);
  HPEN pen = look.bordered ? CreatePen(PS_SOLID, 1, look.border) : nullptr;
  HGDIOBJ oldBrush = SelectObject(dc, fill);
  HGDIOBJ oldPen = SelectObject(dc, pen ? static_cast<HGDIOBJ>(pen) : GetStockObject(NULL_PEN));
  // Without a pen the shape loses its right and bottom pixel: widen it by one.
  const int grow = pen ? 0 : 1;
  RoundRect(dc, rect.left, rect.top, rect.right + grow, rect.bottom + grow, kCornerRadius, kCornerRadius);
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(fill);
  if (pen) DeleteObject(pen);

  if (look.topLineWidth > 0) {
    for (int i = 0; i < look.topLineWidth; ++i)
      DrawPenLine(dc, rect.left + 4, rect.top + 1 + i, rect.right - 4, rect.top + 1 + i, look.topLine, 1);
  }

  SetTextColor(dc, look.text);
  RECT text = rect;
  OffsetRect(&text, 0, look.textShift);
  DrawTextW(dc, ToolbarCaption(index, aiMode), -1, &text, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void Paint(HWND bar) {
  PAINTSTRUCT paint;
  HDC target = BeginPaint(bar, &paint);
  RECT client;
  GetClientRect(bar, &client);
  HDC dc = CreateCompatibleDC(target);
  HBITMAP bitmap = CreateCompatibleBitmap(target, client.right, client.bottom);
  HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
  const ThemeColors& row = CurrentTheme();

  HBRUSH background = CreateSolidBrush(row.toolbarBackground);
  FillRect(dc, &client, background);
  DeleteObject(background);
  DrawPenLine(dc, 0, 0, client.right, 0, ToolbarTopLine(row), 1);
  DrawPenLine(dc, 0, client.bottom - 1, client.right, client.bottom - 1, row.separator, 1);

  HFONT font = CreateFontW(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
  HGDIOBJ oldFont = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  const bool aiMode = g_toolbarAiMode.load();
  for (int i = 0; i < kToolbarButtonCount; ++i) PaintButton(dc, i, row, aiMode);
  SelectObject(dc, oldFont);
  DeleteObject(font);

  BitBlt(target, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
  SelectObject(dc, oldBitmap);
  DeleteObject(bitmap);
  DeleteDC(dc);
  EndPaint(bar, &paint);
}

void OnMouseMove(HWND bar, int x, int y) {
  const int hovered = ToolbarHitTest(g_toolbar.rects, g_toolbar.enabled, x, y);
  if (hovered != g_toolbar.hovered) {
    g_toolbar.hovered = hovered;
    InvalidateRect(bar, nullptr, FALSE);
  }
  SetCursor(LoadCursorW(nullptr, hovered >= 0 ? IDC_HAND : IDC_ARROW));
  if (!g_toolbar.trackingLeave) {
    TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, bar, 0};
    g_toolbar.trackingLeave = TrackMouseEvent(&track) != FALSE;
  }
}

void OnButtonDown(HWND bar, int x, int y) {
  const int index = ToolbarHitTest(g_toolbar.rects, g_toolbar.enabled, x, y);
  if (index < 0) return;
  g_toolbar.pressed[index] = true;
  InvalidateRect(bar, nullptr, FALSE);
  UpdateWindow(bar);
  g_toolbar.pressed[index] = false;
  InvalidateRect(bar, nullptr, FALSE);
  // The command fires on the button's going down, not on its release.
  SendMessageW(GetParent(bar), WM_COMMAND, MAKEWPARAM(ToolbarButtons()[index].id, 0), 0);
}

LRESULT CALLBACK ToolbarProc(HWND bar, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      LayOutButtons(bar);
      InvalidateRect(bar, nullptr, FALSE);
      return 0;
    case WM_PAINT:
      Paint(bar);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_MOUSEMOVE:
      OnMouseMove(bar, static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(lParam) == HTCLIENT) {
        SetCursor(LoadCursorW(nullptr, g_toolbar.hovered >= 0 ? IDC_HAND : IDC_ARROW));
        return TRUE;
      }
      break;
    case WM_MOUSELEAVE:
      g_toolbar.trackingLeave = false;
      g_toolbar.hovered = -1;
      InvalidateRect(bar, nullptr, FALSE);
      return 0;
    case WM_LBUTTONDOWN:
      OnButtonDown(bar, static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
      return 0;
    case WM_LBUTTONUP:
      g_toolbar.pressed.fill(false);
      InvalidateRect(bar, nullptr, FALSE);
      return 0;
    case WM_SET_TOOLBAR_MODE:
      g_toolbarAiMode.exchange(wParam != 0);
      InvalidateRect(bar, nullptr, FALSE);
      return 0;
    case WM_DESTROY:
      g_toolbar = ToolbarState();
      if (g_hwndToolbar == bar) g_hwndToolbar = nullptr;
      break;
  }
  return DefWindowProcW(bar, message, wParam, lParam);
}

}  // namespace

HWND CreateToolbar(HWND parent, bool aiMode) {
  if (!g_toolbarClassRegistered) {
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.style = CS_HREDRAW | CS_VREDRAW;
    wc.lpfnWndProc = ToolbarProc;
    wc.hInstance = g_hInstance;
    wc.lpszClassName = kToolbarClass;
    g_toolbarClassRegistered = RegisterClassExW(&wc) != 0;
  }
  g_toolbar = ToolbarState();
  ComputeEnabled();
  g_hwndToolbar = CreateWindowExW(0, kToolbarClass, L"", WS_CHILD | WS_VISIBLE, 0, 0, 800, kToolbarHeight, parent,
                                  nullptr, g_hInstance, nullptr);
  if (g_hwndToolbar) {
    LayOutButtons(g_hwndToolbar);
    SetToolbarMode(aiMode);
  }
  return g_hwndToolbar;
}

void RefreshToolbar() {
  if (!g_hwndToolbar) return;
  ComputeEnabled();
  InvalidateRect(g_hwndToolbar, nullptr, FALSE);
}

void SetToolbarMode(bool aiMode) {
  g_toolbarAiMode.exchange(aiMode);
  if (g_hwndToolbar) PostMessageW(g_hwndToolbar, WM_SET_TOOLBAR_MODE, aiMode ? 1 : 0, 0);
}

bool ToolbarAiMode() { return g_toolbarAiMode.load(); }
