// The profile manager of the default instance (command 4020).
#pragma once

#include <windows.h>

// In the default instance, the modal manager dialog; in any other, a box
// that says where profiles are managed.
void ShowProfileManager(HWND owner);
