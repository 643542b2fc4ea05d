// The chat store on disk, in the test's own folder: first start, the files'
// bytes and attributes, reloading, damage, deleting and legacy names.
#include <windows.h>

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "ai/chat/chat_store.h"
#include "settings/settings.h"
#include "tests/common/test_folder.h"

namespace {



bool ReadOnly(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY);
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::string Crlf(const std::string& text) {
  std::string out;
  for (char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return out;
}

// Clears read-only attributes so the test folder can be removed.
void Release(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    SetFileAttributesW((folder + L"\\" + found.cFileName).c_str(), FILE_ATTRIBUTE_NORMAL);
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

class ChatStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = TestPath(L"chats\\default");
    CreateDirectoryW(TestPath(L"chats").c_str(), nullptr);
    store_.folder = folder_;
    savedLimit_ = g_settings.historyLimit;
    g_settings.historyLimit = 20;
  }
  void TearDown() override {
    g_settings.historyLimit = savedLimit_;
    Release(folder_);
  }
  std::wstring In(const std::wstring& name) const { return folder_ + L"\\" + name; }
  std::wstring ChatFile(const ChatInfo& chat) const { return In(chat.id + L".json"); }
  // A second store over the same folder, as the next start sees it.
  ChatHistoryManager Reloaded() const {
    ChatHistoryManager store;
    store.folder = folder_;
    LoadAll(store);
    return store;
  }

  std::wstring folder_;
  ChatHistoryManager store_;
  uint32_t savedLimit_ = 0;
};

}  // namespace

TEST_F(ChatStoreTest, FirstStartMakesFolderIndexAndAnEmptyChatFile) {
  LoadAll(store_);
  EXPECT_TRUE(store_.loaded);
  ASSERT_EQ(store_.chats.size(), 1u);
  const ChatInfo& chat = store_.chats[0];
  EXPECT_TRUE(std::regex_match(std::string(chat.id.begin(), chat.id.end()), std::regex(R"(\d{8}_\d{6}_\d{4})")));
  EXPECT_EQ(chat.title, L"New Chat");
  EXPECT_TRUE(chat.isCurrent);
  EXPECT_TRUE(std::regex_match(std::string(chat.createdAt.begin(), chat.createdAt.end()),
                               std::regex(R"(\d\d\.\d\d\.\d{4}  \d\d:\d\d)")));
  EXPECT_EQ(CurrentChat(store_), &store_.chats[0]);
  EXPECT_EQ(ReadFileBytes(ChatFile(chat)), "{\r\n  \"messages\": [\r\n  ]\r\n}\r\n");
  EXPECT_EQ(ReadFileBytes(In(L"index.json")), Crlf(FormatIndexJson(store_.chats)));
  EXPECT_TRUE(ReadOnly(In(L"index.json")));
  EXPECT_TRUE(ReadOnly(ChatFile(chat)));
  // The second call of a process does nothing.
  LoadAll(store_);
  EXPECT_EQ(store_.chats.size(), 1u);
}

TEST_F(ChatStoreTest, MessagesAreWrittenAtOnceAndReadBack) {
  LoadAll(store_);
  AddMessage(store_, true, L"How do I \"quote\"?\nSecond line \u00E9 \u0001");
  AddMessage(store_, false, L"Like this: \\\" and \\u0041");
  const ChatInfo& chat = *CurrentChat(store_);
  EXPECT_EQ(chat.title, L"How do I \"quote\"?\nSecond line \u00E9 \u0001");
  EXPECT_EQ(ReadFileBytes(ChatFile(chat)), Crlf(FormatChatJson(chat.messages)));
  EXPECT_TRUE(ReadOnly(ChatFile(chat)));
  ChatHistoryManager again = Reloaded();
  ASSERT_EQ(again.chats.size(), 1u);
  ASSERT_EQ(again.chats[0].messages.size(), 2u);
  EXPECT_EQ(again.chats[0].messages[0].text, chat.messages[0].text);
  EXPECT_TRUE(again.chats[0].messages[0].isUser);
  EXPECT_EQ(again.chats[0].messages[1].text, L"Like this: \\\" and \\u0041");
  EXPECT_EQ(again.chats[0].title, chat.title);
  EXPECT_EQ(again.chats[0].messages[1].timestamp, chat.messages[1].timestamp);
}

TEST_F(ChatStoreTest, EveryAddRetitlesTheChat) {
  LoadAll(store_);
  store_.chats[0].title = L"My own title";
  AddMessage(store_, false, L"model first");
  EXPECT_EQ(CurrentChat(store_)->title, L"Chat History");
  AddMessage(store_, true, std::wstring(51, L'q'));
  EXPECT_EQ(CurrentChat(store_)->title, std::wstring(47, L'q') + L"...");
}

TEST_F(ChatStoreTest, TheHistoryWindowTrimsTheOldestMessages) {
  g_settings.historyLimit = 2;
  LoadAll(store_);
  for (int i = 0; i < 6; ++i) AddMessage(store_, i % 2 == 0, L"m" + std::to_wstring(i));
  const ChatInfo& chat = *CurrentChat(store_);
  ASSERT_EQ(chat.messages.size(), 4u);
  EXPECT_EQ(chat.messages.front().text, L"m2");
  EXPECT_EQ(Reloaded().chats[0].messages.size(), 4u);
  g_settings.historyLimit = 0;  // no window: everything is kept
  for (int i = 0; i < 6; ++i) AddMessage(store_, true, L"n");
  EXPECT_EQ(CurrentChat(store_)->messages.size(), 10u);
}

TEST_F(ChatStoreTest, AMissingChatFileLeavesAnEmptyChat) {
  LoadAll(store_);
  AddMessage(store_, true, L"gone soon");
  std::wstring id = CurrentChat(store_)->id;
  SetFileAttributesW(ChatFile(*CurrentChat(store_)).c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(ChatFile(*CurrentChat(store_)).c_str());
  ChatHistoryManager again = Reloaded();
  ASSERT_EQ(again.chats.size(), 1u);
  EXPECT_EQ(again.chats[0].id, id);
  EXPECT_EQ(again.chats[0].title, L"gone soon");
  EXPECT_TRUE(again.chats[0].messages.empty());
}

TEST_F(ChatStoreTest, TwoCurrentRowsSelectTheFirst) {
  CreateDirectoryW(folder_.c_str(), nullptr);
  ASSERT_TRUE(WriteFileBytes(In(L"index.json"),
             "{\"chats\":[{\"id\":\"a\",\"isCurrent\":false},{\"id\":\"b\",\"isCurrent\":true},"
             "{\"id\":\"c\",\"isCurrent\":true}]}"));
  LoadAll(store_);
  ASSERT_EQ(store_.chats.size(), 3u);
  EXPECT_EQ(store_.currentIndex, 1u);
  EXPECT_EQ(CurrentChat(store_)->id, L"b");
  EXPECT_TRUE(store_.chats[2].isCurrent);  // stays as read until a switch writes
}

TEST_F(ChatStoreTest, NoCurrentRowMarksTheFirst) {
  CreateDirectoryW(folder_.c_str(), nullptr);
  ASSERT_TRUE(WriteFileBytes(In(L"index.json"), "{\"chats\":[{\"id\":\"a\"},{\"id\":\"b\"}]}"));
  LoadAll(store_);
  EXPECT_EQ(store_.currentIndex, 0u);
  EXPECT_TRUE(store_.chats[0].isCurrent);
}

TEST_F(ChatStoreTest, ARowWithoutIdDisappearsAtTheNextWrite) {
  CreateDirectoryW(folder_.c_str(), nullptr);
  ASSERT_TRUE(WriteFileBytes(In(L"index.json"), "{\"chats\":[{\"title\":\"orphan\"},{\"id\":\"k\",\"title\":\"Kept\",\"isCurrent\":true}]}"));
  LoadAll(store_);
  ASSERT_EQ(store_.chats.size(), 1u);
  SaveCurrentChat(store_);
  std::string index = ReadFileBytes(In(L"index.json"));
  EXPECT_EQ(index.find("orphan"), std::string::npos);
  EXPECT_NE(index.find("\"id\": \"k\""), std::string::npos);
}

TEST_F(ChatStoreTest, ADamagedIndexGivesANewChatAndLeavesTheOldFilesAlone) {
  LoadAll(store_);
  AddMessage(store_, true, L"keep my bytes");
  const std::wstring oldChat = ChatFile(*CurrentChat(store_));
  const std::string oldBytes = ReadFileBytes(oldChat);
  std::string index = ReadFileBytes(In(L"index.json"));
  ASSERT_TRUE(WriteFileBytes(In(L"index.json"), index.substr(0, index.size() / 2)));
  ChatHistoryManager again = Reloaded();
  ASSERT_EQ(again.chats.size(), 1u);
  EXPECT_NE(again.chats[0].id, store_.chats[0].id);
  EXPECT_TRUE(again.chats[0].messages.empty());
  EXPECT_EQ(ReadFileBytes(oldChat), oldBytes);  // an orphan, untouched
}

TEST_F(ChatStoreTest, GarbageFilesReadAsEmptyAndStayOnDisk) {
  CreateDirectoryW(folder_.c_str(), nullptr);
  ASSERT_TRUE(WriteFileBytes(In(L"index.json"), "{\"chats\":[{\"id\":\"x\",\"isCurrent\":true}]}"));
  const std::string garbage = "\xFF\xFE garbage {[\"";
  ASSERT_TRUE(WriteFileBytes(In(L"x.json"), garbage));
  LoadAll(store_);
  ASSERT_EQ(store_.chats.size(), 1u);
  EXPECT_TRUE(store_.chats[0].messages.empty());
  EXPECT_EQ(ReadFileBytes(In(L"x.json")), garbage);
  // An empty index reads as no chats: a new one is made.
  ChatHistoryManager empty;
  empty.folder = TestPath(L"chats\\empty");
  CreateDirectoryW(empty.folder.c_str(), nullptr);
  ASSERT_TRUE(WriteFileBytes(empty.folder + L"\\index.json", ""));
  LoadAll(empty);
  EXPECT_EQ(empty.chats.size(), 1u);
  Release(empty.folder);
}

TEST_F(ChatStoreTest, NewChatSavesAUsedCurrentChatAndBecomesCurrent) {
  LoadAll(store_);
  AddMessage(store_, true, L"first chat");
  ChatInfo* second = NewChat(store_);
  ASSERT_EQ(store_.chats.size(), 2u);
  EXPECT_EQ(second, &store_.chats[1]);
  EXPECT_EQ(store_.currentIndex, 1u);
  EXPECT_FALSE(store_.chats[0].isCurrent);
  EXPECT_TRUE(store_.chats[1].isCurrent);
  EXPECT_TRUE(Exists(ChatFile(store_.chats[1])));
  EXPECT_EQ(Reloaded().currentIndex, 1u);
}

TEST_F(ChatStoreTest, SwitchingReadsTheChatAndWritesTheIndex) {
  LoadAll(store_);
  AddMessage(store_, true, L"in A");
  const std::wstring a = CurrentChat(store_)->id;
  NewChat(store_);
  AddMessage(store_, true, L"in B");
  EXPECT_FALSE(SwitchToChat(store_, L"nope"));
  ASSERT_TRUE(SwitchToChat(store_, a));
  EXPECT_EQ(CurrentChat(store_)->id, a);
  EXPECT_EQ(CurrentChat(store_)->messages.at(0).text, L"in A");
  ChatHistoryManager again = Reloaded();
  EXPECT_EQ(CurrentChat(again)->id, a);
  EXPECT_EQ(again.chats[1].messages.at(0).text, L"in B");
}

TEST_F(ChatStoreTest, SaveWithoutAChatFails) {
  EXPECT_FALSE(SaveCurrentChat(store_));
  EXPECT_EQ(CurrentChat(store_), nullptr);
}

TEST_F(ChatStoreTest, DeletingTheLastChatLeavesANewEmptyOne) {
  LoadAll(store_);
  AddMessage(store_, true, L"bye");
  const std::wstring old = CurrentChat(store_)->id;
  const std::wstring oldFile = ChatFile(*CurrentChat(store_));
  EXPECT_FALSE(DeleteChat(store_, L"unknown"));
  ASSERT_TRUE(DeleteChat(store_, old));
  EXPECT_FALSE(Exists(oldFile));
  ASSERT_EQ(store_.chats.size(), 1u);
  EXPECT_NE(store_.chats[0].id, old);
  EXPECT_TRUE(store_.chats[0].messages.empty());
  EXPECT_TRUE(store_.chats[0].isCurrent);
}

TEST_F(ChatStoreTest, DeletingAChatBeforeTheCurrentOneKeepsTheCurrent) {
  LoadAll(store_);
  const std::wstring first = store_.chats[0].id;
  NewChat(store_);
  AddMessage(store_, true, L"second");
  NewChat(store_);
  const std::wstring third = CurrentChat(store_)->id;
  ASSERT_TRUE(DeleteChat(store_, first));
  EXPECT_EQ(store_.currentIndex, 1u);
  EXPECT_EQ(CurrentChat(store_)->id, third);
  // Deleting the current one makes the first chat current, read again.
  ASSERT_TRUE(DeleteChat(store_, third));
  EXPECT_EQ(store_.currentIndex, 0u);
  EXPECT_TRUE(store_.chats[0].isCurrent);
  EXPECT_EQ(CurrentChat(store_)->messages.at(0).text, L"second");
}

TEST_F(ChatStoreTest, DeleteAllRemovesEveryJsonAndWritesANewIndex) {
  LoadAll(store_);
  AddMessage(store_, true, L"x");
  NewChat(store_);
  ASSERT_TRUE(WriteFileBytes(In(L"stray.json"), "{}"));
  ASSERT_TRUE(WriteFileBytes(In(L"notes.txt"), "keep"));
  SetFileAttributesW(In(L"stray.json").c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_TRUE(DeleteAllChats(store_));
  EXPECT_FALSE(Exists(In(L"stray.json")));
  EXPECT_TRUE(Exists(In(L"notes.txt")));
  ASSERT_EQ(store_.chats.size(), 1u);
  EXPECT_TRUE(Exists(In(L"index.json")));
  EXPECT_TRUE(Exists(ChatFile(store_.chats[0])));
  EXPECT_EQ(Reloaded().chats.size(), 1u);
}

TEST_F(ChatStoreTest, LegacyNamesAreMigrated) {
  CreateDirectoryW(folder_.c_str(), nullptr);
  const std::string legacy = Crlf(FormatChatJson({{true, L"old one", L"t"}}));
  ASSERT_TRUE(WriteFileBytes(In(L"chat-default_20240102_030405_0001.json"), legacy));
  SetFileAttributesW(In(L"chat-default_20240102_030405_0001.json").c_str(), FILE_ATTRIBUTE_READONLY);
  // Its new name exists with 30 bytes, and it is larger: it replaces that file.
  ASSERT_TRUE(WriteFileBytes(In(L"20240102_030405_0002.json"), std::string(30, ' ')));
  ASSERT_TRUE(WriteFileBytes(In(L"chat-default_20240102_030405_0002.json"), legacy));
  // A new file of 50 bytes or more wins over any legacy one.
  const std::string kept(60, ' ');
  ASSERT_TRUE(WriteFileBytes(In(L"20240102_030405_0003.json"), kept));
  ASSERT_TRUE(WriteFileBytes(In(L"chat-default_20240102_030405_0003.json"), legacy));
  // No underscore: left alone.
  ASSERT_TRUE(WriteFileBytes(In(L"chat-plain.json"), "x"));
  LoadAll(store_);
  EXPECT_FALSE(Exists(In(L"chat-default_20240102_030405_0001.json")));
  EXPECT_EQ(ReadFileBytes(In(L"20240102_030405_0001.json")), legacy);
  EXPECT_EQ(ReadFileBytes(In(L"20240102_030405_0002.json")), legacy);
  EXPECT_FALSE(Exists(In(L"chat-default_20240102_030405_0002.json")));
  EXPECT_EQ(ReadFileBytes(In(L"20240102_030405_0003.json")), kept);
  EXPECT_FALSE(Exists(In(L"chat-default_20240102_030405_0003.json")));
  EXPECT_TRUE(Exists(In(L"chat-plain.json")));
}

TEST_F(ChatStoreTest, TheFolderIsPerProfileUnderTheAppFolder) {
  ChatHistoryManager store;
  std::wstring folder = ChatFolder(store);
  const std::wstring tail = L"\\Tavro\\chats\\default";
  ASSERT_GE(folder.size(), tail.size());
  EXPECT_EQ(folder.substr(folder.size() - tail.size()), tail);
  DWORD attributes = GetFileAttributesW(folder.c_str());
  EXPECT_TRUE(attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY));
}
