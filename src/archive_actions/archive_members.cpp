#include "archive_actions/archive_members.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "foundation/names.h"
#include "foundation/place.h"
#include "foundation/utf8.h"

namespace {

std::wstring_view viewOf(const Westring& text) {
  return {text.data(), static_cast<size_t>(text.length())};
}

Westring shownPath(const ArchiveRecord& record, std::wstring_view directory) {
  std::wstring path(directory);
  if (!record.name.empty() && !directory.empty()) path += L'/';
  path += record.name;
  return Westring(path.c_str());
}

Westring withDotSlash(const ArchiveRecord& record, const Westring& shown) {
  return record.dotSlash ? L"./" + shown : shown;
}

// The path by which the tool knows the record that is listed under `shown`.
Westring storedPath(const ArchiveRecord& record, const Westring& shown) {
  if (record.stored.empty()) return withDotSlash(record, shown);
  return decodeFileName(std::string(record.stored).c_str());
}

Westring secondPath(const ArchiveRecord& record, const Westring& shown) {
  return record.namedTwice ? withDotSlash(record, shown) : Westring();
}

size_t componentsIn(std::wstring_view path) {
  return static_cast<size_t>(std::count(path.begin(), path.end(), L'/')) + 1;
}

// The beginning of a stored path that is the directory shown with so many components.
std::string beginningOf(std::string_view stored, size_t components) {
  constexpr std::string_view Separators = "/\\";
  size_t end = std::min(stored.find_first_not_of('/'), stored.size());
  if (stored.substr(end).starts_with("./")) end += 2;
  for (size_t i = 0; i < components && end < stored.size(); ++i) {
    if (i > 0) ++end;
    end = std::min(stored.find_first_of(Separators, end), stored.size());
  }
  return std::string(stored.substr(0, end));
}

Westring directoryName(const ArchiveRecord& record, const Westring& path) {
  if (record.stored.empty()) return withDotSlash(record, path);
  return decodeFileName(beginningOf(record.stored, componentsIn(viewOf(path))).c_str());
}

// A slash to us, and a plain character to the tool: no directory for it.
bool endsAtBackslash(const ArchiveRecord& record, const Westring& beginning) {
  const size_t length = bytePath(beginning).size();
  return length < record.stored.size() && record.stored[length] == '\\';
}

ToolOperand directoryOperand(const ArchiveRecord& record, const Westring& name,
                             const Westring& shown) {
  return {.path = name,
          .directory = true,
          .foreignName = record.foreign,
          .secondPath = secondPath(record, shown)};
}

class OperandMaker {
 public:
  explicit OperandMaker(const ArchiveEntryStore& archive)
      : archive_(archive), records_(archive.records()) {}

  void enter(const Westring& directory);  // the one that files are taken from
  std::vector<ToolOperand> file(const Westring& name) const;
  std::vector<ToolOperand> directory(const Westring& path) const;

 private:
  const ArchiveEntryStore& archive_;
  const ArchiveRecords& records_;
  std::wstring parent_;
  std::unordered_map<std::wstring_view, const ArchiveRecord*> files_;
};

// The last one of equal names is the one that is listed.
void OperandMaker::enter(const Westring& directory) {
  parent_ = directory.data();
  files_.clear();
  const uint32_t place = records_.placeOf(parent_);
  if (place == records_.directories().size()) return;
  const ArchiveDirectory& found = records_.directories()[place];
  if (found.path != parent_) return;
  for (uint32_t i = 0; i < found.recordCount; ++i) {
    const ArchiveRecord& record = records_.at(found.firstRecord + i);
    files_[record.name] = &record;
  }
}

std::vector<ToolOperand> OperandMaker::file(const Westring& name) const {
  const auto found = files_.find(viewOf(name));
  if (found == files_.end()) return {};
  const ArchiveRecord& record = *found->second;
  return {fileOperand(shownPath(record, parent_), record)};
}

ToolOperand& operandLike(std::vector<ToolOperand>& operands, const ToolOperand& wanted) {
  for (ToolOperand& operand : operands) {
    if (sameName(operand.path, wanted.path) && operand.foreignName == wanted.foreignName &&
        sameName(operand.secondPath, wanted.secondPath)) {
      return operand;
    }
  }
  operands.push_back(wanted);
  return operands.back();
}

std::vector<ToolOperand> OperandMaker::directory(const Westring& path) const {
  std::vector<ToolOperand> operands;
  const auto& directories = records_.directories();
  for (uint32_t i = records_.placeOf(viewOf(path)); i < directories.size(); ++i) {
    const ArchiveDirectory& below = directories[i];
    if (!isWithin(below.path, viewOf(path))) break;
    for (uint32_t place = 0; place < below.recordCount; ++place) {
      const ArchiveRecord& record = records_.at(below.firstRecord + place);
      const Westring name = directoryName(record, path);
      const Westring shown = shownPath(record, below.path);
      // Directories have a slash behind their names for the tool that wants every name.
      const bool itself = record.name.empty() && archive_.type() == ArchiveType::Lharc;
      if (endsAtBackslash(record, name)) {
        operands.push_back(fileOperand(shown, record));
      } else {
        const Westring member = storedPath(record, shown);
        operandLike(operands, directoryOperand(record, name, path))
            .below.push_back(itself ? addSlash(member) : member);
      }
    }
  }
  return operands;
}

}  // namespace

std::vector<ChosenMember> chosenMembers(const Panel& panel, const ArchiveEntryStore& archive,
                                        const ChosenItems& items) {
  OperandMaker maker(archive);
  maker.enter(innerPath(archive, panel.path));
  std::vector<ChosenMember> members;
  for (entry* item : items.entries) {
    ChosenMember member{item, innerPath(archive, itemPath(panel, *item)), {}, item->size};
    if (item->isDirectory()) {
      member.operands = maker.directory(member.innerPath);
      member.size = archive.records().sizeBelow(viewOf(member.innerPath));
    } else {
      member.operands = maker.file(lastComponent(member.innerPath));
    }
    members.push_back(std::move(member));
  }
  return members;
}

ToolOperand fileOperand(const Westring& innerPath, const ArchiveRecord& record) {
  return {.path = storedPath(record, innerPath),
          .foreignName = record.foreign,
          .secondPath = secondPath(record, innerPath)};
}

std::vector<ToolOperand> operandsOf(const std::vector<ChosenMember>& members) {
  std::vector<ToolOperand> result;
  for (const ChosenMember& member : members) {
    result.insert(result.end(), member.operands.begin(), member.operands.end());
  }
  return result;
}
