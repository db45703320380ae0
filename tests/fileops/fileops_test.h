#pragma once

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "config/options.h"
#include "fileops/byte_path.h"
#include "fileops/delete_file.h"
#include "fileops/delete_tree.h"
#include "fileops/remove_directory.h"
#include "fileops/scripted_ui.h"
#include "fileops/transfer.h"
#include "foundation/break_state.h"
#include "support/as_user.h"
#include "support/temp_dir.h"

// Everything below a directory: for each path below it its kind, mode and content.
std::map<std::string, std::string> snapshot(const std::string& directory);
// The kind and content alone; what must not change whatever happens.
std::map<std::string, std::string> contents(const std::string& directory);

void setTime(const std::string& path, time_t seconds, long nanoseconds = 0);
struct stat statusOf(const std::string& path);
// A directory on another file system than that of `path`; null on a machine that has only one.
std::unique_ptr<TempDir> onAnotherFileSystem(const std::string& path);
bool existsAt(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
std::string readFile(const std::string& path);
inline bool isRoot() {
  return geteuid() == 0;
}

// Operations in a directory of the test's own, with scripted answers.
class FileOpsTest : public testing::Test {
 protected:
  void SetUp() override {
    operationAnswers = {};
    breakState = BreakState::Idle;
    GlobalOptions::setDefaultOptions();
  }

  Outcome copy(const std::string& source, const std::string& target, int index = 1, int count = 1) {
    return transfer(TransferKind::Copy, source, target, index, count);
  }
  Outcome move(const std::string& source, const std::string& target, int index = 1, int count = 1) {
    return transfer(TransferKind::Move, source, target, index, count);
  }
  Outcome transfer(TransferKind kind, const std::string& source, const std::string& target,
                   int index = 1, int count = 1) {
    RunningOperation operation(ui);
    const Outcome outcome =
        Transfer(operation, kind).run(dir.path(source), dir.path(target), index, count);
    moved = operation.progress.done;
    return outcome;
  }
  Outcome remove(const std::string& name, DeleteMode mode = DeleteMode::One) {
    RunningOperation operation(ui);
    return deleteFile(operation, dir.wide(name), mode);
  }
  Outcome removeDir(const std::string& name, const wchar_t* pattern = L"*") {
    RunningOperation operation(ui);
    return removeDirectory(operation, dir.wide(name), pattern);
  }
  // The texts of all questions.
  std::vector<std::string> asked() const {
    std::vector<std::string> texts;
    for (const auto& question : ui.questions) texts.push_back(question.text);
    return texts;
  }
  // No name of a file in the making anywhere below.
  void expectNoLeftovers() const;

  TempDir dir;
  ScriptedUi ui;
  int64_t moved = 0;  // bytes that the progress counted
};

using Texts = std::vector<std::string>;
inline constexpr char ExistsQuestion[] = "File already exists, Overwrite?";
