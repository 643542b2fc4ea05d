// The AI panel window: its controls, their layout and colours, the splitter,
// the owner-drawn buttons, the transcript and input box subclasses with their
// menus, the input box's scroll bar, and the Chat History menu.
#include "ai/panel/ai_panel.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <string>
#include <vector>

#include "Scintilla.h"
#include "ai/chat/chat_store.h"
#include "ai/client/ai_state.h"
#include "ai/panel/ai_settings_dialog.h"
#include "ai/panel/chat_selection.h"
#include "ai/panel/connectivity.h"
#include "ai/panel/panel_rules.h"
#include "ai/panel/rename_chat_dialog.h"
#include "ai/panel/send_rules.h"
#include "ai/panel/typing_animator.h"
#include "base/app_state.h"
#include "base/heap_text.h"
#include "base/messages.h"
#include "base/text_convert.h"
#include "presentation/dark_menu.h"
#include "presentation/message_box.h"
#include "presentation/themes.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kPanelClass[] = L"TavroAiPanel";
constexpr wchar_t kScrollClass[] = L"TavroCustomScroll";
constexpr wchar_t kTitleText[] = L"  \u269C  Tavro AI";
constexpr wchar_t kSendIdleText[] = L"Send \u23CE";
constexpr wchar_t kSendGeneratingText[] = L"Stop \u25A0";
constexpr wchar_t kStoppingText[] = L"Stopping...";
constexpr wchar_t kPlaceholder[] = L"Type a message...";
constexpr wchar_t kNoKeyStatus[] = L"Ready - enter your API key in AI Settings";
constexpr UINT_PTR kTranscriptSubclassId = 8000;
constexpr UINT_PTR kInputSubclassId = 8001;
constexpr int kTranscriptMenuCopy = 8010;
constexpr int kTranscriptMenuSelectAll = 8011;
constexpr int kTranscriptMenuClear = 8012;
constexpr int kInputMenuFirst = 8020;  // Undo, Cut, Copy, Paste, Delete, Select All
constexpr int kHistoryRowFirst = 9100;
constexpr int kHistoryRowLast = 9199;
constexpr int kHistoryRename = 9001;
constexpr int kHistoryDelete = 9002;
constexpr int kHistoryDeleteAll = 9003;
constexpr int kWheelLines = 3;
constexpr COLORREF kDarkNoteGrey = 0x696969;
constexpr COLORREF kLightNoteGrey = 0x9B9B9B;
constexpr int kNoteStyle = 2;  // italic, size 10: notes in the transcript
constexpr int kElementSelectionInactiveText = 16;
constexpr int kElementSelectionInactiveBack = 17;

// The panel's working state: one panel per process.
struct PanelState {
  HWND panel = nullptr;
  HWND title = nullptr, connection = nullptr, history = nullptr, transcript = nullptr, input = nullptr;
  HWND scroll = nullptr, aiSettings = nullptr, newChat = nullptr, send = nullptr, status = nullptr;
  int inputHeight = kInputHeightStart;
  int splitterTop = kSplitterTopMin;
  bool draggingSplitter = false;
  int dragStartY = 0;
  int dragStartHeight = 0;
  // The input scroll bar.
  InputScroll inputScroll;
  bool draggingThumb = false;
  int thumbGrabOffset = 0;
  // Owned GDI objects.
  HFONT titleFont = nullptr, buttonFont = nullptr, inputFont = nullptr, statusFont = nullptr;
  HBRUSH panelBrush = nullptr, inputBrush = nullptr;
};

PanelState g_panel;
bool g_classesRegistered = false;

bool IsDarkTheme() { return (CurrentTheme().isDark & 0xFF) != 0; }

LRESULT SendTranscript(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendMessageW(g_panel.transcript, message, wParam, lParam);
}

HFONT MakeFont(int height, int weight, bool italic = false) {
  return CreateFontW(height, 0, 0, 0, weight, italic, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
}

std::wstring WindowText(HWND window) {
  const int length = GetWindowTextLengthW(window);
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  GetWindowTextW(window, text.data(), length + 1);
  text.resize(static_cast<size_t>(length));
  return text;
}

// ---- transcript ----------------------------------------------------------

void StyleTranscript() {
  const ThemeColors& row = CurrentTheme();
  const bool dark = IsDarkTheme();
  SendTranscript(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>("Segoe UI"));
  SendTranscript(SCI_STYLESETSIZE, STYLE_DEFAULT, 12);
  SendTranscript(SCI_STYLESETBOLD, STYLE_DEFAULT, 0);
  SendTranscript(SCI_STYLESETITALIC, STYLE_DEFAULT, 0);
  SendTranscript(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendTranscript(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
  SendTranscript(SCI_STYLECLEARALL);
  SendTranscript(SCI_STYLESETITALIC, kNoteStyle, 1);
  SendTranscript(SCI_STYLESETSIZE, kNoteStyle, 10);
  SendTranscript(SCI_STYLESETFORE, kNoteStyle, dark ? kDarkNoteGrey : kLightNoteGrey);
  SendTranscript(SCI_STYLESETBACK, kNoteStyle, row.editorBackground);
  SendTranscript(SCI_SETSELBACK, 1, row.selectionBackground);
  SendTranscript(SCI_SETSELFORE, 1, row.selectionText);
  SendTranscript(SCI_SETADDITIONALSELBACK, row.selectionBackground);
  SendTranscript(SCI_SETELEMENTCOLOUR, kElementSelectionInactiveBack, row.selectionBackground | 0xFF000000u);
  SendTranscript(SCI_SETELEMENTCOLOUR, kElementSelectionInactiveText, row.selectionText | 0xFF000000u);
  SetWindowTheme(g_panel.transcript, WindowThemeClass(row), nullptr);
}

void SetUpTranscript() {
  SendTranscript(SCI_SETCODEPAGE, SC_CP_UTF8);
  SendTranscript(SCI_SETREADONLY, 1);
  for (int margin = 0; margin < 5; ++margin) SendTranscript(SCI_SETMARGINWIDTHN, margin, 0);
  SendTranscript(SCI_SETMARGINLEFT, 0, 6);
  SendTranscript(SCI_SETWRAPMODE, SC_WRAP_WORD);
  SendTranscript(SCI_SETHSCROLLBAR, 0);
  SendTranscript(SCI_SETVSCROLLBAR, 1);
  SendTranscript(SCI_SETCARETWIDTH, 0);
  SendTranscript(SCI_USEPOPUP, SC_POPUP_NEVER);
  StyleTranscript();
}

bool TranscriptHasText() { return g_panel.transcript && SendTranscript(SCI_GETLENGTH) > 0; }

void CopyTranscript() {
  if (SendTranscript(SCI_GETSELECTIONEND) > SendTranscript(SCI_GETSELECTIONSTART)) {
    SendTranscript(SCI_COPY);
    return;
  }
  // No selection: the whole conversation, and the caret back at the end.
  SendTranscript(SCI_SELECTALL);
  SendTranscript(SCI_COPY);
  SendTranscript(SCI_GOTOPOS, SendTranscript(SCI_GETLENGTH));
}

POINT MenuPoint(HWND control, LPARAM lParam, POINT caret) {
  POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  if (point.x == -1 && point.y == -1) {  // from the keyboard: at the caret
    point = caret;
    ClientToScreen(control, &point);
  }
  return point;
}

void ShowTranscriptMenu(POINT screenPoint) {
  const bool hasText = TranscriptHasText();
  const std::vector<MenuEntry> entries = {MenuRow(L"Copy", L"", kTranscriptMenuCopy, hasText), MenuSeparator(),
                                          MenuRow(L"Select All", L"", kTranscriptMenuSelectAll, hasText),
                                          MenuSeparator(), MenuRow(L"Clear Response", L"", kTranscriptMenuClear, hasText)};
  ShowPopupMenu(entries, true, g_panel.panel, screenPoint, TPM_RIGHTBUTTON);
}

// The reader moved the view: pointer buttons, the wheel, keys, scrolling.
bool MovesTheView(UINT message) {
  return (message >= WM_LBUTTONDOWN && message <= WM_MBUTTONDBLCLK) || message == WM_MOUSEWHEEL ||
         message == WM_KEYDOWN || message == WM_KEYUP || message == WM_VSCROLL || message == WM_HSCROLL;
}

void ReportTypingEnded(bool stopped) {
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_TYPING_ENDED, stopped ? 1 : 0, 0);
}

LRESULT CALLBACK TranscriptSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  if (MovesTheView(message) && message != WM_RBUTTONUP) {
    LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    AnimatorNoteViewMoved(GetTypingAnimator());
    return result;
  }
  switch (message) {
    case WM_SETFOCUS:
      ClearEditorSelection();
      ClearInputSelection(g_panel.input);
      break;
    case WM_CONTEXTMENU:
    case WM_RBUTTONUP: {
      POINT caret = {};
      const LRESULT position = SendTranscript(SCI_GETCURRENTPOS);
      caret.x = static_cast<LONG>(SendTranscript(SCI_POINTXFROMPOSITION, 0, position));
      caret.y = static_cast<LONG>(SendTranscript(SCI_POINTYFROMPOSITION, 0, position));
      POINT point = MenuPoint(window, lParam, caret);
      if (message == WM_RBUTTONUP) ClientToScreen(window, &point);
      ShowTranscriptMenu(point);
      return 0;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(window, TranscriptSubclass, kTranscriptSubclassId);
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

// ---- input box -----------------------------------------------------------

void MeasureInput() {
  if (!g_panel.input || !g_panel.scroll) return;
  RECT client;
  GetClientRect(g_panel.input, &client);
  HDC dc = GetDC(g_panel.input);
  HGDIOBJ old = SelectObject(dc, g_panel.inputFont);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  SelectObject(dc, old);
  ReleaseDC(g_panel.input, dc);
  RECT track;
  GetClientRect(g_panel.scroll, &track);
  const int lineCount = static_cast<int>(SendMessageW(g_panel.input, EM_GETLINECOUNT, 0, 0));
  const int firstLine = static_cast<int>(SendMessageW(g_panel.input, EM_GETFIRSTVISIBLELINE, 0, 0));
  g_panel.inputScroll = MeasureInputScroll(lineCount, firstLine, client.bottom,
                                           metrics.tmHeight + metrics.tmExternalLeading, track.bottom);
  ShowWindow(g_panel.scroll, g_panel.inputScroll.visible ? SW_SHOW : SW_HIDE);
  InvalidateRect(g_panel.scroll, nullptr, FALSE);
}

void ScrollInputTo(int firstLine) {
  const InputScroll& scroll = g_panel.inputScroll;
  const int last = scroll.max - scroll.page + 1;
  if (firstLine > last) firstLine = last;
  if (firstLine < 0) firstLine = 0;
  const int now = static_cast<int>(SendMessageW(g_panel.input, EM_GETFIRSTVISIBLELINE, 0, 0));
  if (firstLine != now) SendMessageW(g_panel.input, EM_LINESCROLL, 0, firstLine - now);
  MeasureInput();
}

void ShowInputMenu(HWND input, POINT screenPoint) {
  DWORD start = 0, end = 0;
  SendMessageW(input, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const bool selection = end > start;
  const bool hasText = GetWindowTextLengthW(input) > 0;
  const MenuEntry separator = MenuSeparator();
  const std::vector<MenuEntry> entries = {
      MenuRow(L"Undo", L"", kInputMenuFirst, SendMessageW(input, EM_CANUNDO, 0, 0) != 0), separator,
      MenuRow(L"Cut", L"", kInputMenuFirst + 1, selection), MenuRow(L"Copy", L"", kInputMenuFirst + 2, selection),
      MenuRow(L"Paste", L"", kInputMenuFirst + 3, ClipboardHasText()),
      MenuRow(L"Delete", L"", kInputMenuFirst + 4, selection), separator,
      MenuRow(L"Select All", L"", kInputMenuFirst + 5, hasText)};
  ShowPopupMenu(entries, true, g_panel.panel, screenPoint, TPM_RIGHTBUTTON);
}

void PaintPlaceholder(HWND input) {
  if (GetWindowTextLengthW(input) > 0) return;
  HDC dc = GetDC(input);
  HGDIOBJ old = SelectObject(dc, g_panel.inputFont);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, CurrentTheme().mutedText);
  TextOutW(dc, 4, 2, kPlaceholder, static_cast<int>(wcslen(kPlaceholder)));
  SelectObject(dc, old);
  ReleaseDC(input, dc);
}

LRESULT CALLBACK InputSubclass(HWND input, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  switch (message) {
    case WM_CHAR:
      if (!InputTakesCharacter(static_cast<size_t>(GetWindowTextLengthW(input)), static_cast<unsigned>(wParam))) {
        SetPanelStatus(L"Maximum: 80000 characters");
        return 0;
      }
      break;
    case WM_PASTE: {
      LRESULT result = DefSubclassProc(input, message, wParam, lParam);
      if (static_cast<size_t>(GetWindowTextLengthW(input)) > kInputLimit) {
        SetWindowTextW(input, CutToInputLimit(WindowText(input)).c_str());
        const int length = GetWindowTextLengthW(input);
        SendMessageW(input, EM_SETSEL, length, length);
        SendMessageW(input, EM_SCROLLCARET, 0, 0);
        SetPanelStatus(L"Query truncated to 80000 characters");
      }
      MeasureInput();
      return result;
    }
    case WM_KEYDOWN:
      if (wParam == VK_RETURN && !(GetKeyState(VK_SHIFT) & 0x8000)) {
        PostMessageW(g_panel.panel, WM_COMMAND, MAKEWPARAM(kPanelSendButtonId, 0), 0);
        return 0;
      }
      break;
    case WM_SETFOCUS:
      if (!g_aiGenerating.load()) SetPanelStatus(L"Ready");
      ClearEditorSelection();
      ClearTranscriptSelection(g_panel.transcript);
      break;
    case WM_PAINT: {
      LRESULT result = DefSubclassProc(input, message, wParam, lParam);
      PaintPlaceholder(input);
      return result;
    }
    case WM_MOUSEWHEEL:
      if (g_panel.scroll && IsWindowVisible(g_panel.scroll)) return SendMessageW(g_panel.scroll, message, wParam, lParam);
      break;
    case WM_ERASEBKGND:
      if (g_panel.draggingSplitter) return 1;
      break;
    case WM_CONTEXTMENU:
    case WM_RBUTTONUP: {
      DWORD start = 0, end = 0;
      SendMessageW(input, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
      const LRESULT at = SendMessageW(input, EM_POSFROMCHAR, end, 0);
      POINT caret = {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
      POINT point = MenuPoint(input, lParam, caret);
      if (message == WM_RBUTTONUP) ClientToScreen(input, &point);
      ShowInputMenu(input, point);
      return 0;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(input, InputSubclass, kInputSubclassId);
      break;
  }
  return DefSubclassProc(input, message, wParam, lParam);
}

// ---- input scroll bar ----------------------------------------------------

RECT ThumbRect(HWND scroll) {
  RECT track;
  GetClientRect(scroll, &track);
  return {2, g_panel.inputScroll.thumbTop, track.right - 2, g_panel.inputScroll.thumbTop + g_panel.inputScroll.thumbHeight};
}

void PaintScroll(HWND scroll) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(scroll, &paint);
  RECT track;
  GetClientRect(scroll, &track);
  const ThemeColors& row = CurrentTheme();
  HBRUSH trackBrush = CreateSolidBrush(row.editorBackground);
  FillRect(dc, &track, trackBrush);
  DeleteObject(trackBrush);
  RECT thumb = ThumbRect(scroll);
  HBRUSH thumbBrush = CreateSolidBrush(row.controlBorder);
  HGDIOBJ oldBrush = SelectObject(dc, thumbBrush);
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  RoundRect(dc, thumb.left, thumb.top, thumb.right + 1, thumb.bottom + 1, 4, 4);
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(thumbBrush);
  EndPaint(scroll, &paint);
}

LRESULT CALLBACK ScrollProc(HWND scroll, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      PaintScroll(scroll);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_LBUTTONDOWN: {
      const int y = static_cast<short>(HIWORD(lParam));
      const RECT thumb = ThumbRect(scroll);
      const InputScroll& state = g_panel.inputScroll;
      if (y >= thumb.top && y < thumb.bottom) {
        g_panel.draggingThumb = true;
        g_panel.thumbGrabOffset = y - thumb.top;
        SetCapture(scroll);
      } else {
        ScrollInputTo(state.position + (y < thumb.top ? -state.page : state.page));
      }
      return 0;
    }
    case WM_MOUSEMOVE:
      if (g_panel.draggingThumb) {
        RECT track;
        GetClientRect(scroll, &track);
        const InputScroll& state = g_panel.inputScroll;
        const int room = track.bottom - state.thumbHeight;
        const int range = state.max - state.page + 1;
        const int top = static_cast<short>(HIWORD(lParam)) - g_panel.thumbGrabOffset;
        if (room > 0) ScrollInputTo(top * range / room);
      }
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      if (g_panel.draggingThumb) {
        g_panel.draggingThumb = false;
        if (message == WM_LBUTTONUP) ReleaseCapture();
      }
      return 0;
    case WM_MOUSEWHEEL: {
      const int notches = GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA;
      ScrollInputTo(g_panel.inputScroll.position - notches * kWheelLines);
      return 0;
    }
  }
  return DefWindowProcW(scroll, message, wParam, lParam);
}

// ---- panel ---------------------------------------------------------------

void LayOutPanel() {
  RECT client;
  GetClientRect(g_panel.panel, &client);
  const PanelLayout layout = ComputePanelLayout(client.right, client.bottom, g_panel.inputHeight);
  g_panel.splitterTop = layout.splitterTop;
  const struct {
    HWND window;
    PanelBox box;
  } moves[] = {
      {g_panel.title, layout.title},           {g_panel.history, layout.history},
      {g_panel.connection, layout.connection}, {g_panel.transcript, layout.transcript},
      {g_panel.input, layout.input},           {g_panel.scroll, layout.inputScroll},
      {g_panel.aiSettings, layout.aiSettings}, {g_panel.newChat, layout.newChat},
      {g_panel.send, layout.send},             {g_panel.status, layout.status},
  };
  HDWP batch = BeginDeferWindowPos(10);
  for (const auto& move : moves) {
    if (!batch || !move.window) continue;
    batch = DeferWindowPos(batch, move.window, nullptr, move.box.x, move.box.y, move.box.width, move.box.height,
                           SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (batch) EndDeferWindowPos(batch);
  MeasureInput();
  InvalidateRect(g_panel.panel, nullptr, TRUE);
}

bool InSplitter(int y) { return y >= g_panel.splitterTop && y < g_panel.splitterTop + kSplitterHeight; }

void PaintPanel(HWND panel) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(panel, &paint);
  RECT client;
  GetClientRect(panel, &client);
  const ThemeColors& row = CurrentTheme();
  FillRect(dc, &client, g_panel.panelBrush);
  // The splitter band: two lines along its edges and a grip of seven dashes.
  HPEN pen = CreatePen(PS_SOLID, 1, row.separator);
  HGDIOBJ old = SelectObject(dc, pen);
  const int top = g_panel.splitterTop, bottom = g_panel.splitterTop + kSplitterHeight - 1;
  MoveToEx(dc, 0, top, nullptr);
  LineTo(dc, client.right, top);
  MoveToEx(dc, 0, bottom, nullptr);
  LineTo(dc, client.right, bottom);
  const int middle = client.right / 2, gripY = top + kSplitterHeight / 2;
  for (int x = -18; x <= 18; x += 6) {
    MoveToEx(dc, middle + x - 2, gripY, nullptr);
    LineTo(dc, middle + x + 2, gripY);
  }
  SelectObject(dc, old);
  DeleteObject(pen);
  EndPaint(panel, &paint);
}

void DrawPanelButton(const DRAWITEMSTRUCT* item) {
  PanelButtonKind kind = PanelButtonKind::kPlain;
  if (item->itemState & ODS_DISABLED) kind = PanelButtonKind::kDisabled;
  else if (item->CtlID == kPanelSendButtonId) kind = g_aiGenerating.load() ? PanelButtonKind::kSendGenerating
                                                                          : PanelButtonKind::kSendIdle;
  PaintPanelButton(item, g_panel.panelBrush, kind, g_panel.buttonFont);
}

void ShowHistoryMenu() {
  if (g_aiGenerating.load()) return;
  if (!g_settings.keepHistory) {
    SetPanelStatus(L"Chat history is disabled in Settings");
    return;
  }
  ChatHistoryManager& store = GetChatHistory();
  std::vector<MenuEntry> entries;
  for (size_t i = 0; i < store.chats.size(); ++i) {
    const ChatInfo& chat = store.chats[i];
    if (chat.messages.empty()) continue;
    MenuEntry row;
    row.label = HistoryMenuRowText(chat.title);
    row.id = kHistoryRowFirst + static_cast<int>(i);
    row.isChecked = i == store.currentIndex;
    entries.push_back(row);
  }
  if (store.chats.empty()) entries.push_back(MenuRow(L"No chats available", L"", 0, false));
  entries.push_back(MenuSeparator());
  entries.push_back(MenuRow(L"Rename Current Chat", L"", kHistoryRename, true));
  entries.push_back(MenuRow(L"Delete Current Chat", L"", kHistoryDelete, true));
  entries.push_back(MenuRow(L"Delete All Chats", L"", kHistoryDeleteAll, true));
  RECT button;
  GetWindowRect(g_panel.history, &button);
  ShowPopupMenu(entries, false, g_panel.panel, {button.left, button.bottom}, TPM_LEFTALIGN | TPM_TOPALIGN);
}

void OnNewChat() {
  ChatHistoryManager& store = GetChatHistory();
  NewChat(store);
  RefreshHistoryButton();
  ClearTranscript();
  if (const ChatInfo* chat = CurrentChat(store)) WriteChatStartLine(chat->createdAt);
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_CLEAR_CONVERSATION, 0, 0);
  SetPanelStatus(L"New chat started");
}

void OnSend() {
  if (g_aiGenerating.load()) {
    SetWindowTextW(g_panel.send, kStoppingText);
    InvalidateRect(g_panel.send, nullptr, FALSE);
    if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_STOP, 0, 0);
    return;
  }
  const std::wstring text = WindowText(g_panel.input);
  if (text.empty()) return;
  const std::wstring message = TrimMessage(text);
  if (!message.empty() && g_hwndMain) PostHeapText(g_hwndMain, WM_AI_SEND, message);
  SetWindowTextW(g_panel.input, L"");
  SetFocus(g_panel.input);
  MeasureInput();
}

void OnPanelCommand(int id, int code) {
  if (id >= kHistoryRowFirst && id <= kHistoryRowLast) {
    ChatHistoryManager& store = GetChatHistory();
    const size_t row = static_cast<size_t>(id - kHistoryRowFirst);
    if (row < store.chats.size() && g_hwndMain) PostHeapText(g_hwndMain, WM_AI_LOAD_CHAT, store.chats[row].id);
    return;
  }
  if (id >= kInputMenuFirst && id < kInputMenuFirst + 6) {
    const UINT messages[] = {WM_UNDO, WM_CUT, WM_COPY, WM_PASTE, WM_CLEAR, EM_SETSEL};
    const UINT message = messages[id - kInputMenuFirst];
    if (message == EM_SETSEL) SendMessageW(g_panel.input, EM_SETSEL, 0, -1);
    else SendMessageW(g_panel.input, message, 0, 0);
    SetFocus(g_panel.input);
    return;
  }
  switch (id) {
    case kPanelSendButtonId:
    case kPanelSendCommandId:
      OnSend();
      return;
    case kPanelAiSettingsButtonId:
      ShowAiSettingsDialog(g_hwndMain ? g_hwndMain : g_panel.panel);
      return;
    case kPanelNewChatButtonId:
      OnNewChat();
      return;
    case kPanelHistoryButtonId:
      ShowHistoryMenu();
      return;
    case kHistoryRename:
      PostMessageW(g_panel.panel, WM_PANEL_RENAME_CHAT, 0, 0);
      return;
    case kHistoryDelete:
      PostMessageW(g_panel.panel, WM_PANEL_DELETE_CHAT, 0, 0);
      return;
    case kHistoryDeleteAll:
      PostMessageW(g_panel.panel, WM_PANEL_DELETE_ALL_CHATS, 0, 0);
      return;
    case kTranscriptMenuCopy:
      CopyTranscript();
      return;
    case kTranscriptMenuSelectAll:
      SendTranscript(SCI_SELECTALL);
      return;
    case kTranscriptMenuClear:
      ClearTranscript();
      return;
  }
  if (id == kInputBoxId && code == EN_CHANGE) MeasureInput();
  if (id == kInputBoxId && (code == EN_VSCROLL)) MeasureInput();
}

void OnDeleteChat() {
  ChatHistoryManager& store = GetChatHistory();
  ChatInfo* chat = CurrentChat(store);
  if (!chat) return;
  const std::wstring text = L"Delete chat \"" + chat->title + L"\"?";
  if (ShowMessageBox(g_hwndMain, kBoxYesNo, L"Delete Chat", text.c_str()) != kResultYes) return;
  DeleteChat(store, chat->id);
  RefreshHistoryButton();
  ClearTranscript();
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_CLEAR_CONVERSATION, 0, 0);
  ChatInfo* next = CurrentChat(store);
  if (next && !next->messages.empty()) {
    wchar_t* id = HeapCopyText(next->id);
    if (id && !PostMessageW(g_hwndMain, WM_AI_LOAD_CHAT, 2, reinterpret_cast<LPARAM>(id))) FreeHeapText(id);
    return;
  }
  if (next) WriteChatStartLine(next->createdAt);
  SetPanelStatus(L"Chat deleted");
}

void OnDeleteAllChats() {
  if (ShowMessageBox(g_hwndMain, kBoxYesNo, L"Delete All Chats", L"Delete ALL chat history?\nThis cannot be undone.") !=
      kResultYes)
    return;
  ChatHistoryManager& store = GetChatHistory();
  DeleteAllChats(store);
  RefreshHistoryButton();
  ClearTranscript();
  AppendTranscript(L"\nAll Chat History deleted. Start typing to begin a new conversation.\n\n");
  if (const ChatInfo* chat = CurrentChat(store)) WriteChatStartLine(chat->createdAt);
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_CLEAR_CONVERSATION, 0, 0);
  SetPanelStatus(L"All chats deleted");
}

void OnRenameChat() {
  ChatHistoryManager& store = GetChatHistory();
  ChatInfo* chat = CurrentChat(store);
  if (!chat) return;
  const std::wstring id = chat->id;
  std::wstring title = chat->title;
  if (!ShowRenameChatDialog(g_hwndMain, title) || title.empty()) return;
  for (ChatInfo& row : store.chats)  // the chat with that id, wherever the dialog left the store
    if (row.id == id) row.title = title;
  WriteIndex(store);
  RefreshHistoryButton();
  SetPanelStatus(L"Chat renamed");
}

LRESULT CALLBACK PanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      LayOutPanel();
      return 0;
    case WM_PAINT:
      PaintPanel(panel);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SETCURSOR: {
      const HWND over = reinterpret_cast<HWND>(wParam);
      if (over == g_panel.history || over == g_panel.aiSettings || over == g_panel.newChat || over == g_panel.send) {
        SetCursor(LoadCursorW(nullptr, IDC_HAND));
        return TRUE;
      }
      if (over == panel && LOWORD(lParam) == HTCLIENT) {
        POINT point;
        GetCursorPos(&point);
        ScreenToClient(panel, &point);
        SetCursor(LoadCursorW(nullptr, InSplitter(point.y) ? IDC_SIZENS : IDC_ARROW));
        return TRUE;
      }
      break;
    }
    case WM_LBUTTONDOWN: {
      const int y = static_cast<short>(HIWORD(lParam));
      if (InSplitter(y)) {
        g_panel.draggingSplitter = true;
        g_panel.dragStartY = y;
        g_panel.dragStartHeight = g_panel.inputHeight;
        SetCapture(panel);
        SendMessageW(g_panel.input, WM_SETREDRAW, FALSE, 0);
      }
      return 0;
    }
    case WM_MOUSEMOVE:
      if (g_panel.draggingSplitter) {
        const int y = static_cast<short>(HIWORD(lParam));
        const int height = DraggedInputHeight(g_panel.dragStartHeight, g_panel.dragStartY - y);
        if (height != g_panel.inputHeight) {
          g_panel.inputHeight = height;
          LayOutPanel();
        }
      }
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      if (g_panel.draggingSplitter) {
        g_panel.draggingSplitter = false;
        if (message == WM_LBUTTONUP) ReleaseCapture();
        SendMessageW(g_panel.input, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(g_panel.input, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
      }
      return 0;
    case WM_DRAWITEM:
      if (DrawMenuItem(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) return TRUE;
      DrawPanelButton(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_MEASUREITEM:
      if (MeasureMenuItem(panel, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
      break;
    case WM_CTLCOLORSTATIC: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      const ThemeColors& row = CurrentTheme();
      SetBkColor(dc, row.windowBackground);
      SetTextColor(dc, reinterpret_cast<HWND>(lParam) == g_panel.title ? row.dialogText : row.mutedText);
      return reinterpret_cast<LRESULT>(g_panel.panelBrush);
    }
    case WM_CTLCOLOREDIT: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      const ThemeColors& row = CurrentTheme();
      SetBkColor(dc, row.editorBackground);
      SetTextColor(dc, row.editorText);
      return reinterpret_cast<LRESULT>(g_panel.inputBrush);
    }
    case WM_COMMAND:
      OnPanelCommand(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_PANEL_RENAME_CHAT:
      OnRenameChat();
      return 0;
    case WM_PANEL_DELETE_CHAT:
      OnDeleteChat();
      return 0;
    case WM_PANEL_DELETE_ALL_CHATS:
      OnDeleteAllChats();
      return 0;
    case WM_DESTROY:
      {
        TypingAnimator& animator = GetTypingAnimator();
        std::lock_guard<std::mutex> lock(animator.targetLock);
        animator.target = nullptr;
      }
      for (HFONT font : {g_panel.titleFont, g_panel.buttonFont, g_panel.inputFont, g_panel.statusFont})
        if (font) DeleteObject(font);
      for (HBRUSH brush : {g_panel.panelBrush, g_panel.inputBrush})
        if (brush) DeleteObject(brush);
      g_panel = PanelState();
      if (g_hwndAiPanel == panel) g_hwndAiPanel = nullptr;
      return 0;
  }
  return DefWindowProcW(panel, message, wParam, lParam);
}

void MakeBrushes() {
  if (g_panel.panelBrush) DeleteObject(g_panel.panelBrush);
  if (g_panel.inputBrush) DeleteObject(g_panel.inputBrush);
  g_panel.panelBrush = CreateSolidBrush(CurrentTheme().windowBackground);
  g_panel.inputBrush = CreateSolidBrush(CurrentTheme().editorBackground);
}

bool RegisterPanelClasses() {
  if (g_classesRegistered) return true;
  WNDCLASSEXW panel = {};
  panel.cbSize = sizeof(panel);
  panel.lpfnWndProc = PanelProc;
  panel.hInstance = g_hInstance;
  panel.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  panel.lpszClassName = kPanelClass;
  WNDCLASSEXW scroll = panel;
  scroll.lpfnWndProc = ScrollProc;
  scroll.lpszClassName = kScrollClass;
  g_classesRegistered = RegisterClassExW(&panel) != 0 && RegisterClassExW(&scroll) != 0;
  return g_classesRegistered;
}

HWND Child(const wchar_t* className, const wchar_t* text, DWORD style, int id, DWORD extended = 0) {
  return CreateWindowExW(extended, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 10, 10, g_panel.panel,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), g_hInstance, nullptr);
}

}  // namespace

void PaintPanelButton(const DRAWITEMSTRUCT* item, HBRUSH background, PanelButtonKind kind, HFONT font) {
  const bool dark = IsDarkTheme();
  HDC dc = item->hDC;
  RECT rect = item->rcItem;
  FillRect(dc, &rect, background);
  HBRUSH fill = CreateSolidBrush(PanelButtonFill(dark, kind, (item->itemState & ODS_SELECTED) != 0));
  HGDIOBJ oldBrush = SelectObject(dc, fill);
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  if (dark) {
    FillRect(dc, &rect, fill);  // a plain rectangle in dark themes
  } else {
    RoundRect(dc, rect.left, rect.top, rect.right + 1, rect.bottom + 1, 8, 8);
  }
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(fill);
  const ThemeColors& row = CurrentTheme();
  SetTextColor(dc, kind == PanelButtonKind::kDisabled ? row.controlTextDisabled : row.controlText);
  SetBkMode(dc, TRANSPARENT);
  HGDIOBJ oldFont = font ? SelectObject(dc, font) : nullptr;
  const std::wstring text = WindowText(item->hwndItem);
  DrawTextW(dc, text.c_str(), -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  if (oldFont) SelectObject(dc, oldFont);
}

HWND CreateAiPanel(HWND parent) {
  if (!RegisterPanelClasses()) return nullptr;
  g_panel = PanelState();
  g_panel.panel = CreateWindowExW(0, kPanelClass, L"", WS_CHILD | WS_CLIPCHILDREN, 0, 0, 1, 1, parent,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(kAiPanelId)), g_hInstance, nullptr);
  if (!g_panel.panel) return nullptr;
  g_panel.titleFont = MakeFont(-12, FW_BOLD);  // "  ⚜  Tavro AI" within its 90 pixels
  g_panel.buttonFont = MakeFont(-12, FW_NORMAL);
  g_panel.inputFont = MakeFont(-16, FW_NORMAL);
  g_panel.statusFont = MakeFont(-12, FW_NORMAL);
  MakeBrushes();

  g_panel.title = Child(L"STATIC", kTitleText, SS_LEFT | SS_CENTERIMAGE, kPanelTitleId);
  g_panel.connection = Child(L"STATIC", L"", SS_RIGHT | SS_CENTERIMAGE, kPanelConnectionId);
  g_panel.history = Child(L"BUTTON", L"Chat History", BS_OWNERDRAW, kPanelHistoryButtonId);
  g_panel.transcript = Child(L"Scintilla", L"", WS_VSCROLL, kTranscriptId);
  g_panel.input = Child(L"EDIT", L"", ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN, kInputBoxId);
  g_panel.scroll = CreateWindowExW(0, kScrollClass, L"", WS_CHILD, 0, 0, 10, 10, g_panel.panel, nullptr, g_hInstance,
                                   nullptr);
  g_panel.aiSettings = Child(L"BUTTON", L"AI Settings", BS_OWNERDRAW, kPanelAiSettingsButtonId);
  g_panel.newChat = Child(L"BUTTON", L"New Chat", BS_OWNERDRAW, kPanelNewChatButtonId);
  g_panel.send = Child(L"BUTTON", kSendIdleText, BS_OWNERDRAW, kPanelSendButtonId);
  g_panel.status = Child(L"STATIC", L"Ready", SS_LEFT, kPanelStatusId);
  if (!g_panel.transcript || !g_panel.input) {
    DestroyWindow(g_panel.panel);
    return nullptr;
  }

  SendMessageW(g_panel.title, WM_SETFONT, reinterpret_cast<WPARAM>(g_panel.titleFont), FALSE);
  for (HWND control : {g_panel.connection, g_panel.status})
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(g_panel.statusFont), FALSE);
  SendMessageW(g_panel.input, WM_SETFONT, reinterpret_cast<WPARAM>(g_panel.inputFont), FALSE);
  // No limit of the control's own (30000 by default): the box's limit is
  // the 80000 of its subclass, which a paste may pass before it is cut.
  SendMessageW(g_panel.input, EM_SETLIMITTEXT, 0, 0);
  SetWindowTheme(g_panel.input, L"", L"");
  SetUpTranscript();
  SetWindowSubclass(g_panel.transcript, TranscriptSubclass, kTranscriptSubclassId, 0);
  SetWindowSubclass(g_panel.input, InputSubclass, kInputSubclassId, 0);
  TypingAnimator& animator = GetTypingAnimator();
  animator.target = g_panel.transcript;
  animator.onFinished = ReportTypingEnded;
  AnimatorSetDelay(animator, static_cast<int>(g_settings.typingDelayMs));
  AnimatorSetEnabled(animator, g_settings.typingAnimation != 0);
  g_hwndAiPanel = g_panel.panel;
  RefreshHistoryButton();
  RefreshConnectionLabels();
  return g_panel.panel;
}

void SetGeneratingState(bool generating) {
  g_aiGenerating.exchange(generating ? 1 : 0);
  if (!g_panel.panel) return;
  SetWindowTextW(g_panel.send, generating ? kSendGeneratingText : kSendIdleText);
  InvalidateRect(g_panel.send, nullptr, FALSE);
  for (HWND button : {g_panel.aiSettings, g_panel.newChat, g_panel.history}) EnableWindow(button, !generating);
  if (!generating) RefreshHistoryButton();  // its own rule may keep it disabled
}

void AppendTranscript(const std::wstring& text) {
  if (!g_panel.transcript || text.empty()) return;
  const bool atEnd = TranscriptViewAtEnd(g_panel.transcript);
  const LRESULT firstVisible = SendTranscript(SCI_GETFIRSTVISIBLELINE);
  const LRESULT onScreen = SendTranscript(SCI_LINESONSCREEN);
  const LRESULT xOffset = SendTranscript(SCI_GETXOFFSET);
  const std::string utf8 = WideToUtf8(text);
  SendTranscript(SCI_SETREADONLY, 0);
  SendTranscript(SCI_APPENDTEXT, utf8.size(), reinterpret_cast<LPARAM>(utf8.data()));
  SendTranscript(SCI_SETREADONLY, 1);
  if (!atEnd) {  // the reader had scrolled up
    SendTranscript(SCI_SETFIRSTVISIBLELINE, firstVisible);
    SendTranscript(SCI_SETXOFFSET, xOffset);
    return;
  }
  const LRESULT newLast = SendTranscript(SCI_VISIBLEFROMDOCLINE, SendTranscript(SCI_GETLINECOUNT) - 1);
  LRESULT first = newLast - onScreen + 1;
  SendTranscript(SCI_SETFIRSTVISIBLELINE, first < 0 ? 0 : first);
}

intptr_t TranscriptLength() { return g_panel.transcript ? static_cast<intptr_t>(SendTranscript(SCI_GETLENGTH)) : -1; }

void ReplaceTranscriptTail(intptr_t from, const std::wstring& text) {
  if (!g_panel.transcript) return;
  const LRESULT length = SendTranscript(SCI_GETLENGTH);
  if (from < 0 || from > length) return;
  const std::string utf8 = WideToUtf8(text);
  SendTranscript(SCI_SETREADONLY, 0);
  SendTranscript(SCI_DELETERANGE, from, length - from);
  if (!utf8.empty()) SendTranscript(SCI_APPENDTEXT, utf8.size(), reinterpret_cast<LPARAM>(utf8.data()));
  SendTranscript(SCI_SETREADONLY, 1);
}

void ScrollTranscriptToEnd() {
  if (!g_panel.transcript) return;
  SendTranscript(SCI_GOTOPOS, SendTranscript(SCI_GETLENGTH));
  SendTranscript(SCI_SCROLLCARET);
}

void WriteDisclaimer() {
  if (!g_panel.transcript) return;
  const LRESULT start = SendTranscript(SCI_GETLENGTH);
  AppendTranscript(kDisclaimerText);
  SendTranscript(SCI_STARTSTYLING, start);
  SendTranscript(SCI_SETSTYLING, SendTranscript(SCI_GETLENGTH) - start, kNoteStyle);
}

void ClearTranscript() {
  if (!g_panel.transcript) return;
  SendTranscript(SCI_SETREADONLY, 0);
  SendTranscript(SCI_CLEARALL);
  SendTranscript(SCI_SETREADONLY, 1);
  if (g_panel.input) SetWindowTextW(g_panel.input, L"");
  MeasureInput();
  RefreshConnectionLabels();
}

void WriteChatStartLine(const std::wstring& createdAt) {
  SYSTEMTIME now;
  GetLocalTime(&now);
  AppendTranscript(ChatStartLine(createdAt, now.wHour, now.wMinute));
}

void WriteUserMessage(const std::wstring& text) { AppendTranscript(TranscriptEntry(true, text)); }

void WriteAiMessage(const std::wstring& text) { AppendTranscript(TranscriptEntry(false, text)); }

void RefreshHistoryButton() {
  if (!g_panel.history) return;
  const ChatInfo* chat = CurrentChat(GetChatHistory());
  const bool keep = g_settings.keepHistory != 0;
  const std::wstring text = HistoryButtonText(keep, chat && !chat->messages.empty(), chat ? chat->title : L"");
  EnableWindow(g_panel.history, keep && !g_aiGenerating.load());
  if (WindowText(g_panel.history) != text) {
    SetWindowTextW(g_panel.history, text.c_str());
    InvalidateRect(g_panel.history, nullptr, FALSE);
  }
}

namespace {

void ShowConnectionTexts(ConnectionTexts (*texts)(bool hasKey, bool online)) {
  if (!g_panel.connection) return;
  const ConnectionTexts shown = texts(g_settings.apiKey[0] != L'\0', g_isOnline.load());
  SetPanelStatus(shown.status);
  SetWindowTextW(g_panel.connection, shown.label.c_str());
}

}  // namespace

void RefreshConnectionLabels() { ShowConnectionTexts(ConnectionLabelTexts); }

void RefreshAfterStatusMessage() { ShowConnectionTexts(StatusRefreshTexts); }

void SetPanelStatus(const std::wstring& text) {
  if (g_panel.status) SetWindowTextW(g_panel.status, text.c_str());
}

void SetPanelConnectionText(const std::wstring& text) {
  SetPanelStatus(text);
  if (g_panel.connection) SetWindowTextW(g_panel.connection, text.c_str());
}

void ApplyPanelTheme() {
  if (!g_panel.panel) return;
  MakeBrushes();
  StyleTranscript();
  RedrawWindow(g_panel.panel, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

namespace {

// The live conversation becomes the chat's messages (empty without a chat).
void FillLiveHistory(const ChatInfo* chat) {
  EnterCriticalSection(&g_aiHistoryLock);
  g_aiLiveHistory.clear();
  if (chat)
    for (const ChatMessage& message : chat->messages) g_aiLiveHistory.push_back({message.isUser, message.text});
  LeaveCriticalSection(&g_aiHistoryLock);
}

// Its start line and messages into the transcript.
void WriteChat(const ChatInfo& chat) {
  WriteChatStartLine(chat.createdAt);
  for (const ChatMessage& message : chat.messages) {
    if (message.isUser) WriteUserMessage(message.text);
    else WriteAiMessage(message.text);
  }
}

}  // namespace

void ReplayCurrentChat(bool atStartUp) {
  if (!g_panel.panel) return;
  ClearLiveConversation();
  ClearTranscript();
  RefreshHistoryButton();
  if (!g_settings.keepHistory) {
    if (!atStartUp) SetPanelStatus(kNoKeyStatus);
    return;
  }
  ChatHistoryManager& store = GetChatHistory();
  LoadAll(store);  // runs once a process: makes sure there is a chat list
  const ChatInfo* chat = CurrentChat(store);
  if (!chat || chat->messages.empty()) {
    // Start-up shows an empty chat's start line; the switch shows nothing.
    if (chat && atStartUp) WriteChatStartLine(chat->createdAt);
    if (!atStartUp) SetPanelStatus(kNoKeyStatus);
    return;
  }
  FillLiveHistory(chat);
  WriteChat(*chat);
  RefreshHistoryButton();
  if (!atStartUp) SetPanelStatus(g_settings.apiKey[0] ? L"Connected" : L"Not connected");
}

void OnLoadChat(WPARAM wParam, wchar_t* chatId) {
  const std::wstring id = chatId ? chatId : L"";
  FreeHeapText(chatId);
  if (!g_settings.keepHistory) {
    SetPanelStatus(L"Chat history is disabled in Settings");
    return;
  }
  ChatHistoryManager& store = GetChatHistory();
  if (wParam != 2) {
    const ChatInfo* current = CurrentChat(store);
    if (current && current->id == id) return;
    if (!SwitchToChat(store, id)) {
      SetPanelStatus(L"Failed to load chat");
      return;
    }
  }
  const ChatInfo* chat = CurrentChat(store);
  FillLiveHistory(chat);
  ClearTranscript();
  if (chat) WriteChat(*chat);
  RefreshHistoryButton();
  SetPanelStatus(L"Chat loaded");
}

void ClearLiveConversation() {
  EnterCriticalSection(&g_aiHistoryLock);
  g_aiLiveHistory.clear();
  g_aiAnswerBuffer.clear();
  LeaveCriticalSection(&g_aiHistoryLock);
}

bool FocusIsInChat() {
  HWND focus = GetFocus();
  return focus && (focus == g_panel.transcript || focus == g_panel.input);
}
