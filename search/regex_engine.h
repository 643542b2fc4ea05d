// The matching side of Regex Search over plain text: the expression a
// pattern becomes, the batches of Find All, the expansion of replacement
// templates and the conversion between UTF-16 offsets and UTF-8 bytes.
// No windows here: the dialog and its worker thread call these.
//
// libstdc++'s matcher recurses once per character it consumes, so every
// call that runs the engine must sit on a thread with a large stack
// (search/regex_stack.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <regex>
#include <string>
#include <unordered_map>
#include <vector>

// One hit of a search. Offsets are UTF-16 units into the searched copy.
struct RegexMatch {
  int32_t start = 0;
  int32_t end = 0;
  std::wstring text;
  int32_t line = 1;  // one plus the LF units before start
};

// A compiled expression; valid is false when the pattern didn't compile.
struct SearchRegex {
  std::wregex regex;
  bool valid = false;
};

// The expression text: with whole word the pattern sits in a group between
// two word boundaries, so that an alternation keeps them around every branch.
std::wstring SearchExpressionText(const std::wstring& pattern, bool wholeWord);
// ECMAScript, case folded unless matchCase. Never throws.
SearchRegex BuildSearchRegex(const std::wstring& pattern, bool matchCase, bool wholeWord);

// Where the line count stands: the number of LF units before offset, plus
// one. Moving forward counts only the new stretch; moving back starts over.
struct LineCursor {
  int64_t offset = 0;
  int32_t line = 1;
};
int32_t LineOfOffset(const std::wstring& text, LineCursor& cursor, int64_t offset);

// Up to limit records from position on. Each engine call takes the text
// from the current point to the end as its whole subject, so "^" and a
// leading "\b" see that point as the start of the text. After a match the
// point moves to its end, or one further when the match ended at the
// batch's own start: an empty match inside a batch repeats until the batch
// is full, and the next batch steps past it. cancel, when given, is polled
// before every engine call.
std::vector<RegexMatch> SearchNextBatch(const std::wstring& documentWide, const std::wregex& regex,
                                        uint64_t& position, uint64_t limit,
                                        const std::atomic<bool>* cancel, LineCursor& lines);

// Every match by the engine's iterator over the whole text; empty for an
// empty pattern or text or one that doesn't compile.
std::vector<RegexMatch> FindAllMatches(const std::wstring& text, const std::wstring& pattern, bool matchCase,
                                       bool wholeWord);
// How many matches the iterator finds.
size_t CountMatches(const std::wstring& text, const std::wregex& regex);

// "$&" and "$0" the match, "$1".."$9" a group that exists and took part
// (one digit is read), any other "$" stays a dollar; no backslash escapes.
std::wstring ExpandReplacement(const std::wstring& replacementTemplate, const std::wsmatch& match);

// The first match in text replaced by the expanded template (with the
// matched text's case pattern when preserveCase). False on no match or an
// invalid pattern.
bool ReplaceOneMatch(const std::wstring& text, const std::wstring& pattern, const std::wstring& replacementTemplate,
                     bool matchCase, bool wholeWord, bool preserveCase, std::wstring& result, RegexMatch& match);
// Every match replaced. Without preserveCase the template is an ECMAScript
// format string (two-digit groups, "$$", "$`", "$'"); with it, each match
// gets ExpandReplacement and the case pattern. Unchanged text for an empty
// or invalid pattern.
std::wstring ReplaceAllMatches(const std::wstring& text, const std::wstring& pattern,
                               const std::wstring& replacementTemplate, bool matchCase, bool wholeWord,
                               bool preserveCase);

// UTF-8 length of the first units of a UTF-16 text, as the system's
// conversion gives it (a lone surrogate becomes three bytes).
uint64_t Utf8LengthOfUnits(const std::wstring& text, size_t from, size_t to);
// UTF-16 units of the first bytes of UTF-8 text.
uint64_t WideUnitsOfBytes(const std::string& utf8, size_t bytes);

// UTF-16 offset to byte position in the same text as UTF-8, with a memo of
// the offsets asked for and a cursor so that ascending offsets cost only
// the stretch between them.
struct BytePositionMemo {
  std::unordered_map<int32_t, uint64_t> cache;
  int64_t cursorUnits = 0;
  uint64_t cursorBytes = 0;
  void Clear() {
    cache.clear();
    cursorUnits = 0;
    cursorBytes = 0;
  }
};
uint64_t BytePositionOfWide(const std::wstring& documentWide, uint64_t byteLength, BytePositionMemo& memo,
                            int64_t offset);
