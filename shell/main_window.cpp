// The main window: hub of the program. It creates the children, lays them
// out, takes the editor's notifications, runs the timers, accepts dropped
// files and closes down in a fixed order.
#include <windows.h>

#include <commctrl.h>
#include <mmsystem.h>
#include <shellapi.h>
#include <windowsx.h>
#include <uxtheme.h>

#include <string>

#include "Scintilla.h"
#include "ai/client/ai_state.h"
#include "ai/chat/chat_store.h"
#include "ai/client/system_context.h"
#include "ai/client/transport.h"
#include "ai/panel/ai_panel.h"
#include "ai/panel/ai_settings_dialog.h"
#include "ai/panel/send_pipeline.h"
#include "ai/panel/chat_selection.h"
#include "base/heap_text.h"
#include "document/document.h"
#include "document/file_watch.h"
#include "document/save_prompt.h"
#include "export/export_note.h"
#include "export/pdf_layout.h"
#include "export/viewer_handoff.h"
#include "presentation/dark_menu.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "search/find_dialog.h"
#include "search/search.h"
#include "settings/settings.h"
#include "shell/commands.h"
#include "shell/editor_menu.h"
#include "shell/layout.h"
#include "shell/open_document.h"
#include "shell/shell.h"
#include "shell/toolbar.h"
#include "shell/typewriter.h"

namespace {

constexpr int kEditorId = 1;
constexpr UINT_PTR kEditorSubclassId = 1;
constexpr UINT kSystemInfoPeriodMs = 60000;

// What WM_CREATE made, so that WM_DESTROY releases that and nothing else:
// after a failed create the window is destroyed before it ever ran.
struct MainWindowLife {
  bool profileMarked = false;  // the two profile properties and the atom
  bool listening = false;      // the document's listeners point here
  bool sessionOpened = false;  // the AI session and its lock
  bool created = false;        // WM_CREATE ran to its end
};

MainWindowLife g_life;
// The profile string whose address the window property carries.
std::wstring g_profileLabel;
// The minimum track width asked for at the last layout.
int g_minimumWidth = 0;

void MoveTo(HWND window, const Box& box) {
  if (window) MoveWindow(window, box.x, box.y, box.width, box.height, TRUE);
}

// Keeps the minimum width for WM_GETMINMAXINFO; a new one makes the system
// ask again through a frame change.
void KeepMinimumWidth(HWND window, int minimum) {
  if (minimum == g_minimumWidth) return;
  g_minimumWidth = minimum;
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void LayOut(HWND window) {
  if (!g_hwndEditor) return;
  RECT client;
  GetClientRect(window, &client);
  int width = client.right, height = client.bottom;
  if (g_viewerMode) {
    MoveWindow(g_hwndEditor, 0, 0, width, height, TRUE);
    return;
  }
  if (g_hwndStatus) {
    // Painted once, by UpdateStatusBar below, not after each of these.
    SendMessageW(g_hwndStatus, WM_SETREDRAW, FALSE, 0);
    SendMessageW(g_hwndStatus, WM_SIZE, 0, 0);
    auto edges = StatusPartEdges(width);
    SendMessageW(g_hwndStatus, SB_SETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
  }
  RECT status = {};
  if (g_hwndStatus) GetWindowRect(g_hwndStatus, &status);
  const bool withPanel = g_settings.editorMode == 1 && g_hwndAiPanel;
  MainLayout layout = ComputeMainLayout(width, height, status.bottom - status.top,
                                        g_lineNumbers ? MarginStripWidth() : 0, withPanel,
                                        static_cast<int>(g_settings.aiPanelPercent));
  MoveTo(g_hwndToolbar, layout.toolbar);
  if (withPanel) {
    g_settings.aiPanelPercent = static_cast<uint32_t>(layout.panelPercent);
    g_aiPanelPercent = layout.panelPercent;
    MoveTo(g_hwndAiPanel, layout.panel);
    if (!IsWindowVisible(g_hwndAiPanel)) {
      ShowWindow(g_hwndAiPanel, SW_SHOW);
      MoveTo(g_hwndAiPanel, layout.panel);
    }
  } else if (g_hwndAiPanel && IsWindowVisible(g_hwndAiPanel)) {
    ShowWindow(g_hwndAiPanel, SW_HIDE);
  }
  MoveTo(g_hwndMargin, layout.strip);
  MoveTo(g_hwndEditor, layout.editor);
  SendEditor(SCI_SETHSCROLLBAR, g_wordWrap ? 0 : 1);
  UpdateStatusBar();
  if (g_hwndMargin) InvalidateRect(g_hwndMargin, nullptr, FALSE);

  KeepMinimumWidth(window, MinimumWindowWidth(withPanel, layout.panelPercent));
}

// Messages 1249 and 32980: make the window at least as large as it must be
// for the mode and panel percentage as they stand now.
void GrowToMinimum(HWND window) {
  KeepMinimumWidth(window, RequiredMinimumWidth(g_settings.editorMode == 1, g_hwndAiPanel != nullptr,
                                                static_cast<int>(g_settings.aiPanelPercent)));
  RECT rect;
  GetWindowRect(window, &rect);
  int width = rect.right - rect.left, height = rect.bottom - rect.top;
  if (width >= g_minimumWidth && height >= kMinimumTrackHeight) return;
  int newWidth = width < g_minimumWidth ? g_minimumWidth : width;
  int newHeight = height < kMinimumTrackHeight ? kMinimumTrackHeight : height;
  SetWindowPos(window, nullptr, 0, 0, newWidth, newHeight, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  PostMessageW(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(newWidth, newHeight));
}

// 32980: with the panel, its history button, a fresh frame and the minimum size.
void OnAiSettingsChanged(HWND window) {
  if (!g_hwndAiPanel) return;
  RefreshHistoryButton();
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
  GrowToMinimum(window);
}

void OnOpenFile(HWND window, wchar_t* path) {
  OutputDebugStringW(L"[WM_USER_OPEN_FILE] Received\n");
  if (!path) return;
  std::wstring line = L"[WM_USER_OPEN_FILE] Path: " + std::wstring(path) + L"\n";
  OutputDebugStringW(line.c_str());
  OpenDocumentPath(window, path, OpenSource::kOpenMessage);
  FreeHeapText(path);
}

void OnDropFiles(HWND window, HDROP drop) {
  wchar_t path[MAX_PATH] = {};
  // Only the first dropped file counts.
  DragQueryFileW(drop, 0, path, MAX_PATH);
  if (DropOpensFile(path, g_filePath) && ConfirmDiscardOrSave(window)) {
    CloseDocumentHandle();
    OpenDocumentPath(window, path, OpenSource::kDrop);
  }
  DragFinish(drop);
}

BOOL CALLBACK CloseOtherInstance(HWND window, LPARAM self) {
  wchar_t className[64] = {};
  GetClassNameW(window, className, 64);
  if (window != reinterpret_cast<HWND>(self) && wcscmp(className, kMainWindowClass) == 0)
    PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

void OnExportFinished(HWND window, UINT message, WPARAM success, LPARAM data) {
  if (message == WM_PDF_EXPORT_FINISHED) {
    std::wstring text = PdfSuccessText(static_cast<uint64_t>(data));
    if (success) ShowMessageBox(window, kBoxOk, L"Tavro - PDF Export", text.c_str());
    return;
  }
  auto* note = reinterpret_cast<ExportResultNote*>(data);
  if (!note) return;
  if (success) {
    std::wstring text = L"HTML exported successfully.\n\nExport time:  " + FormatElapsed(note->elapsedMs) +
                        L"\n\nOpen in browser?";
    if (ShowMessageBox(window, kBoxYesNo, L"Tavro - HTML Export", text.c_str()) == kResultYes &&
        !note->outputPath.empty()) {
      auto opened = reinterpret_cast<INT_PTR>(
          ShellExecuteW(window, L"open", note->outputPath.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
      if (opened <= 32) OpenFileInViewer(window, note->outputPath);
    }
  }
  delete note;
}

LRESULT CALLBACK EditorSubclass(HWND editor, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  switch (message) {
    case WM_CHAR: {
      int clip = TypewriterClipFor(static_cast<unsigned>(wParam), g_settings.soundOnKey != 0,
                                   g_settings.soundOnEnter != 0);
      if (clip) PlaySoundW(MAKEINTRESOURCEW(clip), g_hInstance, SND_RESOURCE | SND_ASYNC);
      break;
    }
    case WM_SETFOCUS:
      ClearChatSelections(g_hwndAiPanel);
      break;
    case WM_LBUTTONDOWN:
      SendEditor(SCI_SETINDICATORCURRENT, kIndicatorReplaced);
      SendEditor(SCI_INDICATORCLEARRANGE, 0, SendEditor(SCI_GETLENGTH));
      break;
    case WM_RBUTTONUP:
      if (!g_viewerMode) {
        POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        ClientToScreen(editor, &point);
        SendMessageW(GetParent(editor), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(editor), MAKELPARAM(point.x, point.y));
      }
      return 0;
    case WM_KILLFOCUS: {
      const ThemeColors& row = CurrentTheme();
      if (!g_viewerMode) {
        SendEditor(SCI_SETSELBACK, 1, row.selectionBackground);
        SendEditor(SCI_SETSELFORE, 1, row.selectionText);
      }
      break;
    }
    case WM_SETCURSOR:
      if (g_viewerMode) {
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        return 1;
      }
      break;
    case WM_NCPAINT: {
      LRESULT result = DefSubclassProc(editor, message, wParam, lParam);
      if (!g_viewerMode && (CurrentTheme().isDark & 0xFF)) SetWindowTheme(editor, L"DarkMode_Explorer", nullptr);
      return result;
    }
    case WM_DESTROY:
      RemoveWindowSubclass(editor, EditorSubclass, kEditorSubclassId);
      break;
  }
  return DefSubclassProc(editor, message, wParam, lParam);
}

bool CreateEditor(HWND window) {
  g_hwndEditor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL, 0,
                                 g_viewerMode ? 0 : kToolbarHeight, 800, 600, window,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditorId)), g_hInstance, nullptr);
  return g_hwndEditor != nullptr;
}

// A save cleared g_modified: the title loses its mark, Save its enabled state.
void OnDocumentSaved() {
  UpdateTitle();
  RefreshToolbar();
}

void MarkProfile(HWND window) {
  if (g_profileLabel.empty()) g_profileLabel = ProfileLabel(g_profileName);
  SetPropW(window, kProfileProperty, const_cast<wchar_t*>(g_profileLabel.c_str()));
  SetPropW(window, kProfileAtomProperty,
           reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(GlobalAddAtomW(g_profileLabel.c_str()))));
}

void UnmarkProfile(HWND window) {
  RemovePropW(window, kProfileProperty);
  ATOM atom = static_cast<ATOM>(reinterpret_cast<UINT_PTR>(RemovePropW(window, kProfileAtomProperty)));
  if (atom) GlobalDeleteAtom(atom);
}

// A failed create releases what it made itself, at once: whether the window
// then gets a WM_DESTROY differs between systems.
void ReleaseFailedCreate(HWND window) {
  const MainWindowLife life = g_life;
  g_life = MainWindowLife();
  if (life.sessionOpened) CloseAiSession();
  if (life.listening) SetDocumentListeners(DocumentListeners());
  if (life.profileMarked) UnmarkProfile(window);
  g_hwndMain = nullptr;
  OutputDebugStringW(L"[WM_CREATE] Failed; released what it made\n");
}

LRESULT OnCreate(HWND window) {
  g_life = MainWindowLife();
  g_hwndMain = window;
  MarkProfile(window);
  g_life.profileMarked = true;
  DocumentListeners listeners;
  listeners.textReplaced = RefreshMarginWidth;
  listeners.saved = OnDocumentSaved;
  SetDocumentListeners(listeners);
  g_life.listening = true;
  if (!g_viewerMode) CreateToolbar(window, g_settings.editorMode == 1);
  if (!CreateEditor(window)) {
    ShowMessageBox(nullptr, kBoxOk, kGarbledFatalErrorTitle,
                   L"CRITICAL: Cannot create Scintilla control.\nMake sure Scintilla.dll is next to Tavro.exe.");
    ReleaseFailedCreate(window);
    return -1;
  }
  if (!g_viewerMode) CreateStatusBar(window);
  SetupEditor();
  if (g_viewerMode) {
    SendEditor(SCI_SETREADONLY, 1);
    ApplyViewerLook(window);
  } else {
    CreateMarginStrip(window);
    RefreshMarginWidth();
    ApplyEditorTheme();
    SyncSystemTheme(window);
  }
  OpenAiSession();
  g_life.sessionOpened = true;
  // The panel and its chat come with AI Mod (in a Viewer too, never laid
  // out); the refresh starts the system-information file and its timer.
  if (g_settings.editorMode == 1) {
    if (CreateAiPanel(window)) ReplayCurrentChat(true);
    PostMessageW(window, WM_AI_STATUS_REFRESH, 0, 0);
  }
  SetWindowSubclass(g_hwndEditor, EditorSubclass, kEditorSubclassId, 0);
  if (!g_viewerMode) {
    RefreshToolbar();
    DragAcceptFiles(window, TRUE);
    UpdateTitle();
  }
  g_life.created = true;
  return 0;
}

// The connection labels and the system-information file, once the panel is
// up and after the AI Settings dialog saves.
void OnAiStatusRefresh(HWND window) {
  if (!g_hwndAiPanel) return;
  RefreshAfterStatusMessage();
  WriteSystemInfoFile();
  SetTimer(window, kSystemInfoTimer, kSystemInfoPeriodMs, nullptr);
}

// Releases what OnCreate made, each thing once. A window whose creation
// failed has released its part already, and it posts no quit message: that
// would close the start-up's fatal message at once.
void OnDestroy(HWND window) {
  OutputDebugStringW(L"[WM_DESTROY] Starting...\n");
  const bool created = g_life.created;
  g_life = MainWindowLife();
  if (!created) return;
  OutputDebugStringW(L"[Tavro] WM_DESTROY: Signalling connection check shutdown...\n");
  UnmarkProfile(window);
  KillTimer(window, kSystemInfoTimer);
  CloseAiSession();
  CloseDocumentHandle();
  OutputDebugStringW(L"[Tavro] WM_DESTROY: Saving current chat...\n");
  // A Viewer holds a stale copy of the default profile's chats: it never writes them back.
  if (!g_viewerMode && g_settings.editorMode == 1 && SaveCurrentChat(GetChatHistory())) {
    OutputDebugStringW(L"[Tavro] Current chat saved.\n");
  }
  CloseViewerJob();  // every Viewer handed a text ends with this window
  if (!g_viewerMode) CollectSettings();
  if (g_hwndFind) DestroyWindow(g_hwndFind);
  if (g_hwndRegex) DestroyWindow(g_hwndRegex);
  SetDocumentListeners(DocumentListeners());
  PostQuitMessage(0);
}

}  // namespace

bool RegisterMainWindowClass(HINSTANCE instance) {
  WNDCLASSEXW wc = {};
  wc.cbSize = sizeof(wc);
  wc.style = CS_HREDRAW | CS_VREDRAW;
  wc.lpfnWndProc = MainWindowProc;
  wc.hInstance = instance;
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  wc.lpszClassName = kMainWindowClass;
  wc.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_TAVRO));
  wc.hIconSm = static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(IDI_TAVRO), IMAGE_ICON, 16, 16, 0));
  if (!wc.hIcon) wc.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  if (!wc.hIconSm) wc.hIconSm = LoadIconW(nullptr, IDI_APPLICATION);
  return RegisterClassExW(&wc) != 0;
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate(window);
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) LayOut(window);
      return 0;
    case WM_GETMINMAXINFO: {
      auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
      info->ptMinTrackSize.x = g_minimumWidth;
      info->ptMinTrackSize.y = kMinimumTrackHeight;
      return 0;
    }
    case WM_ERASEBKGND: {
      RECT client;
      GetClientRect(window, &client);
      HBRUSH brush = CreateSolidBrush(CurrentTheme().windowBackground);
      FillRect(reinterpret_cast<HDC>(wParam), &client, brush);
      DeleteObject(brush);
      return 1;
    }
    case WM_ACTIVATE: {
      // Focus first, as usual; then the question about a vanished file.
      LRESULT result = DefWindowProcW(window, message, wParam, lParam);
      if (WatchOnActivate(window, LOWORD(wParam) != WA_INACTIVE, reinterpret_cast<HWND>(lParam))) UpdateTitle();
      return result;
    }
    case WM_NCACTIVATE:
      // The title never shows as inactive.
      if (!g_viewerMode) SetDarkTitleAttribute(window, (CurrentTheme().isDark & 0xFF) != 0);
      return DefWindowProcW(window, message, TRUE, lParam);
    case WM_INITMENUPOPUP:
      return 0;
    case WM_CONTEXTMENU:
      if (!g_viewerMode && reinterpret_cast<HWND>(wParam) == g_hwndEditor)
        ShowEditorContextMenu(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case WM_MEASUREITEM:
      if (MeasureMenuItem(window, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
      break;
    case WM_DRAWITEM:
      if (DrawMenuItem(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) return TRUE;
      break;
    case WM_THEME_CHANGED:
      ApplyTheme(static_cast<unsigned>(wParam), true);
      ApplyPanelTheme();
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
      return 0;
    case WM_SYSTEM_THEME_CHANGED:
      if (!g_viewerMode) SyncSystemTheme(window);
      return 0;
    case WM_SETTINGCHANGE:
      if (lParam && (wcscmp(reinterpret_cast<const wchar_t*>(lParam), L"ImmersiveColorSet") == 0 ||
                     wcscmp(reinterpret_cast<const wchar_t*>(lParam), L"Policy") == 0))
        PostMessageW(window, WM_SYSTEM_THEME_CHANGED, 0, 0);
      return 0;
    case WM_SETFOCUS:
      if (g_hwndEditor) SetFocus(g_hwndEditor);
      return 0;
    case WM_COMMAND:
      if (HandleCommand(window, LOWORD(wParam))) return 0;
      break;
    case WM_NOTIFY: {
      auto* notification = reinterpret_cast<const SCNotification*>(lParam);
      if (notification->nmhdr.hwndFrom != g_hwndEditor || g_viewerMode) return 0;
      switch (notification->nmhdr.code) {
        case SCN_UPDATEUI:
          UpdateStatusBar();
          if (g_hwndMargin && IsWindowVisible(g_hwndMargin)) InvalidateRect(g_hwndMargin, nullptr, FALSE);
          break;
        case SCN_MODIFIED:
          if (notification->modificationType & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)) {
            InvalidateFindCache();
            if (!g_modified) {
              g_modified = true;
              UpdateTitle();
            }
            UpdateStatusBar();
            RefreshToolbar();
            RefreshMarginWidth();
          }
          break;
        case SCN_ZOOM:
          RefreshMarginWidth();
          break;
      }
      return 0;
    }
    case WM_TIMER:
      if (wParam == kAutoSaveTimer) OnAutoSaveTimer(window);
      if (wParam == kSystemInfoTimer && g_settings.editorMode == 1) WriteSystemInfoFile();
      if (wParam == kThinkingTimer) OnThinkingTimer(window);
      return 0;
    case WM_AI_SEND:
      OnAiSend(window, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_AI_STOP:
      OnAiStop(window);
      return 0;
    case WM_AI_ANSWER:
      OnAiAnswer(window, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_AI_REQUEST_ENDED:
      OnAiRequestEnded(window);
      return 0;
    case WM_AI_REQUEST_FAILED:
      OnAiRequestFailed(window, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_AI_TYPING_ENDED:
      OnAiTypingEnded(window, wParam == 1);
      return 0;
    case WM_AI_APPEND_TRANSCRIPT: {
      auto* text = reinterpret_cast<wchar_t*>(lParam);
      if (text) AppendTranscript(text);
      FreeHeapText(text);
      return 0;
    }
    case WM_AI_STATUS_REFRESH:
      OnAiStatusRefresh(window);
      return 0;
    case WM_AI_LOAD_CHAT:
      OnLoadChat(wParam, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_AI_CLEAR_CONVERSATION:
      ClearLiveConversation();
      return 0;
    case WM_AI_CONNECTIVITY_CHANGED:
      if (g_hwndAiPanel) RefreshConnectionLabels();
      ShowConnectivityInAiSettings(wParam == 1);
      return 0;
    case WM_AI_STATUS_TEXT: {
      auto* text = reinterpret_cast<wchar_t*>(lParam);
      if (text) SetPanelStatus(text);
      FreeHeapText(text);
      return 0;
    }
    case WM_DROPFILES:
      OnDropFiles(window, reinterpret_cast<HDROP>(wParam));
      return 0;
    case WM_PDF_EXPORT_FINISHED:
    case WM_HTML_EXPORT_FINISHED:
      OnExportFinished(window, message, wParam, lParam);
      return 0;
    case WM_PANEL_SIZE_CHANGED:
      GrowToMinimum(window);
      return 0;
    case WM_AI_SETTINGS_CHANGED:
      OnAiSettingsChanged(window);
      return 0;
    case WM_USER_OPEN_FILE:
      OnOpenFile(window, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_CLOSE:
      // Cancel, or a failed save after Yes, keeps the window open.
      if (!g_viewerMode && !ConfirmDiscardOrSave(window)) return 0;
      if (!g_viewerMode && IsDefaultProfileName(g_profileName)) {
        // Closing the default instance closes every other profile's, each with its own prompt.
        EnumWindows(CloseOtherInstance, reinterpret_cast<LPARAM>(window));
        Sleep(100);
      }
      CloseDocumentHandle();
      DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
