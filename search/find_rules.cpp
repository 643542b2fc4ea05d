#include "search/find_rules.h"

#include <cwchar>
#include <cwctype>

#include "search/case_rules.h"

namespace {

// The "C" locale's isalnum and tolower on a byte: only ASCII counts.
bool IsAsciiAlnum(unsigned char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
char FoldByte(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// A row's text up to its first zero; a row without one is read whole.
std::wstring RowText(const wchar_t* row) { return std::wstring(row, wcsnlen(row, kHistoryUnits)); }

}  // namespace

void PushHistory(wchar_t (*history)[kHistoryUnits], const std::wstring& text) {
  if (text.empty()) return;
  const std::wstring row = text.substr(0, kHistoryUnits - 1);
  size_t found = kHistoryRows - 1;  // not found: the last row is lost
  for (size_t k = 0; k < kHistoryRows; ++k) {
    if (row == RowText(history[k])) {
      found = k;
      break;
    }
  }
  for (size_t k = found; k > 0; --k) std::wmemcpy(history[k], history[k - 1], kHistoryUnits);
  std::wmemset(history[0], L'\0', kHistoryUnits);
  std::wmemcpy(history[0], row.data(), row.size());
}

std::vector<std::wstring> HistoryRows(const wchar_t (*history)[kHistoryUnits]) {
  std::vector<std::wstring> rows;
  for (size_t k = 0; k < kHistoryRows; ++k) {
    if (history[k][0] != L'\0') rows.push_back(RowText(history[k]));
  }
  return rows;
}

int PickMatch(const std::vector<FindMatch>& matches, int64_t caret, int64_t selectionStart, bool forward, bool wrap) {
  if (matches.empty()) return -1;
  const int count = static_cast<int>(matches.size());
  if (forward) {
    for (int i = 0; i < count; ++i)
      if (matches[i].start >= caret) return i;
    return wrap ? 0 : -1;
  }
  for (int i = count - 1; i >= 0; --i)
    if (matches[i].start < selectionStart) return i;
  return wrap ? count - 1 : -1;
}

std::wstring MatchCountText(size_t count) {
  if (count == 1) return L"1 match found.";
  return std::to_wstring(count) + L" matches found.";
}

std::wstring ReplacedCountText(int count) { return std::to_wstring(count) + L" occurrence(s) replaced."; }

bool SelectionMatches(std::string_view selected, std::string_view search, bool matchCase) {
  if (selected.size() != search.size()) return false;
  if (matchCase) return selected == search;
  for (size_t i = 0; i < selected.size(); ++i)
    if (FoldByte(selected[i]) != FoldByte(search[i])) return false;
  return true;
}

bool IsWordCut(std::string_view range, size_t cut) {
  if (cut == 0 || cut >= range.size()) return true;
  return !(IsAsciiAlnum(static_cast<unsigned char>(range[cut - 1])) &&
           IsAsciiAlnum(static_cast<unsigned char>(range[cut])));
}

std::string FoldAscii(std::string_view text) {
  std::string folded(text.size(), '\0');
  for (size_t i = 0; i < text.size(); ++i) folded[i] = FoldByte(text[i]);
  return folded;
}

ReplaceAllResult BuildReplaceAll(const ReplaceAllRequest& request) {
  ReplaceAllResult result;
  const std::string_view range = request.range;
  const size_t n = request.search.size();
  if (n == 0 || range.size() < n) return result;

  // Without match case the scan runs on folded copies; what is copied and
  // what the case rule and the word test read is the range as it stands.
  std::string foldedRange, foldedSearch;
  std::string_view haystack = range, needle = request.search;
  if (!request.matchCase) {
    foldedRange = FoldAscii(range);
    foldedSearch = FoldAscii(request.search);
    haystack = foldedRange;
    needle = foldedSearch;
  }

  std::string& output = result.output;
  output.reserve(range.size());
  size_t scan = 0;    // where the next search starts
  size_t copied = 0;  // how much of the range is in the output already
  while (scan < range.size()) {
    const size_t hit = haystack.find(needle, scan);
    if (hit == std::string_view::npos) break;
    if (request.wholeWord && !(IsWordCut(range, hit) && IsWordCut(range, hit + n))) {
      scan = hit + 1;
      continue;
    }
    output.append(range.data() + copied, hit - copied);
    std::string_view r = request.replacement;
    if (request.preserveCase) {
      const wchar_t first = FirstUtf16Unit(range.data() + hit, n);
      r = std::iswupper(static_cast<wint_t>(first)) ? request.capitalised : request.lowered;
    }
    const int32_t at = request.rangeStart + static_cast<int32_t>(output.size());
    result.replaced.push_back({at, at + static_cast<int32_t>(r.size())});
    output.append(r.data(), r.size());
    ++result.count;
    scan = copied = hit + n;
  }
  if (result.count == 0) {
    output.clear();
    return result;
  }
  output.append(range.data() + copied, range.size() - copied);
  return result;
}
