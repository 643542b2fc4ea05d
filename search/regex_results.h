// The text of Regex Search's results file and session log, and the rows of
// its results list, over plain data. File text is UTF-8 with LF line ends.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "search/regex_engine.h"

// "HH:MM:SS", zero-padded.
std::string ClockText(int hour, int minute, int second);

// The 14 lines a fresh Find All starts its file with.
std::string ResultsHeaderText(const std::wstring& pattern, bool matchCase, bool wholeWord, const std::string& clock);
// One line per record: the bare match for format 0, otherwise
// "[<batch>] Ln <line>  Pos <start>-<end>: <match>".
std::string HitLinesText(const std::vector<RegexMatch>& records, uint32_t outputFormat, uint64_t batch);
// batch number of a run that found total matches before it.
uint64_t BatchNumber(uint64_t totalBefore, uint64_t batchSize);
// After an exhausted search or one that reached its maximum.
std::string ResultsFooterText(const std::string& clock, uint64_t total);

// Written each time the log is opened.
std::string SessionHeaderText(const std::string& patternUtf8);
// label "[FIND]" or "[FIND PREV]"; pos is the byte position in the document.
std::string FindEntryText(const char* label, const std::string& clock, int64_t line, int64_t pos,
                          const std::wstring& matchText);
std::string ReplaceEntryText(const std::string& clock, const std::wstring& before, const std::wstring& replacement);
std::string ReplaceAllEntryText(const std::string& clock, uint64_t count, const std::wstring& pattern,
                                const std::wstring& replacement);

// The results list's row for a record, by output format and line numbers.
std::wstring ListRowText(const RegexMatch& match, const std::wstring& documentWide, uint32_t outputFormat,
                         bool lineNumbers);
// "Found <total> matches (<percent>%)...", percent of position in length, truncated.
std::wstring ProgressText(uint64_t total, uint64_t position, uint64_t length);
