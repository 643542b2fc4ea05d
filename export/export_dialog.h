// The Export dialog (command 3333): the format list with its description,
// Export and Cancel. Export closes the dialog first and then runs
// ExportDocument with the chosen format.
#pragma once

#include <windows.h>

void ShowExportDialog(HWND owner);
