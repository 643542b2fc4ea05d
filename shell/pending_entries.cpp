// Tools not built yet: their commands are routed here and do nothing.
#include "shell/pending_entries.h"

void ShowFontDialog(HWND) {}
void ShowFindDialog(HWND) {}
void ShowRegexDialog(HWND) {}
void ShowPrintPreview(HWND) {}
void PrintDocument(HWND) {}
void ShowPageSetup(HWND) {}
void ShowExportDialog(HWND, int) {}
void ShowMarkdownPreview(HWND) {}
void OpenTextInViewer(HWND) {}
void ShowHelpWindow(HWND) {}
void ShowProfilesMenu(HWND) {}
void SwitchEditorMode(HWND) {}
void ShowSettingsDialog(HWND) {}
void OpenRecentFile(HWND, int) {}
void RemoveRecentFile(int) {}
void ClearRecentFiles(HWND) {}
void AddRecentFile(const std::wstring&) {}
