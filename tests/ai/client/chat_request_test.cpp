#include <gtest/gtest.h>

#include <string>

#include "ai/client/chat_request.h"

namespace {

int Count(const std::string& text, const std::string& part) {
  int n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++n;
  return n;
}

TEST(ChatRequest, SmallestBodyByteForByte) {
  EXPECT_EQ(BuildChatRequestBody(L"m", L"", {}, L"hi", 0.7f, 512),
            "{\"model\":\"m\",\"stream\":false,\"temperature\":0.7,\"max_tokens\":512,"
            "\"messages\":[{\"role\":\"user\",\"content\":\"hi\"}]}");
}

TEST(ChatRequest, EmptyModelStillWritten) {
  EXPECT_EQ(BuildChatRequestBody(L"", L"", {}, L"x", 1.0f, 1).rfind("{\"model\":\"\",", 0), 0u);
}

TEST(ChatRequest, SystemTextThenHistoryThenNewMessage) {
  std::vector<ChatTurn> history = {{true, L"q1"}, {false, L"a1"}, {true, L"q2"}};
  std::string body = BuildChatRequestBody(L"llama", L"be brief", history, L"q3", 0.1f, 2048);
  EXPECT_EQ(body,
            "{\"model\":\"llama\",\"stream\":false,\"temperature\":0.1,\"max_tokens\":2048,\"messages\":["
            "{\"role\":\"system\",\"content\":\"be brief\"},"
            "{\"role\":\"user\",\"content\":\"q1\"},"
            "{\"role\":\"assistant\",\"content\":\"a1\"},"
            "{\"role\":\"user\",\"content\":\"q2\"},"
            "{\"role\":\"user\",\"content\":\"q3\"}]}");
  EXPECT_EQ(Count(body, "{\"role\""), 5);
  EXPECT_EQ(Count(body, "},{"), 4);
  EXPECT_EQ(body.find(' ', body.find("be brief") + 8), std::string::npos);  // no blanks outside values
}

TEST(ChatRequest, SystemOnlyHasOneSeparator) {
  EXPECT_EQ(BuildChatRequestBody(L"m", L" ", {}, L"n", 0.0f, 5),
            "{\"model\":\"m\",\"stream\":false,\"temperature\":0,\"max_tokens\":5,\"messages\":["
            "{\"role\":\"system\",\"content\":\" \"},{\"role\":\"user\",\"content\":\"n\"}]}");
}

TEST(ChatRequest, TemperatureInGeneralFormat) {
  for (auto [value, text] : {std::pair<float, const char*>{0.7f, "0.7"}, {0.1f, "0.1"}, {1.0f, "1"}, {0.0f, "0"},
                             {1.25f, "1.25"}}) {
    std::string body = BuildChatRequestBody(L"m", L"", {}, L"x", value, 1);
    EXPECT_NE(body.find(std::string("\"temperature\":") + text + ","), std::string::npos) << text;
  }
}

TEST(JsonEscapeTest, ControlQuotesBackslashesAndNonAscii) {
  std::wstring message = L"a\"b\\c\n\u0001\u00e9";
  EXPECT_EQ(JsonEscape(message), "a\\\"b\\\\c\\n\\u0001\xC3\xA9");
  EXPECT_EQ(JsonEscape(L"\b\f\t\r/\x7F"), "\\u0008\\u000c\\t\\r/\x7F");
  EXPECT_EQ(JsonEscape(L"\x1f"), "\\u001f");
  EXPECT_EQ(JsonEscape(L"\u4e2d"), "\xE4\xB8\xAD");
  EXPECT_EQ(JsonEscape(L""), "");
}

TEST(JsonEscapeTest, UnpairedSurrogateBecomesTheReplacementCharacter) {
  EXPECT_EQ(JsonEscape(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(ChatAnswer, ContentOfChoices) {
  EXPECT_EQ(ExtractChatAnswer("{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":\"x\\ny\"}}]}"), "x\ny");
}

TEST(ChatAnswer, CutOffValueKeepsWhatCame) {
  EXPECT_EQ(ExtractChatAnswer("{\"choices\":[{\"message\":{\"content\":\"abc"), "abc");
}

TEST(ChatAnswer, NullContentTakesTheNextQuotedText) {
  EXPECT_EQ(ExtractChatAnswer("{\"choices\":[{\"message\":{\"content\":null}}]}"), "");
  EXPECT_EQ(ExtractChatAnswer("{\"choices\":[{\"message\":{\"content\":null,\"role\":\"assistant\"}}]}"), "role");
}

TEST(ChatAnswer, ErrorObjectWithStatus200IsTheAnswer) {
  EXPECT_EQ(ExtractChatAnswer("{\"error\":{\"message\":\"bad key\"}}"), "bad key");
}

TEST(ChatAnswer, NeitherKeyOrTooShortIsEmpty) {
  EXPECT_EQ(ExtractChatAnswer("{\"data\":\"x\"}"), "");
  EXPECT_EQ(ExtractChatAnswer("\"message\""), "");  // 9 bytes, but nothing behind the key
  EXPECT_EQ(ExtractChatAnswer("{\"a\":1}"), "");  // 8 bytes
}

TEST(JsonString, LoneBackslashAtTheEndIsKept) {
  EXPECT_EQ(ExtractJsonString("{\"message\":\"abc\\", "message"), "abc\\");
}

TEST(JsonString, EscapesAreUndoneButUnicodeEscapesAreNot) {
  EXPECT_EQ(ExtractJsonString("{\"k\":\"q\\\"b\\\\s\\tt\\rr\\/x\\u00e9\"}", "k"), "q\"b\\s\tt\rr/xu00e9");
}

TEST(JsonString, MissingKeyOrValue) {
  EXPECT_EQ(ExtractJsonString("{\"k\":\"v\"}", "missing"), "");
  EXPECT_EQ(ExtractJsonString("\"k\"", "k"), "");
  EXPECT_EQ(ExtractJsonString("{\"k\" 5}", "k"), "");
  EXPECT_EQ(ExtractJsonString("{\"k\":5}", "k"), "");
  EXPECT_EQ(ExtractJsonString("{\"k\":", "k"), "");
  EXPECT_EQ(ExtractJsonString("", "longer-than-body"), "");
}

TEST(JsonString, KeyMatchIsCaseSensitiveAndKnowsNoNesting) {
  EXPECT_EQ(ExtractJsonString("{\"Message\":\"no\",\"message\":\"yes\"}", "message"), "yes");
  // An escaped quote inside a value is not the key's quote.
  EXPECT_EQ(ExtractJsonString("{\"text\":\"say \\\"content\\\"\",\"content\":\"real\"}", "content"), "real");
  // The first occurrence wins, whatever object it belongs to.
  EXPECT_EQ(ExtractJsonString("{\"a\":{\"content\":\"inner\"},\"content\":\"outer\"}", "content"), "inner");
}

}  // namespace
