// The editor's context menu: the model's rules read from the live state,
// drawn by the owner-drawn popup of the presentation.
#include "shell/editor_menu.h"

#include "Scintilla.h"
#include "document/document.h"
#include "presentation/dark_menu.h"
#include "settings/settings.h"
#include "shell/command_table.h"
#include "shell/menu_model.h"
#include "shell/shell.h"

void ShowEditorContextMenu(HWND window, POINT screenPoint) {
  EditorMenuState state;
  state.canUndo = SendEditor(SCI_CANUNDO) != 0;
  state.canRedo = SendEditor(SCI_CANREDO) != 0;
  state.hasSelection = SendEditor(SCI_GETSELECTIONEND) > SendEditor(SCI_GETSELECTIONSTART);
  state.clipboardHasText = ClipboardHasText();
  state.documentEmpty = SendEditor(SCI_GETLENGTH) == 0;
  state.modified = g_modified;
  state.filePathIsMarkdown = IsMarkdownPath(g_filePath);
  state.lineNumbers = g_lineNumbers;
  state.wordWrap = g_wordWrap;
  state.themeIndex = g_themeIndex;
  state.transparencyPercent = g_settings.transparencyPercent;
  for (const auto& slot : g_settings.recentFiles) {
    if (!slot[0]) break;  // no gaps: the first empty slot ends the list
    state.recentFiles.emplace_back(slot);
    state.recentExists.push_back(GetFileAttributesW(slot) != INVALID_FILE_ATTRIBUTES);
  }
  ShowPopupMenu(BuildEditorMenu(state), false, window, screenPoint, TPM_RIGHTBUTTON | TPM_VERTICAL);
}
