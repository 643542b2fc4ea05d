// Message box layout and results.
#include <gtest/gtest.h>
