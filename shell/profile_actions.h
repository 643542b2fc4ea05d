// The four things the profile manager does to the store, each with its own
// questions and reports in the program's message box. Each but the last
// returns true on success.
#pragma once

#include <windows.h>

#include <string>

// Asks for a name until a new valid one or Cancel, then writes the present
// settings record to the new profile's file.
bool CreateProfile(HWND owner);
// Moves the settings file and the chat folder of oldName to newName.
bool RenameProfile(const std::wstring& oldName, const std::wstring& newName, HWND owner);
// Asks, then removes the settings file and the chat folder. A running
// instance of the profile doesn't stop it; its next save writes the file anew.
bool DeleteProfile(const std::wstring& name, HWND owner);
// Starts another instance of this program for that profile; this one stays.
void ActivateProfile(const std::wstring& name, HWND owner);
