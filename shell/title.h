// Window title text, kept free of windows so that tests reach it directly.
#pragma once

#include <string>

// "Tavro - name" for the default profile, "Tavro  [ work ]  name" for another,
// with " *" appended when the document is modified.
std::wstring MakeWindowTitle(const std::wstring& profileName, const std::wstring& filePath, bool modified);
