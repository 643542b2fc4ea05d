#include "shell/command_table.h"
