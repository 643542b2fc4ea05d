#include "search/editor_replace.h"

#include <windows.h>

#include <string_view>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/text_convert.h"
#include "search/case_rules.h"
#include "search/find_rules.h"
#include "search/search.h"

namespace {

std::string WholeDocument() {
  const Sci_Position length = SendEditor(SCI_GETLENGTH);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  SendEditor(SCI_GETTEXT, static_cast<WPARAM>(length) + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

// UTF-16 of bytes that may hold zeros.
std::wstring WideOfBytes(std::string_view bytes) {
  if (bytes.empty()) return {};
  const int size = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), wide.data(), size);
  return wide;
}

}  // namespace

int ReplaceAllInEditor(const ReplaceAllOptions& options, int64_t start, int64_t end) {
  const std::string document = WholeDocument();
  const std::string search = WideToUtf8(options.search), plain = WideToUtf8(options.replacement);
  std::string capitalised, lowered;
  ReplaceAllRequest request;
  request.range = std::string_view(document).substr(static_cast<size_t>(start), static_cast<size_t>(end - start));
  request.search = search;
  request.replacement = plain;
  request.matchCase = options.matchCase;
  request.wholeWord = options.wholeWord;
  request.preserveCase = options.preserveCase;
  if (options.preserveCase) {
    capitalised = WideToUtf8(CapitalisedReplacement(options.replacement));
    lowered = WideToUtf8(LoweredReplacement(options.replacement));
    request.capitalised = capitalised;
    request.lowered = lowered;
  }
  request.rangeStart = static_cast<int32_t>(start);
  const ReplaceAllResult result = BuildReplaceAll(request);

  // A replacement that changes nothing counts as none: no edit, no undo step.
  if (result.count == 0 || result.output == request.range || WideOfBytes(result.output) == WideOfBytes(request.range))
    return 0;

  // One replacement of the whole range: one undo step however many hits,
  // with the unchanged text between them rewritten too.
  SendEditor(SCI_BEGINUNDOACTION);
  SendEditor(SCI_SETTARGETSTART, static_cast<WPARAM>(start));
  SendEditor(SCI_SETTARGETEND, static_cast<WPARAM>(end));
  SendEditor(SCI_REPLACETARGET, result.output.size(), reinterpret_cast<LPARAM>(result.output.data()));
  SendEditor(SCI_ENDUNDOACTION);

  if (options.colourResults) {
    ClearIndicator(kIndicatorReplaced);
    ConfigureFindIndicator(kIndicatorReplaced, kReplacedColour, kReplacedAllAlpha);
    FillIndicatorRanges(kIndicatorReplaced, result.replaced);
  }
  return result.count;
}
