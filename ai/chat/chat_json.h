// The chat store's two file layouts, written with a fixed printer and read
// back with a tolerant substring scanner: no JSON parse tree. Plain data in,
// plain data out; chat_store.cpp does the files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct ChatMessage {
  bool isUser = false;
  std::wstring text;
  std::wstring timestamp;  // "%Y-%m-%d %H:%M:%S", local
};

struct ChatInfo {
  std::wstring id;            // also the file name, without ".json"
  std::wstring title;
  std::wstring lastModified;  // "%Y-%m-%d %H:%M:%S", local
  std::wstring createdAt;     // "DD.MM.YYYY  HH:MM", local
  std::vector<ChatMessage> messages;
  bool isCurrent = false;
};

// A local date and time.
struct ChatTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

// "2024-01-02 03:04:05".
std::wstring ChatTimestamp(const ChatTime& time);
// "02.01.2024  03:04", two blanks before the hour.
std::wstring ChatCreatedAt(const ChatTime& time);
// "20240102_030405_0001" from the time and a number 0..9999.
std::wstring ChatId(const ChatTime& time, int number);

// UTF-8 with tab, LF, CR, quote and backslash escaped; every other byte,
// control bytes too, stays as it is (no \u form).
std::string JsonEscapeStore(const std::wstring& text);
// \" \/ \\ \b \f \n \r \t undone; any other escape, \u0041 too, stays as
// two characters, as does a backslash at the end.
std::wstring JsonUnescapeStore(const std::string& raw);

// The files' text with "\n" line ends (the text-mode stream makes them CRLF).
std::string FormatIndexJson(const std::vector<ChatInfo>& chats);
std::string FormatChatJson(const std::vector<ChatMessage>& messages);

// Rows of an index, messages left empty. Rows without an id are dropped.
// Unbalanced text reads as no rows, or the rows before the damage.
std::vector<ChatInfo> ParseIndexJson(const std::string& text);
std::vector<ChatMessage> ParseChatJson(const std::string& text);

// "Chat History" without a user message with text; else the first such
// message, whole up to 50 units, otherwise its first 47 and "...".
std::wstring AutoChatTitle(const std::vector<ChatMessage>& messages);

// The new name of a legacy "chat-<profile>_<id>.json": what follows the
// first underscore; empty when there is none.
std::wstring LegacyChatNewName(const std::wstring& fileName);

// When both names exist: true to delete the legacy file, false to let it
// replace the newer one.
bool LegacyChatLosesToNew(uint64_t legacySize, uint64_t newSize);
