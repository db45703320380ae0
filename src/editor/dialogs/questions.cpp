#include "editor/dialogs/questions.h"

#include "editor/dialogs/button_box.h"

namespace TDEditor {

LeaveAnswer askLeave() {
  const Key::Code answer = askBox({.text = L"There are unsaved changes"},
                                  {{'s', "Save", 's'}, {'d', "Discard", 'd'}, {'e', "Edit", 'e'}});
  if (answer == Key::Code('s')) return LeaveAnswer::Save;
  if (answer == Key::Code('d')) return LeaveAnswer::Discard;
  return answer == Dialog::ProgramEnds ? LeaveAnswer::ProgramEnds : LeaveAnswer::Edit;
}

ReplaceAnswer askReplace() {
  const Key::Code answer =
      askBox({.title = " String Found "},
             {{'r', "Replace", 'r'}, {'s', "Skip", 's'}, {Key::Esc, "Cancel"}, {'a', "All", 'a'}});
  if (answer == Key::Code('r')) return ReplaceAnswer::Replace;
  if (answer == Key::Code('s')) return ReplaceAnswer::Skip;
  if (answer == Key::Code('a')) return ReplaceAnswer::All;
  return answer == Dialog::ProgramEnds ? ReplaceAnswer::ProgramEnds : ReplaceAnswer::Cancel;
}

RecoveryAnswer askRecovery(const Westring& path) {
  const Key::Code answer =
      askBox({.text = L"Unsaved changes of an earlier edit were found", .caption = path},
             {{'r', "Restore", 'r'}, {'d', "Delete", 'd'}, {Key::Esc, "Cancel"}});
  if (answer == Key::Code('r')) return RecoveryAnswer::Restore;
  if (answer == Key::Code('d')) return RecoveryAnswer::Delete;
  return answer == Dialog::ProgramEnds ? RecoveryAnswer::ProgramEnds : RecoveryAnswer::Cancel;
}

bool askReload() {
  return askBox(
             {.title = " Code Page Change ", .text = L"File must be re-loaded, discard changes?"},
             {{Key::Enter, "OK", 'o'}, {Key::Esc, "Cancel"}}) == Key::Enter;
}

}  // namespace TDEditor
