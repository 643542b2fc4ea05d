// The shipped Scintilla.dll for unit tests that need real editor controls.
#pragma once

#include <windows.h>

#include "tests/common/test_folder.h"

// Loads Scintilla.dll from the program's folder and registers its "Scintilla"
// window class in this process; null when it can't be loaded.
inline HMODULE LoadScintillaDll() {
  HMODULE module = LoadLibraryW((ProgramFolder() + L"Scintilla.dll").c_str());
  if (!module) return nullptr;
  using RegisterClassesFn = int(__stdcall*)(void*);
  auto registerClasses = reinterpret_cast<RegisterClassesFn>(
      reinterpret_cast<void*>(GetProcAddress(module, "Scintilla_RegisterClasses")));
  if (registerClasses) registerClasses(GetModuleHandleW(nullptr));
  return module;
}
