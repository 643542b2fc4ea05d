#include "shell/typewriter.h"
