// Private window messages and timer ids of the whole program. Their numbers
// are fixed: other processes' and threads' code posts them.
#pragma once

#include <windows.h>

// To the main window.
constexpr UINT WM_USER_OPEN_FILE = 1026;  // lParam: heap wide string the receiver frees
constexpr UINT WM_SET_TOOLBAR_MODE = 1027;  // to the toolbar; wParam 1 AI Mod, 0 Classic
constexpr UINT WM_PDF_EXPORT_FINISHED = 1135;  // wParam success, lParam elapsed ms
constexpr UINT WM_EXPORT_PROGRESS = 1138;  // to the PDF dialog; wParam a page's number
constexpr UINT WM_PDF_BATCH_REQUEST = 1139;  // to the PDF dialog: the worker waits for the next batch
constexpr UINT WM_PDF_FINAL_STAGE = 1140;    // to the PDF dialog: EndDoc has begun
constexpr UINT WM_EXPORT_LINE = 1144;  // to an export dialog; wParam a line number, or -1 for the final stage
constexpr UINT WM_HTML_EXPORT_FINISHED = 1145;  // wParam success, lParam ExportResultNote* the receiver frees;
                                                 // to an export dialog the same end, without lParam
// From the pagination worker to its dialog.
constexpr UINT WM_PAGINATION_PROGRESS = WM_USER + 130;  // wParam pages so far, lParam the line count
constexpr UINT WM_PAGINATION_FINISHED = WM_USER + 131;  // wParam 1 success, 0 otherwise; lParam page 1's bitmap or 0
constexpr UINT WM_PANEL_SIZE_CHANGED = 1249;
constexpr UINT WM_AI_SEND = WM_APP + 200;             // lParam: heap wide string, the message; receiver frees
constexpr UINT WM_AI_STOP = WM_APP + 201;
constexpr UINT WM_AI_ANSWER = WM_APP + 202;           // lParam: heap wide string the receiver frees
constexpr UINT WM_AI_REQUEST_ENDED = WM_APP + 203;
constexpr UINT WM_AI_REQUEST_FAILED = WM_APP + 204;   // lParam: heap wide string or null; receiver frees
constexpr UINT WM_AI_STATUS_REFRESH = WM_APP + 205;   // connection labels and the system-information file
constexpr UINT WM_AI_TYPING_ENDED = WM_APP + 206;     // wParam 1 when stopped
constexpr UINT WM_AI_APPEND_TRANSCRIPT = WM_APP + 207;  // lParam: heap wide string; receiver frees
constexpr UINT WM_AI_STATUS_TEXT = WM_APP + 208;      // lParam: heap wide string for the status line; receiver frees
constexpr UINT WM_AI_CLEAR_CONVERSATION = WM_APP + 210;  // empties the live conversation
constexpr UINT WM_AI_LOAD_CHAT = WM_APP + 211;        // wParam 2: already current; lParam: heap chat id
constexpr UINT WM_AI_SETTINGS_CHANGED = 32980;
constexpr UINT WM_AI_CONNECTIVITY_CHANGED = WM_APP + 214;  // wParam 1 online, 0 offline
// To the AI panel itself, from its Chat History menu.
constexpr UINT WM_PANEL_RENAME_CHAT = WM_APP + 220;
constexpr UINT WM_PANEL_DELETE_CHAT = WM_APP + 221;
constexpr UINT WM_PANEL_DELETE_ALL_CHATS = WM_APP + 222;
constexpr UINT WM_THEME_CHANGED = 0x8001;  // wParam: new theme index
constexpr UINT WM_SYSTEM_THEME_CHANGED = 0x8064;

// Timers on the main window.
constexpr UINT_PTR kAutoSaveTimer = 5001;   // auto-save, every autoSaveMinutes
constexpr UINT_PTR kSystemInfoTimer = 5003;  // rewrites the system-information file in AI Mod
constexpr UINT_PTR kThinkingTimer = 9001;    // the thinking dots of a question waiting for its answer
