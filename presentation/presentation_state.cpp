#include "presentation/presentation.h"

bool g_themeChosen = false;
