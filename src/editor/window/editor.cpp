#include "editor/window/editor.h"

#include "editor/window/editor_screen.h"
#include "editor/window/help_topic.h"
#include "editor/window/load_file.h"
#include "editor/window/recovery.h"
#include "ui/screen_state_guard.h"

void editFile(const Westring& path, int64_t offset, int64_t selection) {
  const ScreenStateGuard guard;
  const HelpOfCommand help(helpTopicOf(path));  // also in its boxes, whoever has opened it
  CTextEditor editor(path);
  if (!loadFile(editor, {offset, selection})) return;
  editor.paint();
  if (!recoverChanges(editor)) return;
  warnOfInvalidLines(editor);
  EditorScreen(editor).run();
}
