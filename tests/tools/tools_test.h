#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "archive/archive_entry_store.h"
#include "archive/sample_archives.h"
#include "panels/panel_screen.h"
#include "support/manual_clock.h"
#include "tools/panel_trees.h"
#include "tree/tree_text.h"

// Archives open as directories for as long as this lives.
class ArchivesAreOpened {
 public:
  ArchivesAreOpened() {
    archiveOpener() = [](const Westring& file, OpenArchive*) -> std::unique_ptr<OpenArchive> {
      ArchiveWatcher nobody;
      return openArchiveFile(file, file, nobody).archive;
    };
  }
  ~ArchivesAreOpened() {
    for (Panel& panel : panelPair().side) panel.archive.reset();
    archiveOpener() = before_;
  }
  ArchivesAreOpened(const ArchivesAreOpened&) = delete;
  ArchivesAreOpened& operator=(const ArchivesAreOpened&) = delete;

 private:
  const ArchiveOpener before_ = archiveOpener();
};

// Panels on a real screen, a HOME of the test's own, and trees that nobody has asked anything yet.
class ToolsTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    setenv("HOME", home.path().c_str(), 1);
    directoryTree().connect(trees);
    trees.saveWhileWaiting();  // the program has waited for its first key
  }
  void TearDown() override {
    directoryTree().disconnect();
    PanelScreenTest::TearDown();
  }

  // The lines of the tree's file behind its header; "" when there is none.
  std::string savedLines() const {
    const std::string content = home.exists(".tdx/tdtree.dat") ? home.read(".tdx/tdtree.dat") : "";
    return content.size() < 8 ? content : content.substr(8);
  }
  void saveLines(const std::string& lines) const {
    home.makeDir(".tdx");
    home.write(".tdx/tdtree.dat", std::string(8, '\0') + lines);
  }
  // A tree file that knows just this directory and what lies above it.
  void knowOnly(const std::string& path) const {
    std::string lines = "0/\n";
    char level = '1';
    std::istringstream parts(path.substr(1));
    for (std::string part; std::getline(parts, part, '/'); ++level) lines += level + part + "\n";
    saveLines(lines);
  }

  TempDir home, leftDir, rightDir;
  ManualClock clock;
  PanelTrees trees{clock};
};
