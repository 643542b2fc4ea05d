#include "shell/title.h"

#include "document/document.h"
#include "document/save_prompt.h"
#include "shell/shell.h"

std::wstring MakeWindowTitle(const std::wstring& profileName, const std::wstring& filePath, bool modified) {
  const std::wstring name = DocumentName(filePath);
  std::wstring title;
  if (IsDefaultProfileName(profileName))
    title = L"Tavro - " + name;
  else
    title = L"Tavro  [ " + profileName + L" ]  " + name;
  if (modified) title += L" *";
  return title;
}

void UpdateTitle() {
  if (!g_hwndMain) return;
  SetWindowTextW(g_hwndMain, MakeWindowTitle(g_profileName, g_filePath, g_modified).c_str());
}
