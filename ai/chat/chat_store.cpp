#include "ai/chat/chat_store.h"

#include <memory>

ChatHistoryManager& GetChatHistory() {
  static std::unique_ptr<ChatHistoryManager> store(new ChatHistoryManager);
  return *store;
}

void LoadAll(ChatHistoryManager& store) {
  if (store.loaded) return;
  store.loaded = true;
}
