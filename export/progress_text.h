// The words and numbers of the export progress dialog, as plain functions.
#pragma once

#include <cstdint>
#include <string>

// "12.345 sec" below a minute, "3:07 min" below an hour, "1:02:03" from an hour.
std::wstring FormatElapsed(uint64_t milliseconds);

// The status line of a reported line: "Exporting line 45 of 100  (45%)",
// with 0 per cent when there are no lines; -1 is "Finalizing...".
std::wstring ExportStatusText(int32_t line, int32_t lineCount);

// The pacing of an export that reports nothing itself: positions climb by
// the step to the target (90 per cent of the lines, at least 1) in about 40
// reports, then the final stage shows.
int32_t PacingTarget(int32_t lineCount);
int32_t PacingStep(int32_t target);
