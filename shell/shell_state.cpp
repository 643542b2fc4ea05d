#include "shell/shell.h"

HMODULE g_scintillaModule = nullptr;
HMODULE g_lexillaModule = nullptr;
