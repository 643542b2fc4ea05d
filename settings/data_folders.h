// The folder tree of the program's own files under the roaming
// application-data folder. Paths come back empty rather than failing.
#pragma once

#include <string>

// <appdata>\Tavro, created if missing; empty when the shell can't name the
// application-data folder.
std::wstring GetAppDataFolder();

// The settings file of this process: <app>\tavro.cfg for the default profile,
// <app>\profiles\tavro_<profile>.cfg for any other (the profiles folder is
// created), or the relative "tavro.cfg" when there is no application folder.
std::wstring GetSettingsFilePath();

// The settings file of a profile by name, as GetSettingsFilePath does for
// this process's.
std::wstring ProfileFilePath(const std::wstring& name);

// <app>\profiles, created if missing: the settings files of the profiles other
// than the default. Empty when there is no application folder or the folder
// can't be made.
std::wstring GetProfilesFolder();

// <app>\chats, created if missing: one chat folder per profile. Empty when
// there is no application folder or the folder can't be made.
std::wstring GetChatsFolder();

// <app>\chats\<label>, the chat folder of a profile by its label ("default"
// for the default profile); not created. Empty without a chats folder.
std::wstring ChatFolderOfProfile(const std::wstring& label);

// <app>\tmp, created if missing: temporary exports, texts for a Viewer and
// the regex results files. Empty when there is no application folder or the
// folder can't be made.
std::wstring GetTempFolder();
