#include "filecommands/case_dialog.h"

#include "fileops/name_case.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 36, Lines = 17;
constexpr int UpperQuarter = -4;
constexpr int HeadRow = 0, SubjectRow = 1, LabelRow = 3, RuleRow = 5, CheckRow = 10, ButtonRow = 14;
constexpr int NameColumn = 2, NameLabelColumn = 7, ExtensionColumn = 15, ExtensionLabelColumn = 19;
constexpr int CheckColumn = 2, OkColumn = 8, CancelColumn = 16;
constexpr int SubjectWidth = 26;

constexpr struct {
  CaseRule rule;
  const char* label;
} Rules[] = {{CaseRule::Lower, "Lower"},
             {CaseRule::Upper, "Upper"},
             {CaseRule::Mixed, "Mixed"},
             {CaseRule::Keep, "None"}};

// The labels stand further off than those of a radio button do by themselves.
void addRules(Dialog& dialog, int column, int labelColumn, int* rule) {
  Group group = Group::New;
  int row = RuleRow;
  for (const auto& one : Rules) {
    dialog.addRadio(column, row, group, rule, static_cast<int>(one.rule), "");
    dialog.put(labelColumn, row, one.label);
    group = Group::Same;
    ++row;
  }
}

}  // namespace

bool askCase(const Westring& subject) {
  const NameCase now = nameCaseOf(GlobalOptions::CaseMod);
  int name = static_cast<int>(now.name);
  int extension = static_cast<int>(now.extension);
  bool recurse = GlobalOptions::CaseModRecurse;
  bool directories = GlobalOptions::CaseModDirs;
  bool files = GlobalOptions::CaseModFiles;
  Dialog dialog(-1, UpperQuarter, Columns, Lines, colourOf(Colour::Messages));
  dialog.putCentred(HeadRow, L"Change case of");
  dialog.putCentred(SubjectRow, shortenPath(subject, SubjectWidth).data());
  dialog.put(NameColumn, LabelRow, L"Name");
  dialog.put(ExtensionColumn, LabelRow, L"Extension");
  addRules(dialog, NameColumn, NameLabelColumn, &name);
  addRules(dialog, ExtensionColumn, ExtensionLabelColumn, &extension);
  int row = CheckRow;
  dialog.addCheck(CheckColumn, row++, Group::New, &recurse, "Recurse into directories");
  dialog.addCheck(CheckColumn, row++, Group::Same, &directories, "Change directories");
  dialog.addCheck(CheckColumn, row++, Group::Same, &files, "Change files");
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  if (dialog.run() != Key::Enter) return false;
  GlobalOptions::CaseMod =
      settingOf({static_cast<CaseRule>(name), static_cast<CaseRule>(extension)});
  GlobalOptions::CaseModRecurse = recurse;
  GlobalOptions::CaseModDirs = directories;
  GlobalOptions::CaseModFiles = files;
  return true;
}
