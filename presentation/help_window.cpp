// The Help window: a dialog without controls that paints its title band, the
// topic list and the topic's text itself, each through a memory bitmap.
#include "presentation/help_window.h"

#include <windowsx.h>
#include <dwmapi.h>
#include <shellapi.h>
#include <uxtheme.h>

#include <algorithm>

#include "base/app_state.h"
#include "base/messages.h"
#include "presentation/dialog_template.h"
#include "presentation/dialog_theme.h"
#include "presentation/help_layout.h"
#include "presentation/help_text.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"

HWND g_hwndHelp = nullptr;

namespace {

constexpr wchar_t kHelpTitle[] = L"Tavro - Help";

struct HelpState {
  int topic = 0;
  int scrollY = 0;
  int scrollMax = 0;
  int hoverTopic = -1;
  HBRUSH contentBrush = nullptr;
  HBRUSH sideBrush = nullptr;
  HBRUSH hoverBrush = nullptr;
  HBRUSH selectedBrush = nullptr;
  HFONT sideFont = nullptr;
  HFONT bodyFont = nullptr;
  HFONT headingFont = nullptr;
  HFONT titleFont = nullptr;
  HFONT linkFont = nullptr;
  RECT linkRect = {};
  bool linkHovered = false;
  bool tracking = false;  // a leave notice has been asked for
  bool placing = false;   // the opening size is being set: no minimum yet
};

HelpState* StateOf(HWND window) { return reinterpret_cast<HelpState*>(GetWindowLongPtrW(window, GWLP_USERDATA)); }

HFONT MakeFont(int points, int weight) {
  HDC screen = GetDC(nullptr);
  int height = -MulDiv(points, GetDeviceCaps(screen, LOGPIXELSY), 72);
  ReleaseDC(nullptr, screen);
  return CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
}

void DeleteBrushes(HelpState& state) {
  for (HBRUSH* brush : {&state.contentBrush, &state.sideBrush, &state.hoverBrush, &state.selectedBrush}) {
    if (*brush) DeleteObject(*brush);
    *brush = nullptr;
  }
}

void MakeBrushes(HelpState& state) {
  DeleteBrushes(state);
  const ThemeColors& row = CurrentTheme();
  state.contentBrush = CreateSolidBrush(row.dialogBackground);
  state.sideBrush = CreateSolidBrush(row.toolbarBackground);
  state.hoverBrush = CreateSolidBrush(row.controlHover);
  state.selectedBrush = CreateSolidBrush(row.controlBackground);
}

// The title bar is dark under every theme; the window's controls follow the row.
void ApplyFrameLook(HWND window) {
  BOOL dark = TRUE;
  DwmSetWindowAttribute(window, 20, &dark, sizeof(dark));
  SetWindowTheme(window, WindowThemeClass(CurrentTheme()), nullptr);
}

void RefreshFrame(HWND window) {
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

COLORREF LinkColour(bool hovered) {
  if (CurrentTheme().isDark & 0xFF) return hovered ? RGB(0xB4, 0xD0, 0xFB) : RGB(0x89, 0xB4, 0xFA);
  return hovered ? RGB(0x33, 0x99, 0xFF) : RGB(0x00, 0x66, 0xCC);
}

RECT ContentRect(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  return {std::min<LONG>(kHelpSideWidth, client.right), std::min<LONG>(kHelpTitleHeight, client.bottom), client.right,
          client.bottom};
}

int TextHeight(HDC dc, HFONT font, const wchar_t* text, int width) {
  HGDIOBJ old = SelectObject(dc, font);
  RECT box = {0, 0, width, 0};
  DrawTextW(dc, text, -1, &box, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(dc, old);
  return box.bottom - box.top;
}

int FontHeight(HDC dc, HFONT font) {
  HGDIOBJ old = SelectObject(dc, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  SelectObject(dc, old);
  return metrics.tmHeight;
}

void UpdateScrollRange(HWND window, HelpState& state) {
  RECT area = ContentRect(window);
  int width = area.right - area.left, height = area.bottom - area.top;
  HDC dc = GetDC(window);
  HelpFontHeights fonts;
  fonts.body = FontHeight(dc, state.bodyFont);
  fonts.heading = FontHeight(dc, state.headingFont);
  int measured = MeasureHelpTopic(kHelpTopics[state.topic].lines, width, fonts,
                                  [&](const wchar_t* text, bool heading, int textWidth) {
                                    return TextHeight(dc, heading ? state.headingFont : state.bodyFont, text,
                                                      textWidth);
                                  });
  ReleaseDC(window, dc);
  state.scrollMax = HelpScrollMax(measured, height);
  state.scrollY = ClampHelpScroll(state.scrollY, state.scrollMax);
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMin = 0;
  info.nMax = measured > 0 ? measured + kHelpTextLeft - 1 : 0;
  info.nPage = static_cast<UINT>(std::max(height, 0));
  info.nPos = std::min(state.scrollY, state.scrollMax);
  SetScrollInfo(window, SB_VERT, &info, TRUE);
}

void InvalidateContent(HWND window) {
  RECT area = ContentRect(window);
  InvalidateRect(window, &area, FALSE);
}

void SetScroll(HWND window, HelpState& state, int scrollY) {
  int next = ClampHelpScroll(scrollY, state.scrollMax);
  if (next == state.scrollY) return;
  state.scrollY = next;
  SetScrollPos(window, SB_VERT, next, TRUE);
  InvalidateContent(window);
}

void SelectTopic(HWND window, HelpState& state, int topic) {
  state.topic = topic;
  state.scrollY = 0;
  UpdateScrollRange(window, state);
  InvalidateRect(window, nullptr, FALSE);
}

// Paints into a memory bitmap of the rectangle's size, then copies it out.
template <typename Paint>
void Buffered(HDC target, const RECT& rect, Paint paint) {
  int width = rect.right - rect.left, height = rect.bottom - rect.top;
  if (width <= 0 || height <= 0) return;
  HDC memory = CreateCompatibleDC(target);
  HBITMAP bitmap = CreateCompatibleBitmap(target, width, height);
  HGDIOBJ oldBitmap = SelectObject(memory, bitmap);
  SetBkMode(memory, TRANSPARENT);
  paint(memory, width, height);
  BitBlt(target, rect.left, rect.top, width, height, memory, 0, 0, SRCCOPY);
  SelectObject(memory, oldBitmap);
  DeleteObject(bitmap);
  DeleteDC(memory);
}

void FillWith(HDC dc, int left, int top, int right, int bottom, COLORREF colour) {
  HBRUSH brush = CreateSolidBrush(colour);
  RECT box = {left, top, right, bottom};
  FillRect(dc, &box, brush);
  DeleteObject(brush);
}

void PaintTitle(HDC dc, int width, const HelpState& state) {
  const ThemeColors& row = CurrentTheme();
  RECT box = {0, 0, width, kHelpTitleHeight};
  FillRect(dc, &box, state.sideBrush);
  FillWith(dc, 0, kHelpTitleHeight - 1, width, kHelpTitleHeight, row.separator);
  HGDIOBJ old = SelectObject(dc, state.titleFont);
  SetTextColor(dc, row.dialogText);
  RECT text = {0, 0, width, kHelpTitleHeight - 1};
  DrawTextW(dc, kHelpTitle, -1, &text, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, old);
}

void PaintSideBar(HDC dc, int width, int height, const HelpState& state) {
  const ThemeColors& row = CurrentTheme();
  RECT box = {0, 0, width, height};
  FillRect(dc, &box, state.sideBrush);
  FillWith(dc, width - 1, 0, width, height, row.separator);
  HGDIOBJ oldFont = SelectObject(dc, state.sideFont);
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  for (int i = 0; i < kHelpTopicCount; ++i) {
    int top = kHelpRowTop + i * kHelpRowHeight;
    bool selected = i == state.topic, hovered = i == state.hoverTopic;
    COLORREF text = row.controlText;
    if (selected || hovered) {
      HGDIOBJ oldBrush = SelectObject(dc, selected ? state.selectedBrush : state.hoverBrush);
      // The null pen leaves the right and bottom edges out: one more pixel each.
      RoundRect(dc, 8, top, width - 8 + 1, top + kHelpRowHeight + 1, 6, 6);
      SelectObject(dc, oldBrush);
      text = selected ? row.dialogText : row.controlTextActive;
    }
    if (selected) FillWith(dc, 4, top + 4, 8, top + 4 + 24, row.buttonBorderFocused);
    SetTextColor(dc, text);
    RECT line = {20, top, width - 8, top + kHelpRowHeight};
    DrawTextW(dc, kHelpTopics[i].title, -1, &line, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  }
  SelectObject(dc, oldPen);
  SelectObject(dc, oldFont);
}

// Draws the topic from y = 24 less the scroll position; lines above the area
// are only measured, and the walk stops below its bottom.
void PaintContent(HDC dc, int width, int height, HelpState& state, int areaLeft, int areaTop) {
  const ThemeColors& row = CurrentTheme();
  RECT box = {0, 0, width, height};
  FillRect(dc, &box, state.contentBrush);
  const int right = HelpTextRight(width);
  const int textWidth = right - kHelpTextLeft;
  const int lineHeight = FontHeight(dc, state.bodyFont) + 4;
  const int headingGap = FontHeight(dc, state.headingFont) / 2;
  SetTextColor(dc, row.dialogText);
  state.linkRect = {};
  int y = kHelpTextLeft - state.scrollY;
  const wchar_t* const* lines = kHelpTopics[state.topic].lines;
  for (int i = 0; lines[i] && y <= height; ++i) {
    const wchar_t* line = lines[i];
    switch (ClassifyHelpLine(line)) {
      case HelpLineKind::Heading: {
        if (i > 0) y += headingGap;
        int h = TextHeight(dc, state.headingFont, line + 2, textWidth);
        if (y + h + 3 > 0) {
          HGDIOBJ old = SelectObject(dc, state.headingFont);
          RECT text = {kHelpTextLeft, y, right, y + h};
          DrawTextW(dc, line + 2, -1, &text, DT_WORDBREAK | DT_NOPREFIX);
          SelectObject(dc, old);
          FillWith(dc, kHelpTextLeft, y + h + 2, right, y + h + 3, row.separator);
        }
        y += h + 8;
        break;
      }
      case HelpLineKind::Gap: y += lineHeight / 2; break;
      case HelpLineKind::Link: {
        HGDIOBJ old = SelectObject(dc, state.linkFont);
        SIZE size = {};
        GetTextExtentPoint32W(dc, kHelpLinkLabel, lstrlenW(kHelpLinkLabel), &size);
        SetTextColor(dc, LinkColour(state.linkHovered));
        TextOutW(dc, kHelpTextLeft, y, kHelpLinkLabel, lstrlenW(kHelpLinkLabel));
        SetTextColor(dc, row.dialogText);
        SelectObject(dc, old);
        state.linkRect = {areaLeft + kHelpTextLeft, areaTop + y, areaLeft + kHelpTextLeft + size.cx,
                          areaTop + y + size.cy};
        y += lineHeight + 3;
        break;
      }
      case HelpLineKind::Paragraph: {
        int h = TextHeight(dc, state.bodyFont, line, textWidth);
        if (y + h > 0) {
          HGDIOBJ old = SelectObject(dc, state.bodyFont);
          RECT text = {kHelpTextLeft, y, right, y + h};
          DrawTextW(dc, line, -1, &text, DT_WORDBREAK | DT_NOPREFIX);
          SelectObject(dc, old);
        }
        y += (h ? h : lineHeight) + 3;
        break;
      }
    }
  }
}

void Paint(HWND window, HelpState& state) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  RECT band = {0, 0, client.right, std::min<LONG>(kHelpTitleHeight, client.bottom)};
  RECT side = {0, band.bottom, std::min<LONG>(kHelpSideWidth, client.right), client.bottom};
  RECT area = ContentRect(window);
  RECT overlap;
  if (IntersectRect(&overlap, &band, &paint.rcPaint))
    Buffered(dc, band, [&](HDC memory, int width, int) { PaintTitle(memory, width, state); });
  if (IntersectRect(&overlap, &side, &paint.rcPaint))
    Buffered(dc, side, [&](HDC memory, int width, int height) { PaintSideBar(memory, width, height, state); });
  if (IntersectRect(&overlap, &area, &paint.rcPaint))
    Buffered(dc, area, [&](HDC memory, int width, int height) {
      PaintContent(memory, width, height, state, area.left, area.top);
    });
  EndPaint(window, &paint);
}

int TopicUnder(POINT point) {
  if (point.x < 0 || point.x >= kHelpSideWidth) return -1;
  return HelpRowAt(point.y);
}

void InvalidateSideBar(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  RECT side = {0, kHelpTitleHeight, kHelpSideWidth, client.bottom};
  InvalidateRect(window, &side, FALSE);
}

void OnMouseMove(HWND window, HelpState& state, POINT point) {
  if (!state.tracking) {
    TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, window, 0};
    state.tracking = TrackMouseEvent(&track) != FALSE;
  }
  int hover = TopicUnder(point);
  if (hover != state.hoverTopic) {
    state.hoverTopic = hover;
    InvalidateSideBar(window);
  }
  bool overLink = PtInRect(&state.linkRect, point) != FALSE;
  if (overLink != state.linkHovered) {
    state.linkHovered = overLink;
    InvalidateContent(window);
  }
  SetCursor(LoadCursorW(nullptr, hover >= 0 || overLink ? IDC_HAND : IDC_ARROW));
}

void OnScroll(HWND window, HelpState& state, WORD code) {
  RECT area = ContentRect(window);
  int page = area.bottom - area.top;
  switch (code) {
    case SB_LINEUP: SetScroll(window, state, state.scrollY - kHelpLineStep); break;
    case SB_LINEDOWN: SetScroll(window, state, state.scrollY + kHelpLineStep); break;
    case SB_PAGEUP: SetScroll(window, state, state.scrollY - page); break;
    case SB_PAGEDOWN: SetScroll(window, state, state.scrollY + page); break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO info = {};
      info.cbSize = sizeof(info);
      info.fMask = SIF_TRACKPOS;
      GetScrollInfo(window, SB_VERT, &info);
      SetScroll(window, state, info.nTrackPos);
      break;
    }
    case SB_TOP: SetScroll(window, state, 0); break;
    case SB_BOTTOM: SetScroll(window, state, state.scrollMax); break;
    default: break;
  }
}

bool OnKey(HWND window, HelpState& state, WPARAM key) {
  switch (key) {
    case VK_ESCAPE: DestroyWindow(window); return true;
    case VK_PRIOR: OnScroll(window, state, SB_PAGEUP); return true;
    case VK_NEXT: OnScroll(window, state, SB_PAGEDOWN); return true;
    case VK_LEFT:
    case VK_UP:
      if (state.topic > 0) SelectTopic(window, state, state.topic - 1);
      return true;
    case VK_RIGHT:
    case VK_DOWN:
      if (state.topic < kHelpTopicCount - 1) SelectTopic(window, state, state.topic + 1);
      return true;
    default: return false;
  }
}

void PlaceWindow(HWND window, HelpState& state) {
  int screenWidth = GetSystemMetrics(SM_CXSCREEN), screenHeight = GetSystemMetrics(SM_CYSCREEN);
  int width = g_settings.helpWidth, height = g_settings.helpHeight;
  if (width < 500 || width > screenWidth || height < 380 || height > screenHeight) {
    width = std::min(screenWidth * 70 / 100, 860);
    height = std::min(screenHeight * 80 / 100, 680);
  }
  // The drag minimum stands apart: a stored size below it is taken once.
  state.placing = true;
  SetWindowPos(window, nullptr, (screenWidth - width) / 2, (screenHeight - height) / 2, width, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
  state.placing = false;
}

void OnInit(HWND window) {
  auto* state = new HelpState;
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state));
  MakeBrushes(*state);
  state->sideFont = MakeFont(9, FW_NORMAL);
  state->bodyFont = MakeFont(10, FW_NORMAL);
  state->headingFont = MakeFont(11, FW_SEMIBOLD);
  state->titleFont = MakeFont(12, FW_SEMIBOLD);
  state->linkFont = CreateFontW(-13, 0, 0, 0, FW_NORMAL, FALSE, TRUE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
  ApplyFrameLook(window);
  HICON icon = LoadIconW(g_hInstance, MAKEINTRESOURCEW(IDI_TAVRO));
  SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
  SendMessageW(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
  PlaceWindow(window, *state);
  if (g_settings.helpTopic >= 0 && g_settings.helpTopic < kHelpTopicCount) state->topic = g_settings.helpTopic;
  UpdateScrollRange(window, *state);
}

void OnDestroy(HWND window) {
  HelpState* state = StateOf(window);
  RECT box;
  GetWindowRect(window, &box);
  g_settings.helpWidth = box.right - box.left;
  g_settings.helpHeight = box.bottom - box.top;
  if (state) g_settings.helpTopic = state->topic;
  SaveSettings(g_settings);
  if (state) {
    DeleteBrushes(*state);
    for (HFONT font : {state->sideFont, state->bodyFont, state->headingFont, state->titleFont, state->linkFont})
      if (font) DeleteObject(font);
    delete state;
  }
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  if (g_hwndHelp == window) g_hwndHelp = nullptr;
}

INT_PTR CALLBACK HelpProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(window);
    return FALSE;  // the window itself keeps the focus
  }
  HelpState* state = StateOf(window);
  if (!state) return FALSE;
  if (PaintedWindowMessage(window, message)) return TRUE;
  switch (message) {
    case WM_PAINT: Paint(window, *state); return TRUE;
    case WM_KEYDOWN: return OnKey(window, *state, wParam) ? TRUE : FALSE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDCANCEL) {  // Esc, as the dialog manager reports it
        DestroyWindow(window);
        return TRUE;
      }
      return FALSE;
    case WM_CLOSE: DestroyWindow(window); return TRUE;
    case WM_ACTIVATE:
      ApplyFrameLook(window);
      RefreshFrame(window);
      return FALSE;
    case WM_GETMINMAXINFO: {
      if (state->placing) return FALSE;
      auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
      info->ptMinTrackSize.x = kHelpMinTrackWidth;
      info->ptMinTrackSize.y = kHelpMinTrackHeight;
      return TRUE;
    }
    case WM_SIZE:
      UpdateScrollRange(window, *state);
      InvalidateRect(window, nullptr, FALSE);
      return TRUE;
    case WM_VSCROLL: OnScroll(window, *state, LOWORD(wParam)); return TRUE;
    case WM_MOUSEWHEEL:
      SetScroll(window, *state, state->scrollY + (GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? -kHelpWheelStep : kHelpWheelStep));
      return TRUE;
    case WM_LBUTTONDOWN: {
      POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      if (PtInRect(&state->linkRect, point)) {
        ShellExecuteW(window, L"open", kHelpLinkTarget, nullptr, nullptr, SW_SHOWNORMAL);
        return TRUE;
      }
      int row = TopicUnder(point);
      if (row >= 0 && row != state->topic) {
        SelectTopic(window, *state, row);
        g_settings.helpTopic = row;
      }
      return TRUE;
    }
    case WM_MOUSEMOVE: OnMouseMove(window, *state, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}); return TRUE;
    case WM_MOUSELEAVE:
      state->tracking = false;
      if (state->hoverTopic >= 0) InvalidateSideBar(window);
      if (state->linkHovered) InvalidateContent(window);
      state->hoverTopic = -1;
      state->linkHovered = false;
      return TRUE;
    case WM_SETCURSOR:
      if (LOWORD(lParam) == HTCLIENT) {
        POINT point;
        GetCursorPos(&point);
        ScreenToClient(window, &point);
        bool hand = TopicUnder(point) >= 0 || PtInRect(&state->linkRect, point);
        SetCursor(LoadCursorW(nullptr, hand ? IDC_HAND : IDC_ARROW));
        SetWindowLongPtrW(window, DWLP_MSGRESULT, TRUE);
        return TRUE;
      }
      return FALSE;
    case WM_THEME_CHANGED:
      MakeBrushes(*state);
      ApplyFrameLook(window);
      RefreshFrame(window);
      InvalidateRect(window, nullptr, FALSE);
      return TRUE;
    case WM_DESTROY: OnDestroy(window); return TRUE;
    default: return FALSE;
  }
}

}  // namespace

void ShowHelp(HWND owner) {
  if (g_hwndHelp && IsWindow(g_hwndHelp)) {
    if (IsIconic(g_hwndHelp)) ShowWindow(g_hwndHelp, SW_RESTORE);
    SetForegroundWindow(g_hwndHelp);
    return;
  }
  g_hwndHelp = nullptr;
  TemplateWriter t;
  WriteDialogHeader(t, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME, 0, 400, 300, kHelpTitle);
  HWND window = CreateDialogIndirectParamW(g_hInstance, reinterpret_cast<const DLGTEMPLATE*>(t.words.data()), owner,
                                           HelpProc, 0);
  if (!window) return;
  g_hwndHelp = window;
  ShowWindow(window, SW_SHOW);
  SetForegroundWindow(window);
  SetFocus(window);
}
