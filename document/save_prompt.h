// Texts and rules of saving that need no window.
#pragma once

#include <functional>
#include <string>

// State of the document's file: 0 fine (or untitled), 1 gone with its folder
// (or no separator in the path), 2 gone from a folder that still exists.
enum FileStatus { kFileFine = 0, kFileGoneWithFolder = 1, kFileGoneFromFolder = 2 };

// The status rule over any way of asking whether a path exists.
int FileStatusOf(const std::wstring& path, const std::function<bool(const std::wstring&)>& exists);

// Whether the first dropped file replaces the document: not when nothing was
// dropped, and not when it is the open file itself (exact comparison), which
// does nothing at all, not even a prompt.
bool DropOpensFile(const std::wstring& dropped, const std::wstring& openPath);

// The file name of a path (after the last backslash or slash), or "Untitled".
std::wstring DocumentName(const std::wstring& path);

// The question before something would drop unsaved work.
std::wstring SaveChangesPromptText(int status, bool modified, const std::wstring& name);

// The seven filters of the Save As dialog, double-zero terminated.
std::wstring SaveAsFilter();
