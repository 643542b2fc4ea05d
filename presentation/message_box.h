// The one dialog service for questions and reports.
#pragma once

#include <windows.h>

enum MessageBoxKind { kBoxYesNoCancel = 0, kBoxOkCancel = 1, kBoxOk = 2, kBoxYesNo = 3, kBoxInput = 4 };
enum MessageBoxResult { kResultOk = 131, kResultCancel = 132, kResultYes = 133, kResultNo = 134 };

// Shows the box modally and returns one of the results above; owner may be null.
int ShowMessageBox(HWND owner, int kind, const wchar_t* title, const wchar_t* text);
