#include "commander/program.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "commander/arguments.h"
#include "commander/connect.h"
#include "commander/exit_program.h"
#include "commander/main_loop.h"
#include "commander/screen_size.h"
#include "config/config_reader.h"
#include "console/console.h"
#include "console/text_state.h"
#include "foundation/data_paths.h"
#include "foundation/file_mode_mask.h"
#include "foundation/locale_settings.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/signals.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "language/temporary_names.h"
#include "language/typed_path.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/panel_window.h"
#include "panels/reader/directory_reader.h"
#include "shell/internal_programs.h"
#include "tools/help.h"

namespace {

constexpr const char* IconFiles[] = {TD_ICONS "/16x16/apps/tandemdeck.png",
                                     TD_ICONS "/scalable/apps/tandemdeck.svg"};

// The console lives as long as this; other code reaches it by the process-wide pointer.
class ConsoleOwner {
 public:
  ConsoleOwner() : owned_(std::make_unique<CConsole>()) {}
  ~ConsoleOwner() {
    owned_.reset();
    endToolkit();
  }
  ConsoleOwner(const ConsoleOwner&) = delete;
  ConsoleOwner& operator=(const ConsoleOwner&) = delete;

 private:
  std::unique_ptr<CConsole> owned_;
};

// The options of the file, and a screen that agrees with them.
void applyOptions() {
  loadConfiguration(ConfigScope::Everything);
  applyScreenOptions();
}

// Where the program was started.
struct StartPlace {
  Westring path;
  Westring lost;  // what to tell when the directory is gone, else ""
};

// A directory that is gone tells no path: the shell's idea of it leads to what is left of the way
// there, or else the home directory is taken.
StartPlace startPlace() {
  const Westring path = currentDir();
  if (!path.empty()) return {path, isDirectoryPath(path) ? Westring() : path};
  const char* shellsIdea = getenv("PWD");
  if (shellsIdea && *shellsIdea == '/')
    return {decodeFileName(shellsIdea), decodeFileName(shellsIdea)};
  const Westring home = homeDirectory();
  return {home[0] == L'/' ? home : Westring(L"/"), L"."};
}

// The panel's start directory: what was asked for, else the working directory, else the nearest
// that there is. What isn't there is told once.
void chooseStartDirectory(Panel& panel, const Westring& argument, const Westring& configured,
                          std::vector<StartNotice>& notices) {
  const StartPlace here = startPlace();
  changeToNearest(panel, here.path);
  const Westring& wanted = argument.empty() ? configured : argument;
  Westring lost = here.lost;
  if (!wanted.empty()) {
    const Arrival arrival = changeDirectory(panel, wanted);
    if (arrival) return;
    const std::vector<Westring> meanings = pathMeanings(wanted, panel.path);
    lost = meanings.empty() ? wanted : meanings.back();
    if (!meanings.empty()) changeToNearest(panel, lost);
    if (!arrival.isUnexplained()) lost = Westring();
  }
  const auto isSame = [&lost](const StartNotice& one) { return sameName(one.path, lost); };
  if (!lost.empty() && std::none_of(notices.begin(), notices.end(), isSame))
    notices.push_back({L"Invalid directory", lost});
}

struct SideOptions {
  int sort, style, type;
  bool showing;
  const Westring& filter;
};

void initPanel(int side, const SideOptions& options, std::vector<StartNotice>& notices) {
  Panel& panel = panelPair().side[side];
  panel.sort = options.sort;
  panel.style = static_cast<PanelStyle>(options.style);
  panel.type = static_cast<PanelType>(options.type);
  panel.filter = options.filter;
  panel.showing = true;
  updatePageSize(panel);
  const ReadTrouble trouble = tryReadDirectory(panel);
  if (!trouble.text.empty()) notices.push_back({trouble.text, trouble.path});
  panel.lastPath = panel.path;
  panel.showing = options.showing;
  if (options.showing) openPanelWindow(side);
}

// What is to be told of the start directories comes back.
std::vector<StartNotice> initPanels(const Arguments& arguments) {
  using namespace GlobalOptions;
  std::vector<StartNotice> notices;
  chooseStartDirectory(panelPair().side[0], arguments.leftDirectory, Left, notices);
  chooseStartDirectory(panelPair().side[1], arguments.rightDirectory, Right, notices);
  console->writeTty("\n\n");
  Panel& left = panelPair().side[0];
  Panel& right = panelPair().side[1];
  Westring wanted = left.path;
  initPanel(0, {LeftSort, LeftStyle, LeftType, LeftShowing, LeftFilter}, notices);
  // Where the left panel could not stay, the right one needs no message of its own.
  if (sameName(right.path, wanted)) right.path = left.path;
  initPanel(1, {RightSort, RightStyle, RightType, RightShowing, RightFilter}, notices);
  setActiveSide(StartupSide == 'R' ? 1 : 0);
  static_cast<void>(setWorkingDirectory(panelPair().active()));
  setWindowTitle(nullptr);
  markActivePanel();
  drawClock();
  return notices;
}

// The panels change the working directory, so a relative name is one of where td was started.
Westring fromHere(const Westring& name) {
  return name.empty() || name[0] == L'/' ? name : joinPath(currentDir(), name);
}

void runAlone(const Arguments& arguments) {
  constexpr int shellCursor = 15;
  if (!arguments.fileToView.empty()) setCursorShape(0);
  if (!arguments.fileToView.empty()) internalPrograms()->view(fromHere(arguments.fileToView));
  if (!arguments.fileToEdit.empty()) internalPrograms()->edit(fromHere(arguments.fileToEdit));
  setTextPos(0, panelPair().screenLines - 1);
  setCursorShape(shellCursor);
}

void runPanels(const Arguments& arguments) {
  Westring exitScript = fromHere(arguments.exitScript);
  removeLeftOverTemporaries();
  loadHistory(GlobalOptions::MaxHist);
  MainLoop loop;
  loop.notices = initPanels(arguments);
  if (dataFilePath(DataFile::Configuration).empty()) {
    loop.notices.insert(loop.notices.begin(),
                        {L"No home directory: nothing will be kept", Westring()});
  }
  runMainLoop(loop);
  Westring directory = physicalDirectory(panelPair().active());
  leavePanels();
  if (!exitScript.empty()) writeExitScript(exitScript, directory);
}

// A wrong command line says so and ends the program.
int refuse(const Arguments& arguments) {
  puts(arguments.message.c_str());
  return arguments.exitStatus;
}

bool refused(const Arguments& arguments) {
  return arguments.outcome == Arguments::Outcome::Exit;
}

// A request to end wakes the wait for a key.
void wakeConsole() {
  if (console) console->events().wake();
}

}  // namespace

int runProgram(int argc, char** argv) {
  fillStandardStreams();
  static_cast<void>(fileModeMask());
  setlocale(LC_ALL, "");
  installSignals();
  setProgramPath(programPathOf(argc, argv));
  connectModules();
  bool display = initToolkit(&argc, &argv);
  if (!display) {
    Arguments arguments = parseArguments(argc, argv);
    if (refused(arguments)) return refuse(arguments);
    fputs("td: cannot open the X display\n", stderr);
    return 1;
  }
  ConsoleOwner owner;
  EndWatcher endWatcher(wakeConsole);
  console->setIconList({std::begin(IconFiles), std::end(IconFiles)});
  fetchScreenSize();
  Arguments arguments = parseArguments(argc, argv);
  if (refused(arguments)) return refuse(arguments);
  setConfigurationFile(arguments.configurationFile);
  applyOptions();
  loadHelp();
  readLocaleSettings(GlobalOptions::CodePage);
  console->setCodePage(GlobalOptions::CodePage);
  keepHistoryIn(dataFilePath(DataFile::History));
  if (!arguments.fileToView.empty() || !arguments.fileToEdit.empty()) {
    runAlone(arguments);
    return 0;
  }
  runPanels(arguments);
  return 0;
}
