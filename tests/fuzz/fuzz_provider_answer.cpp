// A provider's answer from the network: the scanners never fail, and what
// they return is a part of the body or built from its escapes.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ai/client/chat_request.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string body(reinterpret_cast<const char*>(data), size);
  const std::string answer = ExtractChatAnswer(body);
  if (answer.size() > body.size()) std::abort();  // unescaping only ever shortens
  for (const char* key : {"content", "message", "error", "id", ""}) {
    if (ExtractJsonString(body, key).size() > body.size()) std::abort();
  }
  return 0;
}
