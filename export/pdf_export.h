// PDF export: the document drawn on the "Microsoft Print to PDF" printer's
// context, page by page, on a worker thread, with the output file named in
// the document information so that the printer's driver writes the file.
// Code keeps the lexer's colours adapted for paper; a .md document is
// rendered from its Markdown lines.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "export/pdf_layout.h"

// Shared by the main thread, the progress dialog and the worker; the dialog
// owns it and frees it when it closes.
struct PdfExportJob {
  std::wstring outputPath;
  std::wstring docName;   // the display name, or "Document"
  std::wstring fontName;  // the editor's, when the job began
  int32_t fontSize = 0;
  HANDLE requestEvent = nullptr;     // automatic reset; made, not waited on
  HANDLE batchReadyEvent = nullptr;  // automatic reset: a batch is ready
  HANDLE cancelEvent = nullptr;      // manual reset
  std::vector<PdfLine> batch;        // the dialog's from the request to the event, the worker's after
  uint8_t lastBatch = 0;             // the batch reaches the end of the document
  std::atomic<HWND> dialog{nullptr};
  HANDLE readyEvent = nullptr;       // manual reset: the dialog is up
  uint64_t startTicks = 0;
  HWND owner = nullptr;
  HWND editor = nullptr;
  PdfStyleTable styles;              // paper colour, weight and slant of each style
  int32_t nextLine = 0;
  int32_t totalLines = 0;
};

// The entry of the Export routing; the job's end is told by messages.
void ExportPdf(HWND owner, HWND editor);

// The code branch once the path is chosen: the styles read, the worker
// started, the progress dialog run until the job's end.
void RunCodePdfExport(HWND owner, HWND editor, const std::wstring& path, const std::wstring& docName);

// The Markdown branch, once the path is chosen.
void ExportMarkdownPdf(HWND owner, HWND editor, const std::wstring& path, const std::wstring& docName);

// Closes the job's events and frees it.
void FreePdfExportJob(PdfExportJob* job);

// On the main thread, for the dialog: the next 300 lines from the editor.
void FillPdfBatch(PdfExportJob& job);

// The thread functions; each is handed its job (the Markdown one a
// MarkdownPdfTask) and posts the end message as its last act.
DWORD WINAPI CodePdfWorker(void* job);
DWORD WINAPI MarkdownPdfWorker(void* task);

// The Markdown worker's start: the job and the text it frees.
struct MarkdownPdfTask {
  PdfExportJob* job = nullptr;
  std::wstring text;
};

// Runs the PDF progress dialog modally; it frees the job when it closes.
INT_PTR RunPdfProgressDialog(PdfExportJob* job);

// The printer the export draws on.
extern const wchar_t kPdfPrinterName[];

// What both workers do on the printer.
// The printer's context with the document started, writing outputPath; null
// when the printer is absent or refuses the document (logged for routine).
HDC StartPdfDocument(const PdfExportJob& job, const wchar_t* routine);
PdfFrame PdfFrameOf(HDC printer);
// A body font of the code pages: the Markdown fonts' parameters, with fixed pitch.
HFONT CreateCodeFont(HDC printer, const std::wstring& family, int32_t points, bool bold, bool italic);
// "- n -" in grey, centred on the footer line: the last thing on a page.
void DrawPdfFooter(HDC printer, const PdfFrame& frame, HFONT footerFont, int32_t page);
// tmHeight + 2 of a font on this context.
int32_t PdfRowHeight(HDC printer, HFONT font);

// Posts to the job's dialog when it exists.
void PostToPdfDialog(HWND dialog, UINT message, WPARAM wParam);
