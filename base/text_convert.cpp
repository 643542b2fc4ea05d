#include "base/text_convert.h"

#include <windows.h>

std::string WideToUtf8(const std::wstring& text) {
  std::string utf8;
  if (text.empty()) return utf8;
  int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  utf8.resize(size > 0 ? size : 0);
  if (size > 0)
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr, nullptr);
  return utf8;
}

std::wstring Utf8ToWide(const std::string& text) {
  if (text.empty()) return {};
  int length = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  if (length <= 1) return {};
  std::wstring out(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, out.data(), length);
  out.resize(static_cast<size_t>(length) - 1);
  return out;
}

size_t Utf16ToUtf8Into(const char16_t* units, size_t count, char* out, size_t capacity) {
  if (count == 0) return 0;
  // char16_t and wchar_t are the same UTF-16 unit here.
  const int length = WideCharToMultiByte(CP_UTF8, 0, reinterpret_cast<const wchar_t*>(units), static_cast<int>(count),
                                         capacity ? out : nullptr, static_cast<int>(capacity), nullptr, nullptr);
  return length > 0 ? static_cast<size_t>(length) : 0;
}
