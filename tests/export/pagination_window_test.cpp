// Pagination with GDI: the pagination dialog and its protocol, the real
// worker under it (pages, page 1, cancel), a page rendered to a bitmap, and
// the editor's lines as printing reads them.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "export/markdown_fonts.h"
#include "export/page_render.h"
#include "export/pagination_dialog.h"
#include "export/pagination_worker.h"
#include "export/progress_dialog.h"
#include "settings/settings.h"
#include "tests/common/scintilla_dll.h"
#include "tests/common/owner_window.h"

namespace {

constexpr wchar_t kFont[] = L"Courier New";
constexpr int kFontSize = 11;

struct StandIn {
  PaginationJob* job = nullptr;
  std::function<void(HWND dialog, ProgressDialogState& state)> body;
};

DWORD WINAPI RunStandIn(LPVOID parameter) {
  auto* standIn = static_cast<StandIn*>(parameter);
  if (WaitForSingleObject(standIn->job->readyEvent, 10000) != WAIT_OBJECT_0) return 1;
  HWND dialog = standIn->job->dialog.load();
  standIn->body(dialog, *ProgressStateOf(dialog));
  return 0;
}

LPARAM Centre(const RECT& rect) { return MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2); }

// The text height of the font the worker measures with, on the screen.
int ScreenTextHeight() {
  HDC screen = GetDC(nullptr);
  HFONT font = CreateMarkdownFont(screen, kFont, kFontSize, false, false);
  HGDIOBJ old = SelectObject(screen, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(screen, &metrics);
  SelectObject(screen, old);
  DeleteObject(font);
  ReleaseDC(nullptr, screen);
  return metrics.tmHeight;
}

// The bitmap's pixels, top-down, as 0x00RRGGBB.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> data;

  explicit Pixels(HBITMAP bitmap) {
    BITMAP info = {};
    GetObjectW(bitmap, sizeof(info), &info);
    width = info.bmWidth;
    height = info.bmHeight;
    data.resize(static_cast<size_t>(width) * height);
    BITMAPINFO header = {};
    header.bmiHeader.biSize = sizeof(header.bmiHeader);
    header.bmiHeader.biWidth = width;
    header.bmiHeader.biHeight = -height;
    header.bmiHeader.biPlanes = 1;
    header.bmiHeader.biBitCount = 32;
    header.bmiHeader.biCompression = BI_RGB;
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, height, data.data(), &header, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
  }
  uint32_t At(int x, int y) const { return data[static_cast<size_t>(y) * width + x] & 0xFFFFFF; }
  // The darkest grey level (the least of the three channels) within a box.
  int DarkestIn(int left, int top, int right, int bottom) const {
    int darkest = 255;
    for (int y = top; y < bottom; ++y)
      for (int x = left; x < right; ++x) {
        const uint32_t c = At(x, y);
        darkest = std::min({darkest, static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                            static_cast<int>(c >> 16)});
      }
    return darkest;
  }
};

class Pagination : public ::testing::Test {
 protected:
  void SetUp() override {
    g_hInstance = GetModuleHandleW(nullptr);
    SetDefaultSettings(g_settings);
    g_fontSize = kFontSize;
    owner_ = MakeTestOwner();
    ASSERT_NE(owner_, nullptr);
    job_.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job_.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    job_.fontName = kFont;
    job_.fontSize = kFontSize;
    ComputePreviewGeometry(job_.geometry);
  }
  void TearDown() override {
    CloseHandle(job_.readyEvent);
    CloseHandle(job_.cancelEvent);
    if (job_.firstPage) DeleteObject(job_.firstPage);
    DestroyWindow(owner_);
  }

  INT_PTR RunWithStandIn(std::function<void(HWND, ProgressDialogState&)> body) {
    StandIn standIn{&job_, std::move(body)};
    HANDLE thread = CreateThread(nullptr, 0, RunStandIn, &standIn, 0, nullptr);
    INT_PTR result = RunPaginationProgressDialog(owner_, job_);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return result;
  }

  INT_PTR RunWorker() {
    HANDLE thread = CreateThread(nullptr, 0, PaginationWorker, &job_, 0, nullptr);
    INT_PTR result = RunPaginationProgressDialog(owner_, job_);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return result;
  }

  HWND owner_ = nullptr;
  PaginationJob job_;
};

}  // namespace

TEST_F(Pagination, DialogShowsThePagesAndTheEndClosesWithOne) {
  std::wstring first, title, counted, bare;
  INT_PTR result = RunWithStandIn([&](HWND dialog, ProgressDialogState& state) {
    first = state.status;
    wchar_t caption[64] = {};
    GetWindowTextW(dialog, caption, 64);
    title = caption;
    SendMessageW(dialog, WM_PAGINATION_PROGRESS, 3, 1200);
    counted = state.status;
    SendMessageW(dialog, WM_PAGINATION_PROGRESS, 2, 0);
    bare = state.status;
    PostMessageW(dialog, WM_PAGINATION_FINISHED, 1, 0);
  });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(first, L"Preparing Print Preview...");
  EXPECT_EQ(title, L"Tavro - Print Preview");
  EXPECT_EQ(counted, L"Paginating... page 3  (1200 lines)");
  EXPECT_EQ(bare, L"Paginating... page 2");
}

TEST_F(Pagination, DialogCancelSetsTheJobsEventAndWaitsForTheWorker) {
  bool eventSet = false, alive = false, enabled = true;
  std::wstring status;
  INT_PTR result = RunWithStandIn([&](HWND dialog, ProgressDialogState& state) {
    SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, Centre(state.buttonRect));
    SendMessageW(dialog, WM_LBUTTONUP, 0, Centre(state.buttonRect));
    eventSet = WaitForSingleObject(job_.cancelEvent, 0) == WAIT_OBJECT_0;
    status = state.status;
    enabled = state.buttonEnabled;
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    alive = IsWindow(dialog) != FALSE;
    PostMessageW(dialog, WM_PAGINATION_FINISHED, 0, 0);
  });
  EXPECT_TRUE(eventSet);
  EXPECT_EQ(status, L"Cancelling...");
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(alive);
  EXPECT_EQ(result, 2);
}

TEST_F(Pagination, WorkerFindsThePagesAndRendersPageOne) {
  // Short lines, one text line each: a page holds the lines up to and with
  // the one whose advance passes the frame's height.
  const int count = 300;
  for (int i = 0; i < count; ++i) job_.text += L"Line " + std::to_wstring(i) + L"\r\n";
  job_.lineCount = count + 1;  // the editor counts the empty line after the last break
  const int advance = ScreenTextHeight() + 2;
  const int frame = job_.geometry.bottom - job_.geometry.top;
  const int perPage = frame / advance + 1;
  PageStarts expected;
  for (int start = 0; start < count; start += perPage) expected.push_back(start);

  EXPECT_EQ(RunWorker(), 1);
  EXPECT_FALSE(job_.cancelled.load());
  EXPECT_EQ(job_.pageStarts, expected);
  EXPECT_TRUE(job_.text.empty());  // given back once split
  ASSERT_NE(job_.firstPage, nullptr);
  BITMAP info = {};
  GetObjectW(job_.firstPage, sizeof(info), &info);
  EXPECT_EQ(info.bmWidth, job_.geometry.paperWidth);
  EXPECT_EQ(info.bmHeight, job_.geometry.paperHeight);
}

TEST_F(Pagination, WorkerCancelledBeforeItStartsEndsWithoutAPage) {
  for (int i = 0; i < 500; ++i) job_.text += L"Line\r\n";
  job_.lineCount = 501;
  SetEvent(job_.cancelEvent);
  EXPECT_EQ(RunWorker(), 2);
  EXPECT_TRUE(job_.cancelled.load());
  EXPECT_EQ(job_.firstPage, nullptr);
}

TEST_F(Pagination, APageIsBlackTextOnWhiteWithAGreyFooter) {
  const PageGeometry& g = job_.geometry;
  const std::vector<std::wstring> lines = {L"HHHH HHHH", L"", L"HHHH"};
  HBITMAP bitmap = RenderPage(0, {0}, lines, g, kFont, kFontSize);
  ASSERT_NE(bitmap, nullptr);
  const Pixels page(bitmap);
  DeleteObject(bitmap);
  EXPECT_EQ(page.width, g.paperWidth);
  EXPECT_EQ(page.At(0, 0), 0xFFFFFFu);
  EXPECT_EQ(page.At(g.paperWidth - 1, g.paperHeight - 1), 0xFFFFFFu);
  const int line = ScreenTextHeight();
  // The text: black, from the frame's top left.
  EXPECT_EQ(page.DarkestIn(g.left, g.top, g.right, g.top + line), 0);
  // Nothing left of the frame, nor where the empty line stands.
  EXPECT_EQ(page.DarkestIn(0, g.top, g.left, g.bottom), 255);
  EXPECT_EQ(page.DarkestIn(g.left, g.top + line + 2, g.right, g.top + 2 * line + 4), 255);
  // The footer: grey 0x808080 at its darkest, in the band below the frame.
  EXPECT_EQ(page.DarkestIn(g.left, g.bottom, g.right, g.paperHeight), 0x80);
}

TEST_F(Pagination, AWrappedLineTallerThanTheFrameIsNotDrawn) {
  const PageGeometry& g = job_.geometry;
  std::wstring tall;
  for (int i = 0; i < 4000; ++i) tall += L"word ";
  HBITMAP bitmap = RenderPage(0, {0}, {tall}, g, kFont, kFontSize);
  ASSERT_NE(bitmap, nullptr);
  const Pixels page(bitmap);
  DeleteObject(bitmap);
  EXPECT_EQ(page.DarkestIn(0, 0, g.paperWidth, g.bottom), 255);
  EXPECT_EQ(page.DarkestIn(g.left, g.bottom, g.right, g.paperHeight), 0x80);  // the footer still is
}

TEST(DocumentLines, TheEditorsLinesWithoutTheirEnds) {
  HMODULE scintilla = LoadScintillaDll();
  ASSERT_NE(scintilla, nullptr);
  HWND editor = CreateWindowExW(0, L"Scintilla", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(editor, nullptr);
  g_hwndEditor = editor;
  SendEditor(SCI_SETCODEPAGE, SC_CP_UTF8);
  const char* text = "first\r\n\r\nthird \xE2\x82\xAC\rfourth\nlast";
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  EXPECT_EQ(ReadDocumentLines(), (std::vector<std::wstring>{L"first", L"", L"third \u20AC", L"fourth", L"last"}));
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>("one\r\n"));
  EXPECT_EQ(ReadDocumentLines(), (std::vector<std::wstring>{L"one", L""}));
  g_hwndEditor = nullptr;
  DestroyWindow(editor);
  FreeLibrary(scintilla);
}
