#include "document/text_detect.h"

#include "base/text_convert.h"

#include <cstring>
#include <utility>

namespace {

constexpr size_t kBinaryWindow = 1024;
constexpr int kNullsRefused = 3;
constexpr int kControlsRefused = 6;

struct Magic {
  const char* bytes;
  size_t length;
};

// In the order they are tested; only these leading bytes are compared.
constexpr Magic kMagicNumbers[] = {
    {"%PDF", 4}, {"MZ", 2}, {"PK", 2}, {"\x89PNG", 4}, {"\xFF\xD8", 2}, {"GIF", 3}, {"BM", 2},
    {"\xD0\xCF\x11\xE0", 4}, {"\x7F" "ELF", 4}, {"RIFF", 4},
};

bool StartsWithUtf16Bom(const uint8_t* bytes, size_t size) {
  return size >= 2 && ((bytes[0] == 0xFF && bytes[1] == 0xFE) || (bytes[0] == 0xFE && bytes[1] == 0xFF));
}

// UTF-16 code units (2-byte aligned, in the machine's order) to UTF-8 in
// a zero-terminated buffer of its own.
std::unique_ptr<char[]> Utf16ToUtf8(const char16_t* units, size_t count, size_t& length) {
  const size_t needed = Utf16ToUtf8Into(units, count, nullptr, 0);
  std::unique_ptr<char[]> out(new char[needed + 1]);
  length = needed ? Utf16ToUtf8Into(units, count, out.get(), needed) : 0;
  out[length] = '\0';
  return out;
}

}  // namespace

BinaryVerdict DetectBinary(const uint8_t* bytes, size_t size) {
  if (StartsWithUtf16Bom(bytes, size)) return BinaryVerdict::kText;
  if (size >= 4)
    for (const Magic& magic : kMagicNumbers)
      if (std::memcmp(bytes, magic.bytes, magic.length) == 0) return BinaryVerdict::kKnownFormat;
  size_t window = size < kBinaryWindow ? size : kBinaryWindow;
  // Both counts run over the whole window; the zero bytes are judged first,
  // wherever in the window the sixth control byte stands.
  int nulls = 0, controls = 0;
  for (size_t i = 0; i < window; ++i) {
    uint8_t b = bytes[i];
    if (b == 0) ++nulls;
    if (b < 32 && b != 9 && b != 10 && b != 13) ++controls;
  }
  if (nulls >= kNullsRefused) return BinaryVerdict::kTooManyNulls;
  if (controls >= kControlsRefused) return BinaryVerdict::kTooManyControls;
  return BinaryVerdict::kText;
}

DocumentText DecodeDocumentBuffer(uint8_t* bytes, size_t size) {
  DocumentText result;
  bytes[size] = 0;
  char* chars = reinterpret_cast<char*>(bytes);
  if (size >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
    result.encoding = kUtf8Bom;
    result.text = chars + 3;
    result.length = size - 3;
  } else if (size >= 2 && ((bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0xFF && bytes[1] == 0xFE))) {
    const bool bigEndian = bytes[0] == 0xFE;
    result.encoding = bigEndian ? kUtf16Be : kUtf16Le;
    const size_t count = (size - 2) / 2;  // an odd last byte is dropped
    if (bigEndian) {
      for (size_t i = 0; i < count; ++i) std::swap(bytes[2 + 2 * i], bytes[3 + 2 * i]);
    }
    // The units start at offset 2 of a buffer from new[], so they are aligned.
    result.converted = Utf16ToUtf8(reinterpret_cast<const char16_t*>(bytes + 2), count, result.length);
    result.text = result.converted.get();
  } else {
    result.encoding = kUtf8;
    result.text = chars;
    result.length = size;
  }
  return result;
}

DecodedText DecodeDocumentBytes(const uint8_t* bytes, size_t size) {
  std::unique_ptr<uint8_t[]> copy(new uint8_t[size + 1]);
  if (size) std::memcpy(copy.get(), bytes, size);
  DocumentText text = DecodeDocumentBuffer(copy.get(), size);
  DecodedText result;
  result.encoding = text.encoding;
  result.utf8.assign(text.text, text.length);
  return result;
}

int DetectLineEnding(const char* text, size_t length, int current) {
  if (length == 0) return current;
  // Presence only, so memchr's speed: a whole 100 MB text takes milliseconds.
  const bool hasCr = std::memchr(text, '\r', length) != nullptr;
  const bool hasLf = std::memchr(text, '\n', length) != nullptr;
  if (hasCr && hasLf) return kEolCrLf;
  if (hasCr) return kEolCr;
  if (hasLf) return kEolLf;
  return current;
}
