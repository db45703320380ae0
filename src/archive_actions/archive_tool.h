#pragma once

#include <string>
#include <vector>

#include "config/archiver_keys.h"
#include "foundation/westring.h"

enum class ToolTask : int { Extract, Compress, Delete };

// One file or directory that a tool is to work on, by its path as the tool knows it: for a member
// as the archive stores it, for a file below the working directory.
struct ToolOperand {
  Westring path;
  bool directory = false;
  // The stored names aren't those of this system: what isn't ASCII in them matches anything.
  bool foreignName = false;
  std::vector<Westring> below{};  // of a directory where the tool wants them: all that lies below
  // Where the tool looks for it there is nothing else that its name could be taken for.
  bool alone = false;
  Westring secondPath{};  // "" or the path that the archive holds beside this one, for extraction
};

// How a directory is given to a tool.
enum class DirectoryForm : uint8_t {
  AsSet,     // as the configuration tells
  Contents,  // dir/*
  Name,      // dir
  Members,   // every member below it by its name
  Nothing,   // the tool takes everything anyway, files too
};

// How a name is written for a tool.
enum class NameForTool : uint8_t {
  Plain,          // one that begins with '-' gets "./"
  BehindOptions,  // nothing that stands here is an option
  UnzipPattern,
  ZipPattern,
  // As behind options, and always a pattern: brackets can't be written, and a '!' in front names a
  // list outside of one.
  ArjPattern,
};

// The external tool of an archive type for one task: its template becomes command lines. A template
// that is the default one runs in the form that the tool of this system understands; any other runs
// as it is written. Texts hold names byte by byte, as decodeFileName gives them.
class ArchiveTool {
 public:
  static constexpr int LongestBatch = 1019;  // characters of a template and what it works on

  ArchiveTool(Archiver archiver, ToolTask task);

  bool hasCommand() const { return !template_.empty(); }  // an empty template runs nothing
  // Exit codes up to this one are no failure.
  int highestCode() const { return highestCode_; }
  DirectoryForm directoryForm() const { return form_; }
  bool usesLists() const { return !listSwitch_.empty(); }
  // The template redirects its output into the archive: it is given another file.
  bool writesArchiveAnew() const;
  // The tool itself takes climbing and absolute paths for paths below the directory it works in.
  bool stripsUnsafeNames() const;
  // What the tool would put behind the name of an archive that has no ending; "" for nothing.
  Westring addedEnding(const Westring& archive) const;
  // The tool keeps the archive as it was beside the new one, whatever stood there under that name.
  bool leavesOldArchive() const;
  size_t templateLength() const { return template_.size(); }

  // The operand as words of a command line; none for a tool that takes everything.
  std::wstring words(const ToolOperand& operand) const;
  // Its lines for a list file, each ended as the tool wants it. Names that a line can't hold have
  // to go by themselves: fitsList tells.
  std::string lines(const ToolOperand& operand) const;
  bool fitsList(const ToolOperand& operand) const;

  // Whether a command line can name it, so that it needs no list.
  bool fitsCommand(const ToolOperand& operand) const;
  // Whether the tool could pack or delete something else for it, however it is written.
  bool mistakes(const ToolOperand& operand) const;

  // The tool takes a file's name for any file of that name below, unless it is told that there are
  // files only.
  bool takesFilesApart() const { return !onlyFiles_.empty(); }
  enum class Operands : uint8_t { Any, FilesOnly };
  // The whole command. `archive` is a path; `files` are words.
  Westring command(const Westring& archive, const std::wstring& files,
                   Operands operands = Operands::Any) const;
  Westring commandWithList(const Westring& archive, const Westring& listFile,
                           Operands operands = Operands::Any) const;

 private:
  enum class In : uint8_t { Command, List };

  void takeForm();
  void find();
  std::wstring optionFor(Operands operands) const {
    return operands == Operands::FilesOnly ? onlyFiles_ : L"";
  }
  Westring filled(const std::wstring& archive, const std::wstring& files) const;
  std::wstring expand(const Westring& path, In where) const;
  Westring knownPath(const ToolOperand& operand) const;
  std::vector<std::wstring> namesOf(const ToolOperand& operand, In where) const;
  std::wstring nameOf(const Westring& path, const ToolOperand& operand, In where) const;
  bool mayMatchMore(const ToolOperand& operand) const;

  const Archiver archiver_;
  const ToolTask task_;
  std::wstring template_;
  std::wstring program_;  // its name alone
  std::wstring listSwitch_;
  std::wstring directorySpec_;
  std::wstring onlyFiles_;    // an option for files that aren't looked for below
  std::wstring beforeNames_;  // options that go before the names on a command line
  DirectoryForm form_ = DirectoryForm::AsSet;
  NameForTool names_ = NameForTool::Plain;
  char lineEnd_ = '\n';
  int highestCode_ = 0;
};

// The path of a program in PATH: a regular file that can be run. "" when there is none.
Westring programInPath(const std::wstring& name);
