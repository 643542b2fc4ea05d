#include <windows.h>

#include "Scintilla.h"
#include "search/search.h"
#include "base/app_state.h"

void ClearIndicator(int indicator) {
  SendEditor(SCI_SETINDICATORCURRENT, indicator);
  SendEditor(SCI_INDICATORCLEARRANGE, 0, SendEditor(SCI_GETLENGTH));
}

void ClearSearchIndicators() {
  if (!g_hwndEditor) return;
  for (int indicator : {kIndicatorHighlightAll, kIndicatorReplaced, kIndicatorCurrentMatch}) ClearIndicator(indicator);
}

void ConfigureFindIndicator(int indicator, uint32_t colour, int alpha) {
  SendEditor(SCI_INDICSETSTYLE, indicator, INDIC_ROUNDBOX);
  SendEditor(SCI_INDICSETFORE, indicator, colour);
  SendEditor(SCI_INDICSETALPHA, indicator, alpha);
  SendEditor(SCI_INDICSETUNDER, indicator, 1);
}

void FillIndicator(int indicator, int64_t start, int64_t length) {
  SendEditor(SCI_SETINDICATORCURRENT, indicator);
  SendEditor(SCI_INDICATORFILLRANGE, static_cast<WPARAM>(start), static_cast<LPARAM>(length));
}

void FillIndicatorRanges(int indicator, const std::vector<FindMatch>& ranges) {
  SendEditor(SCI_SETINDICATORCURRENT, indicator);
  using DirectFunction = sptr_t (*)(sptr_t, unsigned int, uptr_t, sptr_t);
  auto direct = reinterpret_cast<DirectFunction>(SendEditor(SCI_GETDIRECTFUNCTION));
  const sptr_t pointer = SendEditor(SCI_GETDIRECTPOINTER);
  for (const FindMatch& range : ranges) {
    if (direct) direct(pointer, SCI_INDICATORFILLRANGE, static_cast<uptr_t>(range.start), range.end - range.start);
    else SendEditor(SCI_INDICATORFILLRANGE, static_cast<WPARAM>(range.start), range.end - range.start);
  }
}
