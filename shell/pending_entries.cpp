// Tools not built yet: their commands are routed here. Each says so in one
// debug line and does nothing else, until its own file replaces it here.
#include "shell/pending_entries.h"

namespace {

void NotBuiltYet(const wchar_t* line) { OutputDebugStringW(line); }

}  // namespace

void ShowPrintPreview(HWND) { NotBuiltYet(L"[ShowPrintPreview] not built yet\n"); }
void PrintDocument(HWND) { NotBuiltYet(L"[PrintDocument] not built yet\n"); }
void ShowPageSetup(HWND) { NotBuiltYet(L"[ShowPageSetup] not built yet\n"); }
void OpenRecentFile(HWND, int) { NotBuiltYet(L"[OpenRecentFile] not built yet\n"); }
void RemoveRecentFile(int) { NotBuiltYet(L"[RemoveRecentFile] not built yet\n"); }
void ClearRecentFiles(HWND) { NotBuiltYet(L"[ClearRecentFiles] not built yet\n"); }
void AddRecentFile(const std::wstring&) { NotBuiltYet(L"[AddRecentFile] not built yet\n"); }
