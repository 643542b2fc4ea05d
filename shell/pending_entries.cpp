// Tools not built yet: their commands are routed here. Each says so in one
// debug line and does nothing else, until its own file replaces it here.
#include "shell/pending_entries.h"

namespace {

void NotBuiltYet(const wchar_t* line) { OutputDebugStringW(line); }

}  // namespace

void ShowFontDialog(HWND) { NotBuiltYet(L"[ShowFontDialog] not built yet\n"); }
void ShowSettingsDialog(HWND) { NotBuiltYet(L"[ShowSettingsDialog] not built yet\n"); }
