#include "search/regex_results.h"

#include <cstdio>

#include "base/utf16_to_utf8.h"

namespace {

const char kRule40[] = "========================================";

std::string Utf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  AppendUtf16AsUtf8(out, text.data(), text.size());
  return out;
}

}  // namespace

std::string ClockText(int hour, int minute, int second) {
  char text[16];
  std::snprintf(text, sizeof(text), "%02d:%02d:%02d", hour, minute, second);
  return text;
}

std::string ResultsHeaderText(const std::wstring& pattern, bool matchCase, bool wholeWord, const std::string& clock) {
  std::string out;
  out += std::string(kRule40) + "\n";
  out += "           REGEX SEARCH RESULTS         \n";
  out += std::string(kRule40) + "\n";
  out += "\n";
  out += " TIPS:\n";
  out += "   \xE2\x80\xA2 Ctrl+A  \xE2\x86\x92 Select all\n";
  out += "   \xE2\x80\xA2 Ctrl+C  \xE2\x86\x92 Copy selected text\n";
  out += std::string(kRule40) + "\n";
  out += "\n";
  out += "Regex Session Log\n";
  out += "Pattern:    " + Utf8(pattern) + "\n";
  out += std::string("Match case: ") + (matchCase ? "Yes" : "No") + "  |  Whole word: " + (wholeWord ? "Yes" : "No") +
         "  |  Started: " + clock + "\n";
  out += std::string(kRule40, 39) + "\n";
  out += "\n";
  return out;
}

std::string HitLinesText(const std::vector<RegexMatch>& records, uint32_t outputFormat, uint64_t batch) {
  std::string out;
  for (const RegexMatch& record : records) {
    if (outputFormat == 0) {
      out += Utf8(record.text) + "\n";
    } else {
      out += "[" + std::to_string(batch) + "] Ln " + std::to_string(record.line) + "  Pos " +
             std::to_string(record.start) + "-" + std::to_string(record.end) + ": " + Utf8(record.text) + "\n";
    }
  }
  return out;
}

uint64_t BatchNumber(uint64_t totalBefore, uint64_t batchSize) {
  return batchSize == 0 ? 1 : totalBefore / batchSize + 1;
}

std::string ResultsFooterText(const std::string& clock, uint64_t total) {
  return "\n[FIND ALL] " + clock + " \xE2\x80\x94 Search complete\n\n" + std::string(kRule40) +
         "\nTotal matches found: " + std::to_string(total) + "\n";
}

std::string SessionHeaderText(const std::string& patternUtf8) {
  return "Regex Session Log\nPattern: " + patternUtf8 + "\n" + std::string(kRule40) + "\n\n";
}

std::string FindEntryText(const char* label, const std::string& clock, int64_t line, int64_t pos,
                          const std::wstring& matchText) {
  return std::string(label) + " " + clock + " \xE2\x80\x94 Ln " + std::to_string(line) + ", Col " +
         std::to_string(pos) + "\n  " + Utf8(matchText) + "\n\n";
}

std::string ReplaceEntryText(const std::string& clock, const std::wstring& before, const std::wstring& replacement) {
  return "[REPLACE] " + clock + " \xE2\x80\x94 Replaced 1 match\n  Before: " + Utf8(before) + "\n  After:  " +
         Utf8(replacement) + "\n\n";
}

std::string ReplaceAllEntryText(const std::string& clock, uint64_t count, const std::wstring& pattern,
                                const std::wstring& replacement) {
  return "[REPLACE ALL] " + clock + " \xE2\x80\x94 Replaced " + std::to_string(count) + " match(es)\n  Pattern: " +
         Utf8(pattern) + "  ->  " + Utf8(replacement) + "\n\n";
}

std::wstring ListRowText(const RegexMatch& match, const std::wstring& documentWide, uint32_t outputFormat,
                         bool lineNumbers) {
  if (outputFormat == 0) return match.text;
  if (outputFormat == 1) {
    if (lineNumbers)
      return L"Ln " + std::to_wstring(match.line) + L"  Col " + std::to_wstring(match.start) + L"  " + match.text;
    return L"[" + std::to_wstring(match.start) + L"-" + std::to_wstring(match.end) + L"]  " + match.text;
  }
  std::wstring whole;
  const size_t start = static_cast<size_t>(match.start);
  if (match.start >= 0 && start < documentWide.size()) {
    size_t from = 0;
    if (start > 0) {
      const size_t lineFeed = documentWide.rfind(L'\n', start - 1);
      if (lineFeed != std::wstring::npos) from = lineFeed + 1;
    }
    size_t to = documentWide.find_first_of(L"\r\n", start);
    if (to == std::wstring::npos) to = documentWide.size();
    whole = documentWide.substr(from, to - from);
  }
  if (whole.empty()) whole = match.text;
  return lineNumbers ? L"Ln " + std::to_wstring(match.line) + L"  " + whole : whole;
}

std::wstring ProgressText(uint64_t total, uint64_t position, uint64_t length) {
  const uint64_t percent = length == 0 ? 0 : static_cast<uint64_t>(static_cast<double>(position) / length * 100.0);
  return L"Found " + std::to_wstring(total) + L" matches (" + std::to_wstring(percent) + L"%)...";
}
