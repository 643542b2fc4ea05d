// The one dialog service for questions and reports: a small themed dialog
// built in memory and run modally.
#pragma once

#include <windows.h>

enum MessageBoxKind : int { kBoxYesNoCancel = 0, kBoxOkCancel = 1, kBoxOk = 2, kBoxYesNo = 3, kBoxInput = 4 };
enum MessageBoxResult { kResultOk = 131, kResultCancel = 132, kResultYes = 133, kResultNo = 134 };

// Units of the buffer that ShowInputBox fills, terminator included.
constexpr int kInputBoxCapacity = 64;

// Shows the box modally and returns one of the results above; owner may be null.
// Kind 4 shows the input field; its text is only reachable through ShowInputBox.
int ShowMessageBox(HWND owner, MessageBoxKind kind, const wchar_t* title, const wchar_t* text);

// Titles of the program's own whose dash came out garbled; shown as they stand.
constexpr wchar_t kGarbledErrorTitle[] = L"Tavro \u00e2\u20ac\u201d Error";
constexpr wchar_t kGarbledFatalErrorTitle[] = L"Tavro \u00e2\u20ac\u201d Fatal Error";

// The input kind: the prompt above an empty field. True when confirmed with
// OK, and then buffer (kInputBoxCapacity units) holds the typed text; on
// Cancel, Esc or close the buffer is left as it was.
bool ShowInputBox(HWND owner, const wchar_t* title, const wchar_t* prompt, wchar_t* buffer);
