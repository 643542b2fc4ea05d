#include "ai/panel/chat_selection.h"

#include "Scintilla.h"

void ClearChatSelections(HWND panel) {
  if (!panel) return;
  if (HWND transcript = GetDlgItem(panel, kTranscriptId)) {
    const LRESULT firstLine = SendMessageW(transcript, SCI_GETFIRSTVISIBLELINE, 0, 0);
    const LRESULT caret = SendMessageW(transcript, SCI_GETCURRENTPOS, 0, 0);
    SendMessageW(transcript, SCI_SETEMPTYSELECTION, caret, 0);
    SendMessageW(transcript, SCI_SETFIRSTVISIBLELINE, firstLine, 0);
  }
  if (HWND input = GetDlgItem(panel, kInputBoxId)) SendMessageW(input, EM_SETSEL, static_cast<WPARAM>(-1), 0);
}
