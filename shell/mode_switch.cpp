#include "shell/mode_switch.h"

#include "ai/chat/chat_store.h"
#include "ai/client/ai_state.h"
#include "ai/panel/ai_panel.h"
#include "document/document.h"
#include "presentation/message_box.h"
#include "settings/settings.h"
#include "shell/shell.h"
#include "shell/toolbar.h"

namespace {

constexpr int kUnsetPanelPercent = 320;  // stands only until the next layout

// The panel goes, with the chat saved and any generation cancelled.
void EnterClassic(HWND window) {
  g_settings.editorMode = 0;
  if (g_hwndAiPanel) {
    if (g_settings.keepHistory) SaveCurrentChat(GetChatHistory());
    ShowWindow(g_hwndAiPanel, SW_HIDE);
  }
  g_aiCancelRequested.exchange(1);
  SetToolbarMode(false);
  SendMessageW(window, WM_SIZE, 0, 0);
}

// The panel comes, made on first use, with the current chat in it.
void EnterAiMod(HWND window) {
  g_settings.editorMode = 1;
  bool panel = g_hwndAiPanel != nullptr || CreateAiPanel(window) != nullptr;
  if (panel) {
    g_aiPanelPercent = g_settings.aiPanelPercent >= 1 ? static_cast<int>(g_settings.aiPanelPercent)
                                                      : kUnsetPanelPercent;
    SendMessageW(window, WM_SIZE, 0, 0);
    ShowWindow(g_hwndAiPanel, SW_SHOW);
    ReplayCurrentChat(false);
    RedrawWindow(g_hwndAiPanel, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    PostMessageW(window, WM_AI_STATUS_REFRESH, 0, 0);
  }
}

void SwitchToClassic(HWND window) {
  EnterClassic(window);
  SaveSettings(g_settings);
  PostMessageW(window, WM_SIZE, 0, 0);
}

void SwitchToAiMod(HWND window) {
  if (!ConfirmDiscardOrSave(window)) return;
  EnterAiMod(window);
  if (g_isOnline.load()) {
    ShowMessageBox(window, kBoxOk, L"Tavro AI Mod", L"AI Mod successfully enabled.\n\nClick OK to continue.");
  } else {
    ShowMessageBox(window, kBoxOk, L"Tavro AI Mod",
                   L"AI Mod enabled, but no internet connection.\n\nAI responses will not work until connection is "
                   L"restored.\n\nClick OK to continue.");
  }
  SetToolbarMode(true);
  SaveSettings(g_settings);
  PostMessageW(window, WM_SIZE, 0, 0);
}

}  // namespace

void SwitchEditorMode(HWND window) {
  if (g_settings.editorMode == 1) SwitchToClassic(window);
  else SwitchToAiMod(window);
}

void SetEditorModeQuietly(HWND window, bool aiMod) {
  if (aiMod) {
    EnterAiMod(window);
    SetToolbarMode(true);
  } else {
    EnterClassic(window);
  }
}
