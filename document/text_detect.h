// What a loaded file's bytes are: refused as binary, or text in one of the
// encodings, with the line ending it uses. No windows here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "document/encoding.h"

enum class BinaryVerdict { kText, kKnownFormat, kTooManyNulls, kTooManyControls };

// Leading magic numbers, then zero bytes (the third refuses) and control
// bytes other than tab, LF and CR (the sixth refuses) within the first 1024
// bytes. A file starting with a UTF-16 byte order mark is never tested.
BinaryVerdict DetectBinary(const uint8_t* bytes, size_t size);

struct DecodedText {
  TextEncoding encoding = kUtf8;
  std::string utf8;  // what the editor gets
};

// UTF-8 BOM dropped, UTF-16 LE and BE (byte-swapped) converted to UTF-8, all
// else passed through unchanged.
DecodedText DecodeDocumentBytes(const uint8_t* bytes, size_t size);

// The same decision over a buffer the load owns, without copying UTF-8: the
// text is the buffer itself, past a BOM, or, for UTF-16, a converted buffer
// of its own (a big-endian buffer is byte-swapped in place on the way).
// bytes holds size bytes and one more, a zero, so the text is always
// zero-terminated as the editor wants it.
struct DocumentText {
  TextEncoding encoding = kUtf8;
  const char* text = "";  // zero-terminated
  size_t length = 0;      // without the terminator; zero bytes inside count
  std::unique_ptr<char[]> converted;  // owns text after a conversion
};
DocumentText DecodeDocumentBuffer(uint8_t* bytes, size_t size);

// CR and LF both present: CRLF; CR only: CR; LF only: LF; neither, or an
// empty text: current stays.
int DetectLineEnding(const char* text, size_t length, int current);
inline int DetectLineEnding(const std::string& text, int current) {
  return DetectLineEnding(text.data(), text.size(), current);
}
