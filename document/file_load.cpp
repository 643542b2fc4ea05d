// Document load. This first form reads the whole file into the editor as
// UTF-8 and keeps the handle open; encoding and binary detection come with
// the full load.
#include "document/document.h"

#include <vector>

#include "Scintilla.h"
#include "shell/shell.h"

std::wstring g_filePath;
HANDLE g_fileHandle = INVALID_HANDLE_VALUE;
TextEncoding g_encoding = kUtf8;
bool g_modified = false;

bool FileLoad(HWND window, const wchar_t* path) {
  (void)window;
  if (!path || !g_hwndEditor) return false;
  if (g_filePath != path && g_fileHandle != INVALID_HANDLE_VALUE) {
    CloseHandle(g_fileHandle);
    g_fileHandle = INVALID_HANDLE_VALUE;
  }
  HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;

  DWORD size = GetFileSize(file, nullptr);
  std::vector<char> bytes(size == INVALID_FILE_SIZE ? 0 : size + 1, '\0');
  DWORD read = 0;
  if (size == INVALID_FILE_SIZE || (size > 0 && (!ReadFile(file, bytes.data(), size, &read, nullptr) || read != size))) {
    CloseHandle(file);
    return false;
  }
  const char* text = bytes.data();
  g_encoding = kUtf8;
  if (size >= 3 && static_cast<unsigned char>(text[0]) == 0xEF && static_cast<unsigned char>(text[1]) == 0xBB &&
      static_cast<unsigned char>(text[2]) == 0xBF) {
    text += 3;
    g_encoding = kUtf8Bom;
  }
  if (g_fileHandle != INVALID_HANDLE_VALUE && g_fileHandle != file) CloseHandle(g_fileHandle);
  g_fileHandle = file;
  SendMessageW(g_hwndEditor, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  SendMessageW(g_hwndEditor, SCI_EMPTYUNDOBUFFER, 0, 0);
  SendMessageW(g_hwndEditor, SCI_SETSAVEPOINT, 0, 0);
  SendMessageW(g_hwndEditor, SCI_GOTOPOS, 0, 0);
  g_filePath = path;
  return true;
}
