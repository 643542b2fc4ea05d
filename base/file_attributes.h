// The read-only attribute that the program's own files carry between writes.
#pragma once

#include <string>

// Clears FILE_ATTRIBUTE_READONLY, keeping the other attributes; nothing when
// the file is missing or not read-only.
void ClearReadOnlyAttribute(const std::wstring& path);
// Sets FILE_ATTRIBUTE_READONLY, keeping the other attributes; nothing when
// the path is missing or a folder.
void SetReadOnlyAttribute(const std::wstring& path);
