// The sweeps arrive with the temp folder; start-up already calls this.
#include "settings/temp_files.h"

void CleanupTempFiles() {}
