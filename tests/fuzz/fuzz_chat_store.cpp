// Chat index and chat files as a hand edit or a crash may leave them: the
// readers never fail, and what they read, written back and read again, is
// read the same (after the first write, which may replace a lone surrogate
// half by U+FFFD). The index's id, lastModified and createdAt are written
// escaped but read raw, so one holding a backslash, quote, tab or line break
// changes at each round by design (and a backslash before the closing quote
// runs the field into the next); such an index is only read, not compared.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ai/chat/chat_json.h"

namespace {

bool SameMessages(const std::vector<ChatMessage>& a, const std::vector<ChatMessage>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i].isUser != b[i].isUser || a[i].text != b[i].text || a[i].timestamp != b[i].timestamp) return false;
  }
  return true;
}

bool HasEscapedCharacter(const std::wstring& raw) { return raw.find_first_of(L"\\\"\t\n\r") != std::wstring::npos; }

// Whether every field read raw is one the writer leaves as it is.
bool RoundTrips(const std::vector<ChatInfo>& chats) {
  for (const ChatInfo& chat : chats) {
    if (HasEscapedCharacter(chat.id) || HasEscapedCharacter(chat.lastModified) ||
        HasEscapedCharacter(chat.createdAt))
      return false;
  }
  return true;
}

bool SameChats(const std::vector<ChatInfo>& a, const std::vector<ChatInfo>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i].id != b[i].id || a[i].title != b[i].title || a[i].lastModified != b[i].lastModified ||
        a[i].createdAt != b[i].createdAt || a[i].isCurrent != b[i].isCurrent)
      return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);

  const std::vector<ChatInfo> chats = ParseIndexJson(text);
  const std::vector<ChatInfo> once = ParseIndexJson(FormatIndexJson(chats));
  const std::vector<ChatInfo> twice = ParseIndexJson(FormatIndexJson(once));
  if (RoundTrips(once) && !SameChats(once, twice)) std::abort();

  const std::vector<ChatMessage> messages = ParseChatJson(text);
  const std::vector<ChatMessage> read = ParseChatJson(FormatChatJson(messages));
  const std::vector<ChatMessage> again = ParseChatJson(FormatChatJson(read));
  if (!SameMessages(read, again)) std::abort();
  AutoChatTitle(messages);
  return 0;
}
