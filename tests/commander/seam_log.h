#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"
#include "shell/internal_programs.h"
#include "shell/logged_shell.h"
#include "ui/help_window.h"

// What connected modules were asked for, in order, and then what the shell was.
class SeamLog : public DirectoryTree,
                public ArchiveActions,
                public HistoryWindows,
                public HelpWindow,
                public InternalPrograms {
 public:
  ~SeamLog() override { disconnect(); }
  void connect();  // fills every connection
  static void disconnect();

  Westring choose(Panel&, TreeWindowUse use) override;
  Westring chooseDirectory() override;
  void remove(Panel& panel) override;
  void transfer(Panel& panel, TransferKind kind) override;
  Westring extract(Panel& panel, const Westring& name) override;
  void compress(Panel& panel) override;
  void show(HelpTopic topic) override;
  void view(const Westring& path) override;
  void viewList(Panel& panel) override;
  void edit(const Westring& path) override;

  std::vector<std::string> take() {
    for (const std::string& command : shell_.take()) note("run " + command);
    return std::exchange(calls_, {});
  }
  std::string last() { return calls_.empty() ? "" : calls_.back(); }
  // What the windows of other modules answer.
  Westring directory;
  Westring extracted;
  // What the editor does.
  std::function<void()> editing;

 private:
  void note(const std::string& call) { calls_.push_back(call); }

  std::vector<std::string> calls_;
  LoggedShell shell_;
};
