// Dialog templates built in memory, for the program's own themed dialogs.
#pragma once

#include <windows.h>

#include <vector>

#include "presentation/dialog_units.h"

// Class atoms of the predefined controls in a template.
constexpr WORD kButtonClass = 0x0080;
constexpr WORD kEditClass = 0x0081;
constexpr WORD kStaticClass = 0x0082;

// The dialog template: a run of WORDs, items starting on DWORD boundaries.
struct TemplateWriter {
  std::vector<WORD> words;

  void Word(WORD value) { words.push_back(value); }
  void Dword(DWORD value) {
    Word(LOWORD(value));
    Word(HIWORD(value));
  }
  void String(const wchar_t* text) {
    for (const wchar_t* p = text; p && *p; ++p) Word(static_cast<WORD>(*p));
    Word(0);
  }
  void AlignDword() {
    if (words.size() % 2) Word(0);
  }
  void Item(DWORD style, DWORD exStyle, const DialogUnitRect& rect, int id, WORD classAtom, const wchar_t* text) {
    AlignDword();
    Dword(style);
    Dword(exStyle);
    Word(static_cast<WORD>(rect.x));
    Word(static_cast<WORD>(rect.y));
    Word(static_cast<WORD>(rect.width));
    Word(static_cast<WORD>(rect.height));
    Word(static_cast<WORD>(id));
    Word(0xFFFF);
    Word(classAtom);
    String(text);
    Word(0);  // no creation data
  }
};

// The header of a template with `items` controls, in "Segoe UI" at 9 points.
inline void WriteDialogHeader(TemplateWriter& t, DWORD style, int items, int width, int height, const wchar_t* title) {
  t.Dword(style | DS_SETFONT);
  t.Dword(0);
  t.Word(static_cast<WORD>(items));
  t.Word(0);
  t.Word(0);
  t.Word(static_cast<WORD>(width));
  t.Word(static_cast<WORD>(height));
  t.Word(0);  // no menu
  t.Word(0);  // the standard dialog class
  t.String(title);
  t.Word(9);
  t.String(L"Segoe UI");
}
