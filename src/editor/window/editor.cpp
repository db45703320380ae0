#include "editor/window/editor.h"

#include "editor/window/editor_screen.h"
#include "ui/screen_state_guard.h"

void editFile(const Westring& path, int64_t, int64_t) {
  const ScreenStateGuard guard;
  CTextEditor editor(path);
  EditorScreen screen(editor);
  screen.run();
}
