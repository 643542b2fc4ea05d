#include "document/save_prompt.h"
#include "base/path_name.h"

int FileStatusOf(const std::wstring& path, const std::function<bool(const std::wstring&)>& exists) {
  if (path.empty() || exists(path)) return kFileFine;
  size_t slash = path.find_last_of(L"\\/");
  if (slash == std::wstring::npos) return kFileGoneWithFolder;
  return exists(path.substr(0, slash)) ? kFileGoneFromFolder : kFileGoneWithFolder;
}

std::wstring DocumentName(const std::wstring& path) {
  return path.empty() ? L"Untitled" : FileNameOf(path);
}

std::wstring SaveChangesPromptText(int status, bool modified, const std::wstring& name) {
  const std::wstring quoted = L"\"" + name + L"\"";
  if (status == kFileFine) return L"Save changes to " + quoted + L"?";
  std::wstring text = quoted + (status == kFileGoneWithFolder ? L" was deleted from disk while open in Tavro.\n"
                                                              : L" was moved or renamed while open in Tavro.\n");
  return text + (modified ? L"Do you want to save your changes?" : L"Do you want to restore it to the original location?");
}

std::wstring SaveAsFilter() {
  static const wchar_t* const kPairs[] = {
      L"Text Documents (*.txt)", L"*.txt",
      L"Markdown (*.md)", L"*.md",
      L"C/C++ Source Files (*.cpp;*.h;*.c;*.hpp;*.cxx;*.cc)", L"*.cpp;*.h;*.c;*.hpp;*.cxx;*.cc",
      L"Web Files (*.html;*.css;*.js)", L"*.html;*.css;*.js",
      L"Data & Configuration (*.json;*.xml;*.ini;*.csv)", L"*.json;*.xml;*.ini;*.csv",
      L"Scripts & Logs (*.py;*.bat;*.cmd;*.log)", L"*.py;*.bat;*.cmd;*.log",
      L"All Files (*.*)", L"*.*",
  };
  std::wstring filter;
  for (const wchar_t* part : kPairs) {
    filter += part;
    filter += L'\0';
  }
  filter += L'\0';
  return filter;
}

bool DropOpensFile(const std::wstring& dropped, const std::wstring& openPath) {
  return !dropped.empty() && dropped != openPath;
}
