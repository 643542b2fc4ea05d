#include "document/text_detect.h"

#include <windows.h>

#include <cstring>
#include <vector>

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

std::string Utf16ToUtf8(const uint8_t* bytes, size_t size, bool bigEndian) {
  std::vector<wchar_t> units(size / 2);
  for (size_t i = 0; i < units.size(); ++i) {
    uint8_t first = bytes[2 * i], second = bytes[2 * i + 1];
    units[i] = static_cast<wchar_t>(bigEndian ? (first << 8) | second : (second << 8) | first);
  }
  if (units.empty()) return {};
  int length = WideCharToMultiByte(CP_UTF8, 0, units.data(), static_cast<int>(units.size()), nullptr, 0, nullptr,
                                   nullptr);
  std::string out(length > 0 ? length : 0, '\0');
  if (length > 0)
    WideCharToMultiByte(CP_UTF8, 0, units.data(), static_cast<int>(units.size()), out.data(), length, nullptr,
                        nullptr);
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

DecodedText DecodeDocumentBytes(const uint8_t* bytes, size_t size) {
  DecodedText result;
  const char* chars = reinterpret_cast<const char*>(bytes);
  if (size >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
    result.encoding = kUtf8Bom;
    result.utf8.assign(chars + 3, size - 3);
  } else if (size >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) {
    result.encoding = kUtf16Be;
    result.utf8 = Utf16ToUtf8(bytes + 2, size - 2, true);
  } else if (size >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
    result.encoding = kUtf16Le;
    result.utf8 = Utf16ToUtf8(bytes + 2, size - 2, false);
  } else {
    result.encoding = kUtf8;
    result.utf8.assign(chars, size);
  }
  return result;
}

int DetectLineEnding(const std::string& text, int current) {
  if (text.empty()) return current;
  bool hasCr = text.find('\r') != std::string::npos;
  bool hasLf = text.find('\n') != std::string::npos;
  if (hasCr && hasLf) return kEolCrLf;
  if (hasCr) return kEolCr;
  if (hasLf) return kEolLf;
  return current;
}
