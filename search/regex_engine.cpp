#include "search/regex_engine.h"

#include "search/case_rules.h"

std::wstring SearchExpressionText(const std::wstring& pattern, bool wholeWord) {
  if (!wholeWord) return pattern;
  return L"\\b(?:" + pattern + L")\\b";
}

SearchRegex BuildSearchRegex(const std::wstring& pattern, bool matchCase, bool wholeWord) {
  SearchRegex built;
  auto flags = std::regex_constants::ECMAScript;
  if (!matchCase) flags |= std::regex_constants::icase;
  try {
    built.regex.assign(SearchExpressionText(pattern, wholeWord), flags);
    built.valid = true;
  } catch (...) {
    built.valid = false;
  }
  return built;
}

int32_t LineOfOffset(const std::wstring& text, LineCursor& cursor, int64_t offset) {
  if (offset < cursor.offset) cursor = LineCursor{};
  const int64_t stop = std::min<int64_t>(offset, static_cast<int64_t>(text.size()));
  int32_t line = cursor.line;
  const wchar_t* data = text.data();
  for (int64_t k = cursor.offset; k < stop; ++k)
    if (data[k] == L'\n') ++line;
  cursor.offset = std::max<int64_t>(stop, cursor.offset);
  cursor.line = line;
  return line;
}

std::vector<RegexMatch> SearchNextBatch(const std::wstring& documentWide, const std::wregex& regex,
                                        uint64_t& position, uint64_t limit,
                                        const std::atomic<bool>* cancel, LineCursor& lines) {
  std::vector<RegexMatch> records;
  uint64_t p = position;
  const uint64_t batchStart = p;
  if (limit == 0) return records;
  const uint64_t length = documentWide.size();
  std::wsmatch found;
  while (p < length && !(cancel && cancel->load()) && records.size() < limit) {
    bool hit = false;
    try {
      hit = std::regex_search(documentWide.begin() + static_cast<std::ptrdiff_t>(p), documentWide.end(), found, regex);
    } catch (const std::regex_error&) {
      hit = false;  // beyond what the engine can do: no more matches
    }
    if (!hit) break;
    RegexMatch record;
    record.start = static_cast<int32_t>(p + static_cast<uint64_t>(found.position(0)));
    record.end = record.start + static_cast<int32_t>(found.length(0));
    record.text = found.str(0);
    record.line = LineOfOffset(documentWide, lines, record.start);
    records.push_back(std::move(record));
    const uint64_t end = static_cast<uint64_t>(records.back().end);
    p = end == batchStart ? end + 1 : end;
  }
  position = p;
  return records;
}

std::vector<RegexMatch> FindAllMatches(const std::wstring& text, const std::wstring& pattern, bool matchCase,
                                       bool wholeWord) {
  std::vector<RegexMatch> records;
  if (pattern.empty() || text.empty()) return records;
  const SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
  if (!built.valid) return records;
  LineCursor lines;
  for (std::wsregex_iterator it(text.begin(), text.end(), built.regex), end; it != end; ++it) {
    RegexMatch record;
    record.start = static_cast<int32_t>(it->position(0));
    record.end = record.start + static_cast<int32_t>(it->length(0));
    record.text = it->str(0);
    record.line = LineOfOffset(text, lines, record.start);
    records.push_back(std::move(record));
  }
  return records;
}

size_t CountMatches(const std::wstring& text, const std::wregex& regex) {
  size_t count = 0;
  for (std::wsregex_iterator it(text.begin(), text.end(), regex), end; it != end; ++it) ++count;
  return count;
}

std::wstring ExpandReplacement(const std::wstring& replacementTemplate, const std::wsmatch& match) {
  std::wstring out;
  const size_t n = replacementTemplate.size();
  for (size_t k = 0; k < n; ++k) {
    const wchar_t c = replacementTemplate[k];
    if (c != L'$' || k + 1 >= n) {
      out += c;
      continue;
    }
    const wchar_t next = replacementTemplate[k + 1];
    if (next == L'&' || next == L'0') {
      out += match.str(0);
      ++k;
    } else if (next >= L'1' && next <= L'9') {
      const size_t group = static_cast<size_t>(next - L'0');
      if (group < match.size() && match[group].matched) out += match.str(group);
      ++k;
    } else {
      out += c;  // a plain dollar; the next character is read on its own
    }
  }
  return out;
}

bool ReplaceOneMatch(const std::wstring& text, const std::wstring& pattern, const std::wstring& replacementTemplate,
                     bool matchCase, bool wholeWord, bool preserveCase, std::wstring& result, RegexMatch& match) {
  const SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
  if (!built.valid) return false;
  std::wsmatch found;
  if (!std::regex_search(text, found, built.regex)) return false;
  match.start = static_cast<int32_t>(found.position(0));
  match.end = match.start + static_cast<int32_t>(found.length(0));
  match.text = found.str(0);
  LineCursor lines;
  match.line = LineOfOffset(text, lines, match.start);
  std::wstring expansion = ExpandReplacement(replacementTemplate, found);
  if (preserveCase) expansion = ApplyMatchCasePattern(expansion, match.text);
  result = text.substr(0, static_cast<size_t>(match.start)) + expansion + text.substr(static_cast<size_t>(match.end));
  return true;
}

std::wstring ReplaceAllMatches(const std::wstring& text, const std::wstring& pattern,
                               const std::wstring& replacementTemplate, bool matchCase, bool wholeWord,
                               bool preserveCase) {
  if (pattern.empty()) return text;
  const SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
  if (!built.valid) return text;
  if (!preserveCase) return std::regex_replace(text, built.regex, replacementTemplate);
  std::wstring out;
  size_t tail = 0;
  for (std::wsregex_iterator it(text.begin(), text.end(), built.regex), end; it != end; ++it) {
    const size_t start = static_cast<size_t>(it->position(0));
    out.append(text, tail, start - tail);
    out += ApplyMatchCasePattern(ExpandReplacement(replacementTemplate, *it), it->str(0));
    tail = start + static_cast<size_t>(it->length(0));
  }
  out.append(text, tail, std::wstring::npos);
  return out;
}

uint64_t Utf8LengthOfUnits(const std::wstring& text, size_t from, size_t to) {
  uint64_t bytes = 0;
  const wchar_t* data = text.data();
  for (size_t k = from; k < to; ++k) {
    const uint32_t unit = static_cast<uint16_t>(data[k]);
    if (unit < 0x80) {
      bytes += 1;
    } else if (unit < 0x800) {
      bytes += 2;
    } else if (unit >= 0xD800 && unit < 0xDC00 && k + 1 < to && static_cast<uint16_t>(data[k + 1]) >= 0xDC00 &&
               static_cast<uint16_t>(data[k + 1]) < 0xE000) {
      bytes += 4;
      ++k;
    } else {
      bytes += 3;
    }
  }
  return bytes;
}

uint64_t WideUnitsOfBytes(const std::string& utf8, size_t bytes) {
  uint64_t units = 0;
  const size_t stop = std::min(bytes, utf8.size());
  for (size_t k = 0; k < stop; ++k) {
    const unsigned char c = static_cast<unsigned char>(utf8[k]);
    if ((c & 0xC0) == 0x80) continue;  // continuation byte
    units += c >= 0xF0 ? 2 : 1;
  }
  return units;
}

uint64_t BytePositionOfWide(const std::wstring& documentWide, uint64_t byteLength, BytePositionMemo& memo,
                            int64_t offset) {
  if (offset < 1) return 0;
  if (offset >= static_cast<int64_t>(documentWide.size())) return byteLength;
  const auto cached = memo.cache.find(static_cast<int32_t>(offset));
  if (cached != memo.cache.end()) return cached->second;
  // A cursor that ends between the halves of a pair would count the pair
  // as two lone surrogates; start such a stretch from the beginning.
  const bool cursorUsable = offset >= memo.cursorUnits &&
                            !(memo.cursorUnits > 0 && (static_cast<uint16_t>(documentWide[memo.cursorUnits - 1]) & 0xFC00) == 0xD800);
  uint64_t bytes;
  if (cursorUsable) bytes = memo.cursorBytes + Utf8LengthOfUnits(documentWide, static_cast<size_t>(memo.cursorUnits), static_cast<size_t>(offset));
  else bytes = Utf8LengthOfUnits(documentWide, 0, static_cast<size_t>(offset));
  memo.cache[static_cast<int32_t>(offset)] = bytes;
  memo.cursorUnits = offset;
  memo.cursorBytes = bytes;
  return bytes;
}
