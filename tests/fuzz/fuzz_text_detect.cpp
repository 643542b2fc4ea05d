// Any document a user opens: the binary test, the decoding and the line
// ending never fail, and the text handed to the editor is terminated.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "document/text_detect.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  DetectBinary(data, size);
  std::unique_ptr<uint8_t[]> buffer(new uint8_t[size + 1]);
  if (size) std::memcpy(buffer.get(), data, size);
  DocumentText text = DecodeDocumentBuffer(buffer.get(), size);
  if (text.text[text.length] != '\0') std::abort();
  if (!text.converted && text.length > size) std::abort();
  DetectLineEnding(text.text, text.length, kEolCrLf);
  if (DecodeDocumentBytes(data, size).utf8 != std::string(text.text, text.length)) std::abort();
  return 0;
}
