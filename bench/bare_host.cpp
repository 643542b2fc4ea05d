// The least a Scintilla editor window can do at start-up: load Scintilla.dll,
// register a window class, make a window with a Scintilla child, read the
// file named on the command line (if any) with one ReadFile, hand it over
// with one SCI_SETTEXT, show the window and run the message loop. The
// start-up benchmark times Tavro.exe against this.
#include <windows.h>

#include <shellapi.h>

#include <memory>

#include "Scintilla.h"
#include "bench/bench_util.h"

namespace {

constexpr wchar_t kHostClass[] = L"TavroBareHost";
HWND g_editor = nullptr;

LRESULT CALLBACK HostProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      if (g_editor) MoveWindow(g_editor, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void LoadFile(const wchar_t* path) {
  HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  const DWORD size = GetFileSize(file, nullptr);
  std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size) + 1]);
  DWORD read = 0;
  if (ReadFile(file, bytes.get(), size, &read, nullptr) && read == size) {
    bytes[size] = '\0';
    SendMessageW(g_editor, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(bytes.get()));
  }
  CloseHandle(file);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  if (!bench::LoadScintilla()) return 1;
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = HostProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kHostClass;
  RegisterClassW(&windowClass);
  HWND window = CreateWindowExW(0, kHostClass, L"Bare host", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 900,
                                700, nullptr, nullptr, instance, nullptr);
  g_editor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE, 0, 0, 900, 700, window, nullptr, instance,
                             nullptr);
  if (!window || !g_editor) return 2;
  SendMessageW(g_editor, SCI_SETCODEPAGE, SC_CP_UTF8, 0);
  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  if (argc >= 2) LoadFile(argv[1]);
  LocalFree(argv);
  ShowWindow(window, show);
  UpdateWindow(window);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
