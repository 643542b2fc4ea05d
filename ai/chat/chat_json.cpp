#include "ai/chat/chat_json.h"

#include "base/text_convert.h"

namespace {

std::wstring Digits(int value, size_t width) {
  std::wstring text = std::to_wstring(value);
  if (text.size() < width) text.insert(0, width - text.size(), L'0');
  return text;
}

// From just behind an opening bracket, the position of its closing one, or
// npos. Strings are skipped: a quote toggles them unless a backslash stands
// right before it.
size_t MatchingBracket(const std::string& text, size_t from, char open, char close) {
  bool inString = false;
  int depth = 0;
  for (size_t i = from; i < text.size(); ++i) {
    char c = text[i];
    if (c == '"' && (i == 0 || text[i - 1] != '\\')) {
      inString = !inString;
    } else if (!inString && c == open) {
      ++depth;
    } else if (!inString && c == close) {
      if (depth == 0) return i;
      --depth;
    }
  }
  return std::string::npos;
}

// The objects inside the array that follows "key": each from { to } whole.
std::vector<std::string> ArrayObjects(const std::string& text, const std::string& key) {
  std::vector<std::string> objects;
  size_t at = text.find("\"" + key + "\"");
  if (at == std::string::npos) return objects;
  size_t open = text.find('[', at);
  if (open == std::string::npos) return objects;
  size_t close = MatchingBracket(text, open + 1, '[', ']');
  if (close == std::string::npos) return objects;
  const std::string inside = text.substr(open + 1, close - open - 1);
  size_t pos = 0;
  for (;;) {
    size_t start = inside.find('{', pos);
    if (start == std::string::npos) break;
    size_t end = MatchingBracket(inside, start + 1, '{', '}');
    if (end == std::string::npos) break;  // what was read so far stands
    objects.push_back(inside.substr(start, end - start + 1));
    pos = end + 1;
  }
  return objects;
}

// The raw bytes between the quotes of "key": "value"; empty when the key,
// its colon or either quote is missing.
std::string RawString(const std::string& object, const std::string& key) {
  size_t at = object.find("\"" + key + "\"");
  if (at == std::string::npos) return {};
  size_t colon = object.find(':', at + key.size() + 2);
  if (colon == std::string::npos) return {};
  size_t open = object.find('"', colon + 1);
  if (open == std::string::npos) return {};
  for (size_t i = open + 1; i < object.size(); ++i) {
    if (object[i] == '"' && object[i - 1] != '\\') return object.substr(open + 1, i - open - 1);
  }
  return {};
}

// true when the first byte after the key's colon and the skipped bytes is t.
bool RawBool(const std::string& object, const std::string& key, const char* skipped) {
  size_t at = object.find("\"" + key + "\"");
  if (at == std::string::npos) return false;
  size_t colon = object.find(':', at + key.size() + 2);
  if (colon == std::string::npos) return false;
  size_t value = object.find_first_not_of(skipped, colon + 1);
  return value != std::string::npos && object[value] == 't';
}

void Field(std::string& out, const char* name, const std::wstring& value, bool comma) {
  out += "      \"";
  out += name;
  out += "\": \"" + JsonEscapeStore(value) + (comma ? "\",\n" : "\"\n");
}

}  // namespace

std::wstring ChatTimestamp(const ChatTime& t) {
  return Digits(t.year, 4) + L"-" + Digits(t.month, 2) + L"-" + Digits(t.day, 2) + L" " + Digits(t.hour, 2) + L":" +
         Digits(t.minute, 2) + L":" + Digits(t.second, 2);
}

std::wstring ChatCreatedAt(const ChatTime& t) {
  return Digits(t.day, 2) + L"." + Digits(t.month, 2) + L"." + Digits(t.year, 4) + L"  " + Digits(t.hour, 2) + L":" +
         Digits(t.minute, 2);
}

std::wstring ChatId(const ChatTime& t, int number) {
  return Digits(t.year, 4) + Digits(t.month, 2) + Digits(t.day, 2) + L"_" + Digits(t.hour, 2) + Digits(t.minute, 2) +
         Digits(t.second, 2) + L"_" + Digits(number, 4);
}

std::string JsonEscapeStore(const std::wstring& text) {
  std::string out;
  for (char c : WideToUtf8(text)) {
    switch (c) {
      case '\t': out += "\\t"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      default: out += c;
    }
  }
  return out;
}

std::wstring JsonUnescapeStore(const std::string& raw) {
  std::string out;
  out.reserve(raw.size());
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\' || i + 1 == raw.size()) {
      out += raw[i];
      continue;
    }
    char next = raw[i + 1];
    switch (next) {
      case '"': case '/': case '\\': out += next; break;
      case 'b': out += '\b'; break;
      case 'f': out += '\f'; break;
      case 'n': out += '\n'; break;
      case 'r': out += '\r'; break;
      case 't': out += '\t'; break;
      default:
        out += '\\';
        out += next;
    }
    ++i;
  }
  return Utf8ToWide(out);
}

std::string FormatIndexJson(const std::vector<ChatInfo>& chats) {
  std::string out = "{\n  \"chats\": [\n";
  for (size_t i = 0; i < chats.size(); ++i) {
    const ChatInfo& chat = chats[i];
    out += "    {\n";
    Field(out, "id", chat.id, true);
    Field(out, "title", chat.title, true);
    Field(out, "lastModified", chat.lastModified, true);
    Field(out, "createdAt", chat.createdAt, true);
    out += std::string("      \"isCurrent\": ") + (chat.isCurrent ? "true" : "false") + "\n";
    out += i + 1 < chats.size() ? "    },\n" : "    }\n";
  }
  return out + "  ]\n}\n";
}

std::string FormatChatJson(const std::vector<ChatMessage>& messages) {
  std::string out = "{\n  \"messages\": [\n";
  for (size_t i = 0; i < messages.size(); ++i) {
    const ChatMessage& message = messages[i];
    out += "    {\n";
    out += std::string("      \"isUser\": ") + (message.isUser ? "true" : "false") + ",\n";
    Field(out, "text", message.text, true);
    Field(out, "timestamp", message.timestamp, false);
    out += i + 1 < messages.size() ? "    },\n" : "    }\n";
  }
  return out + "  ]\n}\n";
}

std::vector<ChatInfo> ParseIndexJson(const std::string& text) {
  std::vector<ChatInfo> chats;
  for (const std::string& object : ArrayObjects(text, "chats")) {
    ChatInfo chat;
    chat.id = Utf8ToWide(RawString(object, "id"));
    if (chat.id.empty()) continue;
    chat.title = JsonUnescapeStore(RawString(object, "title"));
    chat.lastModified = Utf8ToWide(RawString(object, "lastModified"));
    chat.createdAt = Utf8ToWide(RawString(object, "createdAt"));
    chat.isCurrent = RawBool(object, "isCurrent", " \t");
    chats.push_back(std::move(chat));
  }
  return chats;
}

std::vector<ChatMessage> ParseChatJson(const std::string& text) {
  std::vector<ChatMessage> messages;
  for (const std::string& object : ArrayObjects(text, "messages")) {
    ChatMessage message;
    message.isUser = RawBool(object, "isUser", " \t\n\r");
    message.text = JsonUnescapeStore(RawString(object, "text"));
    message.timestamp = JsonUnescapeStore(RawString(object, "timestamp"));
    messages.push_back(std::move(message));
  }
  return messages;
}

std::wstring AutoChatTitle(const std::vector<ChatMessage>& messages) {
  for (const ChatMessage& message : messages) {
    if (!message.isUser || message.text.empty()) continue;
    if (message.text.size() <= 50) return message.text;
    return message.text.substr(0, 47) + L"...";
  }
  return L"Chat History";
}

std::wstring LegacyChatNewName(const std::wstring& fileName) {
  size_t underscore = fileName.find(L'_');
  return underscore == std::wstring::npos ? std::wstring() : fileName.substr(underscore + 1);
}

bool LegacyChatLosesToNew(uint64_t legacySize, uint64_t newSize) { return legacySize <= newSize || newSize >= 50; }
