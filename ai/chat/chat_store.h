// The store of the user's chats, one per process, main thread only: a list
// in memory mirrored at once in <app>\chats\<profile>\index.json and one
// "<id>.json" per chat. Every failure is silent.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ai/chat/chat_json.h"

struct ChatHistoryManager {
  std::vector<ChatInfo> chats;  // in index order; new chats go to the end
  uint64_t currentIndex = 0;    // position of the current chat in chats
  bool loaded = false;          // the load has run; it runs once a process
  // <app>\chats\<profile>; found on first use when empty.
  std::wstring folder;
};

// The process's one store, created on first use.
ChatHistoryManager& GetChatHistory();

// The store's folder, each level created: <app>\chats\<profile or "default">.
std::wstring ChatFolder(ChatHistoryManager& store);

// Once a process: migrate legacy names, read the index, and make a first
// chat when there is none.
void LoadAll(ChatHistoryManager& store);

// A new empty chat, now current, with its file and index row written.
ChatInfo* NewChat(ChatHistoryManager& store);
// False when the id is unknown.
bool SwitchToChat(ChatHistoryManager& store, const std::wstring& id);
// lastModified to now, then the chat's file and the index. False without a current chat.
bool SaveCurrentChat(ChatHistoryManager& store);
// False when the id is unknown.
bool DeleteChat(ChatHistoryManager& store, const std::wstring& id);
// Every *.json of the folder goes, then a new chat. True.
bool DeleteAllChats(ChatHistoryManager& store);
// Appends to the current chat, renames it by its first user message, keeps
// the history window and writes both files.
void AddMessage(ChatHistoryManager& store, bool isUser, const std::wstring& text);
// The current chat or null.
ChatInfo* CurrentChat(ChatHistoryManager& store);

bool WriteIndex(ChatHistoryManager& store);
bool WriteChatFile(ChatHistoryManager& store, const ChatInfo& chat);
bool ReadIndex(ChatHistoryManager& store);
bool ReadChatFile(ChatHistoryManager& store, ChatInfo& chat);
