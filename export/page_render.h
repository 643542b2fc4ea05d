// Pages on a device: the frames of the screen and of a printer, the page
// breaks measured with GDI, the lines of one page drawn, and the editor's
// lines as printing and the preview's page turns read them.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "export/pagination.h"

// The margins of the settings record.
PageMargins SettingsMargins();

// The frame on the screen's resolution, on an A4 sheet.
void ComputePreviewGeometry(PageGeometry& geometry);
// The frame on a printer context's paper.
void ComputePrinterGeometry(HDC dc, PageGeometry& geometry);
PrinterCaps ReadPrinterCaps(HDC dc);

// The page breaks of the lines, measured on dc in the font selected there:
// each non-empty line word-wrapped in the frame's width. cancelled and
// pageOpened as in PaginateLines.
bool PaginateOnDc(HDC dc, const std::vector<std::wstring>& lines, const PageGeometry& geometry, PageStarts& starts,
                  const std::function<bool()>& cancelled = nullptr,
                  const std::function<void(int32_t pages)>& pageOpened = nullptr);

// Draws the lines of a page on dc in the font selected there (fontHeight its
// pixel height), up to the line that would pass the frame's bottom.
void DrawPageLines(HDC dc, size_t pageIndex, const PageStarts& starts, const std::vector<std::wstring>& lines,
                   const PageGeometry& geometry, int fontHeight);

// One page on a white sheet compatible with the screen, black text and the
// grey footer; the caller owns the bitmap.
HBITMAP RenderPage(int pageIndex, const PageStarts& pageStarts, const std::vector<std::wstring>& lines,
                   const PageGeometry& geometry, const std::wstring& fontName, int fontSize);

// The editor's lines without their line ends.
std::vector<std::wstring> ReadDocumentLines();
