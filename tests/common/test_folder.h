// Every unit test gets a folder of its own, made fresh before it starts and
// removed after it passes, so no test sees another's files.
#pragma once

#include <string>

// Folder of the running test, ending in a backslash.
const std::wstring& TestFolder();

// Path of a file inside the running test's folder.
std::wstring TestPath(const std::wstring& name);

// Folder that holds Tavro.exe and its DLLs (from TAVRO_BIN), ending in a backslash.
std::wstring ProgramFolder();

// A whole file's bytes, or "<missing>" when it can't be opened.
std::string ReadFileBytes(const std::wstring& path);

// Replaces a file with these bytes, clearing a read-only attribute first.
// False when it can't be written.
bool WriteFileBytes(const std::wstring& path, const std::string& bytes);
