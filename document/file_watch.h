// The watch on the file behind the document: at each activation of the main
// window it asks whether the file is still there, and offers to save the text
// back when it is not.
#pragma once

#include <windows.h>

#include <string>

constexpr wchar_t kFileChangedTitle[] = L"Tavro \u00e2\u20ac\u201d File Changed";

// The question for status 1 (gone with its folder) or 2 (gone from its folder).
std::wstring FileChangedText(int status, const std::wstring& name);

// What an activation of the main window comes with.
struct Activation {
  bool active = false;         // activated, not deactivated
  bool viewer = false;         // a Viewer watches nothing
  bool untitled = false;       // no path, nothing to watch
  bool fromOwnWindow = false;  // back from a box or dialog of this program
  bool busy = false;           // the question is up already, or a modal box of ours
};
// Whether that activation looks at the file. Coming back from one of the
// program's own boxes is no new activation: else every answer would bring the
// question straight back.
bool WatchLooksAt(const Activation& activation);

// WM_ACTIVATE of the main window; previous is the window that lost the
// activation (null when it was another program's). Asks when the file has
// gone: Yes saves, No makes the document untitled, Cancel waits for the next
// activation. True when the path was given up, so the title must change.
bool WatchOnActivate(HWND window, bool active, HWND previous);
