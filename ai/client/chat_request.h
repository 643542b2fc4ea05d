// The JSON of a chat-completion request and response, written and read by
// hand: a fixed writer and a tolerant substring scanner, no parse tree.
#pragma once

#include <string>
#include <vector>

// One earlier message of the live conversation.
struct ChatTurn {
  bool isUser = false;
  std::wstring text;
};

// UTF-16 to UTF-8, escaped for use between JSON quotes. Non-ASCII bytes pass
// unchanged; control bytes other than tab, LF and CR become \u00XX.
std::string JsonEscape(const std::wstring& text);

// The request body: model, stream, temperature, max_tokens, then the
// messages: system text (when not empty), the history oldest first, the new message.
std::string BuildChatRequestBody(const std::wstring& model, const std::wstring& systemText,
                                 const std::vector<ChatTurn>& history, const std::wstring& newMessage,
                                 float temperature, int maxTokens);

// The first string value after "key": in the body, with simple escapes
// undone; empty when the key or a value can't be found.
std::string ExtractJsonString(const std::string& body, const std::string& key);

// The answer of a response: "content" when "choices" is there, else
// "message"; empty otherwise.
std::string ExtractChatAnswer(const std::string& body);
