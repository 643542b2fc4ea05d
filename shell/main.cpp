// Process entry: loads the editing control, builds the main window, opens the
// file named on the command line and runs the message loop.
#include <windows.h>

#include <commctrl.h>
#include <objbase.h>
#include <shellapi.h>

#include "shell/shell.h"

namespace {

void FatalMessage(const wchar_t* text) { MessageBoxW(nullptr, text, L"Tavro - Fatal Error", MB_OK | MB_ICONERROR); }

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand) {
  g_hInstance = instance;
  OutputDebugStringW(L"Tavro: wWinMain started\n");
  HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  OutputDebugStringW(SUCCEEDED(com) || com == RPC_E_CHANGED_MODE ? L"Tavro: COM initialized\n"
                                                                 : L"COM initialization failed\n");

  INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_BAR_CLASSES};
  OutputDebugStringW(L"Tavro: Initializing common controls\n");
  InitCommonControlsEx(&icc);

  OutputDebugStringW(L"Tavro: Loading Scintilla.dll\n");
  g_scintillaModule = LoadLibraryW(L"Scintilla.dll");
  if (!g_scintillaModule) {
    OutputDebugStringW(L"Tavro: ERROR - Scintilla.dll not found\n");
    FatalMessage(L"Scintilla.dll not found.\nPlace Scintilla.dll next to Tavro.exe.");
    return 1;
  }
  OutputDebugStringW(L"Tavro: Scintilla.dll loaded\n");

  OutputDebugStringW(L"Tavro: Registering Scintilla window class\n");
  using RegisterClassesFn = int(__stdcall*)(void*);
  auto registerClasses =
      reinterpret_cast<RegisterClassesFn>(reinterpret_cast<void*>(GetProcAddress(g_scintillaModule, "Scintilla_RegisterClasses")));
  if (registerClasses) registerClasses(instance);

  OutputDebugStringW(L"Tavro: Registering main window class\n");
  if (!RegisterMainWindowClass(instance)) {
    OutputDebugStringW(L"Tavro: ERROR - Failed to register window class\n");
    FatalMessage(L"Failed to register window class.");
    FreeLibrary(g_scintillaModule);
    return 1;
  }
  OutputDebugStringW(L"Tavro: Window class registered\n");

  OutputDebugStringW(L"Tavro: Creating main window\n");
  HWND window = CreateWindowExW(WS_EX_ACCEPTFILES, kMainWindowClass, L"Tavro - Viewer", WS_OVERLAPPEDWINDOW,
                                CW_USEDEFAULT, CW_USEDEFAULT, 1000, 700, nullptr, nullptr, instance, nullptr);
  if (!window) {
    OutputDebugStringW(L"Tavro: ERROR - Failed to create main window\n");
    FatalMessage(L"Failed to create main window.");
    FreeLibrary(g_scintillaModule);
    return 1;
  }
  OutputDebugStringW(L"Tavro: Main window created\n");
  ShowWindow(window, showCommand);
  UpdateWindow(window);
  OutputDebugStringW(L"Tavro: Window shown\n");

  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  if (argv && argc >= 2 && wcsncmp(argv[1], L"--", 2) != 0) PostOpenFile(window, argv[1]);
  if (argv) LocalFree(argv);

  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }

  OutputDebugStringW(L"Tavro: Cleaning up resources\n");
  FreeLibrary(g_scintillaModule);
  OutputDebugStringW(L"Tavro: Scintilla.dll unloaded\n");
  int exitCode = static_cast<int>(msg.wParam);
  wchar_t line[64];
  wsprintfW(line, L"Tavro: Exiting with code %d\n", exitCode);
  OutputDebugStringW(line);
  if (SUCCEEDED(com)) {
    CoUninitialize();
    OutputDebugStringW(L"Tavro: COM uninitialized\n");
  }
  return exitCode;
}
