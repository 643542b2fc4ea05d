// The AI panel: the child window beside the editor where the conversation
// takes place. Its head row (title, Chat History button, connection label),
// the read-only transcript, the splitter, the input box with its own scroll
// bar, the button row and the status line.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ai/panel/panel_rules.h"

// Registers the classes once and builds the panel and its controls, hidden
// until the main window lays it out; the panel handle or null.
HWND CreateAiPanel(HWND parent);

// Send reads "Stop ■" while generating; AI Settings, New Chat and Chat
// History are enabled exactly when not.
void SetGeneratingState(bool generating);
// Appends to the transcript, keeping the reader's view when scrolled up.
void AppendTranscript(const std::wstring& text);
// The transcript's length in bytes; -1 without a transcript.
intptr_t TranscriptLength();
// Everything from byte `from` to the end replaced by text.
void ReplaceTranscriptTail(intptr_t from, const std::wstring& text);
void ScrollTranscriptToEnd();
// "AI can make mistakes. Verify important information." and a blank line, in
// the grey italic note style.
void WriteDisclaimer();
// Empties the transcript and the input box, refreshes the connection labels.
void ClearTranscript();
// "\nChat started: ...   |   Opened: HH:MM\n\n" with the time now.
void WriteChatStartLine(const std::wstring& createdAt);
void WriteUserMessage(const std::wstring& text);
void WriteAiMessage(const std::wstring& text);
// The Chat History button's text and enabled state from the store.
void RefreshHistoryButton();
// The status line and connection label after a connectivity event.
void RefreshConnectionLabels();
// The same after WM_AI_STATUS_REFRESH, in its own words.
void RefreshAfterStatusMessage();
// The status line.
void SetPanelStatus(const std::wstring& text);
// The status line and the connection label, both to text.
void SetPanelConnectionText(const std::wstring& text);
// Colours, brushes and the transcript's styles after a theme change.
void ApplyPanelTheme();

// The current chat into the live conversation and the transcript, at
// start-up with AI Mod on or at the switch to it. Start-up shows an empty
// chat's start line; the switch shows nothing for it and sets the status.
void ReplayCurrentChat(bool atStartUp);

// WM_AI_LOAD_CHAT on the main window: show a stored chat; wParam 2 when it
// is already current.
void OnLoadChat(WPARAM wParam, wchar_t* chatId);
// WM_AI_CLEAR_CONVERSATION: the live conversation and the reply in progress emptied.
void ClearLiveConversation();

// Paints an owner-drawn button of the panel or its dialogs: the background,
// then the face of its kind (a rectangle in dark themes, rounded in light
// ones) and its centred caption in font (null: the DC's own).
void PaintPanelButton(const DRAWITEMSTRUCT* item, HBRUSH background, PanelButtonKind kind, HFONT font);

// Whether the focus is in the transcript or the input box, where the
// program's accelerators give way to the controls' own keys.
bool FocusIsInChat();
