// "test_printer add PORT" adds a printer named "Microsoft Print to PDF" to
// the Wine prefix it runs in, and makes it the default. Wine has no such printer; its PostScript
// driver stands in, with the generic PPD that winspool.drv carries as
// resource 1 of type "PPDFILE". A job given an output file writes PostScript
// there; a job without one goes to the port given as the only argument,
// which the test maps to a file under HKCU\Software\Wine\Printing\Spooler.
// "test_printer print PAGES [OUTPUT]" prints pages reading "Test page N" on
// it, to check that set-up. Test side only: the program never adds printers.
#include <windows.h>
#include <winspool.h>

#include <cstdio>
#include <string>

namespace {

const wchar_t kPrinterName[] = L"Microsoft Print to PDF";
const wchar_t kDriverName[] = L"Tavro Test PostScript";

bool WriteGenericPpd(const std::wstring& path) {
  HMODULE winspool = LoadLibraryExW(L"winspool.drv", nullptr, LOAD_LIBRARY_AS_DATAFILE);
  HRSRC resource = winspool ? FindResourceW(winspool, MAKEINTRESOURCEW(1), L"PPDFILE") : nullptr;
  HGLOBAL loaded = resource ? LoadResource(winspool, resource) : nullptr;
  const void* data = loaded ? LockResource(loaded) : nullptr;
  if (!data) return false;
  DWORD size = SizeofResource(winspool, resource);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  bool ok = WriteFile(file, data, size, &written, nullptr) && written == size;
  CloseHandle(file);
  return ok;
}

int PrintTestPages(int pages, const wchar_t* output) {
  HDC dc = CreateDCW(L"WINSPOOL", kPrinterName, nullptr, nullptr);
  if (!dc) {
    fwprintf(stderr, L"CreateDCW failed: %lu\n", GetLastError());
    return 1;
  }
  wprintf(L"dpi %d\n", GetDeviceCaps(dc, LOGPIXELSX));
  DOCINFOW doc{sizeof doc};
  doc.lpszDocName = L"Test";
  doc.lpszOutput = output;
  if (StartDocW(dc, &doc) <= 0) {
    DeleteDC(dc);
    fwprintf(stderr, L"StartDocW failed\n");
    return 1;
  }
  for (int page = 1; page <= pages; ++page) {
    StartPage(dc);
    wchar_t text[32];
    int length = swprintf(text, 32, L"Test page %d", page);
    TextOutW(dc, 300, 300, text, length);
    EndPage(dc);
  }
  EndDoc(dc);
  DeleteDC(dc);
  return 0;
}

int AddTestPrinter(const wchar_t* port) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring ppd = std::wstring(temp) + L"tavro_test_printer.ppd";
  if (!WriteGenericPpd(ppd)) {
    fwprintf(stderr, L"no generic PPD in winspool.drv\n");
    return 1;
  }
  DRIVER_INFO_3W driver{};
  driver.cVersion = 3;
  driver.pName = const_cast<wchar_t*>(kDriverName);
  driver.pDriverPath = const_cast<wchar_t*>(L"wineps.drv");
  driver.pConfigFile = const_cast<wchar_t*>(L"wineps.drv");
  driver.pDataFile = ppd.data();
  driver.pDefaultDataType = const_cast<wchar_t*>(L"RAW");
  if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                           APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) {
    fwprintf(stderr, L"AddPrinterDriverExW failed: %lu\n", GetLastError());
    return 1;
  }
  PRINTER_INFO_2W printer{};
  printer.pPrinterName = const_cast<wchar_t*>(kPrinterName);
  printer.pPortName = const_cast<wchar_t*>(port);
  printer.pDriverName = const_cast<wchar_t*>(kDriverName);
  printer.pPrintProcessor = const_cast<wchar_t*>(L"WinPrint");
  printer.pDatatype = const_cast<wchar_t*>(L"RAW");
  printer.Attributes = PRINTER_ATTRIBUTE_LOCAL;
  HANDLE added = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
  if (!added) {
    fwprintf(stderr, L"AddPrinterW failed: %lu\n", GetLastError());
    return 1;
  }
  ClosePrinter(added);
  if (!SetDefaultPrinterW(kPrinterName)) {
    fwprintf(stderr, L"SetDefaultPrinterW failed: %lu\n", GetLastError());
    return 1;
  }
  wprintf(L"added\n");
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc == 3 && wcscmp(argv[1], L"add") == 0) return AddTestPrinter(argv[2]);
  if ((argc == 3 || argc == 4) && wcscmp(argv[1], L"print") == 0)
    return PrintTestPages(_wtoi(argv[2]), argc == 4 ? argv[3] : nullptr);
  fwprintf(stderr, L"usage: test_printer add PORT | print PAGES [OUTPUT]\n");
  return 2;
}
