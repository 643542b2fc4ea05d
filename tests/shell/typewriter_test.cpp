// Typewriter sound: which clip a typed character plays, and the two clips as
// they are built into Tavro.exe.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "shell/typewriter.h"
#include "tests/common/test_folder.h"

namespace {

// ---------------------------------------------------------------------------
// The rule

TEST(TypewriterRule, ClipNumbersAreTheWaveResources) {
  EXPECT_EQ(kTypewriterKeyClip, 333);
  EXPECT_EQ(kTypewriterReturnClip, 334);
}

TEST(TypewriterRule, EnterIsSilentWithSoundOnKeyOffAndSoundOnEnterOn) {
  EXPECT_EQ(TypewriterClipFor(13, false, true), 0);
}

TEST(TypewriterRule, NothingSoundsWithSoundOnKeyOff) {
  for (bool onEnter : {false, true})
    for (unsigned ch = 0; ch <= 0xFFFF; ++ch) {
      ASSERT_EQ(TypewriterClipFor(ch, false, onEnter), 0) << "ch " << ch << " soundOnEnter " << onEnter;
    }
}

TEST(TypewriterRule, CarriageReturnFollowsSoundOnEnter) {
  EXPECT_EQ(TypewriterClipFor(13, true, true), kTypewriterReturnClip);
  EXPECT_EQ(TypewriterClipFor(13, true, false), 0);
}

TEST(TypewriterRule, PrintableAsciiPlaysTheKeyWhateverSoundOnEnterSays) {
  for (bool onEnter : {false, true})
    for (unsigned ch = 32; ch <= 126; ++ch) {
      ASSERT_EQ(TypewriterClipFor(ch, true, onEnter), kTypewriterKeyClip) << "ch " << ch << " soundOnEnter " << onEnter;
    }
}

TEST(TypewriterRule, EverythingElseIsSilent) {
  for (bool onEnter : {false, true})
    for (unsigned ch = 0; ch <= 0xFFFF; ++ch) {
      if (ch == 13 || (ch >= 32 && ch <= 126)) continue;
      ASSERT_EQ(TypewriterClipFor(ch, true, onEnter), 0) << "ch " << ch << " soundOnEnter " << onEnter;
    }
  EXPECT_EQ(TypewriterClipFor(0x10000, true, true), 0);
  EXPECT_EQ(TypewriterClipFor(0xFFFFFFFFu, true, true), 0);
}

struct RuleCase {
  unsigned ch;
  bool soundOnKey;
  bool soundOnEnter;
  int clip;
};

TEST(TypewriterRule, BoundariesInEveryCombination) {
  const RuleCase cases[] = {
      // soundOnKey off: always silent.
      {31, false, false, 0}, {31, false, true, 0}, {32, false, false, 0}, {32, false, true, 0},
      {126, false, false, 0}, {126, false, true, 0}, {127, false, false, 0}, {127, false, true, 0},
      {10, false, false, 0}, {10, false, true, 0}, {13, false, false, 0}, {13, false, true, 0},
      {9, false, false, 0}, {9, false, true, 0}, {0xE9, false, false, 0}, {0xE9, false, true, 0},
      {0x4E2D, false, false, 0}, {0x4E2D, false, true, 0},
      // soundOnKey on, soundOnEnter off.
      {31, true, false, 0}, {32, true, false, 333}, {126, true, false, 333}, {127, true, false, 0},
      {10, true, false, 0}, {13, true, false, 0}, {9, true, false, 0}, {0xE9, true, false, 0},
      {0x4E2D, true, false, 0},
      // Both on.
      {31, true, true, 0}, {32, true, true, 333}, {126, true, true, 333}, {127, true, true, 0},
      {10, true, true, 0}, {13, true, true, 334}, {9, true, true, 0}, {0xE9, true, true, 0},
      {0x4E2D, true, true, 0},
  };
  for (const RuleCase& c : cases)
    EXPECT_EQ(TypewriterClipFor(c.ch, c.soundOnKey, c.soundOnEnter), c.clip)
        << "ch " << c.ch << " soundOnKey " << c.soundOnKey << " soundOnEnter " << c.soundOnEnter;
}

// ---------------------------------------------------------------------------
// The clips inside Tavro.exe

constexpr size_t kClipBytes = 81312;
constexpr uint32_t kFrames = 10157;  // (81312 - 56 bytes of headers) / 8 bytes a frame
constexpr size_t kDataOffset = 56;

uint16_t U16(const std::string& bytes, size_t at) {
  uint16_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

uint32_t U32(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

std::vector<float> Samples(const std::string& clip) {
  std::vector<float> samples((clip.size() - kDataOffset) / sizeof(float));
  std::memcpy(samples.data(), clip.data() + kDataOffset, samples.size() * sizeof(float));
  return samples;
}

// Root mean square over frames [first, first + count), both channels.
double Rms(const std::vector<float>& samples, size_t first, size_t count) {
  double sum = 0;
  for (size_t i = first * 2; i < (first + count) * 2; ++i) sum += double(samples[i]) * samples[i];
  return std::sqrt(sum / double(count * 2));
}

// The bytes of wave resource `id` in Tavro.exe, empty if it can't be had.
std::string ClipFromTavro(int id) {
  std::wstring path = ProgramFolder() + L"Tavro.exe";
  HMODULE module = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  if (!module) return {};
  std::string clip;
  if (HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), L"WAVE")) {
    HGLOBAL data = LoadResource(module, found);
    const char* bytes = data ? static_cast<const char*>(LockResource(data)) : nullptr;
    if (bytes) clip.assign(bytes, SizeofResource(module, found));
  }
  FreeLibrary(module);
  return clip;
}

class TypewriterClip : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    ASSERT_FALSE(ProgramFolder().empty()) << "TAVRO_BIN is not set";
    clip_ = ClipFromTavro(GetParam());
    ASSERT_FALSE(clip_.empty()) << "no WAVE resource " << GetParam() << " in Tavro.exe";
  }
  std::string clip_;
};

TEST_P(TypewriterClip, HeadersAreByteExact) {
  ASSERT_EQ(clip_.size(), kClipBytes);
  EXPECT_EQ(clip_.substr(0, 4), "RIFF");
  EXPECT_EQ(U32(clip_, 4), kClipBytes - 8);
  EXPECT_EQ(clip_.substr(8, 4), "WAVE");

  EXPECT_EQ(clip_.substr(12, 4), "fmt ");
  EXPECT_EQ(U32(clip_, 16), 16u);
  EXPECT_EQ(U16(clip_, 20), 3) << "IEEE float";
  EXPECT_EQ(U16(clip_, 22), 2) << "channels";
  EXPECT_EQ(U32(clip_, 24), 44100u) << "sample rate";
  EXPECT_EQ(U32(clip_, 28), 352800u) << "byte rate";
  EXPECT_EQ(U16(clip_, 32), 8) << "block align";
  EXPECT_EQ(U16(clip_, 34), 32) << "bits per sample";

  EXPECT_EQ(clip_.substr(36, 4), "fact");
  EXPECT_EQ(U32(clip_, 40), 4u);
  EXPECT_EQ(U32(clip_, 44), kFrames);

  EXPECT_EQ(clip_.substr(48, 4), "data");
  EXPECT_EQ(U32(clip_, 52), kFrames * 8);
  EXPECT_EQ(kDataOffset + U32(clip_, 52), kClipBytes);
}

TEST_P(TypewriterClip, LastsAboutAQuarterSecond) {
  ASSERT_EQ(clip_.size(), kClipBytes);
  double seconds = double(U32(clip_, 44)) / U32(clip_, 24);
  EXPECT_GT(seconds, 0.2);
  EXPECT_LT(seconds, 0.3);
}

TEST_P(TypewriterClip, SamplesAreFiniteAndInRange) {
  ASSERT_EQ(clip_.size(), kClipBytes);
  std::vector<float> samples = Samples(clip_);
  ASSERT_EQ(samples.size(), size_t(kFrames) * 2);
  for (size_t i = 0; i < samples.size(); ++i) {
    ASSERT_TRUE(std::isfinite(samples[i])) << "sample " << i;
    ASSERT_GE(samples[i], -1.0f) << "sample " << i;
    ASSERT_LE(samples[i], 1.0f) << "sample " << i;
  }
}

TEST_P(TypewriterClip, IsAudibleAndDecays) {
  ASSERT_EQ(clip_.size(), kClipBytes);
  std::vector<float> samples = Samples(clip_);
  float peak = 0;
  for (float s : samples) peak = std::max(peak, std::fabs(s));
  EXPECT_GT(peak, 0.2f);

  const size_t tenth = kFrames / 10;
  double loudest = 0;
  for (size_t part = 0; part < 10; ++part) loudest = std::max(loudest, Rms(samples, part * tenth, tenth));
  double last = Rms(samples, kFrames - tenth, tenth);
  EXPECT_LT(last, loudest * 0.25) << "last tenth " << last << ", loudest tenth " << loudest;
}

TEST_P(TypewriterClip, ChannelsDifferALittle) {
  ASSERT_EQ(clip_.size(), kClipBytes);
  std::vector<float> samples = Samples(clip_);
  double left = 0, right = 0;
  size_t differing = 0;
  for (size_t i = 0; i < samples.size(); i += 2) {
    left += double(samples[i]) * samples[i];
    right += double(samples[i + 1]) * samples[i + 1];
    if (samples[i] != samples[i + 1]) ++differing;
  }
  EXPECT_GT(differing, size_t(kFrames) / 10) << "the clip is mono";
  // Neither side is much louder than the other.
  EXPECT_LT(left, right * 2.0);
  EXPECT_LT(right, left * 2.0);
}

INSTANTIATE_TEST_SUITE_P(Resources, TypewriterClip, testing::Values(kTypewriterKeyClip, kTypewriterReturnClip),
                         [](const testing::TestParamInfo<int>& info) {
                           return info.param == kTypewriterKeyClip ? std::string("Key") : std::string("Return");
                         });

TEST(TypewriterClips, KeyAndReturnDiffer) {
  ASSERT_FALSE(ProgramFolder().empty()) << "TAVRO_BIN is not set";
  std::string key = ClipFromTavro(kTypewriterKeyClip);
  std::string back = ClipFromTavro(kTypewriterReturnClip);
  ASSERT_EQ(key.size(), kClipBytes);
  ASSERT_EQ(back.size(), kClipBytes);
  EXPECT_EQ(key.substr(0, kDataOffset), back.substr(0, kDataOffset)) << "same layout";
  EXPECT_NE(key.substr(kDataOffset), back.substr(kDataOffset));
}

}  // namespace
