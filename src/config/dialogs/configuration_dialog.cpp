#include "config/dialogs/configuration_dialog.h"

#include <algorithm>

#include "config/dialogs/run_with_help.h"
#include "options/colours.h"
#include "options/option_snapshot.h"
#include "options/options.h"

namespace {

constexpr int Columns = 76, Lines = 19;
constexpr int UpperThird = -3;
constexpr int FieldColumn = 28, FieldWidth = 20, FieldLength = 512;
constexpr int CheckColumn = 51, NumberColumn = 65, NumberWidth = 3;
constexpr int TimeModeColumn = 50, TimeModeRow = 12, RadioColumn = 61;
constexpr int ButtonRow = 16, OkColumn = 23, CancelColumn = 31, HelpColumn = 43;

struct TextRow {
  int labelColumn;
  int row;
  const char* label;
  Westring* value;
};

const TextRow Texts[] = {
    {20, 1, "Viewer:", &GlobalOptions::Viewer},
    {10, 2, "Alternate Viewer:", &GlobalOptions::Viewer2},
    {20, 3, "Editor:", &GlobalOptions::Editor},
    {10, 4, "Alternate Editor:", &GlobalOptions::Editor2},
    {4, 6, "Left Startup Directory:", &GlobalOptions::Left},
    {3, 7, "Right Startup Directory:", &GlobalOptions::Right},
    {3, 9, "Separate Session Prefix:", &GlobalOptions::Background},
    {7, 10, "Tree Data Directory:", &GlobalOptions::TreeDir},
    {2, 11, "Case Filter File Systems:", &GlobalOptions::CaseFilter},
    {12, 12, "Path Extension:", &GlobalOptions::PathAppend},
};

const struct {
  int row;
  const char* label;
  bool* value;
} Switches[] = {
    {1, "Auto Save", &GlobalOptions::AutoSave},
    {2, "Num Lock", &GlobalOptions::NumLock},
    {3, "Ctrl-R Drv Change", &GlobalOptions::CtrlRDriveChng},
    {4, "ESC Panel Switch", &GlobalOptions::EscPanelSwitch},
    {5, "Size Count Pause", &GlobalOptions::SizeCountPause},
};

const struct {
  int labelColumn;
  int row;
  const char* label;
  int* value;
} Numbers[] = {
    {59, 7, "Lines", &GlobalOptions::Lines},
    {57, 8, "Columns", &GlobalOptions::Columns},
    {52, 9, "Screen Saver", &GlobalOptions::Saver},
    {52, 10, "Scroll Delay", &GlobalOptions::ScrollDelay},
};

const struct {
  int row;
  const char* label;
  int hours;
} TimeModes[] = {{12, "12 HR", 12}, {13, "24 HR", 24}};

void addTexts(Dialog& dialog) {
  for (const TextRow& text : Texts) {
    dialog.put(text.labelColumn, text.row, text.label);
    // A longer value stays whole; only typing is limited.
    dialog.addString(FieldColumn, text.row, Group::New, text.value, FieldWidth,
                     std::max(FieldLength, text.value->length()));
  }
}

void addTheRest(Dialog& dialog) {
  Group group = Group::New;
  for (const auto& one : Switches) {
    dialog.addCheck(CheckColumn, one.row, group, one.value, one.label);
    group = Group::Same;
  }
  for (const auto& number : Numbers) {
    dialog.put(number.labelColumn, number.row, number.label);
    dialog.addInteger(NumberColumn, number.row, Group::New, number.value, NumberWidth,
                      KeepFormat::Yes);
  }
  dialog.put(TimeModeColumn, TimeModeRow, "Time Mode");
  group = Group::New;
  for (const auto& mode : TimeModes) {
    dialog.addRadio(RadioColumn, mode.row, group, &GlobalOptions::TimeMode, mode.hours, mode.label);
    group = Group::Same;
  }
}

void addButtons(Dialog& dialog) {
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.addButton(HelpColumn, ButtonRow, Group::Same, Key::F1, "Help");
}

}  // namespace

ConfigurationAnswer configurationDialog() {
  const OptionSnapshot before;
  {
    Dialog dialog(-1, UpperThird, Columns, Lines, colourOf(Colour::Messages));
    dialog.putFrameTitle(" Configuration ");
    addTexts(dialog);
    addTheRest(dialog);
    addButtons(dialog);
    if (runWithHelp(dialog, HelpTopic::Configuration) != Key::Enter) {
      before.restore();
      return ConfigurationAnswer::PutBack;
    }
  }
  for (const TextRow& text : Texts) *text.value = trim(*text.value);
  return ConfigurationAnswer::Kept;
}
