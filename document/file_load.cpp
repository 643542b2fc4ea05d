// Document load: the single door through which text enters the editor.
#include <windows.h>

#include <cwchar>
#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "document/document.h"
#include "document/text_detect.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "search/search.h"

namespace {

bool g_loadInProgress = false;

constexpr wchar_t kErrorTitle[] = L"Tavro - Error";
constexpr wchar_t kCannotOpenTitle[] = L"Tavro - Cannot Open";

// Clears the guard on every way out.
struct LoadGuard {
  LoadGuard() { g_loadInProgress = true; }
  ~LoadGuard() { g_loadInProgress = false; }
};

bool Refuse(HWND window, HANDLE file, const wchar_t* logLine, const wchar_t* title, const wchar_t* text) {
  OutputDebugStringW(logLine);
  CloseHandle(file);
  ShowMessageBox(window, kBoxOk, title, text);
  return false;
}

}  // namespace

void ShowFileOpenError(HWND window, DWORD errorCode, const wchar_t* path) {
  std::wstring text;
  wchar_t head[128];
  switch (errorCode) {
    case ERROR_SHARING_VIOLATION:
      return;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      swprintf(head, 128, L"File not found (error %lu).\n\n", errorCode);
      text = std::wstring(head) + path;
      break;
    case ERROR_ACCESS_DENIED:
      swprintf(head, 128, L"Access denied (error %lu).\n\n", errorCode);
      text = std::wstring(head) + L"The file may be read-only, protected, or your account lacks permission.";
      break;
    default:
      swprintf(head, 128, L"Cannot open file (error %lu).\n\n", errorCode);
      text = std::wstring(head) + path;
      break;
  }
  ShowMessageBox(window, kBoxOk, kErrorTitle, text.c_str());
}

bool FileLoad(HWND window, const wchar_t* path) {
  if (g_loadInProgress) {
    OutputDebugStringW(L"Tavro: FileLoad already in progress, skipping\n");
    return false;
  }
  LoadGuard guard;
  std::wstring line = L"Tavro: FileLoad called for: " + std::wstring(path) + L"\n";
  OutputDebugStringW(line.c_str());

  // A different file gives up the old handle before the new one is looked at.
  if (g_filePath != path) CloseDocumentHandle();

  // No delete sharing: while the document is open nobody deletes or renames it.
  HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    ShowFileOpenError(window, GetLastError(), path);
    return false;
  }
  OutputDebugStringW(L"Tavro: File opened successfully\n");

  DWORD size = GetFileSize(file, nullptr);
  if (size == INVALID_FILE_SIZE)
    return Refuse(window, file, L"Tavro: ERROR - Cannot get file size\n", kGarbledErrorTitle,
                  L"Cannot get file size.");
  std::vector<uint8_t> raw(size);
  DWORD read = 0;
  if (!ReadFile(file, raw.data(), size, &read, nullptr) || read != size)
    return Refuse(window, file, L"Tavro: ERROR - Cannot read file\n", kGarbledErrorTitle, L"Cannot read file.");
  OutputDebugStringW(L"Tavro: File read successfully\n");

  switch (DetectBinary(raw.data(), raw.size())) {
    case BinaryVerdict::kKnownFormat:
      return Refuse(window, file, L"Tavro: ERROR - Known binary format detected (PDF/EXE/ZIP/Image)\n",
                    kCannotOpenTitle, L"Cannot open binary file.\n\n");
    case BinaryVerdict::kTooManyNulls:
      return Refuse(window, file, L"Tavro: ERROR - Binary file detected (too many nulls)\n", kCannotOpenTitle,
                    L"This file appears to be a binary file and cannot be opened as text.");
    case BinaryVerdict::kTooManyControls:
      return Refuse(window, file, L"Tavro: ERROR - Binary file detected (too many control chars)\n",
                    kCannotOpenTitle, L"This file contains binary control characters and cannot be opened as text.");
    case BinaryVerdict::kText:
      break;
  }

  DecodedText decoded = DecodeDocumentBytes(raw.data(), raw.size());
  std::vector<uint8_t>().swap(raw);  // only the UTF-8 text stays in memory

  int eolMode = DetectLineEnding(decoded.utf8, static_cast<int>(SendEditor(SCI_GETEOLMODE)));
  SendEditor(SCI_SETEOLMODE, eolMode);

  CloseDocumentHandle();  // the same file loaded again

  // SCI_SETTEXT stops at the first zero byte, wherever it stands.
  SendEditor(SCI_SETREADONLY, 0);
  SendEditor(SCI_CLEARALL);
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(decoded.utf8.c_str()));
  SendEditor(SCI_EMPTYUNDOBUFFER);
  SendEditor(SCI_GOTOPOS, 0);
  std::string().swap(decoded.utf8);

  g_fileHandle = file;
  g_encoding = decoded.encoding;
  NotifyTextReplaced();

  if (!g_viewerMode) {
    ApplyLanguage(path);
    ClearSearchIndicators();
  } else {
    ApplyViewerLook(g_hwndMain);
  }

  OutputDebugStringW(L"Tavro: FileLoad completed successfully\n");
  g_filePath = path;
  OutputDebugStringW(L"[FileLoad] g_filePath set\n");
  return true;
}
