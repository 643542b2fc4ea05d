// The AI panel's rules without a window.
#include "ai/panel/panel_rules.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PanelLayoutTest, ControlsOfATallPanel) {
  const PanelLayout layout = ComputePanelLayout(400, 600, 80);
  EXPECT_EQ(layout.inputTop, 600 - 54 - 80);
  EXPECT_EQ(layout.splitterTop, 600 - 80 - 59);
  EXPECT_EQ(layout.title, (PanelBox{0, 0, 90, 27}));
  EXPECT_EQ(layout.history, (PanelBox{94, 0, 130, 27}));
  EXPECT_EQ(layout.connection, (PanelBox{292, 0, 100, 27}));
  EXPECT_EQ(layout.transcript, (PanelBox{0, 28, 400, 466 - 33}));
  EXPECT_EQ(layout.input, (PanelBox{8, 466, 370, 80}));
  EXPECT_EQ(layout.inputScroll, (PanelBox{380, 466, 12, 80}));
  EXPECT_EQ(layout.aiSettings, (PanelBox{8, 549, 85, 26}));
  EXPECT_EQ(layout.newChat, (PanelBox{99, 549, 75, 26}));
  EXPECT_EQ(layout.send, (PanelBox{322, 549, 70, 26}));
  EXPECT_EQ(layout.status, (PanelBox{8, 578, 384, 18}));
}

TEST(PanelLayoutTest, AVeryShortPanelKeepsTheInputTopAt73) {
  const PanelLayout layout = ComputePanelLayout(400, 150, 80);
  EXPECT_EQ(layout.inputTop, 73);
  EXPECT_EQ(layout.splitterTop, 28);
  EXPECT_EQ(layout.transcript.height, 40);
  EXPECT_EQ(layout.input.height, 150 - 54 - 73);
}

TEST(Splitter, DragIsClampedTo52And200) {
  EXPECT_EQ(DraggedInputHeight(80, 50), 130);
  EXPECT_EQ(DraggedInputHeight(80, -20), 60);
  EXPECT_EQ(DraggedInputHeight(80, 500), 200);
  EXPECT_EQ(DraggedInputHeight(80, -500), 52);
  EXPECT_EQ(DraggedInputHeight(80, 120), 200);
  EXPECT_EQ(DraggedInputHeight(80, -28), 52);
}

TEST(HistoryButton, TextRules) {
  EXPECT_EQ(HistoryButtonText(false, true, L"Anything"), L"History (disabled)");
  EXPECT_EQ(HistoryButtonText(true, false, L"Plans"), L"Chat History");
  EXPECT_EQ(HistoryButtonText(true, true, L"New Chat"), L"Chat History");
  EXPECT_EQ(HistoryButtonText(true, true, L"Plans"), L"Plans");
  const std::wstring twenty = L"12345678901234567890";
  EXPECT_EQ(HistoryButtonText(true, true, twenty), twenty);
  EXPECT_EQ(HistoryButtonText(true, true, twenty + L"1"), L"12345678901234567...");
}

TEST(HistoryMenu, RowTextRules) {
  EXPECT_EQ(HistoryMenuRowText(L""), L"Untitled Chat");
  const std::wstring forty(40, L'x');
  EXPECT_EQ(HistoryMenuRowText(forty), forty);
  EXPECT_EQ(HistoryMenuRowText(forty + L"y"), std::wstring(37, L'x') + L"...");
}

TEST(TranscriptText, ChatStartLine) {
  EXPECT_EQ(ChatStartLine(L"2026-11-23 21:05", 9, 4), L"\nChat started: 2026-11-23 21:05   |   Opened: 09:04\n\n");
}

TEST(TranscriptText, EntriesAreTrimmedAndEmptyWritesNothing) {
  EXPECT_EQ(TranscriptEntry(true, L"  \t hello \r\n"), L"YOU: hello\n\n");
  EXPECT_EQ(TranscriptEntry(false, L"\nan answer\n"), L"AI: an answer\n\n");
  EXPECT_EQ(TranscriptEntry(true, L" \r\n\t "), L"");
  EXPECT_EQ(TranscriptEntry(false, L""), L"");
  EXPECT_EQ(TrimMessage(L"  inner  spaces stay  "), L"inner  spaces stay");
}

TEST(InputLimit, TypingStopsAt80000ButNotTheEditingKeys) {
  EXPECT_TRUE(InputTakesCharacter(79999, 'a'));
  EXPECT_FALSE(InputTakesCharacter(80000, 'a'));
  EXPECT_FALSE(InputTakesCharacter(80001, ' '));
  for (unsigned key : {8u, 13u, 27u, 127u}) EXPECT_TRUE(InputTakesCharacter(80000, key)) << key;
  EXPECT_FALSE(InputTakesCharacter(80000, 9));
}

TEST(InputLimit, PasteIsCutTo80000) {
  EXPECT_EQ(CutToInputLimit(std::wstring(100000, L'p')).size(), 80000u);
  EXPECT_EQ(CutToInputLimit(std::wstring(80000, L'p')).size(), 80000u);
  EXPECT_EQ(CutToInputLimit(L"short"), L"short");
}

TEST(InputScrollBar, HiddenWhileTheLinesFit) {
  const InputScroll scroll = MeasureInputScroll(3, 0, 80, 20, 80);
  EXPECT_EQ(scroll.page, 4);
  EXPECT_FALSE(scroll.visible);
  EXPECT_EQ(scroll.position, 0);
}

TEST(InputScrollBar, ThumbSizeAndOffset) {
  // 20 lines, 4 in view, track 80: thumb 80 * 4 / 20 = 16, raised to 20.
  InputScroll scroll = MeasureInputScroll(20, 8, 80, 20, 80);
  EXPECT_TRUE(scroll.visible);
  EXPECT_EQ(scroll.max, 19);
  EXPECT_EQ(scroll.thumbHeight, 20);
  EXPECT_EQ(scroll.thumbTop, 8 * (80 - 20) / 16);
  // The first line is limited to max - page + 1.
  scroll = MeasureInputScroll(20, 30, 80, 20, 80);
  EXPECT_EQ(scroll.position, 16);
  EXPECT_EQ(scroll.thumbTop, 60);
  // A big page makes a big thumb.
  scroll = MeasureInputScroll(10, 0, 160, 20, 100);
  EXPECT_EQ(scroll.thumbHeight, 100 * 8 / 10);
}

TEST(PanelButtons, FillsByThemeKindAndState) {
  EXPECT_EQ(PanelButtonFill(true, PanelButtonKind::kPlain, false), 0x413430u);
  EXPECT_EQ(PanelButtonFill(true, PanelButtonKind::kPlain, true), 0x4B3C37u);
  EXPECT_EQ(PanelButtonFill(false, PanelButtonKind::kPlain, false), 0xEBDCD2u);
  EXPECT_EQ(PanelButtonFill(false, PanelButtonKind::kPlain, true), 0xDCCDC3u);
  EXPECT_EQ(PanelButtonFill(true, PanelButtonKind::kDisabled, true), 0x2A2626u);
  EXPECT_EQ(PanelButtonFill(false, PanelButtonKind::kDisabled, false), 0xE4E1E1u);
  EXPECT_EQ(PanelButtonFill(true, PanelButtonKind::kSendIdle, false), 0x8C5528u);
  EXPECT_EQ(PanelButtonFill(false, PanelButtonKind::kSendIdle, true), 0xEBC3A0u);
  EXPECT_EQ(PanelButtonFill(true, PanelButtonKind::kSendGenerating, true), 0x32328Cu);
  EXPECT_EQ(PanelButtonFill(false, PanelButtonKind::kSendGenerating, false), 0xC8C8FAu);
}

}  // namespace
