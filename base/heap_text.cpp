#include "base/heap_text.h"

#include <cstring>

wchar_t* HeapCopyText(const wchar_t* text, size_t length) {
  const size_t bytes = (length + 1) * sizeof(wchar_t);
  auto* copy = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, bytes));
  if (!copy) return nullptr;
  memcpy(copy, text, length * sizeof(wchar_t));
  copy[length] = L'\0';
  return copy;
}

wchar_t* HeapCopyText(const std::wstring& text) { return HeapCopyText(text.c_str(), text.size()); }

void FreeHeapText(wchar_t* text) {
  if (text) HeapFree(GetProcessHeap(), 0, text);
}

bool PostHeapText(HWND window, UINT message, const std::wstring& text) {
  wchar_t* copy = HeapCopyText(text);
  if (!copy) return false;
  if (PostMessageW(window, message, 0, reinterpret_cast<LPARAM>(copy))) return true;
  FreeHeapText(copy);
  return false;
}

void SendHeapText(HWND window, UINT message, const std::wstring& text) {
  if (wchar_t* copy = HeapCopyText(text)) SendMessageW(window, message, 0, reinterpret_cast<LPARAM>(copy));
}
