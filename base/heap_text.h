// Wide strings handed to another window in a message: a heap block that
// belongs to the receiver, which frees it with FreeHeapText.
#pragma once

#include <windows.h>

#include <string>

// A heap copy of text, or null when the heap is out of memory.
wchar_t* HeapCopyText(const wchar_t* text, size_t length);
wchar_t* HeapCopyText(const std::wstring& text);
void FreeHeapText(wchar_t* text);

// Posts a heap copy of text as lParam (wParam 0). A post that fails frees the
// copy; true when the receiver got it.
bool PostHeapText(HWND window, UINT message, const std::wstring& text);
// Sends it, so the receiver has handled (and freed) it on return.
void SendHeapText(HWND window, UINT message, const std::wstring& text);
