// The dark message box: a dialog template built in memory from the layout,
// run by DialogBoxIndirectParamW and painted in the colours of the current
// theme row.
#include "presentation/message_box.h"

#include <windows.h>
#include <uxtheme.h>

#include <string>
#include <vector>

#include "presentation/dialog_template.h"
#include "presentation/message_box_layout.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "settings/settings.h"

namespace {

constexpr const wchar_t* kEditFontProperty = L"hEditFont";

// Working state of one open box.
struct MessageBoxState {
  int kind;
  wchar_t* buffer;  // kind 4 only: receives the field's text on OK
  HBRUSH windowBrush;
  HBRUSH editBrush;
  unsigned brushTheme;  // theme index the brushes were made for
};

std::vector<WORD> BuildTemplate(const MessageBoxLayout& layout, const wchar_t* title, const wchar_t* text) {
  TemplateWriter t;
  WriteDialogHeader(t, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER,
                    1 + (layout.hasEdit ? 1 : 0) + layout.buttonCount, layout.width, layout.height, title);

  t.Item(WS_CHILD | WS_VISIBLE | SS_CENTER | SS_NOPREFIX | SS_EDITCONTROL, 0, layout.text, kMessageBoxStaticId,
         kStaticClass, text);
  if (layout.hasEdit)
    t.Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, layout.edit, kMessageBoxEditId,
           kEditClass, L"");
  for (int i = 0; i < layout.buttonCount; ++i) {
    const MessageBoxButtonLayout& button = layout.buttons[i];
    t.Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, button.rect, button.id, kButtonClass,
           button.controlText);
  }
  return t.words;
}


// The two brushes follow the theme index of the moment.
void RefreshBrushes(MessageBoxState* state) {
  if (state->windowBrush && state->brushTheme == g_themeIndex) return;
  if (state->windowBrush) DeleteObject(state->windowBrush);
  if (state->editBrush) DeleteObject(state->editBrush);
  const ThemeColors& theme = CurrentTheme();
  state->windowBrush = CreateSolidBrush(theme.windowBackground);
  state->editBrush = CreateSolidBrush(theme.editorBackground);
  state->brushTheme = g_themeIndex;
}

void DrawButton(const MessageBoxState* state, const DRAWITEMSTRUCT* item) {
  const ThemeColors& theme = CurrentTheme();
  const bool selected = (item->itemState & ODS_SELECTED) != 0;
  HDC dc = item->hDC;
  RECT rect = item->rcItem;

  HBRUSH background = CreateSolidBrush(theme.windowBackground);
  FillRect(dc, &rect, background);
  DeleteObject(background);

  HBRUSH face = CreateSolidBrush(selected ? theme.controlHover : theme.controlBackground);
  HPEN border = CreatePen(PS_SOLID, 1, theme.controlBorder);
  HGDIOBJ oldBrush = SelectObject(dc, face);
  HGDIOBJ oldPen = SelectObject(dc, border);
  RoundRect(dc, rect.left, rect.top, rect.right, rect.bottom, 12, 12);  // corner radius 6
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(border);
  DeleteObject(face);

  const wchar_t* caption = MessageBoxButtonCaption(state->kind, static_cast<int>(item->CtlID) - kMessageBoxFirstButtonId);
  if (!caption) return;
  HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
  HGDIOBJ oldFont = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, selected ? theme.controlTextActive : theme.controlText);
  if (selected) OffsetRect(&rect, 0, 1);
  DrawTextW(dc, caption, -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, oldFont);
  DeleteObject(font);
}

void Finish(HWND dialog, const MessageBoxState* state, int result) {
  if (state->kind == kBoxInput && result == kResultOk && state->buffer)
    GetDlgItemTextW(dialog, kMessageBoxEditId, state->buffer, kInputBoxCapacity);
  EndDialog(dialog, result);
}

INT_PTR CALLBACK MessageBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<MessageBoxState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG: {
      state = reinterpret_cast<MessageBoxState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      SetDarkTitleBar(dialog, (CurrentTheme().isDark & 0xFF) != 0);
      SetWindowTheme(dialog, WindowThemeClass(CurrentTheme()), nullptr);
      SetWindowTheme(GetDlgItem(dialog, kMessageBoxStaticId), WindowThemeClass(CurrentTheme()), nullptr);
      SendMessageW(dialog, DM_SETDEFID, kMessageBoxFirstButtonId, 0);
      if (state->kind == kBoxInput) {
        HWND edit = GetDlgItem(dialog, kMessageBoxEditId);
        HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                 CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Segoe UI");
        SetPropW(dialog, kEditFontProperty, font);
        SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
        SendMessageW(edit, EM_SETLIMITTEXT, kInputBoxCapacity - 1, 0);
        SetWindowTextW(edit, L"");
        SetFocus(edit);
        return FALSE;  // focus is set
      }
      return TRUE;
    }
    case WM_ERASEBKGND: {
      if (!state) break;
      RefreshBrushes(state);
      RECT rect;
      GetClientRect(dialog, &rect);
      FillRect(reinterpret_cast<HDC>(wParam), &rect, state->windowBrush);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return TRUE;
    }
    case WM_CTLCOLORSTATIC: {
      if (!state) break;
      RefreshBrushes(state);
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().dialogText);
      SetBkMode(dc, TRANSPARENT);
      return reinterpret_cast<INT_PTR>(state->windowBrush);
    }
    case WM_CTLCOLOREDIT: {
      if (!state) break;
      RefreshBrushes(state);
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().dialogText);
      SetBkColor(dc, CurrentTheme().editorBackground);
      return reinterpret_cast<INT_PTR>(state->editBrush);
    }
    case WM_DRAWITEM: {
      auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (!state || item->CtlType != ODT_BUTTON) break;
      DrawButton(state, item);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, TRUE);
      return TRUE;
    }
    case WM_COMMAND: {
      if (!state) break;
      const int id = LOWORD(wParam);
      if (id == IDCANCEL) {
        Finish(dialog, state, MessageBoxEscapeResult(state->kind));
        return TRUE;
      }
      const int result = MessageBoxButtonResult(state->kind, id - kMessageBoxFirstButtonId);
      if (result && HIWORD(wParam) == BN_CLICKED) {
        Finish(dialog, state, result);
        return TRUE;
      }
      break;
    }
    case WM_CLOSE:
      if (!state) break;
      Finish(dialog, state, MessageBoxEscapeResult(state->kind));
      return TRUE;
    case WM_DESTROY: {
      HANDLE font = RemovePropW(dialog, kEditFontProperty);
      if (font) DeleteObject(font);
      if (state) {
        if (state->windowBrush) DeleteObject(state->windowBrush);
        if (state->editBrush) DeleteObject(state->editBrush);
        state->windowBrush = state->editBrush = nullptr;
      }
      break;
    }
  }
  return FALSE;
}

int RunMessageBox(HWND owner, int kind, const wchar_t* title, const wchar_t* text, wchar_t* buffer) {
  const std::wstring body = text ? text : L"";
  const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, body);
  const std::vector<WORD> dialogTemplate = BuildTemplate(layout, title ? title : L"", body.c_str());
  MessageBoxState state = {layout.kind, buffer, nullptr, nullptr, 0};
  const INT_PTR result =
      DialogBoxIndirectParamW(GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(dialogTemplate.data()),
                              owner, MessageBoxProc, reinterpret_cast<LPARAM>(&state));
  if (result <= 0) {
    OutputDebugStringW(L"[ShowMessageBox] DialogBoxIndirectParamW FAILED\n");
    return MessageBoxEscapeResult(layout.kind);
  }
  return static_cast<int>(result);
}

}  // namespace

int ShowMessageBox(HWND owner, MessageBoxKind kind, const wchar_t* title, const wchar_t* text) {
  return RunMessageBox(owner, kind, title, text, nullptr);
}

bool ShowInputBox(HWND owner, const wchar_t* title, const wchar_t* prompt, wchar_t* buffer) {
  return RunMessageBox(owner, kBoxInput, title, prompt, buffer) == kResultOk;
}
