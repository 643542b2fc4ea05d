// For now the system's box stands in, with the kinds and results mapped; the
// themed box drawn by the program replaces it.
#include "presentation/message_box.h"

int ShowMessageBox(HWND owner, int kind, const wchar_t* title, const wchar_t* text) {
  UINT buttons = MB_OK;
  switch (kind) {
    case kBoxYesNoCancel: buttons = MB_YESNOCANCEL; break;
    case kBoxOkCancel: buttons = MB_OKCANCEL; break;
    case kBoxYesNo: buttons = MB_YESNO; break;
    default: buttons = MB_OK; break;
  }
  switch (MessageBoxW(owner, text, title, buttons)) {
    case IDYES: return kResultYes;
    case IDNO: return kResultNo;
    case IDCANCEL: return kind == kBoxOk ? kResultOk : kResultCancel;
    default: return kResultOk;
  }
}
