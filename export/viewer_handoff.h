// The way out of a long job: a Viewer, a read-only second process of this
// executable, placed beside its caller and held in a job object that ends
// it when this process lets go of the job (at WM_DESTROY, or by dying);
// the job is g_viewerJob of base/app_state.h.
#pragma once

#include <windows.h>

#include <string>

// Viewer sizes: for a text handed over, and for a page no browser could open.
constexpr int kTextViewerWidth = 660, kTextViewerHeight = 820;
constexpr int kPageViewerWidth = 740, kPageViewerHeight = 860;

// Starts "<exe>" --viewer "<path>" at the owner's corner plus 40 pixels, in
// a new job object that replaces the one held (ending its Viewers). A
// Viewer that can't be started goes unreported.
void LaunchViewer(HWND owner, const std::wstring& path, int width, int height);

// An existing file, after a failed browser launch. Nothing for an empty path.
void OpenFileInViewer(HWND owner, const std::wstring& path);
// The editor's text through a temp_txt file.
void OpenTextInViewer(HWND owner);
// The editor's text through the Markdown preview's own temp_<time>.txt name.
void OpenPreviewTextInViewer(HWND owner);

// The editor's whole text, as UTF-8.
std::string EditorTextUtf8();

// Lets go of the job, which ends every Viewer in it.
void CloseViewerJob();
