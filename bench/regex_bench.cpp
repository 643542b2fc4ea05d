// Find All of Regex Search over a 50 MB document with a hit on every line,
// in batches of 300 matches as the dialog's default makes them.
// (a) One batch at the start of the document against one near its end:
//     records, line numbers, the byte positions the painting asks for and
//     the results file's lines. The target is at most 1.5x.
// (b) The whole search, batch after batch, against a bare
//     std::wsregex_iterator over the same text in the same run.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>

#include "bench/bench_util.h"
#include "search/regex_engine.h"
#include "search/regex_results.h"
#include "search/regex_stack.h"

namespace {

constexpr char kLine[] = "lorem ipsum dolor sit amet, consectetur foo adipiscing elit\n";  // 60 bytes
constexpr size_t kDocumentBytes = 50u << 20;
constexpr uint64_t kBatch = 300;

// One batch as the worker does it, from position on with the line cursor
// and memo as the previous batch left them. Returns the records made.
size_t OneBatch(const std::wstring& wide, uint64_t byteLength, const std::wregex& regex, uint64_t& position,
                LineCursor& lines, BytePositionMemo& memo, uint64_t totalBefore, size_t& sink) {
  const auto records = SearchNextBatch(wide, regex, position, kBatch, nullptr, lines);
  for (const RegexMatch& record : records)
    sink += BytePositionOfWide(wide, byteLength, memo, record.start) + BytePositionOfWide(wide, byteLength, memo, record.end);
  sink += HitLinesText(records, 1, BatchNumber(totalBefore, kBatch)).size();
  return records.size();
}

}  // namespace

int wmain() {
  std::wstring wide;
  const size_t lines = kDocumentBytes / (sizeof(kLine) - 1);
  wide.reserve(lines * (sizeof(kLine) - 1));
  const std::wstring line(kLine, kLine + sizeof(kLine) - 1);
  for (size_t i = 0; i < lines; ++i) wide += line;
  const uint64_t byteLength = wide.size();  // ASCII: one byte per unit
  const SearchRegex built = BuildSearchRegex(L"foo", true, false);
  std::printf("document: %zu lines, %.1f MB, one hit per line; batches of %llu\n", lines,
              wide.size() / 1048576.0, static_cast<unsigned long long>(kBatch));

  size_t sink = 0;
  double first = 0, last = 0, whole = 0, bare = 0;
  size_t wholeMatches = 0, bareMatches = 0;
  RunOnRegexStack([&]() {
    first = bench::BestMs(5, [&]() {
      uint64_t position = 0;
      LineCursor cursor;
      BytePositionMemo memo;
      OneBatch(wide, byteLength, built.regex, position, cursor, memo, 0, sink);
    });
    // The batch that holds the last 300 hits, reached as Find More reaches
    // it: the cursor and the memo stand where the batch before left them.
    const uint64_t lastStart = (lines - kBatch) * line.size();
    LineCursor endCursor;
    LineOfOffset(wide, endCursor, static_cast<int64_t>(lastStart));
    BytePositionMemo endMemo;
    BytePositionOfWide(wide, byteLength, endMemo, static_cast<int64_t>(lastStart));
    last = bench::BestMs(5, [&]() {
      uint64_t position = lastStart;
      LineCursor cursor = endCursor;
      BytePositionMemo memo = endMemo;
      OneBatch(wide, byteLength, built.regex, position, cursor, memo, lines - kBatch, sink);
    });
    whole = bench::BestMs(1, [&]() {
      uint64_t position = 0, total = 0;
      LineCursor cursor;
      BytePositionMemo memo;
      for (;;) {
        const size_t made = OneBatch(wide, byteLength, built.regex, position, cursor, memo, total, sink);
        if (made == 0) break;
        total += made;
        memo.cache.clear();  // the memo of one run is not the next one's concern
      }
      wholeMatches = total;
    });
    bare = bench::BestMs(1, [&]() {
      size_t count = 0;
      for (std::wsregex_iterator it(wide.begin(), wide.end(), built.regex), end; it != end; ++it)
        ++count;
      bareMatches = count;
    });
  });
  std::printf("(a) first batch %.2f ms, last batch %.2f ms: %.2fx (target <= 1.5x)\n", first, last, last / first);
  std::printf("(b) whole search %.0f ms (%zu matches) against a bare std::wsregex_iterator %.0f ms (%zu): %.2fx\n",
              whole, wholeMatches, bare, bareMatches, whole / bare);
  std::printf("(sink %zu)\n", sink);
  return 0;
}
