#include "archive_actions/member_tools.h"

#include <cerrno>
#include <string>

#include "archive_actions/tool_run.h"
#include "archive_actions/working_directory.h"
#include "foundation/file_mode_mask.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/safe_file.h"
#include "ui/alert.h"

namespace {

constexpr mode_t NewArchiveMode = 0666;  // before the umask
constexpr mode_t OwnerDirectory = 0700;
constexpr uint64_t GzipSizes = uint64_t{1} << 32;  // it knows no more of a size than the rest

void tellError(const Westring& text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

Westring withCode(const Westring& from, const Westring& to, int code) {
  return from + L" to " + to + L" (" + Westring(std::to_wstring(code).c_str()) + L")";
}

bool hasRoom(const Westring& directory, uint64_t size) {
  uint64_t total = 0;
  uint64_t free = 0;
  uint64_t unit = 0;
  return diskSpace(directory, total, free, unit) != 0 || size <= free;
}

Archiver archiverOf(const ArchiveEntryStore& archive) {
  return static_cast<Archiver>(archive.type());
}

std::string withoutRoot(const std::string& path) {
  return path.substr(std::min(path.find_first_not_of('/'), path.size()));
}

// Tools that know the name in other characters write another one; who puts the file back needs it
// under the stored one.
int nameExactly(const PrivateDirectory& directory, const FoundPlace& found,
                const std::string& path) {
  for (size_t slash = path.find('/'); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    const std::string parent = path.substr(0, slash);
    if (System::mkdirAt(directory.fd(), parent.c_str(), OwnerDirectory) != 0 && errno != EEXIST) {
      return errno;
    }
  }
  return System::renameAtNoReplace(found.parent.get(), found.name.c_str(), directory.fd(),
                                   path.c_str()) == 0
             ? 0
             : errno;
}

// The one file that the tool was to write: its path, or "" after it was told.
Westring writtenFile(const PrivateDirectory& directory, const ToolOperand& file) {
  const std::string path = withoutRoot(bytePath(file.path));
  Westring wanted = joinPath(directory.path(), decodeFileName(path.c_str()));
  FoundPlace found;
  int error = findWrittenFile(directory.fd(), path, NameMatch::Exact, found);
  if (error == 0) return wanted;
  if (error == ENOENT) {
    error = findWrittenFile(directory.fd(), path, NameMatch::Likely, found);
    if (error == 0) error = nameExactly(directory, found, path);
    if (error == 0) return wanted;
  }
  tellError(error == ENOENT ? L"File not found" : L"Not a regular file", file.path);
  return Westring();
}

struct ToolResult {
  ToolEnd end = ToolEnd::NotStarted;
  int code = 0;
};

ToolResult runIn(const Westring& directory, const Westring& command, const ToolBox& box) {
  ToolResult result;
  const WorkingDirectory inside(directory);
  result.code = inside.error();
  if (result.code == 0) result.end = runToolHidden(command, box, result.code);
  return result;
}

bool holds(const ArchiveEntryStore& archive, const Westring& innerPath, uint64_t size) {
  const ArchiveOpening anew = readQuietly(archive);
  const ArchiveRecord* const record = anew.archive ? anew.archive->fileOf(innerPath) : nullptr;
  if (!record) return false;
  if (archive.type() == ArchiveType::Gzip) return record->size == size % GzipSizes;
  return record->size == size;
}

}  // namespace

ToolOperand fileOperand(const Westring& innerPath, const ArchiveRecord& record, ArchiveType type) {
  ToolOperand operand;
  operand.path = record.dotSlash ? Westring(L"./") + innerPath : innerPath;
  if (!record.stored.empty()) operand.path = decodeFileName(std::string(record.stored).c_str());
  operand.foreignName = type == ArchiveType::Zip && !record.stored.empty();
  return operand;
}

ArchiveOpening readQuietly(const ArchiveEntryStore& archive) {
  ArchiveWatcher nobody;
  return openArchiveFile(archive.path(), archive.diskFile(), nobody);
}

Westring extractMember(const ArchiveEntryStore& archive, const ToolOperand& file, uint64_t size,
                       const PrivateDirectory& directory) {
  const ArchiveTool tool(archiverOf(archive), ToolTask::Extract);
  if (!tool.hasCommand()) {
    tellError(L"No command for this archive type", archive.path());
    return Westring();
  }
  if (!hasRoom(directory.path(), size)) {
    tellError(errorText(ENOSPC), directory.path());
    return Westring();
  }
  const std::string written = withoutRoot(bytePath(file.path));
  const auto bytesSoFar = [&]() -> int64_t {
    struct stat info;
    const bool there =
        System::statAt(directory.fd(), written.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    return there ? info.st_size : 0;
  };
  const ToolResult result =
      runIn(directory.path(), tool.command(archive.diskFile(), tool.words(file)),
            {L"Extracting", lastComponent(file.path), bytesSoFar});
  if (result.end == ToolEnd::Broken) return Westring();
  if (result.end == ToolEnd::NotStarted || result.code > tool.highestCode()) {
    tellError(L"An error occurred extracting", withCode(file.path, directory.path(), result.code));
    return Westring();
  }
  return writtenFile(directory, file);
}

Westring updateMember(const ArchiveEntryStore& archive, const Westring& innerPath,
                      const ToolOperand& file, const MemberCopy& copy) {
  const ArchiveTool tool(archiverOf(archive), ToolTask::Compress);
  if (!tool.hasCommand()) return L"No command for this archive type";
  ToolOperand operand;
  operand.path = decodeFileName(withoutRoot(bytePath(file.path)).c_str());
  SafeFile anew;
  Westring target = archive.diskFile();
  if (tool.writesArchiveAnew()) {
    if (const int error = anew.create(target); error != 0) return errorText(error);
    target = decodeFileName(anew.temporaryPath().c_str());
  }
  const ToolResult result = runIn(copy.directory(), tool.command(target, tool.words(operand)),
                                  {L"Updating", lastComponent(innerPath), nullptr});
  Westring failure =
      Westring(L"An error occurred updating ") + withCode(innerPath, archive.path(), result.code);
  if (result.end != ToolEnd::Ran || result.code > tool.highestCode()) return failure;
  if (tool.writesArchiveAnew()) {
    if (const int error = anew.commit(NewArchiveMode & ~fileModeMask()); error != 0) {
      return errorText(error);
    }
  }
  return holds(archive, innerPath, copy.size()) ? Westring() : failure;
}
