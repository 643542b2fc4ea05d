#include <windows.h>

#include "Scintilla.h"
#include "search/search.h"
#include "base/app_state.h"

void ClearSearchIndicators() {
  if (!g_hwndEditor) return;
  LRESULT length = SendMessageW(g_hwndEditor, SCI_GETLENGTH, 0, 0);
  for (int indicator : {kIndicatorHighlightAll, kIndicatorReplaced, kIndicatorCurrentMatch}) {
    SendMessageW(g_hwndEditor, SCI_SETINDICATORCURRENT, indicator, 0);
    SendMessageW(g_hwndEditor, SCI_INDICATORCLEARRANGE, 0, length);
  }
}
