// Document load: the single door through which text enters the editor.
#include <windows.h>

#include <cwchar>
#include <memory>
#include <string>

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
  // One more byte for the terminator the editor wants; not zero-filled first,
  // the read fills it.
  std::unique_ptr<uint8_t[]> raw(new uint8_t[static_cast<size_t>(size) + 1]);
  DWORD read = 0;
  if (!ReadFile(file, raw.get(), size, &read, nullptr) || read != size)
    return Refuse(window, file, L"Tavro: ERROR - Cannot read file\n", kGarbledErrorTitle, L"Cannot read file.");
  OutputDebugStringW(L"Tavro: File read successfully\n");

  switch (DetectBinary(raw.get(), size)) {
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

  // UTF-8 goes to the editor straight from the buffer read, past a BOM by
  // offset; UTF-16 is converted into a buffer of its own, and then the bytes
  // read are released, so only one full-size text is alive at a time.
  DocumentText decoded = DecodeDocumentBuffer(raw.get(), size);
  if (decoded.converted) raw.reset();

  int eolMode = DetectLineEnding(decoded.text, decoded.length, static_cast<int>(SendEditor(SCI_GETEOLMODE)));
  SendEditor(SCI_SETEOLMODE, eolMode);

  CloseDocumentHandle();  // the same file loaded again

  // SCI_SETTEXT stops at the first zero byte, wherever it stands. A load
  // can't be undone, so nothing of it is collected for undo: the editor
  // would copy the whole text into its undo history only to drop it.
  SendEditor(SCI_SETREADONLY, 0);
  SendEditor(SCI_SETUNDOCOLLECTION, 0);
  SendEditor(SCI_CLEARALL);
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(decoded.text));
  SendEditor(SCI_SETUNDOCOLLECTION, 1);
  SendEditor(SCI_EMPTYUNDOBUFFER);
  SendEditor(SCI_GOTOPOS, 0);
  const TextEncoding encoding = decoded.encoding;
  decoded = DocumentText();
  raw.reset();

  g_fileHandle = file;
  g_encoding = encoding;
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
