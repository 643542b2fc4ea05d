// "Rename Chat": a small modal dialog in the panel's colours.
#pragma once

#include <windows.h>

#include <string>

// Shows the dialog with title in its field (256 characters at most). True on
// OK, with title holding the field's text; false on Cancel, Esc or close.
bool ShowRenameChatDialog(HWND owner, std::wstring& title);
