// Theme rows and their use.
#include <gtest/gtest.h>
