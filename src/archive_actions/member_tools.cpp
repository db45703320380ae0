#include "archive_actions/member_tools.h"

#include <cerrno>
#include <string>

#include "archive_actions/tool_archive.h"
#include "archive_actions/tool_run.h"
#include "archive_actions/working_directory.h"
#include "archive_actions/written_files.h"
#include "foundation/file_mode_mask.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/safe_file.h"
#include "ui/alert.h"

namespace {

constexpr mode_t NewArchiveMode = 0666;            // before the umask
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

// The one file that the tool was to write: its path, or "" after it was told. Tools that know the
// name in other characters write another one; who puts the file back needs it under the stored one.
Westring writtenFile(const PrivateDirectory& directory, const SingleMember& member) {
  const int top = directory.fd();
  const std::string path = withoutRoot(bytePath(member.file.path));
  FoundPlace found;
  int error = findMember(top, member.innerPath, {member.file}, found);
  if (error == ENOENT) error = findOnlyFile(top, found);
  if (error == 0) error = checkRegular(found);
  if (error != 0) {
    tellError(error == ENOENT ? L"File not found" : L"Not a regular file", member.file.path);
    return Westring();
  }
  Westring wanted = joinPath(directory.path(), decodeFileName(path.c_str()));
  error = isAt(found, path) ? 0 : moveWritten(top, found, path);
  if (error == 0) return wanted;
  tellError(errorText(error), wanted);
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

// A packer of this system may have made the member one of this system, which is listed otherwise.
bool holds(const ArchiveEntryStore& archive, const SingleMember& member, uint64_t size) {
  const ArchiveOpening anew = readQuietly(archive);
  if (!anew.archive) return false;
  if (archive.type() == ArchiveType::Gzip) size %= GzipSizes;
  const Westring stored = decodeFileName(withSlashes(bytePath(member.file.path)).c_str());
  for (const Westring& path : {member.innerPath, stored}) {
    const ArchiveRecord* const record = anew.archive->fileOf(path);
    if (record && record->size == size) return true;
  }
  return false;
}

}  // namespace

ArchiveOpening readQuietly(const ArchiveEntryStore& archive) {
  ArchiveWatcher nobody;
  return openArchiveFile(archive.path(), archive.diskFile(), nobody);
}

Westring extractMember(const ArchiveEntryStore& archive, const SingleMember& member,
                       const PrivateDirectory& directory) {
  const ToolOperand& file = member.file;
  const ArchiveTool tool(archiverOf(archive), ToolTask::Extract);
  if (!tool.hasCommand()) {
    tellError(L"No command for this archive type", archive.path());
    return Westring();
  }
  if (tool.directoryForm() == DirectoryForm::Nothing && archive.records().hidesBelow(L"")) {
    tellError(L"Unsafe names in archive", archive.path());
    return Westring();
  }
  if (!hasRoom(directory.path(), member.size)) {
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
  const ToolArchive named(tool, archive.diskFile());
  if (named.error() != 0) {
    tellError(errorText(named.error()), archive.path());
    return Westring();
  }
  const ToolResult result = runIn(directory.path(), tool.command(named.path(), tool.words(file)),
                                  {L"Extracting", lastComponent(file.path), bytesSoFar});
  if (result.end == ToolEnd::Broken) return Westring();
  if (result.end == ToolEnd::NotStarted || result.code > tool.highestCode()) {
    tellError(L"An error occurred extracting", withCode(file.path, directory.path(), result.code));
    return Westring();
  }
  return writtenFile(directory, member);
}

Westring updateMember(const ArchiveEntryStore& archive, const SingleMember& member,
                      const MemberCopy& copy) {
  const Westring& innerPath = member.innerPath;
  const ArchiveTool tool(archiverOf(archive), ToolTask::Compress);
  if (!tool.hasCommand()) return L"No command for this archive type";
  ToolOperand operand;
  operand.path = decodeFileName(withoutRoot(bytePath(member.file.path)).c_str());
  operand.alone = true;
  SafeFile anew;
  Westring target = archive.diskFile();
  if (tool.writesArchiveAnew()) {
    if (const int error = anew.create(target); error != 0) return errorText(error);
    target = decodeFileName(anew.temporaryPath().c_str());
  }
  ToolArchive named(tool, target);
  if (named.error() != 0) return errorText(named.error());
  const ToolResult result = runIn(copy.directory(), tool.command(named.path(), tool.words(operand)),
                                  {L"Updating", lastComponent(innerPath), nullptr});
  Westring failure =
      Westring(L"An error occurred updating ") + withCode(innerPath, archive.path(), result.code);
  const bool ran = result.end == ToolEnd::Ran && result.code <= tool.highestCode();
  const int error = named.finish(ran ? ToolSuccess::Yes : ToolSuccess::No);
  if (!ran) return failure;
  if (error != 0) return errorText(error);
  if (tool.writesArchiveAnew()) {
    if (const int failed = anew.commit(NewArchiveMode & ~fileModeMask()); failed != 0) {
      return errorText(failed);
    }
  }
  return holds(archive, member, copy.size()) ? Westring() : failure;
}
