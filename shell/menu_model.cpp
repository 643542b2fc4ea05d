#include "shell/menu_model.h"

std::vector<MenuEntry> BuildEditorMenu(const EditorMenuState& state) {
  (void)state;
  return {};
}
