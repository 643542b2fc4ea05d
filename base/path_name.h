// The file name of a path, for titles, boxes and proposed names.
#pragma once

#include <string>

// What follows the last backslash or slash; the whole path without either.
inline std::wstring FileNameOf(const std::wstring& path) {
  const size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? path : path.substr(slash + 1);
}
