// The start screen: a layered top-most window in fixed colours with its own
// message loop, shown for a second and faded out, before the DLLs load.
#include <windows.h>
#include <dwmapi.h>
#include <shellapi.h>

#include "base/app_state.h"
#include "presentation/presentation.h"
#include "presentation/splash_layout.h"
#include "resources/resource_ids.h"
#include "tavro_version.h"

namespace {

constexpr wchar_t kSplashClass[] = L"TavroSplash";
constexpr UINT_PTR kShowTimer = 1;
constexpr UINT_PTR kFadeTimer = 2;

struct SplashState {
  bool done = false;
  bool fading = false;
  int alpha = 255;
};

SplashState g_splash;

HFONT SplashFont(int height, int weight) {
  return CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
}

void Fill(HDC dc, RECT box, COLORREF colour) {
  HBRUSH brush = CreateSolidBrush(colour);
  FillRect(dc, &box, brush);
  DeleteObject(brush);
}

void Text(HDC dc, const wchar_t* text, int height, int weight, COLORREF colour, RECT box, UINT format) {
  HFONT font = SplashFont(height, weight);
  HGDIOBJ old = SelectObject(dc, font);
  SetTextColor(dc, colour);
  DrawTextW(dc, text, -1, &box, format | DT_NOPREFIX | DT_SINGLELINE);
  SelectObject(dc, old);
  DeleteObject(font);
}

void PaintSplash(HDC dc, int width, int height) {
  SetBkMode(dc, TRANSPARENT);
  Fill(dc, {0, 0, width, height}, kSplashBackground);
  Fill(dc, {0, 0, width, 3}, kSplashAccent);
  HBRUSH frame = CreateSolidBrush(kSplashFrame);
  RECT all = {0, 0, width, height};
  FrameRect(dc, &all, frame);
  DeleteObject(frame);

  int iconTop = (height - 96) / 2 - 10;
  HICON icon = static_cast<HICON>(LoadImageW(g_hInstance, MAKEINTRESOURCEW(IDI_TAVRO), IMAGE_ICON, 96, 96, 0));
  if (icon) {
    DrawIconEx(dc, 36, iconTop, icon, 96, 96, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
  }

  const int right = width - 20;
  Text(dc, L"Tavro", -38, FW_BOLD, kSplashTitle, {160, 42, right, 92}, DT_LEFT | DT_TOP);
  Text(dc, L"Lightweight text editor for Windows", -13, FW_NORMAL, kSplashMuted, {160, 86, right, 106},
       DT_LEFT | DT_TOP);
  Text(dc, SplashVersionLine().c_str(), -12, FW_NORMAL, kSplashVersion, {160, 110, right, 128}, DT_LEFT | DT_TOP);
  Fill(dc, {160, 136, width - 24, 137}, kSplashFrame);

  for (int i = 0; i < kSplashFeatureCount; ++i) {
    int top = 148 + i * 21;
    Text(dc, kSplashFeatures[i].mark, -12, FW_NORMAL, kSplashAccent, {160, top, 174, top + 18}, DT_LEFT | DT_TOP);
    Text(dc, kSplashFeatures[i].text, -12, FW_NORMAL, kSplashFeatureText, {174, top, right, top + 18},
         DT_LEFT | DT_TOP);
  }
  Text(dc, L"Click anywhere to continue\u2026", -11, FW_NORMAL, kSplashMuted, {0, height - 28, width, height - 8},
       DT_CENTER | DT_TOP);

  HBRUSH dotBrush = CreateSolidBrush(kSplashAccent);
  HGDIOBJ oldBrush = SelectObject(dc, dotBrush);
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  int dotTop = (height - 96) / 2 + 96;
  Ellipse(dc, 81, dotTop, 81 + 6 + 1, dotTop + 6 + 1);
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(dotBrush);
}

void StartFade(HWND window) {
  g_splash.fading = true;
  KillTimer(window, kShowTimer);
  SetTimer(window, kFadeTimer, 30, nullptr);
}

void End(HWND window) {
  KillTimer(window, kShowTimer);
  KillTimer(window, kFadeTimer);
  DestroyWindow(window);
}

LRESULT CALLBACK SplashProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE: {
      BOOL dark = TRUE;
      DwmSetWindowAttribute(window, 20, &dark, sizeof(dark));
      SetLayeredWindowAttributes(window, 0, 255, LWA_ALPHA);
      SetTimer(window, kShowTimer, 1000, nullptr);
      return 0;
    }
    case WM_TIMER:
      if (wParam == kShowTimer) {
        if (!g_splash.fading) StartFade(window);
      } else if (wParam == kFadeTimer) {
        g_splash.alpha = NextSplashAlpha(g_splash.alpha);
        if (SplashFadeEnds(g_splash.alpha)) {
          End(window);
        } else {
          SetLayeredWindowAttributes(window, 0, static_cast<BYTE>(g_splash.alpha), LWA_ALPHA);
        }
      }
      return 0;
    case WM_LBUTTONDOWN:
      if (g_splash.fading) End(window);
      else StartFade(window);
      return 0;
    case WM_KEYDOWN: End(window); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_PAINT: {
      PAINTSTRUCT paint;
      HDC dc = BeginPaint(window, &paint);
      RECT client;
      GetClientRect(window, &client);
      HDC memory = CreateCompatibleDC(dc);
      HBITMAP bitmap = CreateCompatibleBitmap(dc, client.right, client.bottom);
      HGDIOBJ old = SelectObject(memory, bitmap);
      PaintSplash(memory, client.right, client.bottom);
      BitBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, SRCCOPY);
      SelectObject(memory, old);
      DeleteObject(bitmap);
      DeleteDC(memory);
      EndPaint(window, &paint);
      return 0;
    }
    case WM_DESTROY:
      g_splash.done = true;
      PostQuitMessage(0);
      return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
  }
}

bool FirstArgumentIsViewer() {
  int count = 0;
  LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
  bool viewer = args && count >= 2 && lstrcmpW(args[1], L"--viewer") == 0;
  if (args) LocalFree(args);
  return viewer;
}

}  // namespace

void ShowSplash(HINSTANCE instance) {
  if (FirstArgumentIsViewer()) return;
  static bool registered = false;
  if (!registered) {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = SplashProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kSplashClass;
    registered = RegisterClassExW(&windowClass) != 0;
    if (!registered) return;
  }
  g_splash = SplashState();
  int x = (GetSystemMetrics(SM_CXSCREEN) - kSplashWidth) / 2;
  int y = (GetSystemMetrics(SM_CYSCREEN) - kSplashHeight) / 2;
  HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_LAYERED, kSplashClass, L"", WS_POPUP, x, y,
                                kSplashWidth, kSplashHeight, nullptr, nullptr, instance, nullptr);
  if (!window) return;
  ShowWindow(window, SW_SHOW);
  UpdateWindow(window);
  MSG msg;
  bool quitTaken = false;
  while (!g_splash.done) {
    BOOL got = GetMessageW(&msg, nullptr, 0, 0);
    if (got <= 0) {
      quitTaken = got == 0;
      break;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  // Take the splash's own quit out of the queue, so the main loop doesn't end on it.
  while (!quitTaken && PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) break;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
}
