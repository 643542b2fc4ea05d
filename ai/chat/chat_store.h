// The store of the user's chats, one per process, main thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct ChatMessage {
  bool isUser = false;
  std::wstring text;
  std::wstring timestamp;
};

struct ChatInfo {
  std::wstring id;
  std::wstring title;
  std::wstring lastModified;
  std::wstring createdAt;
  std::vector<ChatMessage> messages;
  bool isCurrent = false;
};

struct ChatHistoryManager {
  std::vector<ChatInfo> chats;
  uint64_t currentIndex = 0;
  bool loaded = false;
};

// The process's one store, created on first use.
ChatHistoryManager& GetChatHistory();

// Runs once a process: reads the profile's chats. Reading from disk comes
// with the chat files themselves; until then the store starts empty.
void LoadAll(ChatHistoryManager& store);
