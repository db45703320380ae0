#pragma once

#include <source_location>
#include <string>
#include <vector>

#include "filecommands/copy_command.h"
#include "filecommands/delete_by_name.h"
#include "filecommands/delete_command.h"
#include "filecommands/make_directory.h"
#include "fileops/fileops_test.h"
#include "foundation/dos_time.h"
#include "options/colours.h"
#include "panels/commands/selection.h"
#include "panels/model/panel_position.h"
#include "panels/panel_screen.h"
#include "panels/reader/directory_reader.h"

// What a test does while a command waits for keys: when `text` is on the screen, compare it with a
// golden screen (if one is named), and type.
struct Step {
  std::string text;
  std::vector<Key::Code> keys;
  std::string golden = {};
  std::string typed = {};  // before the keys
  std::function<void()> then = {};
};

// The file commands on two panels with windows, over directories "left" and "right" of the test's
// own.
class CommandTest : public PanelScreenTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Reads both panels, whose windows stay closed so that a golden screen holds nothing but what a
  // command shows, and puts the left cursor on a name.
  void show(const std::string& cursor = "");
  void tag(const std::string& name);
  bool isTagged(const std::string& name) { return entryNamed(left(), name)->tagged; }

  // Runs the command; each step waits for its text in turn. Afterwards all keys were used up.
  // Golden screens lie beside the calling source.
  void play(const std::vector<Step>& steps, const std::function<void()>& command,
            std::source_location where = std::source_location::current());
  // The same for a command that must not ask anything.
  void run(const std::function<void()>& command) { play({}, command); }

  void expectCompleted(const std::string& golden, std::source_location where);
  std::string maskedScreen() const;
  std::string file(const std::string& name, const std::string& content = "text");

  TempDir dir;
  std::string before_;
};

// The tree, writing down what the file commands tell it.
class TreeLog : public DirectoryTree {
 public:
  TreeLog() { directoryTree().connect(*this); }
  ~TreeLog() override { directoryTree().disconnect(); }
  void renamed(const Panel&, const Westring& from, const Westring& to) override {
    calls.push_back("renamed " + bytes(from) + " " + bytes(to));
  }
  void removed(const Westring& path) override { calls.push_back("removed " + bytes(path)); }
  void made(const Panel&, const Westring& path) override { calls.push_back("made " + bytes(path)); }
  void save() override { calls.push_back("save"); }
  std::vector<std::string> calls;
};
