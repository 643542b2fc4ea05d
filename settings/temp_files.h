// Housekeeping of the program's temporary files.
#pragma once

// The start-up sweep of old temporary files.
void CleanupTempFiles();
