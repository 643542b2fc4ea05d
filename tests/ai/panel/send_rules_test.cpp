// The send pipeline's rules without a window.
#include "ai/panel/send_rules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(TopicScanTest, LowersAsciiOnly) {
  EXPECT_EQ(LowerAsciiUnits(L"Is IT Worth \u0160\u0106 \u00C9Z"), L"is it worth \u0160\u0106 \u00C9z");
}

TEST(TopicScanTest, IsItWorthHitsItsRowOnceLowered) {
  EXPECT_TRUE(HitsTopicWords(L"Is it worth learning Rust?"));
  EXPECT_TRUE(HitsTopicWords(L"IS IT WORTH IT"));
}

TEST(TopicScanTest, SubstringsHitWholeWordsOrNot) {
  EXPECT_TRUE(HitsTopicWords(L"Explain this syntax"));  // "tax"
  EXPECT_TRUE(HitsTopicWords(L"What does this symbol mean?"));  // "bol"
  EXPECT_TRUE(HitsTopicWords(L"my DOCTORS said"));
}

TEST(TopicScanTest, AnUpperCaseNonAsciiLetterIsNotLowered) {
  EXPECT_TRUE(HitsTopicWords(L"\u0161tednja"));          // "štednja" as in the table
  EXPECT_FALSE(HitsTopicWords(L"\u0160tednja"));         // "Štednja": the Š stays a capital
  EXPECT_TRUE(HitsTopicWords(L"ko\u0161ta li \u0161e\u0107er"));  // "šećer"
  EXPECT_FALSE(HitsTopicWords(L"\u0160E\u0106ER"));
}

TEST(TopicScanTest, EverydayQuestionsAreNotFlagged) {
  for (const wchar_t* message : {L"Hello", L"What is the capital of France?", L"How do I write a for loop in Python?",
                                 L"Explain recursion", L"Sort a list", L"Translate this into German", L"x"})
    EXPECT_FALSE(HitsTopicWords(message)) << "flagged";
}

TEST(ChatLimitTest, TwentyAsksAtFortyStoredMessages) {
  EXPECT_EQ(ChatLimitPromptFor(true, 20, 40), ChatLimitPrompt::kRaiseOrNewChat);
  EXPECT_EQ(ChatLimitPromptFor(true, 20, 39), ChatLimitPrompt::kNone);
  EXPECT_EQ(ChatLimitPromptFor(true, 20, 41), ChatLimitPrompt::kRaiseOrNewChat);
}

TEST(ChatLimitTest, FiftyOffersOnlyANewChat) {
  EXPECT_EQ(ChatLimitPromptFor(true, 50, 100), ChatLimitPrompt::kNewChatOnly);
  EXPECT_EQ(ChatLimitPromptFor(true, 50, 99), ChatLimitPrompt::kNone);
}

TEST(ChatLimitTest, FiveAsksAtTenBeforeTheSixthExchange) {
  size_t stored = 0;
  int exchanges = 0;
  while (ChatLimitPromptFor(true, 5, stored) == ChatLimitPrompt::kNone) {
    stored += 2;
    ++exchanges;
  }
  EXPECT_EQ(stored, 10u);
  EXPECT_EQ(exchanges, 5);
}

TEST(ChatLimitTest, ZeroOrNoHistoryNeverAsks) {
  EXPECT_EQ(ChatLimitPromptFor(true, 0, 100000), ChatLimitPrompt::kNone);
  EXPECT_EQ(ChatLimitPromptFor(false, 5, 100), ChatLimitPrompt::kNone);
  EXPECT_EQ(ChatLimitPromptFor(true, -1, 100), ChatLimitPrompt::kNone);
}

TEST(ChatLimitTest, TheTwoQuestions) {
  EXPECT_EQ(ChatLimitText(ChatLimitPrompt::kRaiseOrNewChat, 20),
            L"This chat has reached the limit of 20 messages.\n\nWould you like to increase the limit to 50 and "
            L"continue this chat?\n\nYes: Increase limit to 50 and continue\nNo: Start a new chat\nCancel: Don't "
            L"send the message");
  EXPECT_EQ(ChatLimitText(ChatLimitPrompt::kNewChatOnly, 50),
            L"This chat has reached the maximum limit of 50 messages.\n\nWould you like to start a new chat?\n\n"
            L"Yes: Start a new chat\nNo: Don't send the message");
  EXPECT_STREQ(kChatLimitTitle, L"Chat Limit Reached");
}

TEST(AnswerTextTest, AiPrefixAndLeadingBlanksCut) {
  EXPECT_EQ(AnswerTranscriptText(L" \t\r\n Hello \n"), L"AI: Hello \n");
  EXPECT_EQ(AnswerTranscriptText(L" "), L"AI: ");  // a reply of one blank
  EXPECT_EQ(AnswerTranscriptText(L""), L"AI: ");
  EXPECT_EQ(AnswerTranscriptText(L"x"), L"AI: x");
}

TEST(AnswerTextTest, FailureLines) {
  EXPECT_EQ(FailureText(L"HTTP 401: Invalid API Key"), L"Error: HTTP 401: Invalid API Key");
  EXPECT_EQ(FailureText(nullptr), L"Error: unknown");
  EXPECT_STREQ(kStopLine, L"\n\n[Generation stopped by user]\n\n");
  EXPECT_STREQ(kDisclaimerText, L"AI can make mistakes. Verify important information.\n\n");
}

TEST(ThinkingFramesTest, FiveFramesOfEqualWidth) {
  EXPECT_STREQ(kThinkingFrames[0], L"AI: \u25CF\u00A0\u00A0\u00A0");
  EXPECT_STREQ(kThinkingFrames[1], L"AI: \u25CF\u25CF\u00A0\u00A0");
  EXPECT_STREQ(kThinkingFrames[2], L"AI: \u25CF\u25CF\u25CF");
  EXPECT_STREQ(kThinkingFrames[3], L"AI: \u25CF\u25CF\u00A0\u00A0");
  EXPECT_STREQ(kThinkingFrames[4], L"AI: \u25CF\u00A0\u00A0\u00A0");
}

std::vector<ChatTurn> Turns(int count) {
  std::vector<ChatTurn> turns;
  for (int i = 0; i < count; ++i) turns.push_back({i % 2 == 0, std::to_wstring(i)});
  return turns;
}

TEST(LiveHistoryTest, TrimmedToTwiceTheLimitFromTheOldest) {
  std::vector<ChatTurn> turns = Turns(11);
  TrimLiveHistory(turns, 5);
  ASSERT_EQ(turns.size(), 10u);
  EXPECT_EQ(turns.front().text, L"1");
  EXPECT_EQ(turns.back().text, L"10");
  turns = Turns(10);
  TrimLiveHistory(turns, 5);
  EXPECT_EQ(turns.size(), 10u);
  turns = Turns(300);
  TrimLiveHistory(turns, 0);  // no limit
  EXPECT_EQ(turns.size(), 300u);
}

}  // namespace
