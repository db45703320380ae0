#include "shell/open_file.h"

#include <linux/magic.h>

#include <algorithm>
#include <string>

#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "language/association_set.h"
#include "language/shell_quote.h"
#include "language/temporary_names.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_draw.h"
#include "shell/built_ins.h"
#include "shell/macro_panels.h"
#include "shell/prompt.h"
#include "terminal/run_command.h"

namespace {

constexpr unsigned ExecuteBits = 0111;
// What the system's headers don't name.
constexpr unsigned Ntfs3Magic = 0x7366746e, NtfsMagic = 0x5346544e, CifsMagic = 0xFF534D42;
constexpr unsigned FileSystemsOfPrograms[] = {MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, NtfsMagic,
                                              Ntfs3Magic,        CifsMagic,         SMB_SUPER_MAGIC,
                                              SMB2_SUPER_MAGIC,  FUSE_SUPER_MAGIC,  V9FS_MAGIC};

bool everyFileIsExecutable(const std::string& path) {
  struct statfs info {};
  if (System::statFs(path.c_str(), &info) != 0) return false;
  const auto type = static_cast<unsigned>(info.f_type);
  return std::any_of(std::begin(FileSystemsOfPrograms), std::end(FileSystemsOfPrograms),
                     [type](unsigned known) { return known == type; });
}

bool hasFormOfProgram(const std::string& path) {
  const std::string elf("\177ELF"), script("#!");
  const auto start = readBeginning(path.c_str(), elf.size());
  return start && (start->starts_with(elf) || start->starts_with(script));
}

// The command that the file is associated with; false when there is none, or it must not run.
bool associatedCommand(int side, const entry& file, Westring& command) {
  const Westring* associated = associationSets().associations.find(&file);
  if (associated == nullptr) return false;
  PanelMacros macros(side);
  command = *associated;
  if (expandCommand(command, file.name(), macros, MacroMode::Program) == MacroResult::Failed)
    command = Westring();
  return true;
}

void run(const Westring& text, int side, const Westring& name) {
  const Westring command = trim(text);
  if (command.empty()) return;
  const Westring echo = promptOf(panelPair().side[side]) + name;
  // From the history it is a typed command, whose macros are replaced.
  addCommand(doubleLeadChar(command));
  runBuiltinOrShell(command, side, echo, RunFlag::FromAssociation);
}

}  // namespace

bool isRunnable(const Panel& panel, const entry& file) {
  if (panel.archive || file.isDirectory() || (file.mode & ExecuteBits) == 0) return false;
  const std::string path = toUtf8(joinPath(panel.path, file.name())).data();
  return !everyFileIsExecutable(path) || hasFormOfProgram(path);
}

void openFile(Panel& panel, const entry& file) {
  const int side = panelPair().sideOf(panel);
  const Westring name = file.name();
  Westring command;
  removeTemporaries();
  if (associatedCommand(side, file, command)) return run(command, side, name);
  if (isRunnable(panel, file)) return run(L"./" + quoteForShell(name), side, name);
  if (!attachArchive(panel, name.data())) return;
  enterPath(panel, name.data());
  drawPanel(panel);
}
