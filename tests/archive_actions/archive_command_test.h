#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "archive/archive_chain.h"
#include "archive_actions/open_archive.h"
#include "config/archiver_keys.h"
#include "filecommands/command_test.h"
#include "language/environment.h"
#include "panels/commands/change_directory.h"

// The commands on an archive that the left panel shows, by the real tools. What was packed stands
// in "in", archives in "left".
class ArchiveCommandTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    dir.makeDir("in");
    dir.makeDir("tmp");
    setenv("TMP", dir.path("tmp").c_str(), 1);
    sessionEnvironment().set("SHELL", "/bin/sh");
    archiveOpener() = openArchiveShown;
    archiverKeys().setDefaults();
  }
  void TearDown() override {
    left().archive.reset();
    right().archive.reset();
    archiveOpener() = nullptr;
    archiverKeys().setDefaults();
    unsetenv("TMP");
    CommandTest::TearDown();
  }

  // A command of the shell in a directory below the test's own.
  bool shell(const std::string& place, const std::string& command) {
    const std::string line =
        "cd '" + dir.path(place) + "' && { " + command + " ; } </dev/null >/dev/null 2>&1";
    return system(line.c_str()) == 0;
  }
  void pack(const std::string& command) { ASSERT_TRUE(shell("in", command)) << command; }

  void open(const std::string& name) {
    show(name);
    const Westring file = decodeFileName(name.c_str());
    ASSERT_TRUE(attachArchive(left(), file.data()));
    enterPath(left(), file.data());
    ASSERT_NE(left().archive, nullptr);
  }
  void putCursorOn(const std::string& name) {
    selectName(left(), decodeFileName(name.c_str()).data());
    ASSERT_EQ(currentName(left()), name);
  }
  void tagAll() { selectAll(left(), TagMode::Tag, 0); }

  // Whether both hold the same names with the same contents.
  bool same(const std::string& a, const std::string& b) {
    return shell(".", "diff -r --no-dereference '" + a + "' '" + b + "'");
  }
  // What a directory holds, sorted.
  std::vector<std::string> names(const std::string& place) const {
    std::vector<std::string> result;
    for (const auto& item : std::filesystem::directory_iterator(dir.path(place))) {
      result.push_back(item.path().filename().string());
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  // What a lister prints, sorted.
  std::string listed(const std::string& command) {
    shell("left", command + " | LC_ALL=C sort > ../listed");
    return dir.read("listed");
  }
};
