// Entry points of tools that the commands already reach. Each is owned by
// the window or feature it opens; until that exists, the command writes one
// debug line "[Name] not built yet" and does nothing else.
#pragma once

#include <windows.h>

#include <string>

void ShowPrintPreview(HWND owner);
void PrintDocument(HWND owner);
void ShowPageSetup(HWND owner);
void OpenRecentFile(HWND owner, int slot);
void RemoveRecentFile(int slot);
void ClearRecentFiles(HWND owner);
void AddRecentFile(const std::wstring& path);
