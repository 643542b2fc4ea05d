// tavro_probe: the end-to-end tests' hands inside Wine. It reads one request
// per line on stdin (fields separated by tabs, UTF-8) and answers on stdout
// with "ok" or "err", a tab, and the result; a list answer is "ok\t<n>"
// followed by n lines. Texts are escaped: \\ \n \r \t.
#include <windows.h>

#include <wincrypt.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string ToUtf8(const std::wstring& text) {
  if (text.empty()) return {};
  int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string out(size, '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), size, nullptr, nullptr);
  return out;
}

bool SetClipboardText(const std::wstring& text) {
  if (!OpenClipboard(nullptr)) return false;
  EmptyClipboard();
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  memcpy(GlobalLock(memory), text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  GlobalUnlock(memory);
  SetClipboardData(CF_UNICODETEXT, memory);
  CloseClipboard();
  return true;
}

std::wstring ToWide(const std::string& text) {
  if (text.empty()) return {};
  int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring out(size, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), size);
  return out;
}

std::string Escape(const std::wstring& text) {
  std::string out;
  for (char c : ToUtf8(text)) {
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default: out += c;
    }
  }
  return out;
}

std::string Unescape(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      char next = text[++i];
      out += next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : next;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> fields;
  size_t start = 0;
  for (;;) {
    size_t tab = line.find('\t', start);
    fields.push_back(Unescape(line.substr(start, tab == std::string::npos ? std::string::npos : tab - start)));
    if (tab == std::string::npos) break;
    start = tab + 1;
  }
  return fields;
}

void Reply(const std::string& status, const std::string& value) {
  std::printf("%s\t%s\n", status.c_str(), value.c_str());
  std::fflush(stdout);
}

HWND ToWindow(const std::string& text) { return reinterpret_cast<HWND>(static_cast<intptr_t>(_strtoi64(text.c_str(), nullptr, 0))); }
std::string FromWindow(HWND window) { return std::to_string(reinterpret_cast<intptr_t>(window)); }
long long Number(const std::string& text) { return _strtoi64(text.c_str(), nullptr, 0); }

std::wstring ClassOf(HWND window) {
  wchar_t name[256] = {};
  GetClassNameW(window, name, 256);
  return name;
}

// A loaded machine can keep a window's thread busy for seconds: wait for it
// rather than give up on a thread that merely looks hung.
constexpr UINT kSendTimeoutMs = 30000;

bool TryTextOf(HWND window, std::wstring* out) {
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, kSendTimeoutMs, &length)) return false;
  std::wstring text(length + 1, L'\0');
  DWORD_PTR copied = 0;
  if (!SendMessageTimeoutW(window, WM_GETTEXT, length + 1, reinterpret_cast<LPARAM>(text.data()), SMTO_NORMAL,
                           kSendTimeoutMs, &copied))
    return false;
  text.resize(copied);
  *out = text;
  return true;
}

std::wstring TextOf(HWND window) {
  std::wstring text;
  TryTextOf(window, &text);
  return text;
}

// Waits until the window has no update region left, that is until its thread
// has taken a WM_PAINT for it.
bool WaitPainted(HWND window, DWORD start, DWORD timeoutMs) {
  while (GetUpdateRect(window, nullptr, FALSE)) {
    if (!IsWindow(window) || GetTickCount() - start >= timeoutMs) return false;
    Sleep(20);
  }
  return IsWindow(window);
}

struct WindowQuery {
  std::wstring className;  // empty: any class
  std::wstring title;      // empty: any title
  bool titleIsPrefix = false;
  DWORD processId = 0;     // 0: any process
  HWND found = nullptr;
};

BOOL CALLBACK MatchTopLevel(HWND window, LPARAM data) {
  auto* query = reinterpret_cast<WindowQuery*>(data);
  if (!query->className.empty() && ClassOf(window) != query->className) return TRUE;
  if (query->processId) {
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    if (pid != query->processId) return TRUE;
  }
  if (!query->title.empty()) {
    wchar_t title[512] = {};
    GetWindowTextW(window, title, 512);
    std::wstring text = title;
    if (query->titleIsPrefix ? text.rfind(query->title, 0) != 0 : text != query->title) return TRUE;
  }
  if (!IsWindowVisible(window)) return TRUE;
  query->found = window;
  return FALSE;
}

HWND WaitForTopLevel(WindowQuery query, DWORD timeoutMs) {
  DWORD start = GetTickCount();
  for (;;) {
    EnumWindows(MatchTopLevel, reinterpret_cast<LPARAM>(&query));
    if (query.found || GetTickCount() - start >= timeoutMs) return query.found;
    Sleep(50);
  }
}

BOOL CALLBACK CollectChild(HWND window, LPARAM data) {
  reinterpret_cast<std::vector<HWND>*>(data)->push_back(window);
  return TRUE;
}

std::string DescribeWindow(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  std::string line = FromWindow(window) + "\t" + Escape(ClassOf(window)) + "\t" +
                     std::to_string(GetDlgCtrlID(window)) + "\t" + (IsWindowVisible(window) ? "1" : "0") + "\t" +
                     std::to_string(rect.left) + "\t" + std::to_string(rect.top) + "\t" + std::to_string(rect.right) +
                     "\t" + std::to_string(rect.bottom) + "\t" + Escape(TextOf(window));
  return line;
}


// Holding one thread of a program at its birth, as a debugger does: the
// system stops the whole process at each thread's creation until the
// debugger lets it go, so the thread is suspended before it runs any code
// (and so before it can hold a lock that others wait for). A thread of the
// probe attaches and runs the debug loop; only that thread may continue
// events, resume the held thread and detach.
struct ThreadHold {
  DWORD processId = 0;
  int wanted = 0;             // hold the wanted-th thread started in the program's own image
  HANDLE attached = nullptr;  // set once attached, or failed
  bool attachOk = false;
  std::atomic<DWORD> heldId{0};
  std::atomic<bool> release{false};
  HANDLE done = nullptr;      // set once resumed and detached
};
ThreadHold* g_hold = nullptr;

DWORD WINAPI ThreadHoldLoop(LPVOID parameter) {
  auto* hold = static_cast<ThreadHold*>(parameter);
  hold->attachOk = DebugActiveProcess(hold->processId) != 0;
  if (hold->attachOk) DebugSetProcessKillOnExit(FALSE);
  SetEvent(hold->attached);
  if (!hold->attachOk) return 0;
  ULONG_PTR imageStart = 0, imageEnd = 0;
  HANDLE process = nullptr, heldThread = nullptr;
  int seen = 0;
  for (;;) {
    if (hold->release.load()) {
      if (heldThread) ResumeThread(heldThread);
      DebugActiveProcessStop(hold->processId);
      break;
    }
    DEBUG_EVENT event = {};
    if (!WaitForDebugEvent(&event, 20)) continue;
    DWORD status = DBG_CONTINUE;
    switch (event.dwDebugEventCode) {
      case CREATE_PROCESS_DEBUG_EVENT: {
        process = event.u.CreateProcessInfo.hProcess;
        imageStart = reinterpret_cast<ULONG_PTR>(event.u.CreateProcessInfo.lpBaseOfImage);
        IMAGE_DOS_HEADER dos = {};
        IMAGE_NT_HEADERS nt = {};
        SIZE_T read = 0;
        if (ReadProcessMemory(process, event.u.CreateProcessInfo.lpBaseOfImage, &dos, sizeof(dos), &read) &&
            ReadProcessMemory(process, reinterpret_cast<BYTE*>(event.u.CreateProcessInfo.lpBaseOfImage) + dos.e_lfanew,
                              &nt, sizeof(nt), &read))
          imageEnd = imageStart + nt.OptionalHeader.SizeOfImage;
        if (event.u.CreateProcessInfo.hFile) CloseHandle(event.u.CreateProcessInfo.hFile);
        break;
      }
      case CREATE_THREAD_DEBUG_EVENT: {
        auto start = reinterpret_cast<ULONG_PTR>(event.u.CreateThread.lpStartAddress);
        if (start >= imageStart && start < imageEnd && ++seen == hold->wanted && !heldThread) {
          heldThread = event.u.CreateThread.hThread;
          SuspendThread(heldThread);
          hold->heldId.store(event.dwThreadId);
        }
        break;
      }
      case LOAD_DLL_DEBUG_EVENT:
        if (event.u.LoadDll.hFile) CloseHandle(event.u.LoadDll.hFile);
        break;
      case EXCEPTION_DEBUG_EVENT:
        // The break-in of the attach is ours; every other exception is the program's.
        if (event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT)
          status = DBG_EXCEPTION_NOT_HANDLED;
        break;
    }
    ContinueDebugEvent(event.dwProcessId, event.dwThreadId, status);
  }
  SetEvent(hold->done);
  return 0;
}

void Handle(const std::vector<std::string>& f) {
  const std::string& verb = f[0];
  auto arg = [&](size_t i) -> std::string { return i < f.size() ? f[i] : std::string(); };
  if (verb == "find-window" || verb == "find-window-prefix") {
    // find-window CLASS TITLE TIMEOUT_MS [PID]
    WindowQuery query;
    query.className = ToWide(arg(1));
    query.title = ToWide(arg(2));
    query.titleIsPrefix = verb == "find-window-prefix";
    query.processId = static_cast<DWORD>(Number(arg(4)));
    HWND window = WaitForTopLevel(query, static_cast<DWORD>(Number(arg(3))));
    if (window) Reply("ok", FromWindow(window));
    else Reply("err", "not found");
  } else if (verb == "title" || verb == "text") {
    HWND window = ToWindow(arg(1));
    if (!IsWindow(window)) return Reply("err", "no window");
    std::wstring text;
    if (!TryTextOf(window, &text)) return Reply("err", "no answer from the window's thread");
    Reply("ok", Escape(text));
  } else if (verb == "class") {
    Reply("ok", Escape(ClassOf(ToWindow(arg(1)))));
  } else if (verb == "children") {
    HWND window = ToWindow(arg(1));
    if (!IsWindow(window)) return Reply("err", "no window");
    std::vector<HWND> children;
    EnumChildWindows(window, CollectChild, reinterpret_cast<LPARAM>(&children));
    std::printf("ok\t%u\n", static_cast<unsigned>(children.size()));
    for (HWND child : children) std::printf("%s\n", DescribeWindow(child).c_str());
    std::fflush(stdout);
  } else if (verb == "list-windows") {
    // list-windows CLASS: visible top-level windows of that class (any class when empty).
    struct Matches {
      std::wstring className;
      std::vector<HWND> windows;
    } matches = {ToWide(arg(1)), {}};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
          auto* m = reinterpret_cast<Matches*>(data);
          if (IsWindowVisible(window) && (m->className.empty() || ClassOf(window) == m->className))
            m->windows.push_back(window);
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&matches));
    std::printf("ok\t%u\n", static_cast<unsigned>(matches.windows.size()));
    for (HWND window : matches.windows) std::printf("%s\n", DescribeWindow(window).c_str());
    std::fflush(stdout);
  } else if (verb == "describe") {
    HWND window = ToWindow(arg(1));
    if (!IsWindow(window)) return Reply("err", "no window");
    Reply("ok", DescribeWindow(window));
  } else if (verb == "client") {
    HWND window = ToWindow(arg(1));
    RECT rect = {};
    if (!GetClientRect(window, &rect)) return Reply("err", "no window");
    POINT origin = {0, 0};
    ClientToScreen(window, &origin);
    Reply("ok", std::to_string(rect.right) + "\t" + std::to_string(rect.bottom) + "\t" + std::to_string(origin.x) +
                    "\t" + std::to_string(origin.y));
  } else if (verb == "post" || verb == "send") {
    // post HWND MSG WPARAM LPARAM
    HWND window = ToWindow(arg(1));
    UINT message = static_cast<UINT>(Number(arg(2)));
    WPARAM wParam = static_cast<WPARAM>(Number(arg(3)));
    LPARAM lParam = static_cast<LPARAM>(Number(arg(4)));
    if (verb == "post") {
      if (PostMessageW(window, message, wParam, lParam)) Reply("ok", "");
      else Reply("err", std::to_string(GetLastError()));
    } else {
      DWORD_PTR result = 0;
      if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kSendTimeoutMs, &result))
        Reply("ok", std::to_string(static_cast<long long>(result)));
      else Reply("err", std::to_string(GetLastError()));
    }
  } else if (verb == "chars") {
    // chars HWND TEXT: posts WM_CHAR for each UTF-16 unit.
    HWND window = ToWindow(arg(1));
    for (wchar_t c : ToWide(arg(2))) PostMessageW(window, WM_CHAR, c, 1);
    Reply("ok", "");
  } else if (verb == "press") {
    // press DIALOG BUTTON_TEXT: clicks the child button whose text matches (& ignored).
    HWND dialog = ToWindow(arg(1));
    std::wstring wanted = ToWide(arg(2));
    std::vector<HWND> children;
    EnumChildWindows(dialog, CollectChild, reinterpret_cast<LPARAM>(&children));
    for (HWND child : children) {
      std::wstring text = TextOf(child);
      std::wstring plain;
      for (wchar_t c : text) if (c != L'&') plain += c;
      if (plain == wanted || text == wanted) {
        PostMessageW(child, BM_CLICK, 0, 0);
        return Reply("ok", FromWindow(child));
      }
    }
    Reply("err", "no such button");
  } else if (verb == "alive") {
    Reply("ok", IsWindow(ToWindow(arg(1))) ? "1" : "0");
  } else if (verb == "enabled") {
    Reply("ok", IsWindowEnabled(ToWindow(arg(1))) ? "1" : "0");
  } else if (verb == "wait-gone") {
    HWND window = ToWindow(arg(1));
    DWORD start = GetTickCount(), timeout = static_cast<DWORD>(Number(arg(2)));
    while (IsWindow(window) && GetTickCount() - start < timeout) Sleep(50);
    Reply(IsWindow(window) ? "err" : "ok", "");
  } else if (verb == "settle") {
    // settle HWND TIMEOUT_MS: answers once the window's thread has handled
    // every message posted to it and all input queued for it before this
    // request. A thread takes WM_PAINT only when neither kind is waiting, so
    // the window and its children are invalidated and watched until paints
    // took their update regions. Twice: Wine turns X events into input only
    // when the thread goes back to waiting, which the first paint makes sure of.
    HWND window = ToWindow(arg(1));
    DWORD start = GetTickCount(), timeout = static_cast<DWORD>(Number(arg(2)));
    for (int round = 0; round < 2; ++round) {
      if (!IsWindow(window)) return Reply("err", "no window");
      if (!IsWindowVisible(window) || IsIconic(window)) return Reply("err", "window not shown");
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
      std::vector<HWND> windows = {window};
      EnumChildWindows(window, CollectChild, reinterpret_cast<LPARAM>(&windows));
      for (HWND each : windows) {
        if (!IsWindowVisible(each)) continue;
        if (!WaitPainted(each, start, timeout)) {
          if (!IsWindow(window)) return Reply("err", "no window");
          if (!IsWindow(each)) continue;
          return Reply("err", "no paint: the thread is busy or in a loop of its own");
        }
      }
    }
    Reply("ok", "");
  } else if (verb == "focus") {
    // focus HWND [WITHIN]: the foreground window, the keyboard focus of HWND's
    // thread, and 1 when that focus is WITHIN (HWND when not given) or inside it.
    HWND window = ToWindow(arg(1));
    HWND within = f.size() > 2 ? ToWindow(arg(2)) : window;
    DWORD thread = GetWindowThreadProcessId(window, nullptr);
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);
    if (!thread || !GetGUIThreadInfo(thread, &info)) return Reply("err", std::to_string(GetLastError()));
    bool inside = info.hwndFocus && (info.hwndFocus == within || IsChild(within, info.hwndFocus));
    Reply("ok", FromWindow(GetForegroundWindow()) + "\t" + FromWindow(info.hwndFocus) + "\t" + (inside ? "1" : "0"));
  } else if (verb == "key-down") {
    // key-down VK: 1 while the system has that key down, as input queued so
    // far says (whichever window it went to).
    Reply("ok", (GetAsyncKeyState(static_cast<int>(Number(arg(1)))) & 0x8000) ? "1" : "0");
  } else if (verb == "x-window") {
    // x-window HWND: the X window Wine shows HWND in, 0 when unknown.
    HANDLE id = GetPropW(ToWindow(arg(1)), L"__wine_x11_whole_window");
    Reply("ok", std::to_string(reinterpret_cast<uintptr_t>(id)));
  } else if (verb == "pid") {
    DWORD pid = 0;
    GetWindowThreadProcessId(ToWindow(arg(1)), &pid);
    Reply("ok", std::to_string(pid));
  } else if (verb == "count-windows") {
    // count-windows CLASS: visible top-level windows of that class.
    struct Count {
      std::wstring className;
      int count;
    } count = {ToWide(arg(1)), 0};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
          auto* c = reinterpret_cast<Count*>(data);
          if (IsWindowVisible(window) && ClassOf(window) == c->className) ++c->count;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    Reply("ok", std::to_string(count.count));
  } else if (verb == "iconic") {
    Reply("ok", IsIconic(ToWindow(arg(1))) ? "1" : "0");
  } else if (verb == "foreground") {
    Reply("ok", FromWindow(GetForegroundWindow()));
  } else if (verb == "clipboard") {
    std::wstring text;
    for (int attempt = 0; attempt < 20 && !OpenClipboard(nullptr); ++attempt) Sleep(50);
    if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
      if (auto* chars = static_cast<const wchar_t*>(GlobalLock(data))) {
        text = chars;
        GlobalUnlock(data);
      }
    }
    CloseClipboard();
    Reply("ok", Escape(text));
  } else if (verb == "set-clipboard") {
    std::wstring text = ToWide(arg(1));
    if (!SetClipboardText(text)) return Reply("err", "clipboard busy");
    Reply("ok", "");
  } else if (verb == "try-delete") {
    // try-delete PATH: 0 when deleted, else the Win32 error code.
    if (DeleteFileW(ToWide(arg(1)).c_str())) Reply("ok", "0");
    else Reply("ok", std::to_string(GetLastError()));
  } else if (verb == "try-move") {
    // try-move FROM TO: 0 when renamed, else the Win32 error code.
    if (MoveFileW(ToWide(arg(1)).c_str(), ToWide(arg(2)).c_str())) Reply("ok", "0");
    else Reply("ok", std::to_string(GetLastError()));
  } else if (verb == "spawn") {
    // spawn X Y WIDTH HEIGHT COMMAND_LINE: starts a process with that window
    // position and size in its STARTUPINFO; answers its process id.
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USEPOSITION | STARTF_USESIZE;
    startup.dwX = static_cast<DWORD>(Number(arg(1)));
    startup.dwY = static_cast<DWORD>(Number(arg(2)));
    startup.dwXSize = static_cast<DWORD>(Number(arg(3)));
    startup.dwYSize = static_cast<DWORD>(Number(arg(4)));
    std::wstring commandLine = ToWide(arg(5));
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
      return Reply("err", std::to_string(GetLastError()));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    Reply("ok", std::to_string(process.dwProcessId));
  } else if (verb == "hold-file") {
    // hold-file PATH: opens it with no sharing at all until release-file.
    static HANDLE held = INVALID_HANDLE_VALUE;
    if (held != INVALID_HANDLE_VALUE) CloseHandle(held);
    held = CreateFileW(ToWide(arg(1)).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
    if (held == INVALID_HANDLE_VALUE) return Reply("err", std::to_string(GetLastError()));
    Reply("ok", "");
  } else if (verb == "set-text") {
    DWORD_PTR result = 0;
    std::wstring text = ToWide(arg(2));
    if (!SendMessageTimeoutW(ToWindow(arg(1)), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()), SMTO_NORMAL,
                             kSendTimeoutMs, &result))
      return Reply("err", std::to_string(GetLastError()));
    Reply("ok", std::to_string(static_cast<long long>(result)));
  } else if (verb == "move") {
    // move HWND X Y WIDTH HEIGHT
    if (!SetWindowPos(ToWindow(arg(1)), nullptr, static_cast<int>(Number(arg(2))), static_cast<int>(Number(arg(3))),
                      static_cast<int>(Number(arg(4))), static_cast<int>(Number(arg(5))), SWP_NOZORDER | SWP_NOACTIVATE))
      return Reply("err", std::to_string(GetLastError()));
    Reply("ok", "");
  } else if (verb == "font-families") {
    // font-families: every family EnumFontFamiliesExW reports for
    // DEFAULT_CHARSET, one a line as "TYPE NAME" (TYPE: 4 TrueType, 1 raster).
    LOGFONTW wanted = {};
    wanted.lfCharSet = DEFAULT_CHARSET;
    std::wstring rows;
    HDC dc = GetDC(nullptr);
    EnumFontFamiliesExW(
        dc, &wanted,
        [](const LOGFONTW* font, const TEXTMETRICW*, DWORD type, LPARAM lParam) -> int {
          *reinterpret_cast<std::wstring*>(lParam) += std::to_wstring(type) + L" " + font->lfFaceName + L"\n";
          return 1;
        },
        reinterpret_cast<LPARAM>(&rows), 0);
    ReleaseDC(nullptr, dc);
    Reply("ok", Escape(rows));
  } else if (verb == "font-face") {
    // font-face NAME: the face GDI really selects when asked for NAME.
    HDC dc = GetDC(nullptr);
    HFONT font = CreateFontW(-16, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, ToWide(arg(1)).c_str());
    HGDIOBJ old = SelectObject(dc, font);
    wchar_t face[LF_FACESIZE] = {};
    GetTextFaceW(dc, LF_FACESIZE, face);
    SelectObject(dc, old);
    DeleteObject(font);
    ReleaseDC(nullptr, dc);
    Reply("ok", Escape(face));
  } else if (verb == "layered-alpha") {
    // layered-alpha HWND: the alpha a layered window was given, or -1 when
    // it has no LWA_ALPHA attributes (or isn't layered).
    BYTE alpha = 0;
    DWORD flags = 0;
    if (!GetLayeredWindowAttributes(ToWindow(arg(1)), nullptr, &alpha, &flags) || !(flags & LWA_ALPHA))
      return Reply("ok", "-1");
    Reply("ok", std::to_string(alpha));
  } else if (verb == "exstyle") {
    Reply("ok", std::to_string(static_cast<long long>(GetWindowLongPtrW(ToWindow(arg(1)), GWL_EXSTYLE))));
  } else if (verb == "add-root-cert") {
    // add-root-cert PATH: a DER certificate into this prefix's LocalMachine
    // Root store, so that WinHTTP trusts a test server signed by it.
    HANDLE file = CreateFileW(ToWide(arg(1)).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                              nullptr);
    if (file == INVALID_HANDLE_VALUE) return Reply("err", "open " + std::to_string(GetLastError()));
    std::string der(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ReadFile(file, der.data(), static_cast<DWORD>(der.size()), &read, nullptr);
    CloseHandle(file);
    HCERTSTORE store = CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_LOCAL_MACHINE, L"Root");
    if (!store) return Reply("err", "store " + std::to_string(GetLastError()));
    BOOL added = CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING,
                                                  reinterpret_cast<const BYTE*>(der.data()), read,
                                                  CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
    DWORD error = GetLastError();
    CertCloseStore(store, 0);
    if (!added) return Reply("err", "add " + std::to_string(error));
    Reply("ok", "");
  } else if (verb == "set-text-repeat" || verb == "set-clipboard-repeat") {
    // set-text-repeat HWND UNIT COUNT, set-clipboard-repeat UNIT COUNT: UNIT
    // repeated to COUNT characters, longer than a request line may be.
    const bool toClipboard = verb == "set-clipboard-repeat";
    const std::wstring unit = ToWide(arg(toClipboard ? 1 : 2));
    const size_t count = static_cast<size_t>(Number(arg(toClipboard ? 2 : 3)));
    if (unit.empty()) return Reply("err", "no unit");
    std::wstring text;
    text.reserve(count + unit.size());
    while (text.size() < count) text += unit;
    text.resize(count);
    if (!toClipboard) {
      DWORD_PTR result = 0;
      if (!SendMessageTimeoutW(ToWindow(arg(1)), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()), SMTO_NORMAL,
                               kSendTimeoutMs, &result))
        return Reply("err", std::to_string(GetLastError()));
      return Reply("ok", std::to_string(static_cast<long long>(result)));
    }
    if (!SetClipboardText(text)) return Reply("err", "clipboard busy");
    Reply("ok", "");
  } else if (verb == "status-part") {
    // status-part HWND N: the text of part N of a status bar in another
    // process, read through a buffer lent in that process.
    HWND window = ToWindow(arg(1));
    const WPARAM part = static_cast<WPARAM>(Number(arg(2)));
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId);
    if (!process) return Reply("err", "open " + std::to_string(GetLastError()));
    constexpr SIZE_T kUnits = 1024;
    void* remote = VirtualAllocEx(process, nullptr, kUnits * sizeof(wchar_t), MEM_COMMIT, PAGE_READWRITE);
    std::wstring text(kUnits, L'\0');
    DWORD_PTR length = 0;
    bool ok = remote && SendMessageTimeoutW(window, 0x0400 + 13 /* SB_GETTEXTW */, part,
                                            reinterpret_cast<LPARAM>(remote), SMTO_NORMAL, kSendTimeoutMs, &length) &&
              ReadProcessMemory(process, remote, text.data(), kUnits * sizeof(wchar_t), nullptr);
    if (remote) VirtualFreeEx(process, remote, 0, MEM_RELEASE);
    CloseHandle(process);
    if (!ok) return Reply("err", "read");
    text.resize(wcsnlen(text.c_str(), kUnits));
    Reply("ok", Escape(text));
  } else if (verb == "list-items") {
    // list-items HWND: the selected row of a list box, then its rows, one a
    // line. The system carries a list box's text across processes.
    // A combo box answers the same questions under its own message numbers.
    HWND list = ToWindow(arg(1));
    wchar_t listClass[16] = {};
    GetClassNameW(list, listClass, 16);
    const bool combo = lstrcmpiW(listClass, L"ComboBox") == 0;
    DWORD_PTR count = 0, selected = 0;
    if (!SendMessageTimeoutW(list, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0, SMTO_NORMAL, kSendTimeoutMs, &count) ||
        !SendMessageTimeoutW(list, combo ? CB_GETCURSEL : LB_GETCURSEL, 0, 0, SMTO_NORMAL, kSendTimeoutMs, &selected))
      return Reply("err", std::to_string(GetLastError()));
    std::vector<std::string> rows;
    for (DWORD_PTR i = 0; i < count && static_cast<LONG_PTR>(count) > 0; ++i) {
      DWORD_PTR length = 0;
      if (!SendMessageTimeoutW(list, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, i, 0, SMTO_NORMAL, kSendTimeoutMs, &length))
        return Reply("err", std::to_string(GetLastError()));
      std::wstring row(length + 1, L'\0');
      DWORD_PTR copied = 0;
      if (!SendMessageTimeoutW(list, combo ? CB_GETLBTEXT : LB_GETTEXT, i, reinterpret_cast<LPARAM>(row.data()), SMTO_NORMAL,
                               kSendTimeoutMs, &copied))
        return Reply("err", std::to_string(GetLastError()));
      row.resize(wcsnlen(row.c_str(), length));
      rows.push_back(Escape(row));
    }
    std::printf("ok\t%u\n%lld\n", static_cast<unsigned>(rows.size() + 1), static_cast<long long>(static_cast<LONG_PTR>(selected)));
    for (const std::string& row : rows) std::printf("%s\n", row.c_str());
    std::fflush(stdout);
  } else if (verb == "send-text") {
    // send-text HWND MSG WPARAM: a message that writes a UTF-8 text to the
    // buffer in lParam, as Scintilla's SCI_GETLEXERLANGUAGE does. Sent once
    // with no buffer for the length, then with a buffer lent in the window's
    // process; the answer is that text.
    HWND window = ToWindow(arg(1));
    const UINT message = static_cast<UINT>(Number(arg(2)));
    const WPARAM wParam = static_cast<WPARAM>(Number(arg(3)));
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, message, wParam, 0, SMTO_NORMAL, kSendTimeoutMs, &length))
      return Reply("err", std::to_string(GetLastError()));
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId);
    if (!process) return Reply("err", "open " + std::to_string(GetLastError()));
    std::string text(length + 1, '\0');
    void* remote = VirtualAllocEx(process, nullptr, text.size(), MEM_COMMIT, PAGE_READWRITE);
    DWORD_PTR written = 0;
    bool ok = remote &&
              SendMessageTimeoutW(window, message, wParam, reinterpret_cast<LPARAM>(remote), SMTO_NORMAL,
                                  kSendTimeoutMs, &written) &&
              ReadProcessMemory(process, remote, text.data(), text.size(), nullptr);
    if (remote) VirtualFreeEx(process, remote, 0, MEM_RELEASE);
    CloseHandle(process);
    if (!ok) return Reply("err", "read");
    text.resize(strnlen(text.c_str(), text.size()));
    Reply("ok", Escape(ToWide(text)));
  } else if (verb == "send-string") {
    // send-string HWND MSG WPARAM TEXT: sends MSG with lParam the address of
    // TEXT in UTF-8, zero-terminated, in a buffer lent in the window's
    // process (for messages such as SCI_SETTEXT that take a narrow string).
    HWND window = ToWindow(arg(1));
    const std::string text = arg(4);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, processId);
    if (!process) return Reply("err", "open " + std::to_string(GetLastError()));
    void* remote = VirtualAllocEx(process, nullptr, text.size() + 1, MEM_COMMIT, PAGE_READWRITE);
    DWORD_PTR result = 0;
    bool ok = remote && WriteProcessMemory(process, remote, text.c_str(), text.size() + 1, nullptr) &&
              SendMessageTimeoutW(window, static_cast<UINT>(Number(arg(2))), static_cast<WPARAM>(Number(arg(3))),
                                  reinterpret_cast<LPARAM>(remote), SMTO_NORMAL, kSendTimeoutMs, &result);
    if (remote) VirtualFreeEx(process, remote, 0, MEM_RELEASE);
    CloseHandle(process);
    if (!ok) return Reply("err", "send");
    Reply("ok", std::to_string(static_cast<long long>(result)));
  } else if (verb == "hold-thread") {
    // hold-thread PID N: from now on, the N-th thread that the process starts
    // in its own image is suspended at its birth, until release-thread.
    if (g_hold) return Reply("err", "a thread hold is in place");
    g_hold = new ThreadHold();
    g_hold->processId = static_cast<DWORD>(Number(arg(1)));
    g_hold->wanted = static_cast<int>(Number(arg(2)));
    g_hold->attached = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    g_hold->done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(CreateThread(nullptr, 0, ThreadHoldLoop, g_hold, 0, nullptr));
    WaitForSingleObject(g_hold->attached, INFINITE);
    if (!g_hold->attachOk) {
      DWORD error = GetLastError();
      g_hold = nullptr;  // the loop has ended; the record stays, it is small
      return Reply("err", "attach failed " + std::to_string(error));
    }
    Reply("ok", "");
  } else if (verb == "held-thread") {
    // held-thread: the id of the thread held so far, 0 while none is.
    Reply("ok", std::to_string(g_hold ? g_hold->heldId.load() : 0));
  } else if (verb == "release-thread") {
    // release-thread: resumes the held thread and detaches.
    if (!g_hold) return Reply("err", "no thread hold");
    g_hold->release.store(true);
    WaitForSingleObject(g_hold->done, INFINITE);
    g_hold = nullptr;
    Reply("ok", "");
  } else if (verb == "ping") {
    Reply("ok", "pong");
  } else {
    Reply("err", "unknown verb " + verb);
  }
}

}  // namespace

int wmain() {
  char buffer[65536];
  while (std::fgets(buffer, sizeof(buffer), stdin)) {
    std::string line = buffer;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    if (line.empty()) continue;
    if (line == "quit") break;
    Handle(Split(line));
  }
  return 0;
}
