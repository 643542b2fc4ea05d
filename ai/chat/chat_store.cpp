#include "ai/chat/chat_store.h"

#include <windows.h>

#include <cstdio>
#include <memory>
#include <random>

#include "settings/data_folders.h"
#include "settings/settings.h"
#include "base/app_state.h"
#include "base/file_attributes.h"

namespace {

ChatTime Now() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

// A number from 0 to 9999, from one generator seeded once.
int IdNumber() {
  static std::mt19937 generator{std::random_device{}()};
  return std::uniform_int_distribution<int>(0, 9999)(generator);
}

std::wstring IndexPath(ChatHistoryManager& store) { return ChatFolder(store) + L"\\index.json"; }

std::wstring ChatPath(ChatHistoryManager& store, const std::wstring& id) {
  return ChatFolder(store) + L"\\" + id + L".json";
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// Written in place through a text-mode stream, so each LF lands as CRLF;
// read-only again afterwards, also when the open failed.
bool WriteTextFile(const std::wstring& path, const std::string& text) {
  ClearReadOnlyAttribute(path);
  FILE* file = _wfopen(path.c_str(), L"w");
  if (file) {
    fwrite(text.data(), 1, text.size(), file);
    fflush(file);
    fclose(file);
  }
  SetReadOnlyAttribute(path);
  return file != nullptr;
}

// The whole file through a text-mode stream; false when it can't be opened.
bool ReadTextFile(const std::wstring& path, std::string& text) {
  FILE* file = _wfopen(path.c_str(), L"r");
  if (!file) return false;
  text.clear();
  char buffer[16384];
  size_t read;
  while ((read = fread(buffer, 1, sizeof(buffer), file)) > 0) text.append(buffer, read);
  fclose(file);
  return true;
}

void DeleteStoreFile(const std::wstring& path) {
  ClearReadOnlyAttribute(path);
  DeleteFileW(path.c_str());
}

// The size of a file opened for reading; false when it won't open.
bool OpenedSize(const std::wstring& path, uint64_t& size) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                            nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  LARGE_INTEGER value = {};
  BOOL ok = GetFileSizeEx(file, &value);
  CloseHandle(file);
  size = static_cast<uint64_t>(value.QuadPart);
  return ok != FALSE;
}

// Files of an older naming, "chat-<profile>_<id>.json", take the plain id.
void MigrateLegacyNames(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\chat-*.json").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    std::wstring newName = LegacyChatNewName(found.cFileName);
    if (newName.empty()) continue;
    std::wstring oldPath = folder + L"\\" + found.cFileName;
    std::wstring newPath = folder + L"\\" + newName;
    if (!Exists(newPath)) {
      ClearReadOnlyAttribute(oldPath);
      MoveFileW(oldPath.c_str(), newPath.c_str());
      continue;
    }
    uint64_t oldSize = 0;
    uint64_t newSize = 0;
    if (!OpenedSize(oldPath, oldSize) || !OpenedSize(newPath, newSize)) continue;
    ClearReadOnlyAttribute(oldPath);
    ClearReadOnlyAttribute(newPath);
    if (LegacyChatLosesToNew(oldSize, newSize)) {
      DeleteFileW(oldPath.c_str());
    } else {
      DeleteFileW(newPath.c_str());
      MoveFileW(oldPath.c_str(), newPath.c_str());
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

}  // namespace

ChatHistoryManager& GetChatHistory() {
  static std::unique_ptr<ChatHistoryManager> store(new ChatHistoryManager);
  return *store;
}

std::wstring ChatFolder(ChatHistoryManager& store) {
  if (store.folder.empty()) store.folder = ChatFolderOfProfile(ProfileLabel(g_profileName));
  CreateDirectoryW(store.folder.c_str(), nullptr);
  return store.folder;
}

ChatInfo* CurrentChat(ChatHistoryManager& store) {
  return store.currentIndex < store.chats.size() ? &store.chats[store.currentIndex] : nullptr;
}

bool WriteIndex(ChatHistoryManager& store) { return WriteTextFile(IndexPath(store), FormatIndexJson(store.chats)); }

bool WriteChatFile(ChatHistoryManager& store, const ChatInfo& chat) {
  return WriteTextFile(ChatPath(store, chat.id), FormatChatJson(chat.messages));
}

bool ReadIndex(ChatHistoryManager& store) {
  const std::wstring path = IndexPath(store);
  if (!Exists(path)) {
    store.chats.clear();
    store.currentIndex = 0;
    return true;
  }
  std::string text;
  if (!ReadTextFile(path, text)) return false;
  store.chats = ParseIndexJson(text);
  store.currentIndex = 0;
  for (ChatInfo& chat : store.chats) ReadChatFile(store, chat);
  for (size_t i = 0; i < store.chats.size(); ++i) {
    if (store.chats[i].isCurrent) {
      store.currentIndex = i;
      return true;
    }
  }
  if (!store.chats.empty()) store.chats[0].isCurrent = true;
  return true;
}

bool ReadChatFile(ChatHistoryManager& store, ChatInfo& chat) {
  const std::wstring path = ChatPath(store, chat.id);
  if (!Exists(path)) return false;
  std::string text;
  if (!ReadTextFile(path, text)) return false;
  chat.messages = ParseChatJson(text);
  return true;
}

void LoadAll(ChatHistoryManager& store) {
  if (store.loaded) return;
  MigrateLegacyNames(ChatFolder(store));
  ReadIndex(store);
  if (store.chats.empty()) NewChat(store);
  store.loaded = true;
}

ChatInfo* NewChat(ChatHistoryManager& store) {
  if (ChatInfo* current = CurrentChat(store); current && !current->messages.empty()) SaveCurrentChat(store);
  const ChatTime now = Now();
  ChatInfo chat;
  chat.id = ChatId(now, IdNumber());
  chat.title = L"New Chat";
  chat.createdAt = ChatCreatedAt(now);
  chat.lastModified = ChatTimestamp(now);
  chat.isCurrent = true;
  for (ChatInfo& other : store.chats) other.isCurrent = false;
  store.chats.push_back(std::move(chat));
  store.currentIndex = store.chats.size() - 1;
  WriteIndex(store);
  WriteChatFile(store, store.chats.back());
  return &store.chats.back();
}

bool SaveCurrentChat(ChatHistoryManager& store) {
  ChatInfo* current = CurrentChat(store);
  if (!current) return false;
  current->lastModified = ChatTimestamp(Now());  // also when nothing changed
  WriteChatFile(store, *current);
  WriteIndex(store);
  return true;
}

bool SwitchToChat(ChatHistoryManager& store, const std::wstring& id) {
  size_t target = 0;
  while (target < store.chats.size() && store.chats[target].id != id) ++target;
  if (target == store.chats.size()) return false;
  if (ChatInfo* current = CurrentChat(store)) {
    if (!current->messages.empty()) SaveCurrentChat(store);
    current->isCurrent = false;
  }
  store.currentIndex = target;
  store.chats[target].isCurrent = true;
  ReadChatFile(store, store.chats[target]);
  WriteIndex(store);
  return true;
}

void AddMessage(ChatHistoryManager& store, bool isUser, const std::wstring& text) {
  ChatInfo* current = CurrentChat(store);
  if (!current) return;
  const std::wstring now = ChatTimestamp(Now());
  current->messages.push_back({isUser, text, now});
  // Every add renames the chat, also over a title the user gave.
  current->title = AutoChatTitle(current->messages);
  current->lastModified = now;
  const int32_t limit = static_cast<int32_t>(g_settings.historyLimit);
  const int rounds = limit > 0 ? 2 : 1;
  if (limit > 0 && current->messages.size() > 2 * static_cast<size_t>(limit)) {
    current->messages.erase(current->messages.begin(),
                            current->messages.end() - 2 * static_cast<ptrdiff_t>(limit));
  }
  for (int round = 0; round < rounds; ++round) {
    WriteChatFile(store, *current);
    WriteIndex(store);
  }
}

bool DeleteChat(ChatHistoryManager& store, const std::wstring& id) {
  size_t target = 0;
  while (target < store.chats.size() && store.chats[target].id != id) ++target;
  if (target == store.chats.size()) return false;
  DeleteStoreFile(ChatPath(store, id));
  const bool wasCurrent = target == store.currentIndex;
  store.chats.erase(store.chats.begin() + static_cast<ptrdiff_t>(target));
  if (wasCurrent) {
    if (store.chats.empty()) {
      store.currentIndex = 0;
      NewChat(store);
    } else {
      store.currentIndex = 0;
      store.chats[0].isCurrent = true;
      ReadChatFile(store, store.chats[0]);
    }
  } else if (target < store.currentIndex) {
    --store.currentIndex;
  }
  WriteIndex(store);
  return true;
}

bool DeleteAllChats(ChatHistoryManager& store) {
  const std::wstring folder = ChatFolder(store);
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*.json").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) DeleteStoreFile(folder + L"\\" + found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  store.chats.clear();
  store.currentIndex = 0;
  NewChat(store);
  return true;
}
