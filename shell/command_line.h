// The command line of a Tavro process, read without any window: which
// profile, whether this process is a Viewer, and which file to open.
#pragma once

#include <string>
#include <vector>

// Every character that is not alphanumeric (iswalnum) and is neither '-' nor
// '_' becomes '_'.
std::wstring SanitizeProfileName(const std::wstring& name);

struct StartupArguments {
  std::wstring profileName;  // from the last --profile=, sanitised; empty: default
  bool viewer = false;       // --viewer, and only as the very first argument
  bool hasFileToOpen = false;
  std::wstring fileToOpen;   // posted to the main window after it is shown
};

// args[0] is the program itself, as CommandLineToArgvW gives it.
StartupArguments ParseStartupArguments(const std::vector<std::wstring>& args);
