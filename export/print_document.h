// Direct printing (command 602, Ctrl+P, and the preview's Print): the
// document as plain black text in the editor's font, paginated on the
// printer chosen in the print dialog, with a grey "- n -" under each page.
#pragma once

#include <windows.h>

void PrintDocument(HWND owner);
