// The word table of the send pipeline's topic scan: constant rows in lower
// case, English first, then Bosnian, Croatian and Serbian.
#pragma once

#include <cstddef>

constexpr size_t kTopicWordCount = 234;
constexpr size_t kTopicWordEnglishCount = 130;  // rows before this index are English

extern const wchar_t* const kTopicWords[kTopicWordCount];
