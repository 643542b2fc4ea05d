// Data folders, temp names and the three sweeps.
#include <gtest/gtest.h>
