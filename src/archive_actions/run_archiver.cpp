#include "archive_actions/run_archiver.h"

#include <algorithm>
#include <cerrno>
#include <string>

#include "archive_actions/private_directory.h"
#include "archive_actions/tool_archive.h"
#include "archive_actions/tool_run.h"
#include "foundation/path_info.h"
#include "language/temporary_names.h"
#include "ui/alert.h"

namespace {

constexpr char ListName[] = "list";

class ArchiverRun {
 public:
  ArchiverRun(const ArchiveTool& tool, const Westring& archive, Panel& panel)
      : tool_(tool), archive_(archive), panel_(panel) {}

  int result() const { return result_; }
  void runAlone(const ToolOperand& operand) { runCommand(tool_.words(operand)); }
  void runList(const std::vector<ToolOperand>& operands);
  void runBatches(const std::vector<ToolOperand>& operands);
  void runCommand(const std::wstring& words) { run(tool_.command(archive_, words, kind_)); }
  void runAll(const std::vector<ToolOperand>& operands);
  void runFilesApart(const std::vector<ToolOperand>& operands);
  void stop(int error);

 private:
  void run(const Westring& command);

  const ArchiveTool& tool_;
  const Westring& archive_;
  Panel& panel_;
  ArchiveTool::Operands kind_ = ArchiveTool::Operands::Any;
  int result_ = 0;
};

void ArchiverRun::stop(int error) {
  alert(errorText(error), archive_, AlertButtons::Ok, AlertColour::Error);
  result_ = -error;
}

void ArchiverRun::run(const Westring& command) {
  if (result_ != 0) return;
  int code = 0;
  const ToolEnd end = runToolShown(command, panel_, code);
  if (end == ToolEnd::Broken) result_ = -EINTR;
  if (end == ToolEnd::NotStarted) stop(code);
  if (end == ToolEnd::Ran && code > tool_.highestCode()) result_ = code;
}

void ArchiverRun::runList(const std::vector<ToolOperand>& operands) {
  std::string lines;
  for (const ToolOperand& operand : operands) {
    if (tool_.fitsList(operand)) lines += tool_.lines(operand);
  }
  if (!lines.empty() && result_ == 0) {
    PrivateDirectory directory;
    Westring list;
    int error = directory.make(temporaryDirectory());
    if (error == 0) error = directory.writeFile(ListName, lines, list);
    if (error != 0) return stop(error);
    run(tool_.commandWithList(archive_, list, kind_));
  }
  for (const ToolOperand& operand : operands) {
    if (!tool_.fitsList(operand)) runAlone(operand);
  }
}

void ArchiverRun::runBatches(const std::vector<ToolOperand>& operands) {
  std::wstring batch;
  for (const ToolOperand& operand : operands) {
    const std::wstring words = tool_.words(operand);
    const size_t length = tool_.templateLength() + batch.size() + words.size();
    if (!batch.empty() && length > ArchiveTool::LongestBatch) {
      runCommand(batch);
      batch.clear();
    }
    if (!batch.empty()) batch += L' ';
    batch += words;
  }
  if (!batch.empty()) runCommand(batch);
}

void ArchiverRun::runAll(const std::vector<ToolOperand>& operands) {
  const auto fits = [this](const ToolOperand& operand) { return tool_.fitsCommand(operand); };
  const bool byNames = std::all_of(operands.begin(), operands.end(), fits);
  if (tool_.usesLists() && (operands.size() > 1 || !byNames)) {
    runList(operands);
  } else {
    runBatches(operands);
  }
}

void ArchiverRun::runFilesApart(const std::vector<ToolOperand>& operands) {
  std::vector<ToolOperand> files, directories;
  for (const ToolOperand& operand : operands) {
    (operand.directory ? directories : files).push_back(operand);
  }
  kind_ = ArchiveTool::Operands::FilesOnly;
  runAll(files);
  kind_ = ArchiveTool::Operands::Any;
  runAll(directories);
}

// Directories whose members go by their names become these members.
std::vector<ToolOperand> singly(const std::vector<ToolOperand>& operands) {
  std::vector<ToolOperand> result;
  for (const ToolOperand& operand : operands) {
    if (!operand.directory) result.push_back(operand);
    for (const Westring& member : operand.below) {
      result.push_back({.path = member, .foreignName = operand.foreignName});
    }
  }
  return result;
}

}  // namespace

int runArchiver(const ArchiveTool& tool, const Westring& archive,
                const std::vector<ToolOperand>& operands, Panel& panel) {
  ToolArchive named(tool, archive);
  ArchiverRun run(tool, named.path(), panel);
  if (named.error() != 0) run.stop(named.error());
  const bool byMember = tool.directoryForm() == DirectoryForm::Members;
  const std::vector<ToolOperand> all = byMember ? singly(operands) : operands;
  if (tool.directoryForm() == DirectoryForm::Nothing) {
    if (!all.empty()) run.runCommand(L"");
  } else if (tool.takesFilesApart()) {
    run.runFilesApart(all);
  } else {
    run.runAll(all);
  }
  const auto success = run.result() == 0 ? ToolSuccess::Yes : ToolSuccess::No;
  if (const int error = named.finish(success); error != 0 && run.result() == 0) run.stop(error);
  return run.result();
}
