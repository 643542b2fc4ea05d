// Process entry: settles profile and role, loads settings and the two
// editor modules, builds the main window, opens files and runs the loop.
#include <windows.h>

#include <commctrl.h>
#include <objbase.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "ai/client/ai_state.h"
#include "ai/chat/chat_store.h"
#include "ai/panel/ai_panel.h"
#include "ai/panel/connectivity.h"
#include "ai/panel/typing_animator.h"
#include "base/heap_text.h"
#include "presentation/help_window.h"
#include "presentation/message_box.h"
#include "resources/resource_ids.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "settings/settings.h"
#include "settings/temp_files.h"
#include "shell/command_line.h"
#include "shell/shell.h"

namespace {

constexpr int kUseDefault = static_cast<int>(0x80000000);
constexpr int kViewerWidth = 660;
constexpr int kViewerHeight = 820;

void Log(const wchar_t* line) { OutputDebugStringW(line); }

template <typename... Args>
void Logf(const wchar_t* format, Args... args) {
  wchar_t line[1024];
  swprintf(line, 1024, format, args...);
  OutputDebugStringW(line);
}

void FatalMessage(const wchar_t* text) { ShowMessageBox(nullptr, kBoxOk, L"Tavro - Fatal Error", text); }

std::vector<std::wstring> CommandLineArguments() {
  std::vector<std::wstring> args;
  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  for (int i = 0; argv && i < argc; ++i) args.emplace_back(argv[i]);
  if (argv) LocalFree(argv);
  return args;
}

struct InstanceSearch {
  ATOM profileAtom;
  HWND found;
};

BOOL CALLBACK MatchProfileWindow(HWND window, LPARAM data) {
  auto* search = reinterpret_cast<InstanceSearch*>(data);
  wchar_t className[64] = {};
  GetClassNameW(window, className, 64);
  if (wcscmp(className, kMainWindowClass) != 0 || !GetPropW(window, kProfileProperty)) return TRUE;
  ATOM atom = static_cast<ATOM>(reinterpret_cast<UINT_PTR>(GetPropW(window, kProfileAtomProperty)));
  if (!atom || atom != search->profileAtom) return TRUE;
  search->found = window;
  return FALSE;
}

// The running window of this profile, restored and brought to the front.
void RaiseRunningInstance(const std::wstring& label) {
  InstanceSearch search = {GlobalFindAtomW(label.c_str()), nullptr};
  if (!search.profileAtom) return;
  EnumWindows(MatchProfileWindow, reinterpret_cast<LPARAM>(&search));
  if (!search.found) return;
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof(placement);
  GetWindowPlacement(search.found, &placement);
  if (placement.showCmd == SW_SHOWMINIMIZED) ShowWindow(search.found, SW_RESTORE);
  SetForegroundWindow(search.found);
}

// What the start-up made before the message loop, released on every way
// out: by a failed start silently, by the normal end with its log lines.
struct StartupLife {
  bool historyLockMade = false;
};

StartupLife g_startup;

void ReleaseStartup(bool logged) {
  if (g_lexillaModule) {
    FreeLibrary(g_lexillaModule);
    g_lexillaModule = nullptr;
    if (logged) Log(L"Tavro: lexilla.dll unloaded\n");
  }
  if (g_scintillaModule) {
    FreeLibrary(g_scintillaModule);
    g_scintillaModule = nullptr;
    if (logged) Log(L"Tavro: Scintilla.dll unloaded\n");
  }
  if (g_startup.historyLockMade) {
    DeleteCriticalSection(&g_aiHistoryLock);
    g_startup.historyLockMade = false;
  }
  if (logged) Log(L"Tavro: Critical sections deleted\n");
}

void FreeModules() { ReleaseStartup(false); }

// In a Viewer only Esc, Ctrl+A and Ctrl+C get through; typing and navigation don't.
bool ViewerDropsMessage(const MSG& msg) {
  if (msg.message == WM_CHAR) return true;
  if (msg.message != WM_KEYDOWN && msg.message != WM_SYSKEYDOWN) return false;
  if (msg.wParam == VK_ESCAPE) return false;
  bool ctrl = (GetKeyState(VK_CONTROL) & 0x8000) != 0;
  return !(ctrl && (msg.wParam == 'A' || msg.wParam == 'C'));
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand) {
  g_hInstance = instance;
  Log(L"Tavro: wWinMain started\n");
  HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  Log(SUCCEEDED(com) || com == RPC_E_CHANGED_MODE ? L"Tavro: COM initialized\n" : L"COM initialization failed\n");

  Log(L"Tavro: Loading settings\n");
  Log(L"Tavro: Initializing ChatHistoryManager\n");
  const std::vector<std::wstring> args = CommandLineArguments();
  const StartupArguments startup = ParseStartupArguments(args);
  g_profileName = startup.profileName;

  if (!startup.viewer) {
    std::wstring mutexName = kInstanceMutexPrefix + ProfileLabel(g_profileName);
    HANDLE instanceMutex = CreateMutexW(nullptr, TRUE, mutexName.c_str());
    if (instanceMutex && GetLastError() == ERROR_ALREADY_EXISTS) {
      // Another process runs this profile: raise it; a file argument is dropped.
      RaiseRunningInstance(ProfileLabel(g_profileName));
      CloseHandle(instanceMutex);
      if (SUCCEEDED(com)) CoUninitialize();
      return 0;
    }
    // The handle stays open for the life of the process.
  }

  LoadAll(GetChatHistory());
  LoadSettings();
  if (g_settings.showSplash && !startup.viewer) ShowSplash(instance);
  TakeLiveSettings();
  CleanupTempFiles();
  g_themeChosen = true;
  if (g_settings.firstRun) {
    g_settings.firstRun = 0;
    SaveSettings(g_settings);
  }

  Log(L"Tavro: Parsing command line for --viewer flag\n");
  g_viewerMode = startup.viewer;
  if (g_viewerMode) Log(L"Tavro: Viewer mode enabled\n");

  Log(L"Tavro: Initializing common controls\n");
  INITCOMMONCONTROLSEX icc = {};
  icc.dwSize = sizeof(icc);
  icc.dwICC = ICC_BAR_CLASSES;
  InitCommonControlsEx(&icc);

  Log(L"Tavro: Loading Scintilla.dll\n");
  g_scintillaModule = LoadLibraryW(L"Scintilla.dll");
  if (!g_scintillaModule) {
    Log(L"Tavro: ERROR - Scintilla.dll not found\n");
    FatalMessage(L"Scintilla.dll not found.\nPlace Scintilla.dll next to Tavro.exe.");
    return 1;
  }
  Log(L"Tavro: Scintilla.dll loaded\n");

  if (!g_viewerMode) {
    Log(L"Tavro: Loading lexilla.dll\n");
    g_lexillaModule = LoadLibraryW(L"lexilla.dll");
    if (!g_lexillaModule) {
      Log(L"Tavro: ERROR - lexilla.dll not found\n");
      FatalMessage(L"lexilla.dll not found.\nPlace lexilla.dll next to Tavro.exe.");
      FreeModules();
      return 1;
    }
    Log(L"Tavro: lexilla.dll loaded\n");
    g_createLexer = reinterpret_cast<CreateLexerFn>(
        reinterpret_cast<void*>(GetProcAddress(g_lexillaModule, "CreateLexer")));
    if (!g_createLexer) {
      Log(L"Tavro: ERROR - CreateLexer not found in lexilla.dll\n");
      FatalMessage(L"lexilla.dll: CreateLexer not found.\nLexilla verzija nije kompatibilna.");
      FreeModules();
      return 1;
    }
    Log(L"Tavro: CreateLexer function found\n");
  }

  Log(L"Tavro: Initializing critical section\n");
  InitializeCriticalSection(&g_aiHistoryLock);
  g_startup.historyLockMade = true;

  Log(L"Tavro: Registering Scintilla window class\n");
  using RegisterClassesFn = int(__stdcall*)(void*);
  auto registerClasses = reinterpret_cast<RegisterClassesFn>(
      reinterpret_cast<void*>(GetProcAddress(g_scintillaModule, "Scintilla_RegisterClasses")));
  if (registerClasses) registerClasses(instance);

  Log(L"Tavro: Loading accelerators\n");
  HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_ACCELERATORS));

  Log(L"Tavro: Registering main window class\n");
  RegisterMarginClass(instance);
  if (!RegisterMainWindowClass(instance)) {
    Log(L"Tavro: ERROR - Failed to register window class\n");
    FatalMessage(L"Failed to register window class.");
    FreeModules();
    return 1;
  }
  Log(L"Tavro: Window class registered\n");

  Log(L"Tavro: Creating main window\n");
  int x = CW_USEDEFAULT, y = CW_USEDEFAULT, width, height;
  if (g_viewerMode) {
    Log(L"Tavro: Viewer mode - getting window position from STARTUPINFO\n");
    STARTUPINFOW startupInfo = {};
    startupInfo.cb = sizeof(startupInfo);
    GetStartupInfoW(&startupInfo);
    if (startupInfo.dwFlags & STARTF_USEPOSITION) {
      x = static_cast<int>(startupInfo.dwX);
      y = static_cast<int>(startupInfo.dwY);
      Log(L"Tavro: Using position from STARTUPINFO\n");
    } else {
      Log(L"Tavro: Using default position\n");
    }
    width = kViewerWidth;
    height = kViewerHeight;
    if (startupInfo.dwFlags & STARTF_USESIZE) {
      width = static_cast<int>(startupInfo.dwXSize);
      height = static_cast<int>(startupInfo.dwYSize);
    }
    Log(L"Tavro: Viewer window size set\n");
  } else {
    Log(L"Tavro: Normal mode - using settings for window position\n");
    if (g_settings.windowX == kUseDefault || g_settings.windowY == kUseDefault) {
      Log(L"Tavro: Using default position (CW_USEDEFAULT)\n");
    } else {
      x = g_settings.windowX;
      y = g_settings.windowY;
    }
    width = g_settings.windowWidth;
    height = g_settings.windowHeight;
  }
  Logf(L"Tavro: Window size: %d x %d, pos: %d, %d\n", width, height, x, y);

  HWND window = CreateWindowExW(g_viewerMode ? 0 : WS_EX_ACCEPTFILES, kMainWindowClass, L"Tavro - Viewer",
                                WS_OVERLAPPEDWINDOW, x, y, width, height, nullptr, nullptr, instance, nullptr);
  if (!window) {
    Log(L"Tavro: ERROR - Failed to create main window\n");
    FatalMessage(L"Failed to create main window.");
    FreeModules();
    return 1;
  }
  Log(L"Tavro: Main window created\n");

  StartConnectivityWatch(window);

  if (!g_viewerMode && g_settings.transparencyPercent >= 1) {
    Log(L"Tavro: Applying window transparency\n");
    SetWindowLongPtrW(window, GWL_EXSTYLE, GetWindowLongPtrW(window, GWL_EXSTYLE) | WS_EX_LAYERED);
    SetLayeredWindowAttributes(window, 0, TransparencyAlpha(g_settings.transparencyPercent), LWA_ALPHA);
  }

  if (g_viewerMode) ShowWindow(window, SW_SHOWNORMAL);
  else ShowWindow(window, g_settings.windowMaximized ? SW_SHOWMAXIMIZED : showCommand);
  UpdateWindow(window);
  Log(L"Tavro: Window shown\n");

  Log(L"Tavro: Processing command line arguments\n");
  Logf(L"Tavro: Command line has %d arguments\n", static_cast<int>(args.size()));
  if (args.size() >= 2) Logf(L"Tavro: First argument: %ls\n", args[1].c_str());
  if (startup.hasFileToOpen) {
    if (startup.viewer) Log(L"Tavro: Viewer mode - loading file from command line\n");
    PostHeapText(window, WM_USER_OPEN_FILE, startup.fileToOpen);
  }
  // The last file is sent, so it loads before the posted command-line file,
  // which then replaces it with no prompt in between.
  if (!g_viewerMode && g_settings.lastFilePath[0]) {
    std::wstring line = L"[wWinMain] Loading last file for profile: " + g_profileName + L"\n";
    Log(line.c_str());
    if (GetFileAttributesW(g_settings.lastFilePath) != INVALID_FILE_ATTRIBUTES) {
      SendHeapText(window, WM_USER_OPEN_FILE, g_settings.lastFilePath);
    } else {
      g_settings.lastFilePath[0] = L'\0';
      SaveSettings(g_settings);
    }
  } else {
    // Said whenever there is no last file to restore, a posted command-line file or not.
    Log(L"Tavro: No file to load (untitled document)\n");
  }

  MSG msg = {};
  while (GetMessageW(&msg, nullptr, 0, 0)) {
    if (g_viewerMode) {
      if (ViewerDropsMessage(msg)) continue;
    } else if (accelerators && !FocusIsInChat() && TranslateAcceleratorW(window, accelerators, &msg)) {
      continue;
    }
    if (!g_viewerMode && g_hwndHelp && IsDialogMessageW(g_hwndHelp, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }

  Log(L"Tavro: Cleaning up resources\n");
  Log(L"Tavro: Shutting down AI Typing Animator...\n");
  AnimatorStop(GetTypingAnimator());
  StopConnectivityWatch();
  ReleaseStartup(true);
  int exitCode = static_cast<int>(msg.wParam);
  Logf(L"Tavro: Exiting with code %d\n", exitCode);
  if (SUCCEEDED(com)) {
    CoUninitialize();
    Log(L"Tavro: COM uninitialized\n");
  }
  return exitCode;
}
