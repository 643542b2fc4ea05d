// The pagination progress dialog of Print Preview: the export progress
// dialog's look, titled "Tavro - Print Preview", with the worker's page
// count as its status and no percentage.
#pragma once

#include <windows.h>

#include "export/pagination_worker.h"

// Runs the dialog until the worker's end message: 1 when pagination
// succeeded, 2 otherwise.
INT_PTR RunPaginationProgressDialog(HWND owner, PaginationJob& job);
