// What an export dialog hands the main window when an export has finished.
#pragma once

#include <cstdint>
#include <string>

// Made by the export dialog, posted to the main window, freed there.
struct ExportResultNote {
  std::wstring outputPath;
  uint64_t elapsedMs = 0;
};
