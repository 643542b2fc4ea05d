#include "presentation/dark_menu.h"
