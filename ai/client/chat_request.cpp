#include "ai/client/chat_request.h"

#include <cstdio>
#include <sstream>

#include "base/text_convert.h"

std::string JsonEscape(const std::wstring& text) {
  const std::string utf8 = WideToUtf8(text);
  std::string out;
  out.reserve(utf8.size() + utf8.size() / 8);
  for (char c : utf8) {
    unsigned char byte = static_cast<unsigned char>(c);
    switch (byte) {
      case 0x09: out += "\\t"; break;
      case 0x0A: out += "\\n"; break;
      case 0x0D: out += "\\r"; break;
      case 0x22: out += "\\\""; break;
      case 0x5C: out += "\\\\"; break;
      default:
        if (byte < 0x20) {
          char escaped[8];
          std::snprintf(escaped, sizeof(escaped), "\\u%04x", byte);
          out += escaped;
        } else {
          out += c;
        }
    }
  }
  return out;
}

std::string BuildChatRequestBody(const std::wstring& model, const std::wstring& systemText,
                                 const std::vector<ChatTurn>& history, const std::wstring& newMessage,
                                 float temperature, int maxTokens) {
  std::ostringstream number;
  number << temperature;  // general format, six significant digits: 0.7 reads 0.7
  std::string body = "{\"model\":\"" + JsonEscape(model) + "\",";
  body += "\"stream\":false,";
  body += "\"temperature\":" + number.str() + ",";
  body += "\"max_tokens\":" + std::to_string(maxTokens) + ",";
  body += "\"messages\":[";
  if (!systemText.empty()) body += "{\"role\":\"system\",\"content\":\"" + JsonEscape(systemText) + "\"},";
  for (const ChatTurn& turn : history)
    body += std::string("{\"role\":\"") + (turn.isUser ? "user" : "assistant") + "\",\"content\":\"" +
            JsonEscape(turn.text) + "\"},";
  body += "{\"role\":\"user\",\"content\":\"" + JsonEscape(newMessage) + "\"}";
  body += "]}";
  return body;
}

std::string ExtractJsonString(const std::string& body, const std::string& key) {
  const std::string pattern = "\"" + key + "\"";
  if (pattern.size() > body.size()) return {};
  size_t found = body.find(pattern);
  if (found == std::string::npos) return {};
  size_t p = found + pattern.size();
  if (p >= body.size()) return {};
  size_t colon = body.find(':', p);
  if (colon == std::string::npos || colon + 1 >= body.size()) return {};
  size_t quote = body.find('"', colon + 1);
  if (quote == std::string::npos) return {};
  std::string value;
  for (size_t i = quote + 1; i < body.size(); ++i) {
    char c = body[i];
    if (c == '"') break;
    if (c == '\\' && i + 1 < body.size()) {
      char next = body[++i];
      // \uXXXX is not decoded: it arrives as the letter u and its digits.
      value += next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : next;
      continue;
    }
    value += c;
  }
  return value;
}

std::string ExtractChatAnswer(const std::string& body) {
  if (body.size() < 9) return {};
  if (body.find("\"choices\"") != std::string::npos) return ExtractJsonString(body, "content");
  if (body.find("\"message\"") != std::string::npos) return ExtractJsonString(body, "message");
  return {};
}
