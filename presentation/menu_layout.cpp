#include "presentation/menu_layout.h"
