#pragma once

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "fileops/delete_file.h"
#include "fileops/delete_tree.h"
#include "fileops/remove_directory.h"
#include "fileops/scripted_ui.h"
#include "fileops/transfer.h"
#include "foundation/break_state.h"
#include "foundation/place.h"
#include "options/options.h"
#include "support/as_user.h"
#include "support/files.h"
#include "support/temp_dir.h"

// Operations in a directory of the test's own, with scripted answers.
class FileOpsTest : public testing::Test {
 protected:
  void SetUp() override {
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
    RunningOperation operation(ui, GlobalOptions::Confirmations);
    operation.answers = answers;
    const Outcome outcome =
        Transfer(operation, kind).run(dir.path(source), dir.path(target), index, count);
    moved = operation.progress.done;
    answers = operation.answers;
    return outcome;
  }
  Outcome remove(const std::string& name, DeleteMode mode = DeleteMode::One) {
    RunningOperation operation(ui, GlobalOptions::Confirmations);
    operation.answers = answers;
    const Outcome outcome = deleteFile(operation, dir.wide(name), mode);
    answers = operation.answers;
    return outcome;
  }
  Outcome removeDir(const std::string& name, const wchar_t* pattern = L"*") {
    RunningOperation operation(ui, GlobalOptions::Confirmations);
    operation.answers = answers;
    const Outcome outcome = removeDirectory(operation, dir.wide(name), pattern);
    answers = operation.answers;
    return outcome;
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
  OperationAnswers answers;  // that each operation starts with and leaves behind
  int64_t moved = 0;         // bytes that the progress counted
};

using Texts = std::vector<std::string>;
inline constexpr char ExistsQuestion[] = "File already exists, Overwrite?";
