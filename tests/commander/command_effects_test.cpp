// Every key and every menu item does something that can be seen.

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include "commander/command_table.h"
#include "commander/main_loop_test.h"
#include "commander/screen_size.h"
#include "commander/seam_log.h"
#include "console/clipboard.h"
#include "panels/commands/panel_sort.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/selection.h"

namespace {

const std::set<std::string> KnownToDoNothing{"Manual", "Drive of the left panel",
                                             "Drive of the right panel", "Explorer window"};

// What the user has before him when he presses a key.
enum class Scene {
  List,       // nothing typed, the bar on a file
  Directory,  // the bar on a directory
  Columns,    // a list in columns, sorted by size, reversed
  Tags,       // files tagged above and below the bar
  Search,     // a quick search is open
  Beginning,  // the beginning of an older command is typed
  Line,       // the cursor stands inside a typed line
  NoPanels,   // the same without panels
};
constexpr Scene Scenes[] = {Scene::List,   Scene::Directory, Scene::Columns, Scene::Tags,
                            Scene::Search, Scene::Beginning, Scene::Line,    Scene::NoPanels};

class CommandEffects : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.makeDir("dir");
    for (const char* name : {"above", "file.txt", "zz below"}) leftDir.write(name, "text");
    rightDir.write("other", "");
    homeDir.makeDir(".tdx");
    homeDir.write(".tdx/td.mnu", "a: Entry\n  command\n");
    for (const wchar_t* command : {L"ls", L"list all", L"ls one two", L"make"}) addCommand(command);
    log.connect();
    openPanels();
  }

  // Both panels as they were at the start, but for the style and the order.
  void begin(PanelStyle style, int sort) {
    GlobalOptions::EscPanelSwitch = GlobalOptions::DisableInvert = false;
    keepScreenSize();
    for (int side : {0, 1}) {
      Panel& panel = panelPair().side[side];
      if (!panel.showing) toggleOnePanel(side);
      if (!panel.isFiles()) toggleInfo(side);
      setStyle(side, style);
      goToPath(panel, (side == 0 ? leftDir : rightDir).wide());
      setSort(panel, sort);
      panel.quickSearch = L"";
      panel.nameOffset = 0;
    }
    setActiveSide(0);
    selectAll(left(), TagMode::Untag, ShiftState::Shift);
    left().previousPath = rightDir.wide();
    for (Westring& shortcut : GlobalOptions::directoryShortcuts) shortcut = rightDir.wide();
    loop.line.clear();
    clipboardSetText(L"clip");
    cursorTo("file.txt");
    left().currentEntry()->wasTagged = 1;  // for the row that restores
  }

  void keepScreenSize() {
    constexpr int Rows = 25, ColumnCount = 80;
    while (console->rows() != Rows) changeLines();
    while (console->columns() != ColumnCount) changeColumns();
  }

  void prepare(Scene scene) {
    const bool columns = scene == Scene::Columns;
    begin(columns ? PanelStyle::Brief : PanelStyle::Full,
          columns ? SortCode::Size + SortCode::Reverse : SortCode::Name);
    if (scene == Scene::Directory) cursorTo("dir");
    if (scene == Scene::Search) left().quickSearch = L"fil";
    if (scene == Scene::Beginning) loop.line.setText(L"l");
    if (scene == Scene::Tags) {
      for (const char* name : {"above", "zz below"}) {
        cursorTo(name);
        toggleTag(left(), left().currentIndex(), TagMode::Tag);
      }
      cursorTo("file.txt");
    }
    if (scene == Scene::Line || scene == Scene::NoPanels) {
      loop.line.setText(L"ls one two three");
      loop.line.moveWordLeft();
      loop.line.moveWordLeft();
    }
    if (scene == Scene::NoPanels) panelsOnOff();
    press(Key::F11);  // no command: what is under the cursor shows in the status line
  }

  // What a row asks for beyond a scene.
  static void allow(const Command& command) {
    GlobalOptions::EscPanelSwitch = includes(command.when, When::EscTakesPanels);
    GlobalOptions::DisableInvert = includes(command.when, When::StarIsText);
  }
  static int modifiersFor(const Command& command) {
    return (includes(command.when, When::ShiftHeld) ? ShiftState::Shift : 0) |
           (includes(command.when, When::CtrlHeld) ? ShiftState::Ctrl : 0) |
           (includes(command.when, When::AltHeld) ? ShiftState::Alt : 0);
  }
  // Whether the row is the one of its code that runs now.
  bool isNext(const Command& command, Key::Code code) {
    const auto rows = commandsOf(code);
    const auto found =
        std::ranges::find_if(rows, [&](const Command* row) { return holds(row->when, loop); });
    return found != rows.end() && *found == &command;
  }

  // All that a command may change, as text; what it asked of other modules comes into it too.
  std::string everything() {
    using namespace GlobalOptions;
    std::ostringstream out;
    out << screenText() << console->eventCount() << loop.pendingKey.value();
    out << line() << '|' << loop.line.cursor() << '|' << bytes(clipboardGetText());
    for (const std::string& call : log.take()) out << call;
    out << homeDir.exists(".tdx/td.ini") << panelPair().activeSide;
    for (const Panel& panel : panelPair().side) {
      out << bytes(panel.path) << panel.sort << static_cast<int>(panel.style)
          << static_cast<int>(panel.type) << panel.showing << panel.taggedCount << ' '
          << panel.currentIndex() << ' ' << panel.nameOffset << bytes(panel.quickSearch);
    }
    for (bool option : {Hidden, PathPrompt, FullScreen, Clock, TagDirs, ThousandSep, RetainCount}) {
      out << option;
    }
    for (const Westring& shortcut : directoryShortcuts) out << bytes(shortcut);
    return out.str();
  }

  // A box or a window that opens is left at once.
  bool changesSomething(Key::Code code, int modifiers) {
    queueKey(Key::Esc);
    queueKey(Key::Esc);
    const std::string name = "new" + std::to_string(++written);  // for those that read again
    leftDir.write(name, "");
    rightDir.write(name, "");
    const std::string before = everything();
    press(code, modifiers);
    const bool changed = everything() != before;
    drainEvents();
    for (const TempDir* dir : {&leftDir, &rightDir}) std::filesystem::remove(dir->path(name));
    std::filesystem::remove(homeDir.path(".tdx/td.ini"));
    return changed;
  }

  struct Seen {
    bool ran = false, changed = false;
  };
  // Presses a code in one scene after the other until something is seen.
  Seen seenOf(const Command& command, Key::Code code) {
    Seen seen;
    for (const Scene scene : Scenes) {
      prepare(scene);
      allow(command);
      loop.shiftState = modifiersFor(command);
      if (!isNext(command, code)) continue;
      seen.ran = true;
      seen.changed = changesSomething(code, modifiersFor(command));
      if (seen.changed) return seen;
    }
    return seen;
  }

  SeamLog log;
  int written = 0;
};

TEST_F(CommandEffects, EveryKeyAndItemDoesSomethingOrIsKnownNotTo) {
  std::set<std::string> idle;
  int codes = 0;
  for (const Command& command : commandTable()) {
    for (const Key::Code code : command.codes) {
      SCOPED_TRACE(command.name);
      const Seen seen = seenOf(command, code);
      ++codes;
      EXPECT_TRUE(seen.ran) << code << " never runs it";
      if (!seen.changed) idle.insert(command.name);
    }
  }
  EXPECT_EQ(idle, KnownToDoNothing);
  EXPECT_GT(codes, 200);
}

}  // namespace
