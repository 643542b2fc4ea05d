#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "document/text_detect.h"

namespace {

BinaryVerdict Verdict(const std::string& bytes) {
  return DetectBinary(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

DecodedText Decode(const std::string& bytes) {
  return DecodeDocumentBytes(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

TEST(BinaryDetection, EveryMagicNumberRefuses) {
  for (const char* magic : {"%PDF-1.7", "MZ\x90\x00", "PK\x03\x04", "\x89PNG\r\n", "\xFF\xD8\xFF\xE0", "GIF89a",
                            "BM6\x00", "\xD0\xCF\x11\xE0\xA1", "\x7F" "ELF\x02", "RIFF\x24\x00"}) {
    std::string bytes(magic, magic[0] == 'M' || magic[0] == 'B' ? 4 : std::char_traits<char>::length(magic));
    bytes += " and some text";
    EXPECT_EQ(Verdict(bytes), BinaryVerdict::kKnownFormat) << magic;
  }
}

TEST(BinaryDetection, TextThatStartsLikeAFormatIsRefusedToo) {
  EXPECT_EQ(Verdict("PKG notes\r\n"), BinaryVerdict::kKnownFormat);
  EXPECT_EQ(Verdict("MZ is a name\n"), BinaryVerdict::kKnownFormat);
  EXPECT_EQ(Verdict("BMW\n"), BinaryVerdict::kKnownFormat);
}

TEST(BinaryDetection, MagicNeedsAtLeastFourBytes) {
  EXPECT_EQ(Verdict("PK\n"), BinaryVerdict::kText);
  EXPECT_EQ(Verdict("abc"), BinaryVerdict::kText);
}

TEST(BinaryDetection, TwoNullsPassTheThirdRefuses) {
  EXPECT_EQ(Verdict(std::string("a\0b\0c", 5)), BinaryVerdict::kText);
  EXPECT_EQ(Verdict(std::string("a\0b\0c\0", 6)), BinaryVerdict::kTooManyNulls);
}

TEST(BinaryDetection, FiveControlBytesPassTheSixthRefuses) {
  EXPECT_EQ(Verdict("a\x01\x02\x03\x04\x05 z\t\r\n"), BinaryVerdict::kText);
  EXPECT_EQ(Verdict("a\x01\x02\x03\x04\x05\x06"), BinaryVerdict::kTooManyControls);
}

TEST(BinaryDetection, ZeroBytesAreJudgedBeforeControlBytes) {
  // The sixth control byte comes before the third zero byte: the zero bytes
  // are counted over the whole window first and decide.
  std::string bytes = "a\x01\x02\x03\x04\x05\x06 then";
  bytes += std::string("\0x\0y\0", 5);
  EXPECT_EQ(Verdict(bytes), BinaryVerdict::kTooManyNulls);
  // Zero bytes at the very end of the window still count before the controls.
  std::string window(1024, 'a');
  for (int i = 0; i < 6; ++i) window[i] = '\x01';
  window[1021] = window[1022] = window[1023] = '\0';
  EXPECT_EQ(Verdict(window), BinaryVerdict::kTooManyNulls);
}

TEST(BinaryDetection, NullsCountAsControlBytesToo) {
  // Two zero bytes and four other control bytes make six control bytes.
  EXPECT_EQ(Verdict(std::string("x\0\0\x01\x02\x03\x04", 7)), BinaryVerdict::kTooManyControls);
}

TEST(BinaryDetection, OnlyTheFirst1024BytesAreLookedAt) {
  std::string bytes(1024, 'a');
  bytes += std::string(10, '\0');
  bytes += std::string(466, 'b');
  ASSERT_EQ(bytes.size(), 1500u);
  EXPECT_EQ(Verdict(bytes), BinaryVerdict::kText);
  bytes[1023] = '\0';
  bytes[1022] = '\0';
  bytes[1021] = '\0';
  EXPECT_EQ(Verdict(bytes), BinaryVerdict::kTooManyNulls);
}

TEST(BinaryDetection, Utf16ByteOrderMarkSkipsAllTests) {
  std::string binary("\xFF\xFE\0\0\0\0\x01\x02\x03\x04\x05\x06\x07", 13);
  EXPECT_EQ(Verdict(binary), BinaryVerdict::kText);
  EXPECT_EQ(Verdict(std::string("\xFE\xFF\0\0\0\0", 6)), BinaryVerdict::kText);
}

TEST(BinaryDetection, Utf16WithoutByteOrderMarkIsRefusedByNulls) {
  EXPECT_EQ(Verdict(std::string("h\0e\0l\0l\0o\0", 10)), BinaryVerdict::kTooManyNulls);
}

TEST(Decoding, EmptyAndOneByteFilesAreUtf8) {
  EXPECT_EQ(Decode("").encoding, kUtf8);
  EXPECT_EQ(Decode("").utf8, "");
  DecodedText one = Decode("\xFE");
  EXPECT_EQ(one.encoding, kUtf8);
  EXPECT_EQ(one.utf8, "\xFE");
}

TEST(Decoding, Utf8BomIsDroppedOtherBytesUnchanged) {
  DecodedText bom = Decode("\xEF\xBB\xBFh\xC3\xA9");
  EXPECT_EQ(bom.encoding, kUtf8Bom);
  EXPECT_EQ(bom.utf8, "h\xC3\xA9");
  DecodedText notBom = Decode("\xEF\xBBx");
  EXPECT_EQ(notBom.encoding, kUtf8);
  EXPECT_EQ(notBom.utf8, "\xEF\xBBx");
  // No check that the bytes are UTF-8 and no code-page conversion.
  EXPECT_EQ(Decode("caf\xE9").utf8, "caf\xE9");
}

TEST(Decoding, Utf16LittleEndianIsConverted) {
  DecodedText text = Decode(std::string("\xFF\xFEh\0\xE9\0\x2D\x4E", 8));
  EXPECT_EQ(text.encoding, kUtf16Le);
  EXPECT_EQ(text.utf8, "h\xC3\xA9\xE4\xB8\xAD");
}

TEST(Decoding, Utf16BigEndianIsSwappedAndConverted) {
  DecodedText text = Decode(std::string("\xFE\xFF\0h\0\xE9\x4E\x2D", 8));
  EXPECT_EQ(text.encoding, kUtf16Be);
  EXPECT_EQ(text.utf8, "h\xC3\xA9\xE4\xB8\xAD");
}

TEST(Decoding, OddLastByteOfUtf16IsDropped) {
  EXPECT_EQ(Decode(std::string("\xFF\xFEh\0i", 5)).utf8, "h");
}

TEST(Decoding, ByteOrderMarkAloneIsAnEmptyUtf16Document) {
  DecodedText text = Decode("\xFF\xFE");
  EXPECT_EQ(text.encoding, kUtf16Le);
  EXPECT_EQ(text.utf8, "");
}

TEST(Decoding, SurrogatePairsBecomeFourUtf8Bytes) {
  EXPECT_EQ(Decode(std::string("\xFF\xFE\x3D\xD8\x00\xDE", 6)).utf8, "\xF0\x9F\x98\x80");
}

TEST(LineEndings, PresenceDecidesNotPairs) {
  EXPECT_EQ(DetectLineEnding("a\r\nb\r\n", kEolLf), kEolCrLf);
  EXPECT_EQ(DetectLineEnding("a\rb\r", kEolCrLf), kEolCr);
  EXPECT_EQ(DetectLineEnding("a\nb\n", kEolCrLf), kEolLf);
  std::string mixed = "one\r";
  for (int i = 0; i < 1000; ++i) mixed += "line\n";
  EXPECT_EQ(DetectLineEnding(mixed, kEolLf), kEolCrLf);
}

TEST(LineEndings, NoLineEndOrEmptyKeepsTheCurrentMode) {
  EXPECT_EQ(DetectLineEnding("", kEolLf), kEolLf);
  EXPECT_EQ(DetectLineEnding("single line", kEolCr), kEolCr);
}

}  // namespace

namespace {

// A load's buffer: the bytes and one more for the terminator.
std::unique_ptr<uint8_t[]> Buffer(const std::string& bytes) {
  std::unique_ptr<uint8_t[]> buffer(new uint8_t[bytes.size() + 1]);
  std::memcpy(buffer.get(), bytes.data(), bytes.size());
  buffer[bytes.size()] = 0xAA;  // not yet a terminator
  return buffer;
}

}  // namespace

TEST(DocumentBuffer, Utf8IsHandedOverInPlace) {
  const std::string bytes = "plain\r\ntext";
  auto buffer = Buffer(bytes);
  DocumentText text = DecodeDocumentBuffer(buffer.get(), bytes.size());
  EXPECT_EQ(text.encoding, kUtf8);
  EXPECT_EQ(text.text, reinterpret_cast<const char*>(buffer.get()));  // no copy
  EXPECT_EQ(text.length, bytes.size());
  EXPECT_EQ(text.text[text.length], '\0');
  EXPECT_FALSE(text.converted);
}

TEST(DocumentBuffer, ByteOrderMarkSkippedByOffset) {
  const std::string bytes = "\xEF\xBB\xBFold";
  auto buffer = Buffer(bytes);
  DocumentText text = DecodeDocumentBuffer(buffer.get(), bytes.size());
  EXPECT_EQ(text.encoding, kUtf8Bom);
  EXPECT_EQ(text.text, reinterpret_cast<const char*>(buffer.get()) + 3);
  EXPECT_EQ(std::string(text.text, text.length), "old");
  EXPECT_EQ(text.text[text.length], '\0');
}

TEST(DocumentBuffer, ZeroBytesInsideCountAndStay) {
  const std::string bytes("a\0b\0c", 5);
  auto buffer = Buffer(bytes);
  DocumentText text = DecodeDocumentBuffer(buffer.get(), bytes.size());
  EXPECT_EQ(std::string(text.text, text.length), bytes);
  EXPECT_STREQ(text.text, "a");  // what SCI_SETTEXT takes
}

TEST(DocumentBuffer, Utf16ConvertedIntoItsOwnBuffer) {
  const std::string little("\xFF\xFE" "a\0\xFC\0\x3D\xD8\x00\xDE" "x", 11);  // odd last byte dropped
  auto buffer = Buffer(little);
  DocumentText text = DecodeDocumentBuffer(buffer.get(), little.size());
  EXPECT_EQ(text.encoding, kUtf16Le);
  ASSERT_TRUE(text.converted);
  EXPECT_EQ(std::string(text.text, text.length), "a\xC3\xBC\xF0\x9F\x98\x80");
  EXPECT_EQ(text.text[text.length], '\0');

  const std::string big("\xFE\xFF\0a\0\xFC", 6);
  buffer = Buffer(big);
  text = DecodeDocumentBuffer(buffer.get(), big.size());
  EXPECT_EQ(text.encoding, kUtf16Be);
  EXPECT_EQ(std::string(text.text, text.length), "a\xC3\xBC");
  EXPECT_EQ(Decode(big).utf8, "a\xC3\xBC");  // the copying form agrees
}

TEST(DocumentBuffer, EmptyAndByteOrderMarkOnly) {
  auto buffer = Buffer("");
  DocumentText text = DecodeDocumentBuffer(buffer.get(), 0);
  EXPECT_EQ(text.encoding, kUtf8);
  EXPECT_EQ(text.length, 0u);
  EXPECT_EQ(text.text[0], '\0');
  buffer = Buffer("\xFF\xFE");
  text = DecodeDocumentBuffer(buffer.get(), 2);
  EXPECT_EQ(text.encoding, kUtf16Le);
  EXPECT_EQ(text.length, 0u);
  EXPECT_EQ(text.text[0], '\0');
}

TEST(LineEndings, OverABufferWithZeroBytes) {
  const std::string text("a\0b\r\n", 5);
  EXPECT_EQ(DetectLineEnding(text.data(), text.size(), kEolLf), kEolCrLf);
  EXPECT_EQ(DetectLineEnding(text.data(), 0, kEolCr), kEolCr);
}
