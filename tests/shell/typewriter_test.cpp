// Typewriter sound rule and clips.
#include <gtest/gtest.h>
