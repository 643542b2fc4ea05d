// The AI panel's two text controls, as the main editor reaches them: when the
// editor takes the focus, neither keeps a selection.
#pragma once

#include <windows.h>

// Control ids of the panel's transcript (Scintilla) and input box (EDIT).
constexpr int kTranscriptId = 8000;
constexpr int kInputBoxId = 8001;

// Clears any selection in the transcript, keeping its scroll position, and in
// the input box. Nothing without a panel or without the controls.
void ClearChatSelections(HWND panel);

// The three selections one by one: the main editor's, a transcript's (its
// scroll position kept) and an input box's. Nothing for a null window.
void ClearEditorSelection();
void ClearTranscriptSelection(HWND transcript);
void ClearInputSelection(HWND input);
