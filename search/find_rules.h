// The rules of the Find and Replace dialog that need no window: the search
// histories, the choice of the next match, the Replace test of a selection,
// and Replace All's scan that builds the new text. Positions are the editor's
// UTF-8 byte positions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// One match in the document: start and end byte position.
struct FindMatch {
  int32_t start;
  int32_t end;
};

inline bool operator==(const FindMatch& a, const FindMatch& b) { return a.start == b.start && a.end == b.end; }

constexpr size_t kHistoryRows = 10;
constexpr size_t kHistoryUnits = 256;

// Move-to-front insert into ten fixed rows, newest first. An empty text is
// ignored; the comparison is exact. A text already in row k moves to row 0
// and rows 0..k-1 move down; a new one pushes every row down and the last
// is lost. Texts longer than a row are cut to its 255 units.
void PushHistory(wchar_t (*history)[kHistoryUnits], const std::wstring& text);

// The rows to show in a combo box: the non-empty ones in order.
std::vector<std::wstring> HistoryRows(const wchar_t (*history)[kHistoryUnits]);

// Which match Find Next (forward) or Find Prev takes. Forward: the first
// match that starts at or after caret; backward: the last that starts before
// selectionStart. With none, wrap takes the first (or last) match; without
// wrap the result is -1, as it is for an empty list.
int PickMatch(const std::vector<FindMatch>& matches, int64_t caret, int64_t selectionStart, bool forward, bool wrap);

// "1 match found." or "<n> matches found.".
std::wstring MatchCountText(size_t count);
// "<n> occurrence(s) replaced.".
std::wstring ReplacedCountText(int count);

// Whether Replace takes the selection as a match of the search text: with
// match case byte for byte; without, folding ASCII letters only, so two
// cases of a non-ASCII letter differ.
bool SelectionMatches(std::string_view selected, std::string_view search, bool matchCase);

// The whole-word test of Replace All at a cut point of the range: a cut at
// either end of the range passes, and inside it fails only between two ASCII
// letters or digits. Underscore and non-ASCII bytes are not word characters.
bool IsWordCut(std::string_view range, size_t cut);

// What Replace All is asked to do on the bytes of its range.
struct ReplaceAllRequest {
  std::string_view range;        // the text of the range as it stands
  std::string_view search;       // UTF-8, not empty
  std::string_view replacement;  // UTF-8; the one used without preserve case
  bool matchCase = false;
  bool wholeWord = false;
  bool preserveCase = false;
  // With preserve case: the replacement for a hit whose first unit is
  // upper-case, and for any other hit (UTF-8).
  std::string_view capitalised;
  std::string_view lowered;
  int32_t rangeStart = 0;  // where the range starts in the document
};

// The new text of the range and where each replacement stands in the
// finished document.
struct ReplaceAllResult {
  std::string output;
  std::vector<FindMatch> replaced;
  int count = 0;
};

// Scans the range for the search text (ASCII folded without match case) and
// builds the new range text. Text between accepted hits, rejected hits
// included, is copied through unchanged by a copy cursor of its own.
ReplaceAllResult BuildReplaceAll(const ReplaceAllRequest& request);

// Byte-wise lower case of the "C" locale: A to Z only.
std::string FoldAscii(std::string_view text);
