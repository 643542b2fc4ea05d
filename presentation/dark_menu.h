// The program's own popup menus, drawn in the theme.
#pragma once
