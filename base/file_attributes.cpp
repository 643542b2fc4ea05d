#include "base/file_attributes.h"

#include <windows.h>

void ClearReadOnlyAttribute(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY)) return;
  attributes &= ~FILE_ATTRIBUTE_READONLY;
  SetFileAttributesW(path.c_str(), attributes ? attributes : FILE_ATTRIBUTE_NORMAL);
}

void SetReadOnlyAttribute(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) return;
  // NORMAL is only valid alone.
  SetFileAttributesW(path.c_str(), (attributes & ~FILE_ATTRIBUTE_NORMAL) | FILE_ATTRIBUTE_READONLY);
}
