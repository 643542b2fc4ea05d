// Replace All's edit of the editor: the scan in memory and one replacement
// of the whole range, as one undo step.
#pragma once

#include <cstdint>
#include <string>

struct ReplaceAllOptions {
  std::wstring search;  // not empty
  std::wstring replacement;
  bool matchCase = false;
  bool wholeWord = false;
  bool preserveCase = false;
  bool colourResults = false;  // mark each replacement, after clearing the old marks
};

// Replaces every accepted occurrence between the byte positions start and
// end of the editor's text. Returns how many were replaced; 0 also when the
// replacements would change nothing, and then the editor is left untouched.
int ReplaceAllInEditor(const ReplaceAllOptions& options, int64_t start, int64_t end);
