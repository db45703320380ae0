#include "config/dialogs/confirmations_dialog.h"

#include <array>

#include "config/dialogs/run_with_help.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

constexpr int Columns = 44, Top = 5, Lines = 14;
constexpr int CheckColumn = 1, FirstCheckRow = 1;
constexpr int ButtonRow = 7, OkColumn = 7, CancelColumn = 15, HelpColumn = 27;

struct Question {
  int off;  // the bit that turns it off
  const char* label;
};

constexpr Question Questions[] = {
    {ConfirmationOff::Delete, "Delete File/Empty Directory"},
    {ConfirmationOff::DeleteTagged, "Delete Tagged Files"},
    {ConfirmationOff::DeleteTree, "Delete Non-empty Directory"},
    {ConfirmationOff::Quit, "Quit TD/X"},
    {ConfirmationOff::TypedYes, "\"YES\" prompt for Non-Empty Directory"},
};

}  // namespace

void confirmationsDialog() {
  std::array<bool, std::size(Questions)> asked{};
  Dialog dialog(-1, Top, Columns, Top + Lines - 1, colourOf(Colour::Messages));
  dialog.putFrameTitle(" Confirmations ");
  Group group = Group::New;
  for (size_t i = 0; i < asked.size(); ++i) {
    asked[i] = (GlobalOptions::Confirmations & Questions[i].off) == 0;
    dialog.addCheck(CheckColumn, FirstCheckRow + static_cast<int>(i), group, &asked[i],
                    Questions[i].label);
    group = Group::Same;
  }
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.addButton(HelpColumn, ButtonRow, Group::Same, Key::F1, "Help");
  if (runWithHelp(dialog, HelpTopic::Confirmations) != Key::Enter) return;
  GlobalOptions::Confirmations = 0;
  for (size_t i = 0; i < asked.size(); ++i) {
    if (!asked[i]) GlobalOptions::Confirmations |= Questions[i].off;
  }
}
