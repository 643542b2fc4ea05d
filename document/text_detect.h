// What a loaded file's bytes are: refused as binary, or text in one of the
// encodings, with the line ending it uses. No windows here.
#pragma once

#include <cstddef>
#include <cstdint>
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

// CR and LF both present: CRLF; CR only: CR; LF only: LF; neither, or an
// empty text: current stays.
int DetectLineEnding(const std::string& text, int current);
