// The command table against the accelerators and the menu rules.
#include <gtest/gtest.h>
