#include "commander/command_rooms.h"
#include "commander/option_dialogs.h"
#include "commander/screen_size.h"
#include "config/config_reader.h"
#include "config/config_writer.h"
#include "config/dialogs/confirmations_dialog.h"
#include "foundation/data_paths.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "shell/internal_programs.h"

namespace {

void flip(bool& option) {
  option = !option;
}

void redrawPanels() {
  for (Panel& panel : panelPair().side) drawPanel(panel);
}

void reReadPanels() {
  for (Panel& panel : panelPair().side) {
    if (!panel.showing) {
      panel.needsRead = true;
      continue;
    }
    enterPath(panel, L"", KeepTags::Yes);
    drawPanel(panel);
  }
  static_cast<void>(setWorkingDirectory(panelPair().active()));
}

void toggleHidden() {
  flip(GlobalOptions::Hidden);
  reReadPanels();
}

void togglePathPrompt() {
  flip(GlobalOptions::PathPrompt);
}

void toggleFullScreen() {
  flip(GlobalOptions::FullScreen);
  reopenPanels();
}

void toggleClock() {
  flip(GlobalOptions::Clock);
  redrawPanels();  // the titles make room, or take it back
  GlobalOptions::Clock ? drawClock() : removeClock();
}

void toggleTagDirectories() {
  flip(GlobalOptions::TagDirs);
}

void toggleThousandSeparator() {
  flip(GlobalOptions::ThousandSep);
  redrawPanels();
}

void toggleRetainCount() {
  flip(GlobalOptions::RetainCount);
  reReadPanels();
}

// What was changed in the file by hand may colour the rows anew.
void saveSetup() {
  saveConfiguration();
  redrawPanels();
}

void editAssociations() {
  internalPrograms()->edit(dataFilePath(DataFile::Configuration));
  loadConfiguration(ConfigScope::ListsOnly);
  redrawPanels();
}

std::function<bool()> isOn(const bool& option) {
  return [&option] { return option; };
}

std::vector<Command> toggleRows() {
  return {
      {.name = "Hidden files",
       .codes = {Key::ctrl('h'), MenuCode::Hidden},
       .run = toggleHidden,
       .menu = {"Hidden Files    Ctrl-H", 0},
       .mark = isOn(GlobalOptions::Hidden)},
      {.name = "Path prompt",
       .codes = {MenuCode::PathPrompt},
       .run = togglePathPrompt,
       .menu = {"Path Prompt", 0},
       .mark = isOn(GlobalOptions::PathPrompt)},
      {.name = "Full screen",
       .codes = {MenuCode::FullScreen},
       .run = toggleFullScreen,
       .menu = {"Full Screen", 0},
       .mark = isOn(GlobalOptions::FullScreen)},
      {.name = "Clock",
       .codes = {MenuCode::Clock},
       .run = toggleClock,
       .menu = {"Clock", 1},
       .mark = isOn(GlobalOptions::Clock)},
      {.name = "Tag directories",
       .codes = {MenuCode::TagDirectories},
       .run = toggleTagDirectories,
       .menu = {"Tag Directories", 0},
       .mark = isOn(GlobalOptions::TagDirs)},
      {.name = "Thousand separator",
       .codes = {MenuCode::ThousandSeparator},
       .run = toggleThousandSeparator,
       .menu = {"Thousand Separator", 3},
       .mark = isOn(GlobalOptions::ThousandSep)},
      {.name = "Retain directory count",
       .codes = {MenuCode::RetainCount},
       .run = toggleRetainCount,
       .menu = {"Retain Dir Count", 0},
       .mark = isOn(GlobalOptions::RetainCount)},
  };
}

std::vector<Command> dialogRows() {
  return {
      {.name = "Configuration",
       .codes = {MenuCode::Configuration},
       .run = chooseConfiguration,
       .menu = {"Configuration", 0},
       .help = HelpTopic::Configuration},
      {.name = "Colours",
       .codes = {MenuCode::Colours},
       .run = chooseColours,
       .menu = {"Colours", 1}},
      {.name = "Confirmations",
       .codes = {MenuCode::Confirmations},
       .run = confirmationsDialog,
       .menu = {"Confirmations", 2},
       .help = HelpTopic::Confirmations},
      {.name = "Save setup",
       .codes = {MenuCode::SaveSetup, Key::ShiftF9},
       .run = saveSetup,
       .menu = {"Save Setup      Shft-F9", 0},
       .label = "SavSet"},
      {.name = "Edit associations",
       .codes = {MenuCode::EditAssociations},
       .run = editAssociations,
       .menu = {"Edit Associations", 5},
       .help = HelpTopic::ConfigurationFile},
  };
}

}  // namespace

std::vector<Command> optionCommands() {
  return joined({toggleRows(), dialogRows()});
}
