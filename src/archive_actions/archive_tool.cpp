#include "archive_actions/archive_tool.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/system.h"
#include "language/environment.h"
#include "language/shell_quote.h"

namespace {

// What runs on this system where the template is the default one.
struct ToolForm {
  Archiver archiver;
  ToolTask task;
  const wchar_t* command;  // null: as it is set
  DirectoryForm form;
  NameForTool names;
  const wchar_t* beforeNames = L"";
  const wchar_t* listSwitch = nullptr;  // null: as it is set
  char lineEnd = '\n';
  const wchar_t* onlyFiles = L"";
};

constexpr auto Extract = ToolTask::Extract;
constexpr auto Compress = ToolTask::Compress;
constexpr auto Delete = ToolTask::Delete;
constexpr auto Contents = DirectoryForm::Contents;
constexpr auto Name = DirectoryForm::Name;
constexpr auto Members = DirectoryForm::Members;
constexpr auto Plain = NameForTool::Plain;
constexpr auto Behind = NameForTool::BehindOptions;
constexpr auto Arj = NameForTool::ArjPattern;
constexpr wchar_t NullLists[] = L"--no-unquote --null --files-from=";
constexpr wchar_t TarNames[] = L"--no-unquote -- ";
constexpr wchar_t EndOfOptions[] = L"-- ";
constexpr wchar_t NotBelow[] = L"-r- ";

constexpr ToolForm Forms[] = {
    {Archiver::Zip, Extract, nullptr, Contents, NameForTool::UnzipPattern},
    {Archiver::Zip, Compress, nullptr, Name, Plain},
    {Archiver::Zip, Delete, nullptr, Contents, NameForTool::ZipPattern},
    {Archiver::Rar, Extract, nullptr, Name, Plain},
    {Archiver::Rar, Compress, nullptr, Name, Plain},
    {Archiver::Rar, Delete, nullptr, Name, Plain},
    {Archiver::Lharc, Extract, L"lha x", Members, Plain},
    {Archiver::Lharc, Compress, L"jlha a", Name, Plain},
    {Archiver::Lharc, Delete, L"jlha d", Members, Plain},
    {Archiver::Arj, Extract, L"arj x -y", Members, Arj, EndOfOptions},
    {Archiver::Arj, Compress, nullptr, Contents, Arj, EndOfOptions, nullptr, '\n', NotBelow},
    {Archiver::Arj, Delete, nullptr, Members, Arj, EndOfOptions},
    {Archiver::Ace, Extract, nullptr, DirectoryForm::Nothing, Plain, L"", L""},
    {Archiver::Ace, Compress, nullptr, Name, Plain},
    {Archiver::Ace, Delete, nullptr, Name, Plain},
    {Archiver::Ha, Extract, nullptr, Name, Plain},
    {Archiver::Ha, Compress, nullptr, Name, Plain},
    {Archiver::Ha, Delete, nullptr, Name, Plain},
    {Archiver::Tar, Extract, nullptr, Name, Behind, TarNames, NullLists, '\0'},
    {Archiver::Tar, Compress, nullptr, Name, Behind, TarNames, NullLists, '\0'},
    {Archiver::Tar, Delete, nullptr, Name, Behind, TarNames, NullLists, '\0'},
};

struct TaskKeys {
  ArchiverKey command;
  ArchiverKey listSwitch;
  ArchiverKey directorySpec;
};

TaskKeys keysOf(ToolTask task) {
  if (task == ToolTask::Extract) {
    return {ArchiverKey::Extract, ArchiverKey::ExtractListfileSwitch, ArchiverKey::ExtractDirSpec};
  }
  const ArchiverKey command =
      task == ToolTask::Delete ? ArchiverKey::Delete : ArchiverKey::Compress;
  return {command, ArchiverKey::CompressListfileSwitch, ArchiverKey::CompressDirSpec};
}

std::wstring setText(Archiver archiver, ArchiverKey key) {
  return archiverKeys().text(archiver, key).data();
}

bool isDefault(Archiver archiver, ArchiverKey key) {
  return sameName(archiverKeys().text(archiver, key),
                  Westring(ArchiverKeys::defaultText(archiver, key)));
}

std::wstring firstWord(const std::wstring& text) {
  return text.substr(0, text.find(L' '));
}

std::wstring searchPath() {
  if (const char* set = sessionEnvironment().get("PATH"); set != nullptr && *set != 0) {
    return decodeFileName(set).data();
  }
  std::string usual(confstr(_CS_PATH, nullptr, 0), '\0');
  confstr(_CS_PATH, usual.data(), usual.size());
  return decodeFileName(usual.c_str()).data();
}

bool isProgram(const std::string& path) {
  struct stat info;
  return System::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
         System::accessAt(AT_FDCWD, path.c_str(), X_OK) == 0;
}

// A pattern that matches the stored name. The bytes behind 127 of another system's name come out as
// something else for the tool, and a backslash is a slash there.
Westring patternOf(const Westring& path, bool foreign) {
  std::string result;
  for (const char byte : bytePath(path)) {
    const bool high = static_cast<unsigned char>(byte) > 0x7F;
    if (foreign && (high || byte == '\\')) {
      result += '?';
    } else if (strchr("[*?", byte) != nullptr || (byte == '-' && result.empty())) {
      result += std::string("[") + byte + ']';
    } else if (byte == '\\') {
      result += "\\\\";
    } else {
      result += byte;
    }
  }
  return decodeFileName(result.c_str());
}

// What can't be written matches anything.
Westring arjPatternOf(const Westring& path) {
  Westring result = path;
  for (int i = 0; i < result.length(); ++i) {
    const bool list = i == 0 && result[i] == L'!';
    if (list || result[i] == L'[' || result[i] == L']') result.data()[i] = L'?';
  }
  return result;
}

void replaceFirstWord(std::wstring& text, const std::wstring& word) {
  text.replace(0, firstWord(text).size(), word);
}

}  // namespace

Westring programInPath(const std::wstring& name) {
  const std::wstring path = searchPath();
  for (size_t start = 0; start <= path.size();) {
    const size_t end = std::min(path.find(L':', start), path.size());
    const std::wstring directory = path.substr(start, end - start);
    start = end + 1;
    if (directory.empty() || directory[0] != L'/') continue;
    Westring candidate = joinPath(directory.c_str(), name.c_str());
    if (isProgram(bytePath(candidate))) return candidate;
  }
  return Westring();
}

ArchiveTool::ArchiveTool(Archiver archiver, ToolTask task) : archiver_(archiver), task_(task) {
  const TaskKeys keys = keysOf(task);
  template_ = trim(archiverKeys().text(archiver, keys.command)).data();
  listSwitch_ = setText(archiver, keys.listSwitch);
  directorySpec_ = setText(archiver, keys.directorySpec);
  if (isDefault(archiver, keys.command) && isDefault(archiver, keys.directorySpec)) takeForm();
  find();
}

void ArchiveTool::takeForm() {
  for (const ToolForm& form : Forms) {
    if (form.archiver != archiver_ || form.task != task_) continue;
    // The packer of this format may have a name of its own here.
    const bool packer = archiver_ == Archiver::Lharc && task_ != ToolTask::Extract;
    const bool there = !packer || !programInPath(firstWord(form.command)).empty();
    if (form.command != nullptr && there) template_ = form.command;
    if (form.listSwitch != nullptr && isDefault(archiver_, keysOf(task_).listSwitch)) {
      listSwitch_ = form.listSwitch;
      lineEnd_ = form.lineEnd;
    }
    beforeNames_ = form.beforeNames;
    onlyFiles_ = form.onlyFiles;
    form_ = form.form;
    names_ = form.names;
  }
}

void ArchiveTool::find() {
  const std::wstring word = firstWord(template_);
  if (word.empty()) return;
  program_ = lastComponent(word.c_str()).data();
  if (program_ == L"unzip") highestCode_ = 1;
  if (word.find(L'/') != std::wstring::npos) return;
  const Westring found = programInPath(word);
  if (!found.empty()) replaceFirstWord(template_, quoteForShell(found).data());
}

bool ArchiveTool::writesArchiveAnew() const {
  const size_t archive = template_.find(L"%a");
  if (archive == std::wstring::npos) return false;
  const size_t before = template_.find_last_not_of(L' ', archive - 1);
  if (archive == 0 || before == std::wstring::npos || template_[before] != L'>') return false;
  return before == 0 || template_[before - 1] != L'>';
}

bool ArchiveTool::stripsUnsafeNames() const {
  return program_ == L"unzip" || program_ == L"tar";
}

Westring ArchiveTool::addedEnding(const Westring& archive) const {
  constexpr struct {
    const wchar_t* program;
    const wchar_t* ending;
  } Endings[] = {{L"zip", L".zip"}, {L"arj", L".arj"}, {L"rar", L".rar"}, {L"unace", L".ace"}};
  if (lastComponent(archive).find(L'.') >= 0) return Westring();
  for (const auto& row : Endings) {
    if (program_ == row.program) return row.ending;
  }
  return Westring();
}

bool ArchiveTool::leavesOldArchive() const {
  return task_ != ToolTask::Extract && (program_ == L"jlha" || program_ == L"lha");
}

// Whether it does no harm when the tool takes more for the operand than it is: what was taken out
// is looked at before it is put in place.
bool ArchiveTool::mayMatchMore(const ToolOperand& operand) const {
  return task_ == ToolTask::Extract || operand.alone;
}

std::wstring ArchiveTool::nameOf(const Westring& path, const ToolOperand& operand, In where) const {
  Westring name = path;
  if (names_ == NameForTool::UnzipPattern) name = patternOf(path, operand.foreignName);
  if (names_ == NameForTool::ZipPattern) name = patternOf(path, false);
  if (names_ == NameForTool::ArjPattern && mayMatchMore(operand)) name = arjPatternOf(path);
  if (where == In::List) return name.data();
  return (names_ == NameForTool::Plain ? quoteNameForShell(name) : quoteForShell(name)).data();
}

// What the configuration says a directory is.
std::wstring ArchiveTool::expand(const Westring& path, In where) const {
  std::wstring result;
  for (const wchar_t character : directorySpec_) {
    if (character == L'!') {
      result += nameOf(path, {}, where);
    } else if (character == L' ' && where == In::List) {
      result += L'\n';
    } else {
      result += character;
    }
  }
  return result;
}

// A second name is one that only the unpacker knows, and it knows no other then.
Westring ArchiveTool::knownPath(const ToolOperand& operand) const {
  const bool second = names_ == NameForTool::UnzipPattern && !operand.secondPath.empty();
  return second ? operand.secondPath : operand.path;
}

std::vector<std::wstring> ArchiveTool::namesOf(const ToolOperand& operand, In where) const {
  if (form_ == DirectoryForm::Nothing) return {};
  if (operand.directory && form_ == DirectoryForm::AsSet) return {expand(operand.path, where)};
  if (operand.directory && form_ == DirectoryForm::Members) {
    std::vector<std::wstring> names;
    for (const Westring& member : operand.below) {
      names.push_back(nameOf(member, operand, where));
    }
    return names;
  }
  std::wstring name = nameOf(knownPath(operand), operand, where);
  if (operand.directory && form_ == DirectoryForm::Contents) {
    name += where == In::List ? L"/*" : L"/\\*";
  }
  return {name};
}

std::wstring ArchiveTool::words(const ToolOperand& operand) const {
  std::wstring result;
  for (const std::wstring& name : namesOf(operand, In::Command)) {
    if (!result.empty()) result += L' ';
    result += name;
  }
  return result;
}

std::string ArchiveTool::lines(const ToolOperand& operand) const {
  std::string result;
  for (const std::wstring& name : namesOf(operand, In::List)) {
    result += bytePath(name.c_str());
    result += lineEnd_;
  }
  return result;
}

bool ArchiveTool::fitsList(const ToolOperand& operand) const {
  const auto fits = [](const Westring& name) {
    const bool cut = !sameName(trim(name), name);
    return !cut && name.find(L'\n') < 0 && name.find(L'\r') < 0;
  };
  return lineEnd_ == 0 ||
         (fits(operand.path) && std::all_of(operand.below.begin(), operand.below.end(), fits));
}

bool ArchiveTool::fitsCommand(const ToolOperand& operand) const {
  if (names_ != NameForTool::ArjPattern || mayMatchMore(operand)) return true;
  return operand.path[0] != L'!';
}

bool ArchiveTool::mistakes(const ToolOperand& operand) const {
  if (archiver_ != Archiver::Arj || mayMatchMore(operand)) return false;
  const auto isPattern = [](const Westring& name) {
    return wcspbrk(name.data(), L"*?[") != nullptr;
  };
  const bool nowhere = !fitsCommand(operand) && (!usesLists() || !fitsList(operand));
  return nowhere || isPattern(operand.path) ||
         std::any_of(operand.below.begin(), operand.below.end(), isPattern);
}

// In one pass: a name may hold what looks like a place for the other.
Westring ArchiveTool::command(const Westring& archive, const std::wstring& files,
                              Operands operands) const {
  const std::wstring place = quoteForShell(archive).data();
  const std::wstring names = files.empty() ? L"" : optionFor(operands) + beforeNames_ + files;
  return filled(place, names);
}

Westring ArchiveTool::commandWithList(const Westring& archive, const Westring& listFile,
                                      Operands operands) const {
  const std::wstring list = listSwitch_ + quoteForShell(listFile).data();
  return filled(quoteForShell(archive).data(), optionFor(operands) + list);
}

Westring ArchiveTool::filled(const std::wstring& archive, const std::wstring& files) const {
  std::wstring result;
  bool hasArchive = false;
  bool hasFiles = false;
  for (size_t i = 0; i < template_.size(); ++i) {
    const wchar_t next = template_[i] == L'%' && i + 1 < template_.size() ? template_[i + 1] : L' ';
    if (next != L'a' && next != L'f') {
      result += template_[i];
      continue;
    }
    (next == L'a' ? hasArchive : hasFiles) = true;
    result += next == L'a' ? archive : files;
    ++i;
  }
  if (!hasArchive) result += L" " + archive;
  if (!hasFiles && !files.empty()) result += L" " + files;
  return Westring(result.c_str());
}
