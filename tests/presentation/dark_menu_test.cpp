// Dark menus: colour rows, measuring, building.
#include <gtest/gtest.h>
