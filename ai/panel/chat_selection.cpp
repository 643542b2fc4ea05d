#include "ai/panel/chat_selection.h"

#include "Scintilla.h"
#include "base/app_state.h"

void ClearEditorSelection() {
  if (g_hwndEditor) SendEditor(SCI_SETEMPTYSELECTION, SendEditor(SCI_GETCURRENTPOS));
}

void ClearTranscriptSelection(HWND transcript) {
  if (!transcript) return;
  const LRESULT firstLine = SendMessageW(transcript, SCI_GETFIRSTVISIBLELINE, 0, 0);
  const LRESULT caret = SendMessageW(transcript, SCI_GETCURRENTPOS, 0, 0);
  SendMessageW(transcript, SCI_SETEMPTYSELECTION, caret, 0);
  SendMessageW(transcript, SCI_SETFIRSTVISIBLELINE, firstLine, 0);
}

void ClearInputSelection(HWND input) {
  if (input) SendMessageW(input, EM_SETSEL, static_cast<WPARAM>(-1), 0);
}

void ClearChatSelections(HWND panel) {
  if (!panel) return;
  ClearTranscriptSelection(GetDlgItem(panel, kTranscriptId));
  ClearInputSelection(GetDlgItem(panel, kInputBoxId));
}
