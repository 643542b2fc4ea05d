// The road of one question, on the main thread: the main window hands the
// pipeline's private messages and its thinking timer to these handlers.
#pragma once

#include <windows.h>

// WM_AI_SEND: the message the panel posted (heap text; freed here).
void OnAiSend(HWND window, wchar_t* message);
// WM_AI_STOP: the Stop button or Enter while generating.
void OnAiStop(HWND window);
// WM_AI_ANSWER: the provider's answer (heap text; freed here).
void OnAiAnswer(HWND window, wchar_t* answer);
// WM_AI_REQUEST_ENDED.
void OnAiRequestEnded(HWND window);
// WM_AI_REQUEST_FAILED: the failure's text, or null (heap text; freed here).
void OnAiRequestFailed(HWND window, wchar_t* text);
// WM_AI_TYPING_ENDED, wParam 1 when the animator was stopped.
void OnAiTypingEnded(HWND window, bool stopped);
// The thinking timer's tick.
void OnThinkingTimer(HWND window);
