#include "archive_actions/tool_archive.h"

#include <cerrno>

#include "foundation/names.h"
#include "foundation/not_offered.h"
#include "foundation/path_info.h"
#include "foundation/place.h"

namespace {

Westring oldArchiveOf(const Westring& archive) {
  const int dot = archive.rfind(L'.');
  return (dot > archive.rfind(L'/') ? left(archive, dot) : archive) + L".bak";
}

// 0 or errno: ENOENT, and nothing else, when there is nothing of that name.
int look(const Westring& path) {
  struct stat info;
  return lstatPath(path, info);
}

}  // namespace

ToolArchive::ToolArchive(const ArchiveTool& tool, const Westring& archive)
    : archive_(archive), path_(archive) {
  const Westring ending = tool.addedEnding(archive);
  if (ending.empty() && !tool.leavesOldArchive()) return;
  const int seen = look(archive);
  if (seen == ENOENT) return;
  error_ = seen != 0 ? seen : directory_.make(parentOf(archive));
  if (error_ != 0) return;
  path_ = joinPath(directory_.path(), lastComponent(archive) + ending);
  const std::string from = bytePath(archive);
  const std::string to = bytePath(path_);
  if (System::linkAt(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str()) == 0) return;
  error_ = errno;
  // Without a second name it can only be worked on in its place.
  if (ending.empty() && isAttributeNotOffered(error_) && look(oldArchiveOf(archive)) == ENOENT) {
    error_ = 0;
    path_ = archive;
    directory_.remove();
  }
}

int ToolArchive::finish(ToolSuccess success) {
  if (error_ != 0 || !directory_.exists()) return error_;
  struct stat before;
  struct stat made;
  const std::string archive = bytePath(archive_);
  const std::string path = bytePath(path_);
  if (System::lstat(archive.c_str(), &before) != 0) return errno;
  if (System::lstat(path.c_str(), &made) != 0) {
    if (errno != ENOENT || success == ToolSuccess::No) return errno;
    // Tools remove an archive that holds nothing any more.
    return System::unlink(archive.c_str()) == 0 ? 0 : errno;
  }
  if (idOf(before) == idOf(made)) return 0;
  return System::rename(path.c_str(), archive.c_str()) == 0 ? 0 : errno;
}
